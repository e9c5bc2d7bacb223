// A shared library that is no suite.
#include "platform/BaseTypes.h"

extern "C" MORVEX_SYMBOL_EXPORT int NothingOfUse() { return 0; }
