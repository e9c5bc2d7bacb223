// The live handles, and what is done with any of them.
#include "platform/linux/Handles.h"

#include <cstdint>
#include <utility>

#include "platform/Synchronization.h"
#include "platform/linux/NumberTable.h"

namespace {

// Never destroyed: statics of other libraries close their handles while the process ends.
NumberTable<HandleObject> & Handles() {
    static auto & handles = *new NumberTable<HandleObject>(0, 4);
    return handles;
}

std::uintptr_t Number(HANDLE handle) { return reinterpret_cast<std::uintptr_t>(handle); }

template <typename Found>
Found Known(Found found) {
    if (!found) {
        SetLastError(ERROR_INVALID_HANDLE);
    }
    return found;
}

} // namespace

HANDLE AddHandle(std::shared_ptr<HandleObject> object) {
    return reinterpret_cast<HANDLE>(Handles().Add(std::move(object)));
}

std::shared_ptr<HandleObject> FindHandle(HANDLE handle) {
    return Known(Handles().Find(Number(handle)));
}

BOOL CloseHandle(HANDLE object) { return Known(Handles().Remove(Number(object))) ? TRUE : FALSE; }

DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds) {
    auto const found = FindHandle(object);
    return found ? found->Wait(milliseconds) : WAIT_FAILED;
}
