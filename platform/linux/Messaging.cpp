// Sending, posting and pumping.
#include "platform/Messaging.h"

#include <cstdio>
#include <memory>
#include <optional>

#include <time.h>

#include "platform/linux/MessageQueue.h"
#include "platform/linux/Windows.h"

namespace {

// A device event carries the address of a record when this bit of its code is set.
constexpr WPARAM DEVICE_EVENT_HAS_RECORD = 0x8000;

// What only stays valid while the sender waits cannot be posted.
bool IsForSendingOnly(UINT message, WPARAM wParam) {
    return message == WM_DEVICECHANGE && (wParam & DEVICE_EVENT_HAS_RECORD) != 0;
}

DWORD Post(HWND handle, MSG const & message) {
    if (handle == nullptr) {
        return MessageQueue::OfThisThread()->Post(nullptr, message);
    }
    auto const window = LookUpWindow(handle);
    return window ? window->queue->Post(window.get(), message) : ERROR_INVALID_WINDOW_HANDLE;
}

// No value: the window is gone.
std::optional<LRESULT> SendAcross(
    std::shared_ptr<Window> const & window, std::shared_ptr<MessageQueue> const & sender,
    UINT message, WPARAM wParam, LPARAM lParam) {
    SentMessage sent{window, message, wParam, lParam, sender, std::nullopt, false};
    if (window->queue->Deliver(sent)) {
        sender->Await(sent);
    }
    return sent.result;
}

bool IsFilterable(HWND window) {
    return window == nullptr || window == THREAD_MESSAGES || IsWindow(window);
}

} // namespace

LRESULT SendMessageA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    auto const window = LookUpWindow(handle);
    if (!window) {
        return 0;
    }
    auto const sender = MessageQueue::OfThisThread();
    if (window->queue == sender) {
        return window->procedure(handle, message, wParam, lParam);
    }
    auto const result = SendAcross(window, sender, message, wParam, lParam);
    if (!result) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    }
    return result.value_or(0);
}

BOOL InSendMessage() { return MessageQueue::OfThisThread()->IsServingSent() ? TRUE : FALSE; }

BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto const time = static_cast<DWORD>(GetTickCount64());
    DWORD const error = IsForSendingOnly(message, wParam)
                            ? ERROR_MESSAGE_SYNC_ONLY
                            : Post(window, MSG{window, message, wParam, lParam, time, {0, 0}});
    if (error != ERROR_SUCCESS) {
        SetLastError(error);
        return FALSE;
    }
    return TRUE;
}

void PostQuitMessage(int exitCode) { MessageQueue::OfThisThread()->PostQuit(exitCode); }

BOOL GetMessageA(MSG * message, HWND window, UINT first, UINT last) {
    constexpr BOOL FAILED = -1;
    auto const queue = MessageQueue::OfThisThread();
    do {
        if (!IsFilterable(window)) {
            return FAILED;
        }
        if (PeekMessageA(message, window, first, last, PM_REMOVE)) {
            return message->message != WM_QUIT;
        }
    } while (queue->Wait({window, first, last}));
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FAILED;
}

BOOL PeekMessageA(MSG * message, HWND window, UINT first, UINT last, UINT remove) {
    auto const queue = MessageQueue::OfThisThread();
    queue->ServeSentMessages();
    queue->ServeSources();
    if (!IsFilterable(window)) {
        return FALSE;
    }
    auto const taken = queue->Take({window, first, last}, (remove & PM_REMOVE) != 0);
    if (taken) {
        *message = *taken;
    }
    return taken ? TRUE : FALSE;
}

// There is no keyboard.
BOOL TranslateMessage(MSG const *) { return FALSE; }

LRESULT DispatchMessageA(MSG const * message) {
    if (message->hwnd == nullptr) {
        return 0;
    }
    auto const window = LookUpOwnWindow(message->hwnd);
    return window ? window->procedure(
               message->hwnd, message->message, message->wParam, message->lParam)
                  : 0;
}

ULONGLONG GetTickCount64() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<ULONGLONG>(now.tv_sec) * 1000
           + static_cast<ULONGLONG>(now.tv_nsec) / 1'000'000;
}

int MessageBoxA(HWND, char const * text, char const * title, UINT) {
    char const * const shown = text ? text : "";
    if (title && *title) {
        std::fprintf(stderr, "%s: %s\n", title, shown);
    } else {
        std::fprintf(stderr, "%s\n", shown);
    }
    return IDOK;
}

int MorvexMessageDescriptor() { return MessageQueue::OfThisThread()->Descriptor(); }
