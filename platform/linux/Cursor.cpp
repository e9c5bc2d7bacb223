// The cursor on show: whichever was named last, for a host to read.
#include <atomic>
#include <cstdint>

#include "platform/Version.h"

namespace {

constinit std::atomic<HCURSOR> shown = nullptr;

bool IsSystemCursor(std::uintptr_t number) {
    return (number >= 32512 && number <= 32516) || (number >= 32640 && number <= 32651);
}

} // namespace

// A cursor is its own name: it has no picture here.
HCURSOR LoadCursorA(HINSTANCE instance, char const * name) {
    auto const number = reinterpret_cast<std::uintptr_t>(name);
    if (instance == nullptr && IsSystemCursor(number)) return reinterpret_cast<HCURSOR>(number);
    SetLastError(
        instance == nullptr ? ERROR_RESOURCE_NAME_NOT_FOUND : ERROR_RESOURCE_DATA_NOT_FOUND);
    return nullptr;
}

HCURSOR SetCursor(HCURSOR cursor) { return shown.exchange(cursor); }

HCURSOR GetCursor() { return shown; }
