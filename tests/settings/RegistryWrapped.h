// The registry's operations, diverted and written down for a test.
#pragma once

#include "platform/Registry.h"
#include "platform/RegistryTypes.h"
#include "platform/Wrap.h"

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
