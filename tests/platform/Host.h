// What the tests must know of the system they run on.
#pragma once

#include "platform/BaseTypes.h"

#if defined(_WIN32)

inline constexpr bool ON_WINDOWS = true;

// Wine stands in for Windows and differs from it in places; each such test says where.
inline bool UnderWine() {
    HMODULE const ntdll = GetModuleHandleA("ntdll.dll");
    return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

#else

inline constexpr bool ON_WINDOWS = false;

inline bool UnderWine() { return false; }

#endif
