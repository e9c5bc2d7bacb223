// The moment until which a wait lasts, on the clock that never steps.
#pragma once

#include <poll.h>
#include <time.h>

#include "platform/BaseTypes.h"

class Deadline {
public:
    // 0xFFFFFFFF milliseconds: never.
    explicit Deadline(DWORD milliseconds);

    // Waits until one of the descriptors is ready. False: the deadline came first. An
    // interrupting signal does not end the wait.
    bool Poll(pollfd * descriptors, nfds_t count) const;

private:
    bool m_Never;
    timespec m_End;
};
