// The host with a window of its own.
#include "examples/QNExe/OperatorWindow.h"

#include <windows.h>

#include "examples/QNExe/windows/OperatorSession.h"

namespace {

// A file, a pipe or a socket: somebody reads what is written there.
bool LeadsElsewhere(DWORD stream) {
    HANDLE const handle = GetStdHandle(stream);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return false;
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) == 0;
}

// Nobody else shares the console: it came up with this program and goes with it.
bool HasConsoleOfItsOwn() {
    DWORD processes[2];
    return GetConsoleProcessList(processes, 2) < 2;
}

} // namespace

bool IsStartedFromDesktop() {
    return HasConsoleOfItsOwn() && !LeadsElsewhere(STD_OUTPUT_HANDLE)
           && !LeadsElsewhere(STD_ERROR_HANDLE);
}

ExitCode ServeOperator(HostOptions const & options) {
    OperatorSession session(options);
    if (IsStartedFromDesktop()) FreeConsole();
    return session.Serve();
}
