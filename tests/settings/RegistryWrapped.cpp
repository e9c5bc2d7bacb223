// The registry's operations as the tests divert them.
#include "settings/RegistryWrapped.h"

MORVEX_WRAP_API(
    LSTATUS, RegOpenKeyExA,
    (HKEY key, char const * subkey, DWORD options, REGSAM access, HKEY * result),
    (key, subkey, options, access, result))
MORVEX_WRAP_API(
    LSTATUS, RegCreateKeyExA,
    (HKEY key, char const * subkey, DWORD reserved, KeyClass keyClass, DWORD options, REGSAM access,
     SecurityAttributes attributes, HKEY * result, DWORD * disposition),
    (key, subkey, reserved, keyClass, options, access, attributes, result, disposition))
MORVEX_WRAP_API(
    LSTATUS, RegQueryValueExA,
    (HKEY key, char const * name, DWORD * reserved, DWORD * type, BYTE * data, DWORD * size),
    (key, name, reserved, type, data, size))
MORVEX_WRAP_API(
    LSTATUS, RegSetValueExA,
    (HKEY key, char const * name, DWORD reserved, DWORD type, BYTE const * data, DWORD size),
    (key, name, reserved, type, data, size))
MORVEX_WRAP_API(LSTATUS, RegDeleteValueA, (HKEY key, char const * name), (key, name))
MORVEX_WRAP_API(LSTATUS, RegDeleteKeyA, (HKEY key, char const * subkey), (key, subkey))
MORVEX_WRAP_API(
    LSTATUS, RegEnumValueA,
    (HKEY key, DWORD index, char * name, DWORD * nameSize, DWORD * reserved, DWORD * type,
     BYTE * data, DWORD * size),
    (key, index, name, nameSize, reserved, type, data, size))
MORVEX_WRAP_API(LSTATUS, RegCloseKey, (HKEY key), (key))
MORVEX_WRAP_API(
    DWORD, FormatMessageA,
    (DWORD flags, void const * source, DWORD code, DWORD language, char * buffer, DWORD size,
     va_list * arguments),
    (flags, source, code, language, buffer, size, arguments))
MORVEX_WRAP_API(void *, LocalFree, (void * memory), (memory))
