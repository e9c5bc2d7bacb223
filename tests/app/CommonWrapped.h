// The platform operations that the tests of a suite's start and of its banner divert.
#pragma once

#include "platform/Messaging.h"
#include "platform/Registry.h"
#include "platform/Synchronization.h"
#include "platform/Version.h"
#include "platform/Wrap.h"

MORVEX_WRAPPED(CreateMutexA)
MORVEX_WRAPPED(GetVersionExA)
MORVEX_WRAPPED(GetFileVersionInfoSizeA)
MORVEX_WRAPPED(GetFileVersionInfoA)
MORVEX_WRAPPED(VerQueryValueA)
MORVEX_WRAPPED(GetUserDefaultLangID)
MORVEX_WRAPPED(RegOpenKeyExA)
MORVEX_WRAPPED(RegQueryValueExA)
MORVEX_WRAPPED(RegCloseKey)
