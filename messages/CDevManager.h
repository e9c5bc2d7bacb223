// Owns a list of the system's devices for a scope.
//
// The list stays as it was when the object was made. Any thread may have one.
#pragma once

#include "app/Export.h"
#include "platform/BaseTypes.h"

class MORVEX_API CDevManager {
public:
    // Hands all three to SetupDiGetClassDevsA as they are. `flags` are DIGCF_ values; the class
    // sets none of its own. Failure shows as INVALID_HANDLE_VALUE.
    CDevManager(GUID const * classGuid, char const * enumerator, unsigned long flags);
    CDevManager(CDevManager const &) = delete;
    CDevManager & operator=(CDevManager const &) = delete;
    ~CDevManager();

    // For the caller's own SetupDi calls, as long as the object lives.
    void * GetDevInfoHandle() const { return m_DevInfo; }

    // The class that was given, or all zeroes.
    GUID const & GetGUID() const { return m_ClassGuid; }

private:
    void * m_DevInfo;
    GUID m_ClassGuid;
};
