// The windows of the process and their classes. Every function may be called from any thread.
#pragma once

#include <memory>
#include <optional>

#include "platform/Messaging.h"
#include "platform/linux/MessageQueue.h"

// Gives the window its handle.
void AddWindow(std::shared_ptr<Window> const & window);
void RemoveWindow(HWND window);

// Null with ERROR_INVALID_WINDOW_HANDLE when there is no such window.
std::shared_ptr<Window> LookUpWindow(HWND window);

// As above; also null, with ERROR_ACCESS_DENIED, for a window of another thread.
std::shared_ptr<Window> LookUpOwnWindow(HWND window);

struct WindowClass {
    ATOM atom;
    WNDPROC procedure;
};

// A class of the given name, or of the atom given in its place, with one more window to its
// account. No value, with ERROR_CANNOT_FIND_WND_CLASS, when there is none.
std::optional<WindowClass> EnterWindowClass(char const * name);
void LeaveWindowClass(ATOM atom);
