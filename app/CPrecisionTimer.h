// A stopwatch with a time-out, on the high-resolution counter.
//
// Time-outs and times are milliseconds, and have 32 bits on every system. A timer belongs to one
// thread at a time; reading it costs one look at the counter.
#pragma once

#include <atomic>
#include <cstdint>

#include "app/Export.h"
#include "platform/Synchronization.h"

class MORVEX_API CPrecisionTimer {
public:
    // Measures from here. Expired until Start gives it an end.
    CPrecisionTimer();
    explicit CPrecisionTimer(unsigned long timeout);

    CPrecisionTimer(CPrecisionTimer const &) = default;
    CPrecisionTimer & operator=(CPrecisionTimer const &) = default;
    CPrecisionTimer(CPrecisionTimer &&) = default;
    CPrecisionTimer & operator=(CPrecisionTimer &&) = default;

    // For the next Start; a running timer keeps its end.
    void SetTimer(unsigned long timeout) { m_Timeout = static_cast<std::uint32_t>(timeout); }

    unsigned long GetTimeout() { return static_cast<std::uint32_t>(m_Timeout); }

    // Measures from here, and expires the time-out from now.
    void Start();

    bool Expired() { return Now() >= m_ExpirationCounter.QuadPart; }

    // Whole milliseconds since Start or construction; the low 32 bits of them.
    unsigned long GetTime() {
        return static_cast<std::uint32_t>(Milliseconds(Now() - m_StartCounter.QuadPart));
    }

    // The counter's value at which the timer expires.
    void SetExpirationCounter(LARGE_INTEGER counter) { m_ExpirationCounter = counter; }
    void GetExpirationCounter(LARGE_INTEGER & counter) { counter = m_ExpirationCounter; }

    // Sets the time-out to 0. Deliberate: the end of a running timer stays.
    void CalcTimeoutFromNow();

private:
    // The usual frequency of the counter, on every system.
    static constexpr long long UsualFrequency = 10'000'000;

    long long Now() {
        QueryPerformanceCounter(&m_CurrentCounter);
        return m_CurrentCounter.QuadPart;
    }

    static long long Frequency() {
        return m_PerformanceFrequency.load(std::memory_order_relaxed).QuadPart;
    }

    // A division by a number that is known costs a tenth of one by a number that is not.
    static long long Milliseconds(long long counts) {
        long long const frequency = Frequency();
        if (frequency == UsualFrequency) return counts / (UsualFrequency / 1000);
        return counts * 1000 / frequency;
    }

    LARGE_INTEGER m_StartCounter;
    LARGE_INTEGER m_CurrentCounter;
    LARGE_INTEGER m_ExpirationCounter;
    std::uint64_t m_Timeout;

    // Asked for by the first timer; a race asks again, for the same answer.
    static std::atomic<LARGE_INTEGER> m_PerformanceFrequency;
    static std::atomic<bool> m_FrequencyInitialized;
};
