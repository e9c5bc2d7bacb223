// A window of the host to which messages are sent or posted.
//
// The window is the host's and is not looked at: one that is gone makes the calls fail without
// consequence. A null one makes a send fail, while a post succeeds: it puts the message into the
// calling thread's own queue.
#pragma once

#include "app/Export.h"
#include "platform/Messaging.h"

class MORVEX_API CCustomMessageHandler {
public:
    CCustomMessageHandler() = default;
    explicit CCustomMessageHandler(HWND__ * const window) : m_hWnd(window) {}
    CCustomMessageHandler(CCustomMessageHandler const &) = default;
    CCustomMessageHandler & operator=(CCustomMessageHandler const &) = default;
    virtual ~CCustomMessageHandler();

    // Queues the message and returns at once; hands back PostMessageA's result.
    int CMHPostMessage(unsigned int message, WPARAM wParam, LPARAM lParam);

    // Waits until the window has served the message; hands back its answer.
    LRESULT CMHSendMessage(unsigned int message, WPARAM wParam, LPARAM lParam);

    void SetHWnd(HWND__ * const window) { m_hWnd = window; }
    HWND__ * GetHWnd() const { return m_hWnd; }

private:
    HWND m_hWnd = nullptr;
};
