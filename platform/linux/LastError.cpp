// The calling thread's last error.
#include "platform/BaseTypes.h"

namespace {
thread_local DWORD g_LastError = ERROR_SUCCESS;
}

DWORD GetLastError() { return g_LastError; }

void SetLastError(DWORD code) { g_LastError = code; }
