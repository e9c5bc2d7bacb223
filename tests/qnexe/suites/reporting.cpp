// A test that logs what the host has set up for it, and an entry at each level.
#include "Suite.h"
#include "app/CAppState.h"
#include "settings/CIniArgs.h"
#include "siblings/QuillonLog.h"

namespace {

char const * YesOrNo(bool yes) { return yes ? "yes" : "no"; }

char const * Recordings() {
    std::string * folder = nullptr;
    return CAppState::GetIniArgs().GetArg("Suite", "Recordings", folder) ? folder->c_str() : "none";
}

void ReportSetUp(CMXLog & log) {
    log.Write(TEST_STATUS_INFO, Quiet, "recordings: %s", Recordings());
    log.Write(TEST_STATUS_INFO, Quiet, "application: %s", *CAppState::ApplicationName());
    log.Write(TEST_STATUS_INFO, Quiet, "title: %s", CAppState::AppTitle());
    log.Write(TEST_STATUS_INFO, Quiet, "global log: %s", YesOrNo(CAppState::Log() == &log));
    log.Write(
        TEST_STATUS_INFO, Quiet, "window: %s", YesOrNo(CAppState::MainWindowHandle() != nullptr));
    log.Write(
        TEST_STATUS_INFO, Quiet, "program name matches: %s",
        YesOrNo(CAppState::TestSuiteLog()->m_ProgramNameMatches));
}

void WriteAtEachLevel(CMXLog & log) {
    for (eQNLogVerbosity const level : {Quiet, Minimal, Low, Normal, Verbose, Diagnostic, Internal})
        log.Write(TEST_STATUS_INFO, level, "level %u", level);
}

class ReportingSuite : public TestSuite {
public:
    std::string Name() const override { return "reporting"; }
    std::vector<TestCase> Tests() override {
        return {TrueTest("Set-up", ReportSetUp), TrueTest("Levels", WriteAtEachLevel)};
    }
};

} // namespace

MORVEX_TEST_SUITE(ReportingSuite)
