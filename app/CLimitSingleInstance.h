// Tells whether a name of the caller's choice is held already, in this process or another.
//
// The name is held as long as the object lives. Nothing here stops a second holder: the caller
// decides. An object belongs to one thread at a time.
#pragma once

#include <cstdint>

#include "app/Export.h"
#include "platform/BaseTypes.h"

class MORVEX_API CLimitSingleInstance {
public:
    // Takes the name; platform/README.md tells which names there are.
    explicit CLimitSingleInstance(wchar_t const * name);

    // Both members: the copy shares the handle, and whichever goes first closes it.
    CLimitSingleInstance(CLimitSingleInstance const &) = default;
    CLimitSingleInstance & operator=(CLimitSingleInstance const &) = default;

    ~CLimitSingleInstance();

    // 1 when another held the name as this object was made, else 0; 0 too when the system had
    // nothing to give.
    int IsAnotherInstanceRunning();

private:
    std::uint32_t m_LastError;
    HANDLE m_Mutex;
};
