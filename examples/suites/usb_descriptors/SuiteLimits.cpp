// From suite.xml to limits.
#include "SuiteLimits.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "RecordingFiles.h"
#include "Text.h"
#include "app/CAppState.h"
#include "settings/CIniArgs.h"
#include "siblings/Keelbase.h"
#include "xml/CComSessionMgr.h"
#include "xml/CDOMDoc.h"

namespace {

namespace fs = std::filesystem;

std::string const * FindSetting(char const * key) {
    std::string * value = nullptr;
    return CAppState::GetIniArgs().GetArg("Suite", key, value) ? value : nullptr;
}

std::wstring Wide(std::string const & text) { return *Utf8ToUtf16(text); }

std::string Take(BSTR text) {
    std::string const narrow = text != nullptr ? *Utf16ToUtf8(text) : "";
    SysFreeString(text);
    return narrow;
}

// "file(line,column): reason", with what is known.
std::string Describe(std::string const & file, ComPtr<IXMLDOMParseError> const & error) {
    LONG line = 0;
    LONG column = 0;
    BSTR reason = nullptr;
    error->get_line(&line);
    error->get_linepos(&column);
    error->get_reason(&reason);
    std::string why = Take(reason);
    while (!why.empty() && (why.back() == '\n' || why.back() == '\r'))
        why.pop_back();
    return usb::Join(file, "(", line, ",", column, "): ", why);
}

// A document whose elements are read, not shown.
class LimitsDocument : public CDOMDoc {
public:
    explicit LimitsDocument(std::string const & folder)
        : CDOMDoc(MakeFullSchemaPath(Wide(folder + "/suite.xsd").c_str()), L"") {}

    SuiteLimits Read(std::string const & file) {
        if (!ValidateDoc(MakeFullSchemaPath(Wide(file).c_str()).c_str()))
            throw std::runtime_error(WhatIsWrongWith(file));
        auto const root = GetRootElement();
        SuiteLimits limits;
        for (auto const & section : ElementsOf(root))
            for (auto const & entry : ElementsOf(section))
                ReadEntry(entry, limits);
        return limits;
    }

private:
    // What loading has met; what only validating has met, when loading did not validate.
    std::string WhatIsWrongWith(std::string const & file) {
        ComPtr<IXMLDOMParseError> error;
        m_Document->get_parseError(error.Receive());
        if (CheckDocLoad(error)) m_Document->validate(error.Receive());
        return Describe(file, error);
    }

    std::vector<ComPtr<IXMLDOMElement>> ElementsOf(ComPtr<IXMLDOMElement> const & parent) {
        ComPtr<IXMLDOMNodeList> list;
        long length = 0;
        GetChildList(parent, list.Receive(), &length, nullptr);
        std::vector<ComPtr<IXMLDOMElement>> elements;
        for (long i = 0; i < length; ++i)
            if (auto element = QueryFor<IXMLDOMElement>(GetChildNode(i, list)))
                elements.push_back(element);
        return elements;
    }

    std::string Attribute(ComPtr<IXMLDOMElement> const & element, wchar_t const * name) {
        return *Utf16ToUtf8(GetAttribute(element, name));
    }

    void ReadEntry(ComPtr<IXMLDOMElement> const & entry, SuiteLimits & limits) {
        if (ConfirmElementName(entry, L"device")) {
            std::string const product = Attribute(entry, L"product");
            limits.devices.push_back(
                Attribute(entry, L"vendor") + (product.empty() ? "" : ":" + product));
        } else if (ConfirmElementName(entry, L"group")) {
            limits.groups.push_back(Attribute(entry, L"name"));
        } else if (ConfirmElementName(entry, L"run")) {
            limits.run = std::chrono::seconds(std::stoi(Attribute(entry, L"seconds")));
        }
    }
};

SuiteLimits ReadFrom(std::string const & folder, std::string const & file) {
    CComSessionMgr const session;
    try {
        return LimitsDocument(folder).Read(file);
    } catch (_com_error const & failure) {
        char const * const message = failure.ErrorMessage();
        throw std::runtime_error(
            usb::Join(file, "(0,0): ", message != nullptr ? message : "it cannot be read"));
    }
}

} // namespace

bool SuiteLimits::HasDevice(std::string const & id) const {
    return devices.empty() || std::ranges::any_of(devices, [&](std::string const & device) {
               return id == device || id.starts_with(device + ":");
           });
}

bool SuiteLimits::HasGroup(std::string const & name) const {
    return groups.empty() || std::ranges::find(groups, name) != groups.end();
}

SuiteLimits ReadSuiteLimits() {
    auto const * const folder = FindSetting("Folder");
    if (auto const * const file = FindSetting("Limits"))
        return ReadFrom(folder != nullptr ? *folder : ".", *file);
    if (folder == nullptr) return {};
    std::string const file = *folder + "/suite.xml";
    return fs::exists(usb::PathOf(file)) ? ReadFrom(*folder, file) : SuiteLimits();
}
