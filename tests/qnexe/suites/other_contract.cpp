// A suite that was built for a contract of another time.
#include "examples/TestSuite.h"

extern "C" MORVEX_SYMBOL_EXPORT unsigned MorvexTestSuiteContract() { return 7; }

// Never to be called: what it makes is not known.
extern "C" MORVEX_SYMBOL_EXPORT TestSuite * MorvexCreateTestSuite() { return nullptr; }
