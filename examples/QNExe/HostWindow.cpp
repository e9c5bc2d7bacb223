// The host's window.
#include "examples/QNExe/HostWindow.h"

#include <stdexcept>
#include <string>
#include <utility>

#include "app/CAppState.h"
#include "examples/QNExe/reports/DeviceEventText.h"
#include "examples/QNExe/view/RunView.h"
#include "messages/CWMDeviceChange.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "siblings/Promptline.h"
#include "siblings/QuillonLog.h"

namespace {

constexpr char WindowClass[] = "QNExe.HostWindow";
constexpr UINT RefuseAbortsMessage = WM_APP + 2;
constexpr UINT EndMessage = WM_APP + 3;
constexpr UINT RenderMessage = WM_APP + 5;

static_assert(HostLoop::InterruptMessage != CUIUpdate::UpdateMessage);

// Read and written by the window's procedure alone.
bool abortsRefused = false;
bool renderPending = false;
RunView * shownIn = nullptr;
CPromptService * questions = nullptr;

[[noreturn]] void Fail() {
    throw std::runtime_error(
        "the host's window cannot be made (error " + std::to_string(GetLastError())
        + "). Start the program in a session that may have windows.");
}

// What is written at the terminal stands above a question that waits there.
class OutputScope {
public:
    OutputScope() {
        if (questions != nullptr) questions->BeforeOutput();
    }
    OutputScope(OutputScope const &) = delete;
    OutputScope & operator=(OutputScope const &) = delete;
    ~OutputScope() {
        if (questions != nullptr) questions->AfterOutput();
    }
};

// A run on the console shows its log elsewhere; the table is taken out so that it does not grow.
void DropText() {
    COutputBuffer * const buffer = CUIUpdate::GetBuffer();
    auto * const table = buffer != nullptr ? buffer->GetText() : nullptr;
    if (table == nullptr) return;
    // The console's line has broken into the question's.
    OutputScope const redrawn;
    COutputBuffer::DeleteDataTable(table);
}

// A test that waits for this update goes on before anything is shown.
void TakeTextOut(HWND window) {
    if (shownIn == nullptr) return DropText();
    bool const isNew = shownIn->TakeOver(InSendMessage() != 0);
    if (isNew && !renderPending) renderPending = PostMessageA(window, RenderMessage, 0, 0) != 0;
}

void Render() {
    renderPending = false;
    if (shownIn == nullptr) return;
    OutputScope const above;
    shownIn->Render();
}

// What came in since the last update, and whatever is not shown yet.
void ShowTheRest() {
    if (shownIn == nullptr) return DropText();
    if (shownIn->TakeOver(false)) Render();
}

// For the reports.
void KeepDeviceEvent(CWMDeviceChange const & event) {
    CTestSuiteLog * const suite = CAppState::TestSuiteLog();
    if (suite == nullptr) return;
    char const * const device = event.DevInterfaceDevName();
    suite->AddDeviceEvent(
        {.what = DeviceEventText(event.EventType()), .device = device != nullptr ? device : ""});
}

// What the record says is only valid during this call, so the message takes it along. The library
// drops it unless a test waits for it.
void ForwardToTests(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto event = ConstructWindowsMessageOnHeap(window, message, wParam, lParam);
    KeepDeviceEvent(static_cast<CWMDeviceChange const &>(*event));
    CAppState::PushWindowsMessage(std::move(event));
}

// The questions that wait are not answered any more.
void OnInterrupt() {
    HostWindow::AskForAbort();
    if (questions != nullptr && !abortsRefused) questions->Abort();
}

} // namespace

HostWindow::Class::Class() {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Receive;
    windowClass.lpszClassName = WindowClass;
    if (RegisterClassA(&windowClass) == 0) Fail();
}

HostWindow::Class::~Class() { UnregisterClassA(WindowClass, nullptr); }

// Never shown, but of the highest level: Windows tells windows that take messages only nothing that
// it tells everybody, such as what becomes of ports and volumes.
HostWindow::Window::Window()
    : handle(CreateWindowExA(
        0, WindowClass, "QNExe", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr)) {
    if (handle == nullptr) Fail();
}

HostWindow::Window::~Window() { DestroyWindow(handle); }

HostWindow::HostWindow(RunView * view) : m_Loop(m_Window.handle) {
    abortsRefused = false;
    renderPending = false;
    shownIn = view;
    questions = nullptr;
    m_Loop.Keys(view);
}

void HostWindow::Serve() noexcept { m_Loop.Run(); }

void HostWindow::RefuseAborts() { SendMessageA(Handle(), RefuseAbortsMessage, 0, 0); }

void HostWindow::Questions(CPromptService * prompts) {
    questions = prompts;
    m_Loop.Questions(prompts);
}

void HostWindow::QuestionShown(bool shown) {
    if (shown) ShowTheRest();
    if (shownIn != nullptr) shownIn->HoldProgress(shown);
}

void HostWindow::AskForAbort() {
    if (!abortsRefused) CUIUpdate::GetUIUpdate()->AbortFunction(true);
}

void HostWindow::End() { SendMessageA(Handle(), EndMessage, 0, 0); }

LRESULT CALLBACK HostWindow::Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case CUIUpdate::UpdateMessage:
        TakeTextOut(window);
        return 0;
    case RenderMessage:
        Render();
        return 0;
    case HostLoop::IdleMessage:
        ShowTheRest();
        return 0;
    case HostLoop::InterruptMessage:
        OnInterrupt();
        return 0;
    case RefuseAbortsMessage:
        abortsRefused = true;
        return 0;
    case WM_DEVICECHANGE:
        ForwardToTests(window, message, wParam, lParam);
        return TRUE;
    case WM_CLOSE:
        // Whoever asks programs to close their windows asks for the end of the run.
        OnInterrupt();
        return 0;
    case EndMessage:
        ShowTheRest();
        if (shownIn != nullptr) shownIn->AtEnd();
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}
