// The host's window.
#include "examples/QNExe/HostWindow.h"

#include <stdexcept>
#include <string>

#include "app/CAppState.h"
#include "examples/QNExe/view/FormattedView.h"
#include "messages/CWindowsMessage.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"

namespace {

constexpr char WindowClass[] = "QNExe.HostWindow";
constexpr UINT RefuseAbortsMessage = WM_APP + 2;
constexpr UINT EndMessage = WM_APP + 3;
constexpr UINT RenderMessage = WM_APP + 5;

static_assert(HostLoop::InterruptMessage != CUIUpdate::UpdateMessage);

// Read and written by the window's procedure alone.
bool abortsRefused = false;
bool renderPending = false;
FormattedView * shownIn = nullptr;

[[noreturn]] void Fail() {
    throw std::runtime_error(
        "the host's window cannot be made (error " + std::to_string(GetLastError())
        + "). Start the program in a session that may have windows.");
}

void RegisterWindowClass(WNDPROC procedure) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = procedure;
    windowClass.lpszClassName = WindowClass;
    if (RegisterClassA(&windowClass) == 0) Fail();
}

HWND MakeWindow() {
    HWND const window = CreateWindowExA(
        0, WindowClass, "QNExe", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (window == nullptr) Fail();
    return window;
}

// A run on the console shows its log elsewhere; the table is taken out so that it does not grow.
void DropText() {
    if (COutputBuffer * const buffer = CUIUpdate::GetBuffer())
        COutputBuffer::DeleteDataTable(buffer->GetText());
}

// A test that waits for this update goes on before anything is shown.
void TakeTextOut(HWND window) {
    if (shownIn == nullptr) return DropText();
    bool const isNew = shownIn->TakeOver(InSendMessage() != 0);
    if (isNew && !renderPending) renderPending = PostMessageA(window, RenderMessage, 0, 0) != 0;
}

void Render() {
    renderPending = false;
    if (shownIn != nullptr) shownIn->Render();
}

// What came in since the last update, and whatever is not shown yet.
void ShowTheRest() {
    if (shownIn == nullptr) return DropText();
    shownIn->TakeOver(false);
    Render();
}

// What the record says is only valid during this call, so the message takes it along. The library
// drops it unless a test waits for it.
void ForwardToTests(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    CAppState::PushWindowsMessage(ConstructWindowsMessageOnHeap(window, message, wParam, lParam));
}

void AskForAbort() {
    if (!abortsRefused) CUIUpdate::GetUIUpdate()->AbortFunction(true);
}

} // namespace

HostWindow::HostWindow(FormattedView * view) {
    abortsRefused = false;
    renderPending = false;
    shownIn = view;
    RegisterWindowClass(Receive);
    m_Handle = MakeWindow();
    m_Loop.emplace(m_Handle);
}

HostWindow::~HostWindow() {
    m_Loop.reset();
    DestroyWindow(m_Handle);
    UnregisterClassA(WindowClass, nullptr);
}

void HostWindow::Serve() noexcept { m_Loop->Run(); }

void HostWindow::RefuseAborts() { SendMessageA(m_Handle, RefuseAbortsMessage, 0, 0); }

void HostWindow::End() { SendMessageA(m_Handle, EndMessage, 0, 0); }

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
        AskForAbort();
        return 0;
    case RefuseAbortsMessage:
        abortsRefused = true;
        return 0;
    case WM_DEVICECHANGE:
        ForwardToTests(window, message, wParam, lParam);
        return TRUE;
    case EndMessage:
        ShowTheRest();
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}
