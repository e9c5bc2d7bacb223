// The platform operations that the tests of a suite's start and of its banner divert.
#include "app/CommonWrapped.h"

MORVEX_WRAP_API(
    LRESULT, SendMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))
MORVEX_WRAP_API(
    BOOL, PostMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))
MORVEX_WRAP_API(ULONGLONG, GetTickCount64, (), ())
MORVEX_WRAP_API(
    HANDLE, CreateMutexA, (_SECURITY_ATTRIBUTES * attributes, BOOL owned, char const * name),
    (attributes, owned, name))
MORVEX_WRAP_API(BOOL, GetVersionExA, (OSVERSIONINFOA * version), (version))
MORVEX_WRAP_API(DWORD, GetFileVersionInfoSizeA, (char const * file, DWORD * handle), (file, handle))
MORVEX_WRAP_API(
    BOOL, GetFileVersionInfoA, (char const * file, DWORD handle, DWORD size, void * data),
    (file, handle, size, data))
MORVEX_WRAP_API(
    BOOL, VerQueryValueA, (void const * block, char const * path, LPVOID * value, UINT * length),
    (block, path, value, length))
MORVEX_WRAP_API(LANGID, GetUserDefaultLangID, (), ())
MORVEX_WRAP_API(
    LSTATUS, RegOpenKeyExA,
    (HKEY key, char const * subkey, DWORD options, REGSAM access, HKEY * result),
    (key, subkey, options, access, result))
MORVEX_WRAP_API(
    LSTATUS, RegQueryValueExA,
    (HKEY key, char const * name, DWORD * reserved, DWORD * type, BYTE * data, DWORD * size),
    (key, name, reserved, type, data, size))
MORVEX_WRAP_API(LSTATUS, RegCloseKey, (HKEY key), (key))
