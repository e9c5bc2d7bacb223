// MORVEX_API marks what the library exports to its host and to test suites.
#pragma once

#include "platform/BaseTypes.h"

#if defined(MORVEX_BUILD)
#define MORVEX_API MORVEX_SYMBOL_EXPORT
#else
#define MORVEX_API MORVEX_SYMBOL_IMPORT
#endif
