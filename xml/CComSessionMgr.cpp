// COM on a thread, for a scope.
#include "xml/CComSessionMgr.h"

#include "platform/Com.h"

CComSessionMgr::CComSessionMgr() : CComSessionMgr(0) {}

CComSessionMgr::CComSessionMgr(unsigned long flags) {
    static_cast<void>(CoInitializeEx(nullptr, static_cast<DWORD>(flags)));
}

// Deliberate: also when the start has failed, which then takes another's start away.
// Pinned by CComSessionMgrTest.EndsEvenWhatItCouldNotStart.
CComSessionMgr::~CComSessionMgr() { CoUninitialize(); }
