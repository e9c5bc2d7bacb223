// The dialog in which a run is set up: suite, recordings, reports, what is asked and what
// is logged.
#pragma once

#include <windows.h>

#include "examples/QNExe/CommandLine.h"

// False, and the options stay, when the operator has cancelled.
bool ShowSetupDialog(HWND owner, HostOptions & options);
