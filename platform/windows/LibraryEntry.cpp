// What the library does when a process loads and unloads it: its trace provider comes and goes.
//
// The run-time builds the statics before the entry function sees the attach, and tears them down
// after it has seen the detach.
#include "app/TraceProvider.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void *) {
    if (reason == DLL_PROCESS_ATTACH) TraceProvider::Attach();
    if (reason == DLL_PROCESS_DETACH) TraceProvider::Detach();
    return TRUE;
}
