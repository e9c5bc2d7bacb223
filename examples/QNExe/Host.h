// One run of one suite: everything that lives as long as the run, and the two threads of it.
//
// The thread that makes the host becomes the window thread. The suite is made, run and deleted on
// a test thread that Run starts and joins.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/ExitCode.h"
#include "examples/QNExe/HostWindow.h"
#include "examples/QNExe/OperatorQuestions.h"
#include "examples/QNExe/SuiteLibrary.h"
#include "examples/QNExe/reports/RunReports.h"
#include "examples/QNExe/settings/RunSettings.h"
#include "examples/QNExe/view/FormattedView.h"
#include "examples/QNExe/view/RunView.h"
#include "output/COutputBuffer.h"
#include "siblings/QuillonLog.h"

class CMXLog;
class LogFile;

class Host {
public:
    // Shows the run in `view`, which stays the caller's; null: as the options say. Both throw
    // std::runtime_error, whose text says what to do, when the suite cannot run.
    explicit Host(HostOptions const & options, RunView * view = nullptr);
    ExitCode Run();

private:
    // The library's process-wide state, up before all else and down after it.
    struct LibraryState {
        LibraryState();
        LibraryState(LibraryState const &) = delete;
        LibraryState & operator=(LibraryState const &) = delete;
        ~LibraryState();
    };

    void FillState();
    void BindWindow();

    // On the test thread.
    void RunToTheEnd();
    ExitCode RunSuite();
    ExitCode RunReported(TestSuite & suite);
    void RunTests(TestSuite & suite);
    void RunTests(TestSuite & suite, std::unique_ptr<CMXLog> ownLog);
    std::unique_ptr<CMXLog> MakeLog(LogFile * file);
    bool IsRecorded() const;

    HostOptions m_Options;
    LibraryState m_State;
    RunSettings m_Settings;
    COutputBuffer m_Output;
    CTestSuiteLog m_SuiteLog;
    // Only at a terminal and for a formatted log, without a view of the caller's.
    std::unique_ptr<FormattedView> m_OwnView;
    // Null for the console's log.
    RunView * m_View;
    HostWindow m_Window;
    OperatorQuestions m_Questions;
    SuiteLibrary m_Library;

    // Written by the test thread, read when it has ended.
    ExitCode m_ExitCode = ExitCode::CouldNotRun;
    // Only when there are any.
    std::unique_ptr<RunReports> m_Reports;
    std::optional<std::string> m_Failure;
};
