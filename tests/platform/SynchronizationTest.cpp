// Critical sections, events, sleeping and the counter.
#include "platform/Synchronization.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr DWORD LONG_ENOUGH = 10'000;
constexpr DWORD A_MOMENT = 50;

enum class Kind { ManualReset, AutoReset };

class EventOf {
public:
    explicit EventOf(Kind kind, bool isSet = false)
        : m_Handle(CreateEventA(nullptr, kind == Kind::ManualReset, isSet, nullptr)) {}
    EventOf(EventOf const &) = delete;
    EventOf & operator=(EventOf const &) = delete;
    ~EventOf() { CloseHandle(m_Handle); }

    void Set() { EXPECT_TRUE(SetEvent(m_Handle)); }
    void Reset() { EXPECT_TRUE(ResetEvent(m_Handle)); }
    DWORD Wait(DWORD timeout = 0) { return WaitForSingleObject(m_Handle, timeout); }

private:
    HANDLE const m_Handle;
};

// Threads that wait for one event each until they have seen it.
class Waiters {
public:
    Waiters(EventOf & event, int count) {
        for (int i = 0; i < count; ++i) {
            m_Threads.emplace_back([&] { m_Released += event.Wait(LONG_ENOUGH) == WAIT_OBJECT_0; });
        }
    }
    Waiters(Waiters const &) = delete;
    Waiters & operator=(Waiters const &) = delete;
    ~Waiters() { Join(); }

    void Join() {
        for (auto & thread : m_Threads) {
            thread.join();
        }
        m_Threads.clear();
    }

    int Released() const { return m_Released; }

    // Waits until so many are released, then a moment for one too many.
    int ReleasedAfter(int expected) const {
        for (int i = 0; i < 1000 && m_Released < expected; ++i) {
            Sleep(5);
        }
        Sleep(A_MOMENT);
        return m_Released;
    }

private:
    std::atomic<int> m_Released = 0;
    std::vector<std::thread> m_Threads;
};

long long ElapsedMilliseconds(Clock::time_point from) {
    return std::chrono::duration_cast<milliseconds>(Clock::now() - from).count();
}

} // namespace

class CriticalSectionTest : public testing::Test {
protected:
    CriticalSectionTest() { InitializeCriticalSection(&m_Section); }
    ~CriticalSectionTest() override { DeleteCriticalSection(&m_Section); }

    void Enter() { EnterCriticalSection(&m_Section); }
    void Leave() { LeaveCriticalSection(&m_Section); }

    CRITICAL_SECTION m_Section;
};

TEST_F(CriticalSectionTest, OtherThreadEntersWhenTheHolderHasLeftAsOftenAsItEntered) {
    std::atomic<bool> hasEntered = false;
    Enter();
    Enter();
    Enter();
    std::thread other([&] {
        Enter();
        hasEntered = true;
        Leave();
    });
    Leave();
    Leave();
    Sleep(A_MOMENT);
    EXPECT_FALSE(hasEntered);
    Leave();
    other.join();
    EXPECT_TRUE(hasEntered);
}

TEST_F(CriticalSectionTest, NoUpdateUnderItIsLost) {
    long long sum = 0;
    auto const add = [&] {
        for (int i = 0; i < 20'000; ++i) {
            Enter();
            ++sum;
            Leave();
        }
    };
    std::thread other(add);
    add();
    other.join();
    EXPECT_EQ(sum, 40'000);
}

TEST(EventTest, FreshEventIsSetAsAsked) {
    EXPECT_EQ(EventOf(Kind::ManualReset, false).Wait(), WAIT_TIMEOUT);
    EXPECT_EQ(EventOf(Kind::ManualReset, true).Wait(), WAIT_OBJECT_0);
    EXPECT_EQ(EventOf(Kind::AutoReset, false).Wait(), WAIT_TIMEOUT);
    EXPECT_EQ(EventOf(Kind::AutoReset, true).Wait(), WAIT_OBJECT_0);
}

TEST(EventTest, ManualResetEventStaysSetUntilItIsReset) {
    EventOf event(Kind::ManualReset);
    event.Set();
    EXPECT_EQ(event.Wait(), WAIT_OBJECT_0);
    EXPECT_EQ(event.Wait(), WAIT_OBJECT_0);
    event.Reset();
    EXPECT_EQ(event.Wait(), WAIT_TIMEOUT);
}

TEST(EventTest, AutoResetEventIsSeenOnce) {
    EventOf event(Kind::AutoReset);
    event.Set();
    EXPECT_EQ(event.Wait(), WAIT_OBJECT_0);
    EXPECT_EQ(event.Wait(), WAIT_TIMEOUT);
}

TEST(EventTest, SettingASetEventDoesNotCount) {
    EventOf event(Kind::AutoReset);
    event.Set();
    event.Set();
    EXPECT_EQ(event.Wait(), WAIT_OBJECT_0);
    EXPECT_EQ(event.Wait(), WAIT_TIMEOUT);
}

TEST(EventTest, ResettingAnUnsetEventSucceeds) {
    EventOf event(Kind::ManualReset);
    event.Reset();
    EXPECT_EQ(event.Wait(), WAIT_TIMEOUT);
    event.Set();
    EXPECT_EQ(event.Wait(), WAIT_OBJECT_0);
}

TEST(EventTest, ManualResetEventReleasesAllWaiters) {
    EventOf event(Kind::ManualReset);
    Waiters waiters(event, 4);
    Sleep(A_MOMENT);
    EXPECT_EQ(waiters.Released(), 0);
    event.Set();
    waiters.Join();
    EXPECT_EQ(waiters.Released(), 4);
}

TEST(EventTest, AutoResetEventReleasesOneWaiterASet) {
    EventOf event(Kind::AutoReset);
    Waiters waiters(event, 3);
    for (int released = 1; released <= 3; ++released) {
        event.Set();
        EXPECT_EQ(waiters.ReleasedAfter(released), released);
    }
}

TEST(EventTest, TimedWaitLastsAsLongAsAsked) {
    EventOf event(Kind::ManualReset);
    auto const start = Clock::now();
    EXPECT_EQ(event.Wait(A_MOMENT), WAIT_TIMEOUT);
    // A system's tick may end a wait early by a part of it.
    EXPECT_GE(ElapsedMilliseconds(start), A_MOMENT - 16);
}

TEST(EventTest, EndlessWaitEndsWithTheSet) {
    EventOf event(Kind::AutoReset);
    std::thread setter([&] {
        Sleep(A_MOMENT);
        event.Set();
    });
    EXPECT_EQ(event.Wait(INFINITE), WAIT_OBJECT_0);
    setter.join();
}

TEST(EventTest, TwoThreadsPassAutoResetEventsToAndFro) {
    EventOf there(Kind::AutoReset);
    EventOf back(Kind::AutoReset);
    constexpr int ROUNDS = 2'000;
    std::thread other([&] {
        for (int i = 0; i < ROUNDS && there.Wait(LONG_ENOUGH) == WAIT_OBJECT_0; ++i) {
            back.Set();
        }
    });
    int rounds = 0;
    for (; rounds < ROUNDS; ++rounds) {
        there.Set();
        if (back.Wait(LONG_ENOUGH) != WAIT_OBJECT_0) {
            break;
        }
    }
    other.join();
    EXPECT_EQ(rounds, ROUNDS);
}

// The reader resets first and drains afterwards, so what comes in between sets the event again.
TEST(EventTest, ReaderThatResetsAndDrainsMissesNothing) {
    constexpr int ITEMS = 5'000;
    EventOf event(Kind::ManualReset);
    std::mutex mutex;
    std::deque<int> queue;
    std::thread writer([&] {
        for (int i = 0; i < ITEMS; ++i) {
            std::scoped_lock const lock(mutex);
            queue.push_back(i);
            event.Set();
        }
    });
    int expected = 0;
    while (expected < ITEMS && event.Wait(LONG_ENOUGH) == WAIT_OBJECT_0) {
        event.Reset();
        std::scoped_lock const lock(mutex);
        for (; !queue.empty() && queue.front() == expected; ++expected) {
            queue.pop_front();
        }
    }
    writer.join();
    EXPECT_EQ(expected, ITEMS);
}

TEST(EventTest, ClosedHandleIsRefusedEverywhere) {
    HANDLE const event = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    ASSERT_TRUE(CloseHandle(event));
    for (HANDLE const handle : {event, HANDLE{}}) {
        SetLastError(0);
        EXPECT_FALSE(SetEvent(handle));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        SetLastError(0);
        EXPECT_FALSE(ResetEvent(handle));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        SetLastError(0);
        EXPECT_EQ(WaitForSingleObject(handle, 0), WAIT_FAILED);
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        SetLastError(0);
        EXPECT_FALSE(CloseHandle(handle));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    }
}

TEST(EventTest, HandlesOfLiveEventsDiffer) {
    HANDLE const first = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    HANDLE const second = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    EXPECT_NE(first, second);
    EXPECT_TRUE(SetEvent(second));
    EXPECT_EQ(WaitForSingleObject(first, 0), WAIT_TIMEOUT);
    EXPECT_TRUE(CloseHandle(first));
    EXPECT_EQ(WaitForSingleObject(second, 0), WAIT_OBJECT_0);
    EXPECT_TRUE(CloseHandle(second));
}

// No other call stands between setting and asking: a system may use the last error itself.
TEST(LastErrorTest, EachThreadHasItsOwn) {
    std::atomic<bool> isSet = false;
    std::atomic<bool> isOver = false;
    DWORD others = 5;
    std::thread other([&] {
        while (!isSet) {
        }
        others = GetLastError();
        SetLastError(7);
        isOver = true;
    });
    SetLastError(5);
    isSet = true;
    while (!isOver) {
    }
    DWORD const mine = GetLastError();
    other.join();
    EXPECT_EQ(mine, 5u);
    EXPECT_NE(others, 5u);
}

TEST(TimeTest, SleepLastsAsLongAsAsked) {
    auto const start = Clock::now();
    Sleep(A_MOMENT);
    EXPECT_GE(ElapsedMilliseconds(start), A_MOMENT - 16);
}

TEST(TimeTest, SleepOfNothingReturns) {
    auto const start = Clock::now();
    Sleep(0);
    EXPECT_LT(ElapsedMilliseconds(start), 1000);
}

TEST(TimeTest, CounterRunsAtItsFrequency) {
    LARGE_INTEGER frequency;
    LARGE_INTEGER from;
    LARGE_INTEGER to;
    ASSERT_TRUE(QueryPerformanceFrequency(&frequency));
    auto const start = Clock::now();
    ASSERT_TRUE(QueryPerformanceCounter(&from));
    Sleep(100);
    ASSERT_TRUE(QueryPerformanceCounter(&to));
    auto const elapsed = ElapsedMilliseconds(start);
    auto const counted = (to.QuadPart - from.QuadPart) * 1000 / frequency.QuadPart;
    EXPECT_GE(counted, 100 - 16);
    EXPECT_LE(counted, elapsed + 1);
}

TEST(TimeTest, CounterNeverStepsBack) {
    LARGE_INTEGER last;
    QueryPerformanceCounter(&last);
    for (int i = 0; i < 10'000; ++i) {
        LARGE_INTEGER now;
        QueryPerformanceCounter(&now);
        ASSERT_GE(now.QuadPart, last.QuadPart);
        last = now;
    }
}

TEST(ThreadIdTest, StaysWithItsThreadAndDiffersFromOthers) {
    DWORD const mine = GetCurrentThreadId();
    DWORD others = mine;
    std::thread([&] { others = GetCurrentThreadId(); }).join();
    EXPECT_NE(mine, 0u);
    EXPECT_NE(others, mine);
    EXPECT_EQ(GetCurrentThreadId(), mine);
}
