// The stopwatch on a counter of an odd frequency, which every timer of the process goes by.
#include <gtest/gtest.h>

#include "app/CPrecisionTimer.h"
#include "app/GuardWrapped.h"

namespace {

constexpr long long CountsPerSecond = 3'579'545;

class TimerFrequencyTest : public testing::Test {
protected:
    static long long End(CPrecisionTimer & timer) {
        LARGE_INTEGER counter;
        timer.GetExpirationCounter(counter);
        return counter.QuadPart;
    }

    long long m_Now = 1'000;
    // For the whole program.
    static inline int m_Asked = 0;

private:
    Diversion<BOOL(LARGE_INTEGER *)> const m_Counter{
        wrapped_QueryPerformanceCounter, [this](LARGE_INTEGER * count) {
            count->QuadPart = m_Now;
            return BOOL{TRUE};
        }};
    Diversion<BOOL(LARGE_INTEGER *)> const m_Frequency{
        wrapped_QueryPerformanceFrequency, [](LARGE_INTEGER * frequency) {
            ++m_Asked;
            frequency->QuadPart = CountsPerSecond;
            return BOOL{TRUE};
        }};
};

TEST_F(TimerFrequencyTest, TheFirstTimerAloneAsksForIt) {
    CPrecisionTimer const first;
    CPrecisionTimer second(5);
    second.Start();
    second.GetTime();
    EXPECT_EQ(m_Asked, 1);
}

TEST_F(TimerFrequencyTest, TheEndIsCutAfterTheProduct) {
    CPrecisionTimer timer(7);
    timer.Start();
    EXPECT_EQ(End(timer), 1'000 + 7 * CountsPerSecond / 1000);
    timer.SetTimer(0xFFFFFFFF);
    timer.Start();
    EXPECT_EQ(End(timer), 1'000 + 0xFFFFFFFFLL * CountsPerSecond / 1000);
}

TEST_F(TimerFrequencyTest, TheTimeIsCutAfterTheProduct) {
    CPrecisionTimer timer;
    m_Now += 25'056;
    EXPECT_EQ(timer.GetTime(), 6u);
    ++m_Now;
    EXPECT_EQ(timer.GetTime(), 7u);
}

} // namespace
