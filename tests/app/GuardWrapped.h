// The platform operations that the tests of guards and timers divert.
#pragma once

#include "platform/Synchronization.h"
#include "platform/Version.h"
#include "platform/Wrap.h"

MORVEX_WRAPPED(CreateMutexW)
MORVEX_WRAPPED(CloseHandle)
MORVEX_WRAPPED(QueryPerformanceCounter)
MORVEX_WRAPPED(QueryPerformanceFrequency)
MORVEX_WRAPPED(LoadCursorA)
MORVEX_WRAPPED(SetCursor)
