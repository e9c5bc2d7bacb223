// The live handles of the process: what a HANDLE stands for, and how it is found safely.
//
// A stale handle is unknown and is never followed. A found object lives for as long as the finder
// holds it, even when another thread closes the handle meanwhile. Every function may be called
// from any thread.
#pragma once

#include <memory>

#include "platform/BaseTypes.h"

// What stands behind a handle. The last holder's release frees what the object keeps.
class HandleObject {
public:
    HandleObject() = default;
    HandleObject(HandleObject const &) = delete;
    HandleObject & operator=(HandleObject const &) = delete;
    virtual ~HandleObject() = default;

    // As WaitForSingleObject, the last error included.
    virtual DWORD Wait(DWORD milliseconds) = 0;
};

HANDLE AddHandle(std::shared_ptr<HandleObject> object);

// Null with ERROR_INVALID_HANDLE when the handle is unknown.
std::shared_ptr<HandleObject> FindHandle(HANDLE handle);

// As above; also null with ERROR_INVALID_HANDLE when the object is of another kind.
template <typename Object>
std::shared_ptr<Object> FindHandleAs(HANDLE handle) {
    auto object = FindHandle(handle);
    auto wanted = std::dynamic_pointer_cast<Object>(object);
    if (object && !wanted) {
        SetLastError(ERROR_INVALID_HANDLE);
    }
    return wanted;
}
