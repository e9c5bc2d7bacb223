// The host's window: what the library rings, what turns Ctrl-C into the operator's abort, and what
// hands device events to tests that wait for them.
//
// One a process, while CAppState stands. It belongs to the thread that made it, which serves it as
// long as the test thread runs: a forced update of the library waits for it.
#pragma once

#include "examples/QNExe/HostLoop.h"
#include "platform/Messaging.h"

class CPromptService;
class RunView;

class HostWindow {
public:
    // Shows the run's text in `view`, which stays the caller's, or drops it when that is null.
    // Throws std::runtime_error when the system has no window to give or Ctrl-C cannot be watched;
    // nothing is left behind then.
    explicit HostWindow(RunView * view = nullptr);
    HostWindow(HostWindow const &) = delete;
    HostWindow & operator=(HostWindow const &) = delete;
    ~HostWindow() = default;

    HWND Handle() const { return m_Window.handle; }

    // Serves these questions too, which are ended when the operator aborts; null for none. For the
    // window thread.
    void Questions(CPromptService * prompts);

    // Shows what came in so far. With a question at the terminal there is no progress beneath.
    static void QuestionShown(bool shown);

    // Asks for the abort of the run, as the operator does.
    static void AskForAbort();

    // Serves the window until End, which shows what is left.
    void Serve() noexcept;

    // For the test thread; both wait until the window has served them. After RefuseAborts the
    // operator's abort stands as it is, so that the summary and the exit code tell the same.
    void RefuseAborts();
    void End();

private:
    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    // Each ends what its constructor has made, also when one behind it fails.
    struct Class {
        Class();
        Class(Class const &) = delete;
        Class & operator=(Class const &) = delete;
        ~Class();
    };
    struct Window {
        Window();
        Window(Window const &) = delete;
        Window & operator=(Window const &) = delete;
        ~Window();

        HWND handle;
    };

    Class m_Class;
    Window m_Window;
    HostLoop m_Loop;
};
