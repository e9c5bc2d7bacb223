// The run's shared state: making and ending the instance, and the setters with a rule of their own.
#include "app/CAppState.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "app/Replace.h"
#include "platform/Synchronization.h"
#include "settings/CDUTInfo.h"
#include "settings/CIniArgs.h"
#include "siblings/Keelbase.h"
#include "siblings/QuillonLog.h"

CAppState * CAppState::m_sTheApp = nullptr;
EApplicationFamily CAppState::m_AppFamily = ApplicationFamilyDefault;
CLockMgr CAppState::m_HelperLock;

char const * const CAppState::m_UFP_VIF_REG_VALUE_NAME = "UFPVif";
char const * const CAppState::m_DFP_VIFS_REG_KEY_NAME = "DFPVifs";

namespace {

// A path that is narrow by nature is UTF-8, in whatever locale the process runs.
template <typename Path>
std::wstring WideName(Path const & path) {
    if constexpr (std::is_same_v<typename Path::value_type, wchar_t>)
        return path.native();
    else
        return *Utf8ToUtf16(path.native());
}

std::wstring CurrentDirectory() {
    try {
        return WideName(std::filesystem::current_path());
    } catch (std::filesystem::filesystem_error const & error) {
        throw std::filesystem::filesystem_error(
            std::string("Could not get name of Current Working Directory.:  ") + error.what(),
            error.code());
    }
}

} // namespace

CAppState::CAppState(Unfilled) {}

CAppState::CAppState() : CAppState(Unfilled{}) {
    m_AlternateTestName = new std::string;
    m_ApplicationName = new std::string;
    m_DUTInfo = new CDUTInfo;
    m_MessageFilterEvent = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    m_AppTitle = new std::string;
    if (m_MessageFilterEvent == nullptr)
        throw std::runtime_error("Unable to obtain message filter event HANDLE");
    m_InitialWorkingDirectory = new std::wstring(CurrentDirectory());
}

CAppState::~CAppState() {
    delete m_ApplicationName;
    delete m_ProductType;
    delete m_HostControllerType;
    delete m_AlternateTestName;
    delete m_DUTInfo;
    delete m_ReportNamePart;
    delete m_UFPVifName;
    delete m_DFPVifNames;
    delete m_AppTitle;
    delete m_InitialWorkingDirectory;
    if (m_MessageFilterEvent != nullptr) CloseHandle(m_MessageFilterEvent);
}

void CAppState::InitAppState(EApplicationFamily family) {
    if (m_sTheApp == nullptr) m_sTheApp = new CAppState;
    m_AppFamily = family;
}

void CAppState::CleanupAppState() {
    // Nothing reaches the instance any more while it goes.
    CAppState * const ended = m_sTheApp;
    m_sTheApp = nullptr;
    delete ended;
}

void CAppState::AlternateTestName(std::string const & name) {
    Replace(m_sTheApp->m_AlternateTestName, name);
}

void CAppState::ApplicationName(std::string const & name) {
    Replace(m_sTheApp->m_ApplicationName, name);
}

void CAppState::ProductType(std::string const & type) { Replace(m_sTheApp->m_ProductType, type); }

void CAppState::HostControllerType(std::string const & type) {
    Replace(m_sTheApp->m_HostControllerType, type);
}

void CAppState::ReportNamePart(std::string const & part) {
    Replace(m_sTheApp->m_ReportNamePart, part);
}

void CAppState::AppendReportNamePart(std::string const & part) {
    // Deliberate: an unset part is set and then appended to.
    // Pinned by CAppStateTest.FirstAppendToTheReportNameYieldsThePartTwice.
    if (m_sTheApp->m_ReportNamePart == nullptr) ReportNamePart(part);
    ReportNamePart(*m_sTheApp->m_ReportNamePart + part);
}

void CAppState::DUTInfo(CDUTInfo const & info) { Replace(m_sTheApp->m_DUTInfo, info); }

void CAppState::TestSuiteLog(CTestSuiteLog * const suite) {
    m_sTheApp->m_TestSuiteLog = suite;
    if (suite == nullptr) return;
    std::string * program = nullptr;
    if (!GetIniArgs().GetArg("Quillon", "ProgramName", program) || *program != AppTitle())
        suite->m_ProgramNameMatches = false;
}

CTestLog * CAppState::CurrentTestLog() {
    CTestSuiteLog * const suite = TestSuiteLog();
    return suite != nullptr ? suite->CurrentTestLog() : nullptr;
}

void CAppState::SetHelper(QNHelper * const helper) {
    CLockScope const lock(m_HelperLock);
    m_sTheApp->m_Helper = helper;
}
