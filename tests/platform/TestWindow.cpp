// The procedure behind the tests' windows, and the thread that pumps one.
#include "tests/platform/TestWindow.h"

#include <future>
#include <utility>

namespace {

constexpr UINT STOP = WM_APP + 0x1000;

bool IsOfInterest(UINT message) {
    return message == WM_CLOSE || message == WM_DESTROY || message == WM_DEVICECHANGE
           || message >= WM_USER;
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto const & handler = ThreadHandler();
    return handler && IsOfInterest(message) ? handler(window, message, wParam, lParam)
                                            : DefWindowProcA(window, message, wParam, lParam);
}

Handler StoppedBySTOP(Handler handler) {
    return [handler = std::move(handler)](
               HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        if (message == STOP) {
            PostQuitMessage(0);
            return 0;
        }
        return handler(window, message, wParam, lParam);
    };
}

} // namespace

Handler & ThreadHandler() {
    thread_local Handler handler;
    return handler;
}

ATOM RegisterTestClass(char const * name) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = Procedure;
    windowClass.lpszClassName = name;
    return RegisterClassA(&windowClass);
}

HWND MakeTestWindow(char const * className) {
    return CreateWindowExA(
        0, className, "test", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
}

WPARAM Pump() {
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    return message.wParam;
}

WindowThread::WindowThread(Handler handler) {
    RegisterTestClass();
    std::promise<HWND> made;
    m_Thread = std::thread([&made, wrapped = StoppedBySTOP(std::move(handler))] {
        ThreadHandler() = wrapped;
        HWND const window = MakeTestWindow();
        made.set_value(window);
        Pump();
        ThreadHandler() = nullptr;
        DestroyWindow(window);
    });
    m_Window = made.get_future().get();
}

WindowThread::~WindowThread() {
    PostMessageA(m_Window, STOP, 0, 0);
    m_Thread.join();
}
