// Turns the operator's abort into an exception for a scope.
//
// Scopes do not nest in a counted way: the end of an inner one turns it off for the outer as well.
// For the test thread.
#pragma once

#include "app/Export.h"

class MORVEX_API CExceptionSwitch {
public:
    CExceptionSwitch();
    CExceptionSwitch(CExceptionSwitch const &) = delete;
    CExceptionSwitch & operator=(CExceptionSwitch const &) = delete;

    // Makes an unforced update, then turns it off. Looks for no abort and never throws.
    ~CExceptionSwitch();
};
