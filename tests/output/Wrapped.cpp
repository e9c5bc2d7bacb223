// The platform operations that this program's tests divert.
#include "platform/Messaging.h"
#include "platform/Wrap.h"

MORVEX_WRAP_API(
    LRESULT, SendMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))
MORVEX_WRAP_API(
    BOOL, PostMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))
MORVEX_WRAP_API(ULONGLONG, GetTickCount64, (), ())
