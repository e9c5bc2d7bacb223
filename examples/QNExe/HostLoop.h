// The loop of the window thread: serves its windows, and notices the operator's Ctrl-C.
//
// One a process, made, run and ended on the window thread.
#pragma once

#include "platform/Messaging.h"

class CPromptService;
class RunView;

class HostLoop {
public:
    // Reaches the window at the first Ctrl-C: sent by the loop, or posted from the thread on which
    // the system tells of it. The next one is left to the system, which ends the process.
    static constexpr UINT InterruptMessage = WM_APP + 1;

    // Sent to the window on its own thread so that nothing stays unshown while no update comes:
    // about every IdleMilliseconds, or only when nothing has come for as long.
    static constexpr UINT IdleMessage = WM_APP + 4;
    static constexpr unsigned IdleMilliseconds = 100;

    // Ctrl-C is noticed from here on, and kept for Run. A Ctrl-C that the process was started to
    // ignore stays ignored. Throws std::system_error.
    explicit HostLoop(HWND window);
    HostLoop(HostLoop const &) = delete;
    HostLoop & operator=(HostLoop const &) = delete;
    ~HostLoop();

    // Serves the operator's questions too, until null is given; for the window thread.
    void Questions(CPromptService * prompts) { m_Prompts = prompts; }

    // On Windows: gives this view the keys that no question has taken; null for none.
    void Keys(RunView * view) { m_View = view; }

    // Until a window's procedure calls PostQuitMessage.
    void Run() noexcept;

private:
    HWND m_Window;
    CPromptService * m_Prompts = nullptr;
    RunView * m_View = nullptr;
};
