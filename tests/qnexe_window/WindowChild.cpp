// The program QNExe with its window, as a child of a test.
#include "qnexe_window/WindowChild.h"

#include <algorithm>

#include <commctrl.h>

#include "examples/QNExe/windows/MainWindow.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "qnexe_window/KeptPlace.h"

namespace {

bool IsNew(HWND window, std::vector<HWND> const & before) {
    return std::find(before.begin(), before.end(), window) == before.end()
           && IsWindowVisible(window) != 0;
}

} // namespace

std::vector<HWND> MainWindows() {
    std::vector<HWND> windows;
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, MainWindow::ClassName, nullptr)) != nullptr)
        windows.push_back(window);
    return windows;
}

RemoteWindow NewWindow(std::vector<HWND> const & before, std::function<bool()> const & gone) {
    RemoteWindow found;
    WaitFor([&] {
        for (HWND const window : MainWindows())
            if (IsNew(window, before)) found = RemoteWindow(window);
        return found || gone();
    });
    return found;
}

WindowChild::WindowChild() { ForgetPlace(); }

WindowChild::~WindowChild() { ForgetPlace(); }

void WindowChild::Open(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--window");
    // One that a test has left behind is not ours.
    auto const before = MainWindows();
    ChildProcess & child = Start(arguments);
    m_Window = NewWindow(before, [&] { return !child.IsRunning(); });
    ASSERT_TRUE(m_Window) << child.Error();
}

RemoteWindow WindowChild::Log() const { return m_Window.Child(ID_LOG_VIEW); }

std::wstring WindowChild::State() const { return Part(StatusCounts::State); }

std::wstring WindowChild::Part(int part) const { return m_Window.Child(ID_STATUS_BAR).Part(part); }

void WindowChild::AwaitState(std::wstring const & state) {
    RemoteWindow const save = m_Window.Child(ID_LOG_SAVE);
    bool const isThere = WaitFor([&] { return save.IsEnabled() && State() == state; });
    EXPECT_TRUE(isThere) << "the state is not \"" << Narrow(state) << "\" but \"" << Narrow(State())
                         << '"';
}

void WindowChild::RunToState(std::wstring const & state) {
    // What the run before has left is not what is waited for.
    m_Window.Child(ID_STATUS_BAR).Ask(SB_SETTEXTW, StatusCounts::State, L'\0');
    m_Window.Command(ID_RUN_START);
    AwaitState(state);
}

std::optional<int> WindowChild::Close() {
    PostMessageW(m_Window.Handle(), WM_CLOSE, 0, 0);
    return Finish().code;
}
