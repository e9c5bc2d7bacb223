// The platform operations, and the functions of the C library, that this program's tests divert.
#include <cstdio>

#include "log/TestClock.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "platform/Wrap.h"

MORVEX_WRAP_API(
    LRESULT, SendMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))
MORVEX_WRAP_API(
    BOOL, PostMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))
MORVEX_WRAP_API(
    int, MessageBoxA, (HWND owner, char const * text, char const * title, UINT style),
    (owner, text, title, style))
MORVEX_WRAP_API(void, Sleep, (DWORD milliseconds), (milliseconds))
MORVEX_WRAP_API(void, EnterCriticalSection, (CRITICAL_SECTION * section), (section))
MORVEX_WRAP_API(void, LeaveCriticalSection, (CRITICAL_SECTION * section), (section))

MORVEX_WRAP(TestClock::time_point, _ZNSt6chrono3_V212system_clock3nowEv, (), ())

MORVEX_WRAP_API(std::FILE *, fopen, (char const * name, char const * mode), (name, mode))
MORVEX_WRAP_API(int, fclose, (std::FILE * stream), (stream))
MORVEX_WRAP_API(int, fflush, (std::FILE * stream), (stream))
MORVEX_WRAP_API(int, fputc, (int character, std::FILE * stream), (character, stream))
MORVEX_WRAP_API(int, fputs, (char const * text, std::FILE * stream), (text, stream))
MORVEX_WRAP_API(
    std::size_t, fwrite,
    (void const * data, std::size_t size, std::size_t count, std::FILE * stream),
    (data, size, count, stream))
