// The stopwatch, on a counter that the test sets: 10,000 counts are a millisecond.
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "app/CPrecisionTimer.h"
#include "app/GuardWrapped.h"
#include "support/Allocations.h"

namespace {

static_assert(!std::is_polymorphic_v<CPrecisionTimer>);
static_assert(sizeof(CPrecisionTimer) == 32);

constexpr long long Millisecond = 10'000;

class CPrecisionTimerTest : public testing::Test {
protected:
    static long long End(CPrecisionTimer & timer) {
        LARGE_INTEGER counter;
        timer.GetExpirationCounter(counter);
        return counter.QuadPart;
    }

    static void SetEnd(CPrecisionTimer & timer, long long value) {
        LARGE_INTEGER counter;
        counter.QuadPart = value;
        timer.SetExpirationCounter(counter);
    }

    static CPrecisionTimer Started(unsigned long timeout) {
        CPrecisionTimer timer(timeout);
        timer.Start();
        return timer;
    }

    // A number that tells a count from a difference of counts.
    static constexpr long long Beginning = 123'456'789;
    long long m_Now = Beginning;
    int m_Reads = 0;

private:
    Diversion<BOOL(LARGE_INTEGER *)> const m_Counter{
        wrapped_QueryPerformanceCounter, [this](LARGE_INTEGER * count) {
            ++m_Reads;
            count->QuadPart = m_Now;
            return BOOL{TRUE};
        }};
    Diversion<BOOL(LARGE_INTEGER *)> const m_Frequency{
        wrapped_QueryPerformanceFrequency, [](LARGE_INTEGER * frequency) {
            frequency->QuadPart = 1000 * Millisecond;
            return BOOL{TRUE};
        }};
};

TEST_F(CPrecisionTimerTest, OneThatWasNotStartedIsExpired) {
    CPrecisionTimer timer(1000);
    EXPECT_EQ(End(timer), 0);
    EXPECT_TRUE(timer.Expired());
    EXPECT_EQ(CPrecisionTimer().GetTimeout(), 0u);
    EXPECT_EQ(timer.GetTimeout(), 1000u);
}

TEST_F(CPrecisionTimerTest, ATimeoutOf0IsOverAtOnce) {
    EXPECT_TRUE(Started(0).Expired());
    EXPECT_TRUE(CPrecisionTimer().Expired());
}

TEST_F(CPrecisionTimerTest, ItExpiresWhenItsCountIsReached) {
    CPrecisionTimer timer = Started(3);
    EXPECT_EQ(End(timer), Beginning + 3 * Millisecond);
    EXPECT_FALSE(timer.Expired());
    m_Now += 3 * Millisecond - 1;
    EXPECT_FALSE(timer.Expired());
    ++m_Now;
    EXPECT_TRUE(timer.Expired());
    ++m_Now;
    EXPECT_TRUE(timer.Expired());
}

TEST_F(CPrecisionTimerTest, TheLongestTimeoutIsKept) {
    CPrecisionTimer timer = Started(0xFFFFFFFF);
    EXPECT_EQ(timer.GetTimeout(), 0xFFFFFFFFu);
    EXPECT_EQ(End(timer), Beginning + 0xFFFFFFFFLL * Millisecond);
}

TEST_F(CPrecisionTimerTest, TheTimeIsMeasuredFromTheConstructionAndThenFromTheStart) {
    CPrecisionTimer timer;
    EXPECT_EQ(timer.GetTime(), 0u);
    m_Now += 7 * Millisecond + 9'999;
    EXPECT_EQ(timer.GetTime(), 7u);
    ++m_Now;
    EXPECT_EQ(timer.GetTime(), 8u);
    timer.Start();
    EXPECT_EQ(timer.GetTime(), 0u);
    m_Now += Millisecond;
    EXPECT_EQ(timer.GetTime(), 1u);
}

TEST_F(CPrecisionTimerTest, TheTimeHas32Bits) {
    CPrecisionTimer timer;
    m_Now += ((1LL << 32) + 5) * Millisecond;
    EXPECT_EQ(timer.GetTime(), 5u);
}

TEST_F(CPrecisionTimerTest, ATimeThatWentBackIsCutTowardsZero) {
    CPrecisionTimer timer;
    m_Now -= Millisecond - 1;
    EXPECT_EQ(timer.GetTime(), 0u);
    --m_Now;
    EXPECT_EQ(timer.GetTime(), 0xFFFFFFFFu);
}

TEST_F(CPrecisionTimerTest, ANewTimeoutHoldsFromTheNextStart) {
    CPrecisionTimer timer = Started(10);
    timer.SetTimer(20);
    EXPECT_EQ(timer.GetTimeout(), 20u);
    m_Now += 10 * Millisecond;
    EXPECT_TRUE(timer.Expired());
    timer.Start();
    m_Now += 20 * Millisecond - 1;
    EXPECT_FALSE(timer.Expired());
    ++m_Now;
    EXPECT_TRUE(timer.Expired());
}

TEST_F(CPrecisionTimerTest, CalcTimeoutFromNowForgetsTheTimeoutAndKeepsTheEnd) {
    CPrecisionTimer timer = Started(10);
    m_Now += 4 * Millisecond;
    timer.CalcTimeoutFromNow();
    EXPECT_EQ(timer.GetTimeout(), 0u);
    EXPECT_EQ(End(timer), Beginning + 10 * Millisecond);
    EXPECT_FALSE(timer.Expired());
    m_Now += 6 * Millisecond;
    EXPECT_TRUE(timer.Expired());
}

TEST_F(CPrecisionTimerTest, TwoWithOneEndExpireTogether) {
    CPrecisionTimer first = Started(10);
    m_Now += 5 * Millisecond;
    CPrecisionTimer second = Started(10);
    SetEnd(second, End(first));
    m_Now = Beginning + 10 * Millisecond - 1;
    EXPECT_FALSE(first.Expired() || second.Expired());
    ++m_Now;
    EXPECT_TRUE(first.Expired() && second.Expired());
}

TEST_F(CPrecisionTimerTest, AssignmentsTakeEverythingOver) {
    CPrecisionTimer source = Started(10);
    m_Now += 2 * Millisecond;
    CPrecisionTimer copy(99);
    CPrecisionTimer moved(99);
    copy = source;
    moved = std::move(source);
    for (CPrecisionTimer * const timer : {&copy, &moved}) {
        EXPECT_EQ(timer->GetTimeout(), 10u);
        EXPECT_EQ(End(*timer), Beginning + 10 * Millisecond);
        EXPECT_EQ(timer->GetTime(), 2u);
    }
}

TEST_F(CPrecisionTimerTest, EachReadingLooksAtTheCounterOnce) {
    CPrecisionTimer timer(5);
    EXPECT_EQ(std::exchange(m_Reads, 0), 1);
    timer.Start();
    EXPECT_EQ(std::exchange(m_Reads, 0), 1);
    timer.Expired();
    EXPECT_EQ(std::exchange(m_Reads, 0), 1);
    timer.GetTime();
    EXPECT_EQ(std::exchange(m_Reads, 0), 1);
    timer.CalcTimeoutFromNow();
    EXPECT_EQ(std::exchange(m_Reads, 0), 1);
    timer.SetTimer(7);
    timer.GetTimeout();
    EXPECT_EQ(End(timer), Beginning + 5 * Millisecond);
    EXPECT_EQ(m_Reads, 0);
}

TEST(CPrecisionTimerClockTest, TheTimeOfTheRealCounterStartsNearZeroAndNeverGoesBack) {
    CPrecisionTimer timer(1);
    timer.Start();
    unsigned long last = timer.GetTime();
    EXPECT_LT(last, 1000u);
    while (!timer.Expired()) {
        unsigned long const now = timer.GetTime();
        ASSERT_GE(now, last);
        last = now;
    }
    EXPECT_GE(timer.GetTime(), 1u);
}

TEST(CPrecisionTimerClockTest, ReadingAllocatesNothing) {
    CPrecisionTimer timer(1);
    timer.Start();
    AllocationWatch heap;
    bool expired = timer.Expired();
    for (int i = 0; i < 1000; ++i) {
        expired |= timer.Expired();
        expired |= timer.GetTime() > 60'000;
    }
    std::size_t const allocations = heap.Allocations();
    ::operator delete(::operator new(1));
    std::size_t const withOne = heap.Allocations();
    heap.End();
    EXPECT_EQ(allocations, 0u) << expired;
    EXPECT_EQ(withOne, 1u);
}

} // namespace
