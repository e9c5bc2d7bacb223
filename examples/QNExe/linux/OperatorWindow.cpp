// The window that a terminal stands in for.
#include "examples/QNExe/OperatorWindow.h"

#include <stdexcept>

bool IsStartedFromDesktop() { return false; }

ExitCode ServeOperator(HostOptions const &) {
    throw std::runtime_error(
        "there is a window on Windows only. Leave --window out: the terminal shows the log.");
}
