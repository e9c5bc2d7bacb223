// Lets one window message through to the queue in CAppState, for a scope.
//
// Setters do not nest: a second one replaces the first one's code, and the first to end clears the
// filter for both. Making and ending one destroys what is queued. Its thread may be any, while
// others push and pop; CAppState must be there as long.
#pragma once

#include "app/Export.h"

class MORVEX_API CMessageFilterSetter {
public:
    explicit CMessageFilterSetter(unsigned int code);
    CMessageFilterSetter(CMessageFilterSetter const &) = delete;

    // Does nothing.
    CMessageFilterSetter & operator=(CMessageFilterSetter const &);

    ~CMessageFilterSetter();
};
