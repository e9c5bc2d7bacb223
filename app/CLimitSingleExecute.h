// Tells whether this program runs already: one named object for all programs of the suite.
//
// The object is held from the first GetSingleExecute to FreeSingleExecute, or to the end of the
// process, however that comes. Nothing here stops a second program: the caller decides. There is no
// lock: the first GetSingleExecute and FreeSingleExecute must not meet another thread.
#pragma once

#include <cstdint>

#include "app/Export.h"
#include "platform/BaseTypes.h"

class MORVEX_API CLimitSingleExecute {
public:
    // Both members: the copy shares the handle.
    CLimitSingleExecute & operator=(CLimitSingleExecute const &) = default;

    // The one instance, made at first use. It stays the class's own.
    static CLimitSingleExecute * GetSingleExecute();

    // Lets the name go, and ends the instance, if there is one.
    static void FreeSingleExecute();

    // Whether another held the name when the instance was made, in this process or another. False
    // when the system had nothing to give.
    bool IsAnotherInstanceRunning() const;

private:
    CLimitSingleExecute();
    CLimitSingleExecute(CLimitSingleExecute const &) = default;
    ~CLimitSingleExecute();

    std::uint32_t m_LastError;
    HANDLE m_Mutex;

    static CLimitSingleExecute * m_sTheSingleExecute;
};
