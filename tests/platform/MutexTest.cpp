// Unnamed mutexes: who owns one, and who waits.
#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "platform/Synchronization.h"

namespace {

constexpr DWORD LONG_ENOUGH = 10'000;

class MutexTest : public testing::Test {
protected:
    ~MutexTest() override { CloseHandle(m_Mutex); }

    DWORD Take(DWORD timeout = 0) { return WaitForSingleObject(m_Mutex, timeout); }

    // What another thread gets, which gives back what it took.
    DWORD TakeElsewhere(DWORD timeout = 0) {
        DWORD result = WAIT_FAILED;
        std::thread([&] {
            result = Take(timeout);
            if (result != WAIT_TIMEOUT) ReleaseMutex(m_Mutex);
        }).join();
        return result;
    }

    HANDLE m_Mutex = CreateMutexA(nullptr, FALSE, nullptr);
};

TEST_F(MutexTest, NobodyOwnsAFreshOneUnlessItsMakerAsksForIt) {
    EXPECT_EQ(TakeElsewhere(), WAIT_OBJECT_0);
    CloseHandle(m_Mutex);
    m_Mutex = CreateMutexA(nullptr, TRUE, nullptr);
    EXPECT_EQ(TakeElsewhere(), WAIT_TIMEOUT);
    EXPECT_TRUE(ReleaseMutex(m_Mutex));
    EXPECT_EQ(TakeElsewhere(), WAIT_OBJECT_0);
}

TEST_F(MutexTest, OwnerTakesItAgainAndGivesItUpAsOften) {
    EXPECT_EQ(Take(), WAIT_OBJECT_0);
    EXPECT_EQ(Take(), WAIT_OBJECT_0);
    EXPECT_TRUE(ReleaseMutex(m_Mutex));
    EXPECT_EQ(TakeElsewhere(), WAIT_TIMEOUT);
    EXPECT_TRUE(ReleaseMutex(m_Mutex));
    EXPECT_EQ(TakeElsewhere(), WAIT_OBJECT_0);
}

TEST_F(MutexTest, OnlyTheOwnerGivesItUp) {
    SetLastError(0);
    EXPECT_FALSE(ReleaseMutex(m_Mutex));
    EXPECT_EQ(GetLastError(), ERROR_NOT_OWNER);
    Take();
    std::thread([&] { EXPECT_FALSE(ReleaseMutex(m_Mutex)); }).join();
    EXPECT_EQ(TakeElsewhere(), WAIT_TIMEOUT);
    EXPECT_TRUE(ReleaseMutex(m_Mutex));
}

TEST_F(MutexTest, WaiterGetsItWhenTheOwnerGivesItUp) {
    std::atomic<bool> isTaken = false;
    Take();
    std::thread waiter([&] {
        EXPECT_EQ(Take(LONG_ENOUGH), WAIT_OBJECT_0);
        isTaken = true;
        ReleaseMutex(m_Mutex);
    });
    Sleep(30);
    EXPECT_FALSE(isTaken);
    ReleaseMutex(m_Mutex);
    waiter.join();
    EXPECT_TRUE(isTaken);
}

TEST_F(MutexTest, AnOwnerThatEndsAbandonsItToTheNext) {
    std::thread([&] { Take(); }).join();
    EXPECT_EQ(Take(LONG_ENOUGH), WAIT_ABANDONED);
    EXPECT_EQ(TakeElsewhere(), WAIT_TIMEOUT);
    EXPECT_TRUE(ReleaseMutex(m_Mutex));
    EXPECT_EQ(TakeElsewhere(), WAIT_OBJECT_0);
}

TEST_F(MutexTest, NoUpdateUnderItIsLost) {
    int sum = 0;
    auto const add = [&] {
        for (int i = 0; i < 5'000; ++i) {
            Take(INFINITE);
            ++sum;
            ReleaseMutex(m_Mutex);
        }
    };
    std::thread other(add);
    add();
    other.join();
    EXPECT_EQ(sum, 10'000);
}

TEST_F(MutexTest, AnythingElseIsRefused) {
    HANDLE const event = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    HANDLE const closed = CreateMutexA(nullptr, FALSE, nullptr);
    CloseHandle(closed);
    for (HANDLE const handle : {event, closed, HANDLE{}}) {
        SetLastError(0);
        EXPECT_FALSE(ReleaseMutex(handle));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    }
    SetLastError(0);
    EXPECT_FALSE(SetEvent(m_Mutex));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    CloseHandle(event);
}

} // namespace
