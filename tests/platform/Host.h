// What the tests must know of the system they run on.
#pragma once

#include "platform/BaseTypes.h"
#include "platform/Messaging.h"

#if defined(_WIN32)

inline constexpr bool ON_WINDOWS = true;

// Whether a message that another thread has sent waits for the calling thread, which has to have
// no posted ones.
inline bool SentMessageWaits() { return HIWORD(GetQueueStatus(QS_SENDMESSAGE)) != 0; }

// Wine stands in for Windows and differs from it in places; each such test says where.
inline bool UnderWine() {
    HMODULE const ntdll = GetModuleHandleA("ntdll.dll");
    return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

#else

#include <poll.h>

inline constexpr bool ON_WINDOWS = false;

inline bool SentMessageWaits() {
    pollfd queue{MorvexMessageDescriptor(), POLLIN, 0};
    return poll(&queue, 1, 0) == 1;
}

inline bool UnderWine() { return false; }

#endif
