// What the operator does at the window.
#include "examples/QNExe/windows/OperatorSession.h"

#include <exception>
#include <utility>

#include "app/CAppState.h"
#include "examples/QNExe/Host.h"
#include "examples/QNExe/HostLoop.h"
#include "examples/QNExe/settings/StoredChoice.h"
#include "examples/QNExe/windows/DutDialog.h"
#include "examples/QNExe/windows/IdleState.h"
#include "examples/QNExe/windows/LogSaving.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "examples/QNExe/windows/SetupDialog.h"
#include "examples/QNExe/windows/VifDialog.h"
#include "siblings/Keelbase.h"

namespace {

wchar_t const * VerdictText(ExitCode code) {
    switch (code) {
    case ExitCode::Passed:
        return L"Passed";
    case ExitCode::Failed:
        return L"Failed";
    case ExitCode::NoTestRan:
        return L"No test ran";
    case ExitCode::AbortedByOperator:
        return L"Aborted by the operator";
    default:
        return L"Could not run";
    }
}

bool AsksForEnd(HWND window) {
    return MessageBoxW(
               window,
               L"The test does not answer. End the program all the same?\n\n"
               L"The log ends where it stands, and a device may be left as it is.",
               L"QNExe", MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2)
           == IDYES;
}

// Keeps the choice of the command line once, so that no run puts it over what was chosen since.
std::vector<std::string> KeepChoice(HostOptions & options) {
    IdleState const state;
    StoredChoice const choice(options);
    options.device.reset();
    options.ufpVif.reset();
    options.dfpVifs.reset();
    return choice.Warnings();
}

class Flagged {
public:
    explicit Flagged(bool & flag) : m_Flag(flag) { m_Flag = true; }
    Flagged(Flagged const &) = delete;
    Flagged & operator=(Flagged const &) = delete;
    ~Flagged() { m_Flag = false; }

private:
    bool & m_Flag;
};

} // namespace

OperatorSession::OperatorSession(HostOptions const & options)
    : m_Options(options), m_Window([this](int command) { Do(command); }), m_View(m_Window) {
    m_Window.Log().WhenShown([this] { EnableCommands(); });
    for (std::string const & warning : KeepChoice(m_Options))
        ShowProblem(warning);
    m_Window.ShowSuite(m_Options.suite);
    SetPhase(Phase::Idle, L"Ready");
}

ExitCode OperatorSession::Serve() {
    m_Window.Show();
    MSG message;
    while (!m_CloseAsked && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!m_Window.TakesMessage(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (std::exchange(m_StartAsked, false)) Run();
    }
    return m_Code;
}

void OperatorSession::Do(int command) {
    if (command == ID_WINDOW_CLOSE) return OnClose();
    if (m_IsAsking) return;
    if (command == ID_RUN_ABORT) return Abort();
    if (m_Phase != Phase::Idle) return;
    Flagged const asking(m_IsAsking);
    if (command == ID_RUN_START) Start();
    if (command == ID_RUN_SETUP) SetUp();
    if (command == ID_LOG_SAVE) SaveLog();
    if (command == ID_DEVICE_RECORD) ShowDutDialog(m_Window.Handle());
    if (command == ID_DEVICE_VIFS) ShowVifDialog(m_Window.Handle());
}

// A run is aborted first, and the window goes when it has ended.
void OperatorSession::OnClose() {
    if (m_IsAsking) return;
    bool const again = std::exchange(m_CloseAsked, true);
    if (m_Phase == Phase::Idle) return PostQuitMessage(0);
    Abort();
    if (!again) return;
    Flagged const asking(m_IsAsking);
    if (AsksForEnd(m_Window.Handle()))
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(ExitCode::AbortedByOperator));
}

// A command that was sent, as a screen reader does, does not end the loop's waiting.
void OperatorSession::Start() {
    m_StartAsked = !m_Options.suite.empty();
    PostMessageW(m_Window.Handle(), WM_NULL, 0, 0);
}

void OperatorSession::Run() {
    m_View.Begin();
    m_HasText = true;
    SetPhase(Phase::Running, L"Running");
    RunHost();
    m_Window.Progress().Stop();
    m_Window.SetCursor(nullptr);
    SetPhase(Phase::Idle, VerdictText(m_Code));
}

void OperatorSession::RunHost() {
    m_Code = ExitCode::CouldNotRun;
    try {
        Host host(m_Options, &m_View);
        m_Code = host.Run();
    } catch (std::exception const & failure) {
        ShowProblem(failure.what());
    }
}

void OperatorSession::Abort() {
    if (m_Phase == Phase::Idle || !CAppState::AppStateSet()) return;
    SetPhase(Phase::Aborting, L"Aborting");
    SendMessageW(
        static_cast<HWND>(CAppState::MainWindowHandle()), HostLoop::InterruptMessage, 0, 0);
}

void OperatorSession::SetUp() {
    if (!ShowSetupDialog(m_Window.Handle(), m_Options)) return;
    m_Window.ShowSuite(m_Options.suite);
    SetPhase(Phase::Idle, L"Ready");
}

void OperatorSession::SaveLog() {
    if (m_Window.Log().IsWaiting()) return;
    std::string const problem = AskAndSaveLog(m_Window.Handle(), m_Window.Log());
    if (!problem.empty())
        MessageBoxW(
            m_Window.Handle(), Utf8ToUtf16(problem)->c_str(), L"QNExe", MB_OK | MB_ICONERROR);
}

void OperatorSession::SetPhase(Phase phase, std::wstring const & state) {
    m_Phase = phase;
    m_Window.Counts().ShowState(state);
    EnableCommands();
}

// A log that is still being shown is not whole.
void OperatorSession::EnableCommands() {
    bool const idle = m_Phase == Phase::Idle;
    m_Window.Enable(ID_RUN_START, idle && !m_Options.suite.empty());
    m_Window.Enable(ID_RUN_ABORT, m_Phase == Phase::Running);
    m_Window.Enable(ID_LOG_SAVE, idle && m_HasText && !m_Window.Log().IsWaiting());
    for (int const command : {ID_RUN_SETUP, ID_DEVICE_RECORD, ID_DEVICE_VIFS})
        m_Window.Enable(command, idle);
}

void OperatorSession::ShowProblem(std::string const & text) {
    m_HasText = true;
    m_View.TellProblem(text);
}
