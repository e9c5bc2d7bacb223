// Starting a stopwatch.
#include "app/CPrecisionTimer.h"

constinit std::atomic<LARGE_INTEGER> CPrecisionTimer::m_PerformanceFrequency = LARGE_INTEGER{};
constinit std::atomic<bool> CPrecisionTimer::m_FrequencyInitialized = false;

CPrecisionTimer::CPrecisionTimer() : CPrecisionTimer(0) {}

CPrecisionTimer::CPrecisionTimer(unsigned long timeout)
    : m_Timeout(static_cast<std::uint32_t>(timeout)) {
    m_CurrentCounter.QuadPart = 0;
    m_ExpirationCounter.QuadPart = 0;
    if (!m_FrequencyInitialized.load(std::memory_order_acquire)) {
        LARGE_INTEGER frequency;
        QueryPerformanceFrequency(&frequency);
        m_PerformanceFrequency.store(frequency, std::memory_order_relaxed);
        m_FrequencyInitialized.store(true, std::memory_order_release);
    }
    QueryPerformanceCounter(&m_StartCounter);
}

void CPrecisionTimer::Start() {
    m_StartCounter.QuadPart = Now();
    auto const timeout = static_cast<long long>(m_Timeout);
    m_ExpirationCounter.QuadPart = m_StartCounter.QuadPart + timeout * Frequency() / 1000;
}

void CPrecisionTimer::CalcTimeoutFromNow() {
    Now();
    // Deliberate: the expiration counter stays as it is.
    // Pinned by CPrecisionTimerTest.CalcTimeoutFromNowForgetsTheTimeoutAndKeepsTheEnd.
    m_Timeout = 0;
}
