// A test suite in its shared library.
#include "examples/QNExe/SuiteLibrary.h"

#include <stdexcept>

namespace {

[[noreturn]] void Refuse(std::string const & file, std::string const & why) {
    throw std::runtime_error("the suite \"" + file + "\" " + why);
}

Module Load(std::string const & file) {
    std::string reason;
    Module const module = LoadModule(file, reason);
    if (module == nullptr)
        Refuse(file, "cannot be loaded: " + reason + ". Give --suite the file of a test suite.");
    return module;
}

template <typename Function>
Function * Find(Module module, char const * name) {
    return reinterpret_cast<Function *>(FindFunction(module, name));
}

} // namespace

SuiteLibrary::SuiteLibrary(std::string const & file) : m_File(file), m_Module(Load(file)) {
    try {
        CheckContract();
    } catch (...) {
        UnloadModule(m_Module);
        throw;
    }
}

SuiteLibrary::~SuiteLibrary() { UnloadModule(m_Module); }

void SuiteLibrary::CheckContract() const {
    auto const contract = Find<TestSuiteContractFunction>(m_Module, "MorvexTestSuiteContract");
    auto const factory = Find<TestSuiteFactoryFunction>(m_Module, "MorvexCreateTestSuite");
    if (contract == nullptr || factory == nullptr)
        Refuse(
            m_File, "is no test suite: it lacks what MORVEX_TEST_SUITE exports. Name the suite's "
                    "class with that macro and build it again.");
    if (unsigned const version = contract(); version != TestSuiteContract)
        Refuse(
            m_File, "was built for contract " + std::to_string(version) + ", this program has "
                        + std::to_string(TestSuiteContract)
                        + ". Build the suite again with this program's headers.");
}

std::unique_ptr<TestSuite> SuiteLibrary::MakeSuite() const {
    auto const factory = Find<TestSuiteFactoryFunction>(m_Module, "MorvexCreateTestSuite");
    return std::unique_ptr<TestSuite>(factory());
}
