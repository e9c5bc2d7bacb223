// Making, finding and ending windows.
#include "platform/linux/Windows.h"

#include <cstdint>

#include "platform/linux/NumberTable.h"

namespace {

// Handles keep clear of the small numbers that stand for something else, and of the highest.
constexpr std::uintptr_t LAST_RESERVED_HANDLE = 0x10000;

// Never destroyed: statics of other libraries may ring a window while the process ends.
NumberTable<Window> & Table() {
    static auto & table = *new NumberTable<Window>(LAST_RESERVED_HANDLE, 2);
    return table;
}

std::uintptr_t Number(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

} // namespace

void AddWindow(std::shared_ptr<Window> const & window) {
    // The handle is written before another thread can learn of it.
    window->handle = reinterpret_cast<HWND>(Table().Add(window));
}

void RemoveWindow(HWND window) { Table().Remove(Number(window)); }

std::shared_ptr<Window> LookUpWindow(HWND window) {
    auto found = window == nullptr ? nullptr : Table().Find(Number(window));
    if (!found) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    }
    return found;
}

std::shared_ptr<Window> LookUpOwnWindow(HWND handle) {
    auto window = LookUpWindow(handle);
    if (window && window->queue != MessageQueue::OfThisThread()) {
        SetLastError(ERROR_ACCESS_DENIED);
        window.reset();
    }
    return window;
}

HWND CreateWindowExA(
    DWORD, char const * className, char const *, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE,
    void *) {
    auto const queue = MessageQueue::OfThisThread();
    if (queue->Descriptor() < 0) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    auto const windowClass = EnterWindowClass(className);
    if (!windowClass) {
        return nullptr;
    }
    auto const window =
        std::make_shared<Window>(Window{windowClass->procedure, windowClass->atom, queue});
    AddWindow(window);
    queue->Own(*window);
    return window->handle;
}

BOOL DestroyWindow(HWND handle) {
    auto const window = LookUpOwnWindow(handle);
    if (!window) {
        return FALSE;
    }
    if (!window->isEnding) {
        window->isEnding = true;
        window->procedure(handle, WM_DESTROY, 0, 0);
        window->queue->Disown(*window);
    }
    return TRUE;
}

BOOL IsWindow(HWND window) { return LookUpWindow(window) ? TRUE : FALSE; }

LRESULT DefWindowProcA(HWND window, UINT message, WPARAM, LPARAM) {
    if (message == WM_CLOSE) {
        DestroyWindow(window);
    }
    return 0;
}
