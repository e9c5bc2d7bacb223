// The registry's parameter types whose names or constness differ between the platforms.
#pragma once

#include "platform/Registry.h"

#if defined(_WIN32)
using SecurityAttributes = SECURITY_ATTRIBUTES *;
using KeyClass = LPSTR;
#else
using SecurityAttributes = _SECURITY_ATTRIBUTES const *;
using KeyClass = char *;
#endif
