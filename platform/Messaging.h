// Windows as message queues: making one, ringing it from any thread, pumping it on its own.
//
// A window belongs to the thread that made it. Its procedure runs on that thread alone, while the
// thread pumps or waits inside SendMessageA. Off Windows a window has no picture: it is a queue
// with a procedure.
#pragma once

#include "platform/BaseTypes.h"

#if !defined(_WIN32)

using HCURSOR = struct HICON__ *;
using HICON = struct HICON__ *;
using HBRUSH = struct HBRUSH__ *;
using HMENU = struct HMENU__ *;
using ATOM = WORD;
using WNDPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);

struct POINT {
    LONG x;
    LONG y;
};

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    char const * lpszMenuName;
    char const * lpszClassName;
};

inline constexpr UINT WM_NULL = 0x0000;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_CLOSE = 0x0010;
inline constexpr UINT WM_QUIT = 0x0012;
inline constexpr UINT WM_LBUTTONDOWN = 0x0201;
inline constexpr UINT WM_DEVICECHANGE = 0x0219;
inline constexpr UINT WM_USER = 0x0400;
inline constexpr UINT WM_APP = 0x8000;

inline constexpr UINT PM_NOREMOVE = 0x0000;
inline constexpr UINT PM_REMOVE = 0x0001;

inline constexpr UINT MB_OK = 0x00000000;
inline constexpr UINT MB_ICONERROR = 0x00000010;
inline constexpr int IDOK = 1;

inline HWND const HWND_MESSAGE = reinterpret_cast<HWND>(-3LL);

// Names match in any case. Zero with ERROR_INVALID_PARAMETER when the name or the procedure is
// missing, with ERROR_CLASS_ALREADY_EXISTS when the name is taken.
MORVEX_PLATFORM_API ATOM RegisterClassA(WNDCLASSA const * windowClass);

// Zero with ERROR_CLASS_DOES_NOT_EXIST or, while a window is of the class, ERROR_CLASS_HAS_WINDOWS.
MORVEX_PLATFORM_API BOOL UnregisterClassA(char const * className, HINSTANCE instance);

// A window of the calling thread. Of the arguments the class alone, by name or by atom, has an
// effect, and no message tells the procedure of the making. The caller ends the window with
// DestroyWindow; at the end of its thread it ends without a message. Null with
// ERROR_CANNOT_FIND_WND_CLASS, or with ERROR_NOT_ENOUGH_MEMORY when the process may open no more
// descriptors.
MORVEX_PLATFORM_API HWND CreateWindowExA(
    DWORD extendedStyle, char const * className, char const * title, DWORD style, int x, int y,
    int width, int height, HWND parent, HMENU menu, HINSTANCE instance, void * parameter);

// Runs the procedure with WM_DESTROY, drops the window's posted messages and lets its senders go.
// Zero with ERROR_INVALID_WINDOW_HANDLE, or with ERROR_ACCESS_DENIED for another thread's window.
MORVEX_PLATFORM_API BOOL DestroyWindow(HWND window);
MORVEX_PLATFORM_API BOOL IsWindow(HWND window);

// WM_CLOSE ends the window. Always 0.
MORVEX_PLATFORM_API LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Runs the window's procedure and hands back its result: at once on the window's own thread,
// otherwise when that thread pumps; the caller waits, and serves messages sent to its own windows
// meanwhile. 0 with ERROR_INVALID_WINDOW_HANDLE for a window that is null or gone, also when it
// goes while the caller waits.
MORVEX_PLATFORM_API LRESULT SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Whether the procedure that runs now serves a message that another thread has sent, and so
// another thread waits for it to return.
MORVEX_PLATFORM_API BOOL InSendMessage();

// Queues the message and returns at once. A null window means the calling thread's own queue.
// Zero with ERROR_INVALID_WINDOW_HANDLE for a window that is gone, with ERROR_NOT_ENOUGH_QUOTA
// while 10,000 messages wait for the thread, and with ERROR_MESSAGE_SYNC_ONLY for a device event
// with a record, which is only valid while a sender waits.
MORVEX_PLATFORM_API BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Lets the calling thread's pump end when it has no more posted messages.
MORVEX_PLATFORM_API void PostQuitMessage(int exitCode);

// Waits for the next posted message that the filter admits: not zero, or zero for WM_QUIT, which
// passes every filter. Messages sent by other threads are served meanwhile, before anything posted.
// -1 with ERROR_INVALID_WINDOW_HANDLE when the filter names a window that is gone.
//
// The filter is a window, or null for all, or -1 for messages posted to none; and the numbers from
// `first` to `last`, or all when both are 0.
MORVEX_PLATFORM_API BOOL GetMessageA(MSG * message, HWND window, UINT first, UINT last);

// As GetMessageA without waiting; WM_QUIT is a message like others. Zero: there is none, `message`
// untouched. PM_REMOVE takes the message off the queue.
MORVEX_PLATFORM_API BOOL
PeekMessageA(MSG * message, HWND window, UINT first, UINT last, UINT remove);

// Zero: there is no keyboard.
MORVEX_PLATFORM_API BOOL TranslateMessage(MSG const * message);

// The procedure's result; 0 for a message to no window or to one of another thread.
MORVEX_PLATFORM_API LRESULT DispatchMessageA(MSG const * message);

// Milliseconds since some fixed moment; never steps back.
MORVEX_PLATFORM_API ULONGLONG GetTickCount64();

// Writes "title: text", or the text alone without a title, as a line on standard error: there is
// no box to show. Always IDOK.
MORVEX_PLATFORM_API int MessageBoxA(HWND owner, char const * text, char const * title, UINT style);

// The descriptor of the calling thread's queue, readable while a message waits, for a host's own
// event loop: when it is readable, call PeekMessageA until it gives zero. The queue keeps it:
// never read from it, never close it. -1: the process may open no more descriptors.
MORVEX_PLATFORM_API int MorvexMessageDescriptor();

#endif
