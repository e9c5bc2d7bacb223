// The loop of the window thread on the message queue, into which the console's handler posts.
#include "examples/QNExe/HostLoop.h"

#include <atomic>
#include <system_error>

#include "examples/QNExe/view/RunView.h"
#include "siblings/Promptline.h"

namespace {

constexpr UINT_PTR IdleTimer = 1;

std::atomic<HWND> interruptWindow{nullptr};
std::atomic<bool> interrupted{false};

// Runs on a thread of the system's. FALSE hands the event on to the handler that ends the process.
BOOL WINAPI OnConsoleEvent(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
    if (interrupted.exchange(true)) return FALSE;
    return PostMessageA(interruptWindow, HostLoop::InterruptMessage, 0, 0);
}

[[noreturn]] void Fail(char const * what) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

} // namespace

HostLoop::HostLoop(HWND window) : m_Window(window) {
    interruptWindow = window;
    interrupted = false;
    if (SetConsoleCtrlHandler(OnConsoleEvent, TRUE) == 0) Fail("cannot watch for Ctrl-C");
    // Without a timer text waits for the next update of the test; nothing is lost.
    SetTimer(window, IdleTimer, IdleMilliseconds, nullptr);
}

HostLoop::~HostLoop() {
    KillTimer(m_Window, IdleTimer);
    SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    interruptWindow = nullptr;
}

void HostLoop::Run() noexcept {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.hwnd == m_Window && message.message == WM_TIMER)
            SendMessageA(m_Window, IdleMessage, 0, 0);
        if (m_Prompts != nullptr && m_Prompts->TakesMessage(&message)) continue;
        if (m_View != nullptr && m_View->TakesMessage(&message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}
