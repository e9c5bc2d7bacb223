// A suite that reads its parameters from an XML file, checked against a schema: one test a voltage.
//
// Both files lie beside the suite; the setting "Parameters" names another file.
#include <stdexcept>

#include "app/CAppState.h"
#include "examples/TestSuite.h"
#include "settings/CIniArgs.h"
#include "siblings/Keelbase.h"
#include "xml/CComSessionMgr.h"
#include "xml/CDOMDoc.h"

namespace {

struct Voltage {
    std::string name;
    double volts;
    double least;
    double most;
};

std::string Setting(char const * key, std::string const & otherwise) {
    std::string * value = nullptr;
    return CAppState::GetIniArgs().GetArg("Suite", key, value) ? *value : otherwise;
}

class ParametersDocument : public CDOMDoc {
public:
    explicit ParametersDocument(std::string const & schema)
        : CDOMDoc(MakeFullSchemaPath(Utf8ToUtf16(schema)->c_str()), L"") {}

    std::vector<Voltage> Read(std::string const & file) {
        if (!ValidateDoc(MakeFullSchemaPath(Utf8ToUtf16(file)->c_str()).c_str()))
            throw std::runtime_error(file + " does not fit parameters.xsd");
        ComPtr<IXMLDOMNodeList> list;
        long count = 0;
        GetChildList(GetRootElement(), list.Receive(), &count, nullptr);
        std::vector<Voltage> voltages;
        for (long i = 0; i < count; ++i)
            // A comment is no element.
            if (auto const element = QueryFor<IXMLDOMElement>(GetChildNode(i, list)))
                voltages.push_back(VoltageOf(GetAllAttributes(element)));
        return voltages;
    }

private:
    // The schema has seen to it that all are there and are numbers.
    static Voltage VoltageOf(Attributes const & attributes) {
        return {
            *Utf16ToUtf8(attributes.at(L"name")), std::stod(attributes.at(L"volts")),
            std::stod(attributes.at(L"least")), std::stod(attributes.at(L"most"))};
    }
};

TEST_STATUS Check(CMXLog & log, Voltage const & voltage) {
    if (voltage.volts < voltage.least || voltage.volts > voltage.most)
        log.Write(
            TEST_STATUS_FAIL, "%s has %.2f V: %.2f to %.2f V are allowed", voltage.name,
            voltage.volts, voltage.least, voltage.most);
    return log.TestStatus();
}

class ParametersSuite : public TestSuite {
public:
    std::string Name() const override { return "Parameters"; }

    std::vector<TestCase> Tests() override {
        CComSessionMgr const session;
        std::string const folder = Setting("Folder", ".");
        ParametersDocument document(folder + "/parameters.xsd");
        std::vector<TestCase> tests;
        for (auto const & voltage :
             document.Read(Setting("Parameters", folder + "/parameters.xml")))
            tests.push_back(
                {voltage.name, true, [=](CMXLog & log) { return Check(log, voltage); }});
        return tests;
    }
};

} // namespace

MORVEX_TEST_SUITE(ParametersSuite)
