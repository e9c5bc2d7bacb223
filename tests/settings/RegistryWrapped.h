// The registry's operations, diverted and written down for a test.
#pragma once

#include "platform/Registry.h"
#include "platform/Wrap.h"

#if defined(_WIN32)
using SecurityAttributes = SECURITY_ATTRIBUTES *;
using KeyClass = LPSTR;
#else
using SecurityAttributes = _SECURITY_ATTRIBUTES const *;
using KeyClass = char *;
#endif

MORVEX_WRAPPED(RegOpenKeyExA)
MORVEX_WRAPPED(RegCreateKeyExA)
MORVEX_WRAPPED(RegQueryValueExA)
MORVEX_WRAPPED(RegSetValueExA)
MORVEX_WRAPPED(RegDeleteValueA)
MORVEX_WRAPPED(RegDeleteKeyA)
MORVEX_WRAPPED(RegEnumValueA)
MORVEX_WRAPPED(RegCloseKey)
MORVEX_WRAPPED(FormatMessageA)
MORVEX_WRAPPED(LocalFree)
