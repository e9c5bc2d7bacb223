// Holds COM started on a thread for a scope.
//
// Every object of the thread, each CDOMDoc among them, is gone before the scope ends.
#pragma once

#include "app/Export.h"

class MORVEX_API CComSessionMgr {
public:
    // Multi-threaded.
    CComSessionMgr();

    // `flags` as for CoInitializeEx. Its result is ignored: a thread that has already started in
    // another mode goes on as it is.
    explicit CComSessionMgr(unsigned long flags);
    CComSessionMgr(CComSessionMgr const &) = delete;

    // Does nothing.
    CComSessionMgr & operator=(CComSessionMgr const &) { return *this; }

    // Ends COM once, whatever the start has answered.
    ~CComSessionMgr();
};
