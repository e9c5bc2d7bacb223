// The platform operations that the tests of guards and timers divert.
#include "app/GuardWrapped.h"

MORVEX_WRAP_API(
    HANDLE, CreateMutexW, (_SECURITY_ATTRIBUTES * attributes, BOOL owned, wchar_t const * name),
    (attributes, owned, name))
MORVEX_WRAP_API(BOOL, CloseHandle, (HANDLE handle), (handle))
MORVEX_WRAP_API(BOOL, QueryPerformanceCounter, (LARGE_INTEGER * count), (count))
MORVEX_WRAP_API(BOOL, QueryPerformanceFrequency, (LARGE_INTEGER * frequency), (frequency))
MORVEX_WRAP_API(HCURSOR, LoadCursorA, (HINSTANCE instance, char const * name), (instance, name))
MORVEX_WRAP_API(HCURSOR, SetCursor, (HCURSOR cursor), (cursor))
