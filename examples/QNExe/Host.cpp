// One run of one suite, in the order in which the library wants to be called.
#include "examples/QNExe/Host.h"

#include <exception>
#include <stdexcept>
#include <thread>
#include <vector>

#include "app/CAppState.h"
#include "examples/QNExe/TestEngine.h"
#include "examples/QNExe/view/LogFile.h"
#include "examples/QNExe/view/Terminal.h"
#include "log/CConsoleOutMXLog.h"
#include "log/CHTMLMXLog.h"
#include "output/CUIUpdate.h"

namespace {

constexpr char ProgramName[] = "QNExe";

// The look of text that names none. It specifies everything that a log changes, so that a return to
// it undoes every change.
void SetDefaultLook() {
    CFormatInfo look;
    look.setBold(false, 400);
    look.setItalic(false);
    look.setUnderline(false);
    look.clearColor();
    look.clearBackColor();
    look.format.cbSize = sizeof look.format;
    COutputBuffer::InitializeDefaultFormatInfo(look.format);
}

bool IsFormatted(LogView view) {
    if (view != LogView::Auto) return view == LogView::Formatted;
    return KindOf(stderr) == StreamKind::Terminal;
}

// Hears of a suite's entries for a scope, when there is a listener.
class Listening {
public:
    Listening(CTestSuiteLog & suite, CTestSuiteListener * listener) : m_Suite(suite) {
        m_Suite.Listener(listener);
    }
    Listening(Listening const &) = delete;
    Listening & operator=(Listening const &) = delete;
    ~Listening() { m_Suite.Listener(nullptr); }

private:
    CTestSuiteLog & m_Suite;
};

// Makes a log the global log for a scope; it must outlive the scope.
class GlobalLog {
public:
    explicit GlobalLog(CMXLog & log) {
        CAppState::Log(&log);
        log.GlobalLogExists(true);
    }
    GlobalLog(GlobalLog const &) = delete;
    GlobalLog & operator=(GlobalLog const &) = delete;
    ~GlobalLog() { CAppState::Log(nullptr); }
};

char const * NameOf(std::optional<std::string> const & file) {
    return file ? file->c_str() : nullptr;
}

// Where a suite finds what it ships with.
std::string FolderOf(std::string const & file) {
    auto const end = file.find_last_of("/\\");
    return end != file.npos ? file.substr(0, end) : ".";
}

// The log itself does not tell that its file is missing.
void CheckLogFile(CConsoleOutMXLog & log, std::optional<std::string> const & file) {
    if (file && log.GetLogName().empty())
        throw std::runtime_error(
            "the log file \"" + *file + "\" cannot be opened. Give --log a file in a folder that "
            + "exists and may be written to.");
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

Host::LibraryState::LibraryState() { CAppState::InitAppState(EApplicationFamily{}); }

Host::LibraryState::~LibraryState() {
    CUIUpdate::FreeUIUpdate();
    CAppState::CleanupAppState();
}

Host::Host(HostOptions const & options)
    : m_Options(options),
      m_View(IsFormatted(options.view) ? std::make_unique<FormattedView>(stderr) : nullptr),
      m_Window(m_View.get()),
      m_Library(options.suite) {
    FillState();
    BindWindow();
    m_SuiteLog.m_RequireTests = true;
    CAppState::TestSuiteLog(&m_SuiteLog);
}

void Host::FillState() {
    m_IniArgs.AddArg("Quillon", "ProgramName", ProgramName);
    m_IniArgs.AddArg("Suite", "Folder", FolderOf(m_Options.suite));
    if (m_Options.recordings) m_IniArgs.AddArg("Suite", "Recordings", *m_Options.recordings);
    CAppState::SetIniArgs(m_IniArgs);
    CAppState::ApplicationName(ProgramName);
    CAppState::AppTitle(ProgramName);
    CAppState::QNLogVerbosityLevel(m_Options.verbosity);
    CAppState::MainWindowHandle(m_Window.Handle());
}

void Host::BindWindow() {
    SetDefaultLook();
    CUIUpdate::GetUIUpdate(m_Window.Handle())->SetOutputBuffer(&m_Output);
}

ExitCode Host::Run() {
    std::thread testThread([this] { RunToTheEnd(); });
    m_Window.Serve();
    testThread.join();
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
    RunTests(*suite);
    return ExitCodeOf(m_SuiteLog, CUIUpdate::GetUIUpdate()->AbortFunction());
}

// The log writes its summary when it ends, where nothing may throw: by then no update is armed,
// and no abort can come in between the summary and the exit code.
void Host::RunTests(TestSuite & suite) {
    std::unique_ptr<LogFile> file;
    if (m_View && m_Options.log) file = std::make_unique<LogFile>(*m_Options.log);
    Listening const listening(m_SuiteLog, file.get());
    auto const log = MakeLog();
    GlobalLog const global(*log);
    if (m_Options.onlyFailures) log->EnableLogOnlyFailures();
    TestEngine(m_SuiteLog, *log).Run(OfSuite("list its tests", [&] { return suite.Tests(); }));
    m_Window.RefuseAborts();
}

std::unique_ptr<CMXLog> Host::MakeLog() {
    if (m_View) return std::make_unique<CHTMLMXLog>(&m_Output);
    auto log = std::make_unique<CConsoleOutMXLog>(NameOf(m_Options.log));
    CheckLogFile(*log, m_Options.log);
    return log;
}
