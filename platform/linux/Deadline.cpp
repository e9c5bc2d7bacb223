// Waiting on descriptors against a deadline.
#include "platform/linux/Deadline.h"

#include <cerrno>

namespace {

constexpr long NANOSECONDS = 1'000'000'000;

timespec Now() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now;
}

timespec Later(timespec from, DWORD milliseconds) {
    from.tv_sec += milliseconds / 1000;
    from.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
    if (from.tv_nsec >= NANOSECONDS) {
        from.tv_nsec -= NANOSECONDS;
        ++from.tv_sec;
    }
    return from;
}

// Zero when `end` has passed.
timespec Until(timespec const & end) {
    auto const now = Now();
    timespec left{end.tv_sec - now.tv_sec, end.tv_nsec - now.tv_nsec};
    if (left.tv_nsec < 0) {
        left.tv_nsec += NANOSECONDS;
        --left.tv_sec;
    }
    return left.tv_sec < 0 ? timespec{0, 0} : left;
}

} // namespace

Deadline::Deadline(DWORD milliseconds)
    : m_Never(milliseconds == 0xFFFFFFFF),
      m_End(m_Never ? timespec{} : Later(Now(), milliseconds)) {}

bool Deadline::Poll(pollfd * descriptors, nfds_t count) const {
    for (;;) {
        timespec const left = m_Never ? timespec{} : Until(m_End);
        int const ready = ppoll(descriptors, count, m_Never ? nullptr : &left, nullptr);
        if (ready >= 0 || errno != EINTR) {
            return ready > 0;
        }
    }
}
