// Windows for tests: one of the calling thread, and one of a thread that pumps it.
//
// A test hears of the messages that it sends or posts itself and of WM_CLOSE and WM_DESTROY; what
// a system sends besides goes to DefWindowProcA.
#pragma once

#include <functional>
#include <thread>

#include "platform/Messaging.h"
#include "platform/Synchronization.h"

inline constexpr char const * TEST_CLASS = "MorvexTestWindow";

// Long enough that another thread has come to its next step, unless the machine is very busy.
inline constexpr DWORD A_MOMENT = 50;

using Handler = std::function<LRESULT(HWND, UINT, WPARAM, LPARAM)>;

// What the windows of the calling thread do with a message. Empty: as DefWindowProcA.
Handler & ThreadHandler();

ATOM RegisterTestClass(char const * name = TEST_CLASS);
HWND MakeTestWindow(char const * className = TEST_CLASS);

// Takes and dispatches until WM_QUIT; hands back the exit code.
WPARAM Pump();

// A thread with a window that it pumps until the end of the object.
class WindowThread {
public:
    explicit WindowThread(Handler handler);
    WindowThread(WindowThread const &) = delete;
    WindowThread & operator=(WindowThread const &) = delete;
    ~WindowThread();

    HWND Window() const { return m_Window; }

private:
    HWND m_Window = nullptr;
    std::thread m_Thread;
};
