// What a test run shares: logs, prompts, settings, names, verbosity, the device under test.
//
// One instance, between InitAppState and CleanupAppState. Outside that bracket only AppStateSet,
// AppFamily and QNMinimumDisplayUpdateTime may be called: every other operation goes through the
// instance without looking. Log, prompts, settings, helper and suite record are borrowed from
// their owners; texts, device record and event belong to the instance.
//
// There is no lock but the one around the helper. Numbers and flags may be read on one thread
// while another sets them; pointers and texts may not.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/Export.h"
#include "app/SharedValue.h"
#include "log/TestStatus.h"

class CDUTInfo;
class CIniArgs;
class CLockMgr;
class CMXLog;
class CMXUserInput;
class CSafeString;
class CTestLog;
class CTestSuiteLog;
class QNHelper;

// The three enumerations have room for the host's own values: the library keeps them, and acts on
// none but RunTypeDebug.
enum EApplicationFamily : std::uint32_t {
    ApplicationFamilyDefault = 0,
};

enum ERunType : std::uint32_t {
    RunTypeDefault = 0,
    // The Debug... prompts ask.
    RunTypeDebug = 1,
};

enum EPromptType : std::uint32_t {
    PromptTypeDefault = 0,
};

class MORVEX_API CAppState {
public:
    // Plain member-wise operations for callers that only read: a copy shares texts, record and
    // event with its source.
    CAppState(CAppState const &) = default;
    CAppState & operator=(CAppState const &) = default;

    // Makes the instance if there is none. A second call changes the family and keeps everything
    // else. Throws std::runtime_error without an event and std::filesystem::filesystem_error
    // without a current directory; there is no instance then.
    static void InitAppState(EApplicationFamily family);

    // Ends the instance, if there is one. The family stays.
    static void CleanupAppState();

    static bool AppStateSet() { return m_sTheApp != nullptr; }
    static EApplicationFamily AppFamily() { return m_AppFamily; }

    static ERunType GetRunType() { return m_sTheApp->m_RunType; }
    static void SetRunType(ERunType const & type) { m_sTheApp->m_RunType = type; }

    static EPromptType GetPromptType() { return m_sTheApp->m_PromptType; }
    static void SetPromptType(EPromptType const & type) { m_sTheApp->m_PromptType = type; }

    static bool SupportsPromptStateChange() { return m_sTheApp->m_SupportsPromptStateChange; }
    static void SupportsPromptStateChange(bool on) { m_sTheApp->m_SupportsPromptStateChange = on; }

    static bool OnlyValidate() { return m_sTheApp->m_OnlyValidate; }
    static void SetOnlyValidate(bool on) { m_sTheApp->m_OnlyValidate = on; }

    static eQNLogVerbosity QNLogVerbosityLevel() { return m_sTheApp->m_QNLogVerbosityLevel; }
    static void QNLogVerbosityLevel(eQNLogVerbosity level) {
        m_sTheApp->m_QNLogVerbosityLevel = level;
    }

    // Whether an entry of this level shows.
    static bool IsLogVerbosityLevel(eQNLogVerbosity level) {
        return QNLogVerbosityLevel() >= level;
    }

    static bool FunctionIsExecuting() { return m_sTheApp->m_FunctionIsExecuting; }
    static void FunctionIsExecuting(bool on) { m_sTheApp->m_FunctionIsExecuting = on; }

    static bool GetDevelopmentMode() { return m_sTheApp->m_DevelopmentMode; }
    static void SetDevelopmentMode(bool on) { m_sTheApp->m_DevelopmentMode = on; }

    static bool InCertificationMode() { return m_sTheApp->m_InCertificationMode; }
    static void InCertificationMode(bool on) { m_sTheApp->m_InCertificationMode = on; }

    // Least milliseconds between two throttled updates of the host's window; 0 sends every update
    // and waits for it. 0 without an instance, when the setter does nothing.
    static unsigned int QNMinimumDisplayUpdateTime() {
        if (m_sTheApp == nullptr) return 0;
        return m_sTheApp->m_QNMinimumDisplayUpdateTime;
    }
    static void QNMinimumDisplayUpdateTime(unsigned int milliseconds) {
        if (m_sTheApp != nullptr) m_sTheApp->m_QNMinimumDisplayUpdateTime = milliseconds;
    }

    static CMXLog * Log() { return m_sTheApp->m_Log; }
    static void Log(CMXLog * const log) { m_sTheApp->m_Log = log; }

    static CMXUserInput * UserInput() { return m_sTheApp->m_UserInput; }
    static void UserInput(CMXUserInput * const input) { m_sTheApp->m_UserInput = input; }

    // There must be a store: without SetIniArgs the reference goes nowhere.
    static CIniArgs & GetIniArgs() { return *m_sTheApp->m_IniArgs; }
    static void SetIniArgs(CIniArgs & args) { m_sTheApp->m_IniArgs = &args; }

    static void * MainWindowHandle() { return m_sTheApp->m_MainWindowHandle; }
    static void MainWindowHandle(void * window) { m_sTheApp->m_MainWindowHandle = window; }

    // Signalled when a window message enters the queue; nothing here resets it. Lives as long as
    // the instance.
    static void * MessageFilterEvent() { return m_sTheApp->m_MessageFilterEvent; }

    // The held texts themselves; the three last are null until set. A setter replaces the object
    // and releases the old one first: never hand it the held text.
    static std::string * AlternateTestName() { return m_sTheApp->m_AlternateTestName; }
    static void AlternateTestName(std::string const & name);
    static std::string * ApplicationName() { return m_sTheApp->m_ApplicationName; }
    static void ApplicationName(std::string const & name);
    static std::string * ProductType() { return m_sTheApp->m_ProductType; }
    static void ProductType(std::string const & type);
    static std::string * HostControllerType() { return m_sTheApp->m_HostControllerType; }
    static void HostControllerType(std::string const & type);
    static std::string * ReportNamePart() { return m_sTheApp->m_ReportNamePart; }
    static void ReportNamePart(std::string const & part);

    // Adds to the name part. Without one it is set first: it then holds `part` twice.
    static void AppendReportNamePart(std::string const & part);

    // Assigned in place, so the held text may be handed in.
    static std::string & AppTitle() { return *m_sTheApp->m_AppTitle; }
    static void AppTitle(std::string const & title) { *m_sTheApp->m_AppTitle = title; }

    // The directory of the process when the instance was made.
    static std::wstring & InitialWorkingDirectory() {
        return *m_sTheApp->m_InitialWorkingDirectory;
    }

    // The setter copies, and releases the old record first: never hand it the held record.
    static CDUTInfo * DUTInfo() { return m_sTheApp->m_DUTInfo; }
    static void DUTInfo(CDUTInfo const & info);

    // A record is told that the program's name does not match when the store's "ProgramName" of
    // "Quillon" is missing or is not the application's title; SetIniArgs comes first. Null is
    // only stored.
    static CTestSuiteLog * TestSuiteLog() { return m_sTheApp->m_TestSuiteLog; }
    static void TestSuiteLog(CTestSuiteLog * const suite);

    // Null without a suite record.
    static CTestLog * CurrentTestLog();

    // The chosen VIF files by name; null until set. Texts and list are held and replaced as above.
    static std::string * UFPVifName() { return m_sTheApp->m_UFPVifName; }
    static void UFPVifName(std::string const & name);
    static bool UFPVifLoaded();
    static std::vector<CSafeString> * DFPVifNames() { return m_sTheApp->m_DFPVifNames; }
    static void DFPVifNames(std::vector<CSafeString> const & names);
    static bool DFPVifLoaded();

    // Keep the choice in the registry under the key of the application's name, and take it back.
    // What went wrong stands in the registry's last-error pair. A failed read keeps the held name;
    // a missing name is written as an empty one.
    static bool ReadUFPVifFromRegistry();
    static bool WriteUFPVifToRegistry();

    // Always false: judge a read by DFPVifLoaded. It replaces the held list in every case, in the
    // registry's order. A write replaces the stored list; when that cannot be removed it stays.
    static bool ReadDFPVifsFromRegistry();
    static bool WriteDFPVifsToRegistry();

    // The helper that the operator's cancel request reaches; the one call that any thread may make.
    static void SetHelper(QNHelper * const helper);

    static char const * const m_UFP_VIF_REG_VALUE_NAME;
    static char const * const m_DFP_VIFS_REG_KEY_NAME;

private:
    struct Unfilled {};

    CAppState();
    // Owns nothing yet. Once it has run, the destructor cleans up behind a failing CAppState().
    explicit CAppState(Unfilled);
    virtual ~CAppState();

    std::string * m_AlternateTestName = nullptr;
    CMXLog * m_Log = nullptr;
    SharedValue<bool> m_OnlyValidate = false;
    CIniArgs * m_IniArgs = nullptr;
    std::string * m_ApplicationName = nullptr;
    std::string * m_ProductType = nullptr;
    std::string * m_HostControllerType = nullptr;
    SharedValue<ERunType> m_RunType = RunTypeDefault;
    SharedValue<EPromptType> m_PromptType = PromptTypeDefault;
    SharedValue<bool> m_SupportsPromptStateChange = false;
    SharedValue<bool> m_FunctionIsExecuting = false;
    CMXUserInput * m_UserInput = nullptr;
    SharedValue<bool> m_DevelopmentMode = false;
    SharedValue<bool> m_InCertificationMode = false;
    SharedValue<std::uint32_t> m_QNMinimumDisplayUpdateTime = 300;
    SharedValue<eQNLogVerbosity> m_QNLogVerbosityLevel = Normal;
    CDUTInfo * m_DUTInfo = nullptr;
    QNHelper * m_Helper = nullptr;
    std::string * m_ReportNamePart = nullptr;
    CTestSuiteLog * m_TestSuiteLog = nullptr;
    std::uint32_t m_MessageToFilter = 0;
    void * m_MessageFilterEvent = nullptr;
    void * m_MainWindowHandle = nullptr;
    std::string * m_UFPVifName = nullptr;
    std::vector<CSafeString> * m_DFPVifNames = nullptr;
    std::wstring * m_InitialWorkingDirectory = nullptr;
    std::string * m_AppTitle = nullptr;

    static CAppState * m_sTheApp;
    static EApplicationFamily m_AppFamily;
    static CLockMgr m_HelperLock;
};
