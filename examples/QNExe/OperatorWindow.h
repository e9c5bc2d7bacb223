// The host with a window of its own, in which an operator sets up, starts and watches runs.
//
// One implementation a platform.
#pragma once

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/ExitCode.h"

// Whether a program that was given no arguments was started from a desktop, where there is nobody
// to read a usage error: its console is its own or missing, and no stream of it leads elsewhere.
bool IsStartedFromDesktop();

// Shows the window until the operator closes it, and answers with the verdict of the last run;
// NoTestRan without one. Throws std::runtime_error, whose text says what to do, where there is no
// window to give.
ExitCode ServeOperator(HostOptions const & options);
