// The host's window: what the library rings, what turns Ctrl-C into the operator's abort, and what
// hands device events to tests that wait for them.
//
// One a process, while CAppState stands. It belongs to the thread that made it, which serves it as
// long as the test thread runs: a forced update of the library waits for it.
#pragma once

#include <optional>

#include "examples/QNExe/HostLoop.h"
#include "platform/Messaging.h"

class FormattedView;

class HostWindow {
public:
    // Shows the run's text in `view`, which stays the caller's, or drops it when that is null.
    // Throws std::runtime_error when the system has no window to give.
    explicit HostWindow(FormattedView * view = nullptr);
    HostWindow(HostWindow const &) = delete;
    HostWindow & operator=(HostWindow const &) = delete;
    ~HostWindow();

    HWND Handle() const { return m_Handle; }

    // Serves the window until End, which shows what is left.
    void Serve() noexcept;

    // For the test thread; both wait until the window has served them. After RefuseAborts the
    // operator's abort stands as it is, so that the summary and the exit code tell the same.
    void RefuseAborts();
    void End();

private:
    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_Handle;
    std::optional<HostLoop> m_Loop;
};
