// One run of one suite, in the order in which the library wants to be called.
#include "examples/QNExe/Host.h"

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "app/CAppState.h"
#include "app/CLimitSingleExecute.h"
#include "app/Common.h"
#include "examples/QNExe/ProgramName.h"
#include "examples/QNExe/TestEngine.h"
#include "examples/QNExe/reports/Listeners.h"
#include "examples/QNExe/reports/RunFacts.h"
#include "examples/QNExe/view/DefaultLook.h"
#include "examples/QNExe/view/LogFile.h"
#include "examples/QNExe/view/RunLogs.h"
#include "log/CConsoleOutMXLog.h"
#include "output/CUIUpdate.h"

namespace {

// A terminal has progress beneath the log, with colors or without.
bool HasOwnView(LogView view) {
    if (view != LogView::Auto) return view == LogView::Formatted;
    return IsCapableTerminal(stderr);
}

// Where no color tells a failure from a remark its word does.
bool ShowsWords(LogView view) { return view == LogView::Auto && !IsColorTerminal(stderr); }

std::unique_ptr<FormattedView> ViewFor(HostOptions const & options, RunView const * given) {
    if (given != nullptr || !HasOwnView(options.view)) return nullptr;
    return std::make_unique<FormattedView>(stderr);
}

// Hears of a suite for a scope.
class Listening {
public:
    Listening(CTestSuiteLog & suite, CTestSuiteListener & listener) : m_Suite(suite) {
        m_Suite.Listener(&listener);
    }
    Listening(Listening const &) = delete;
    Listening & operator=(Listening const &) = delete;
    ~Listening() { m_Suite.Listener(nullptr); }

private:
    CTestSuiteLog & m_Suite;
};

// The log and the prompt object of a run, from their start to their end.
class RunningSuite {
public:
    RunningSuite(std::unique_ptr<CMXLog> log, bool versions)
        : m_Result(Common_InitTestSuiteWithLog(
            m_Log, std::move(log), m_UserInput, ProgramName, versions, true)) {}
    RunningSuite(RunningSuite const &) = delete;
    RunningSuite & operator=(RunningSuite const &) = delete;
    ~RunningSuite() { Common_EndTestSuite(m_Log, m_UserInput); }

    CMXLog & Log() const {
        if (m_Result != TS_SUCCESS)
            throw std::runtime_error("the suite cannot be started. The log says why.");
        return *m_Log;
    }

private:
    CMXLog * m_Log = nullptr;
    CMXUserInput * m_UserInput = nullptr;
    TS_STATUS m_Result;
};

// The log itself does not tell that its file is missing.
void CheckLogFile(std::string const & file) { LogFile const opened(file); }

// Nothing keeps two programs from the same device: whoever reads the log must know.
void WarnOfAnother(CMXLog & log) {
    if (!CLimitSingleExecute::GetSingleExecute()->IsAnotherInstanceRunning()) return;
    log.Write(
        TEST_STATUS_WARNING, Quiet, nullptr,
        "Another QNExe is running. Results count only if it leaves this device alone.");
}

// Turns whatever a suite throws into a text while the suite, and so the exception's code, is still
// loaded.
template <typename Step>
auto OfSuite(char const * step, Step const & run) {
    std::string reason = "<unknown type: no message>";
    try {
        return run();
    } catch (std::exception const & failure) {
        reason = failure.what();
    } catch (...) {
    }
    throw std::runtime_error(std::string("the suite cannot ") + step + ": " + reason);
}

} // namespace

Host::LibraryState::LibraryState() {
    CAppState::InitAppState(EApplicationFamily{});
    CLimitSingleExecute::GetSingleExecute();
}

Host::LibraryState::~LibraryState() {
    CUIUpdate::FreeUIUpdate();
    CLimitSingleExecute::FreeSingleExecute();
    CAppState::CleanupAppState();
}

Host::Host(HostOptions const & options, RunView * view)
    : m_Options(options),
      m_Settings(m_Options),
      m_OwnView(ViewFor(options, view)),
      m_View(view != nullptr ? view : m_OwnView.get()),
      m_Window(m_View),
      m_Questions(m_Window, m_SuiteLog),
      m_Library(options.suite) {
    FillState();
    BindWindow();
    m_SuiteLog.m_RequireTests = true;
    CAppState::TestSuiteLog(&m_SuiteLog);
}

void Host::FillState() {
    for (std::string const & warning : m_Settings.Warnings()) {
        std::fprintf(stderr, "%s: %s\n", ProgramName, warning.c_str());
        if (m_View != nullptr) m_View->TellProblem(warning);
    }
    CAppState::AppTitle(ProgramName);
    CAppState::QNLogVerbosityLevel(m_Options.verbosity);
    CAppState::MainWindowHandle(m_Window.Handle());
}

void Host::BindWindow() {
    InitializeDefaultLook();
    CUIUpdate::GetUIUpdate(m_Window.Handle())->SetOutputBuffer(&m_Output);
}

ExitCode Host::Run() {
    std::thread testThread([this] { RunToTheEnd(); });
    m_Window.Serve();
    testThread.join();
    if (m_Reports) m_Reports->Tell(m_View);
    if (m_Failure) throw std::runtime_error(*m_Failure);
    return m_ExitCode;
}

void Host::RunToTheEnd() {
    try {
        m_ExitCode = RunSuite();
    } catch (std::exception const & failure) {
        m_Failure = failure.what();
    } catch (...) {
        m_Failure = "the run has ended in an exception of an unknown type";
    }
    m_Window.End();
}

ExitCode Host::RunSuite() {
    auto const suite = OfSuite("be made", [this] { return m_Library.MakeSuite(); });
    CReportRequest const request = RequestedReports(m_Options);
    if (!request.files.empty())
        m_Reports = std::make_unique<RunReports>(
            request, GatherFacts(m_Options, m_Settings, OfSuite("tell its name", [&] {
                                     return suite->Name();
                                 })));
    ExitCode const code = RunReported(*suite);
    return m_Reports ? m_Reports->End(m_SuiteLog, code) : code;
}

// What keeps the suite from running stands in the reports too.
ExitCode Host::RunReported(TestSuite & suite) {
    try {
        RunTests(suite);
    } catch (std::exception const & failure) {
        if (m_Reports) m_Reports->End(m_SuiteLog, ExitCode::CouldNotRun, failure.what());
        throw;
    }
    return ExitCodeOf(m_SuiteLog, CUIUpdate::GetUIUpdate()->AbortFunction());
}

// A verdict counts only with the log that tells of it.
void Host::RunTests(TestSuite & suite) {
    if (!m_Options.log) return RunTests(suite, MakeLog(nullptr));
    if (IsRecorded()) {
        LogFile file(*m_Options.log);
        RunTests(suite, MakeLog(&file));
        return file.CheckWhole();
    }
    CheckLogFile(*m_Options.log);
    LogFileWatch const watch(*m_Options.log);
    RunTests(suite, std::make_unique<CConsoleOutMXLog>(m_Options.log->c_str()));
    watch.CheckWhole();
}

// The library's console log keeps no record, of which the reports are made.
bool Host::IsRecorded() const { return m_View || m_Reports; }

std::unique_ptr<CMXLog> Host::MakeLog(LogFile * file) {
    if (m_OwnView && ShowsWords(m_Options.view))
        return std::make_unique<RecordedLog>(file, &m_Output);
    if (m_View != nullptr) return std::make_unique<FiledLog>(m_Output, file);
    if (m_Reports) return std::make_unique<RecordedLog>(file);
    return std::make_unique<CConsoleOutMXLog>(nullptr);
}

// The log writes its summary when it ends, where nothing may throw: by then no update is armed,
// and no abort can come in between the summary and the exit code.
void Host::RunTests(TestSuite & suite, std::unique_ptr<CMXLog> ownLog) {
    Listeners listeners;
    if (m_View != nullptr) listeners.AddAny(m_View->Listener());
    if (m_Reports) listeners.Add(m_Reports->Listener());
    Listening const listening(m_SuiteLog, listeners);
    RunningSuite const running(std::move(ownLog), m_Options.versions);
    CMXLog & log = running.Log();
    WarnOfAnother(log);
    if (m_Options.onlyFailures) log.EnableLogOnlyFailures();
    TestEngine(m_SuiteLog, log).Run(OfSuite("list its tests", [&] { return suite.Tests(); }));
    m_Window.RefuseAborts();
}
