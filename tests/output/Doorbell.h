// The window messages of the library, kept instead of sent, and a clock that the test sets.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Messaging.h"
#include "platform/Wrap.h"

MORVEX_WRAPPED(SendMessageA)
MORVEX_WRAPPED(PostMessageA)
MORVEX_WRAPPED(GetTickCount64)

class Doorbell {
public:
    // Called for each message, before the library goes on: what the host does.
    std::function<void()> m_OnRing;

    ULONGLONG m_Now = 0;

    // What SendMessageA and PostMessageA answer.
    LRESULT m_SendResult = 0;
    BOOL m_PostResult = TRUE;

    // The messages since the last call.
    std::vector<std::string> Take() { return std::exchange(m_Messages, {}); }

private:
    void Ring(char const * how, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        char text[80];
        std::snprintf(
            text, sizeof text, "%s %llu 0x%X %llu %lld", how,
            static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(window)), message,
            wParam, lParam);
        m_Messages.push_back(text);
        if (m_OnRing) m_OnRing();
    }

    std::vector<std::string> m_Messages;

    Diversion<LRESULT(HWND, UINT, WPARAM, LPARAM)> const m_Send{
        wrapped_SendMessageA, [this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
            Ring("send", window, message, wParam, lParam);
            return m_SendResult;
        }};
    Diversion<BOOL(HWND, UINT, WPARAM, LPARAM)> const m_Post{
        wrapped_PostMessageA, [this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
            Ring("post", window, message, wParam, lParam);
            return m_PostResult;
        }};
    Diversion<ULONGLONG()> const m_Clock{wrapped_GetTickCount64, [this] { return m_Now; }};
};

inline HWND WindowNumber(std::uintptr_t number) { return reinterpret_cast<HWND>(number); }
