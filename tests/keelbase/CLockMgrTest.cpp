// The re-entrant lock and its scope.
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"

namespace {

using namespace std::chrono_literals;

class CLockMgrTest : public testing::Test {
protected:
    // Tries to take the lock on another thread and gives it up again; the answer is whether that
    // thread had it before the waiting time was over.
    bool OtherThreadGetsItWithin(std::chrono::milliseconds time) {
        m_Entered = false;
        m_Other = std::thread([this] {
            CLockScope const scope(m_Lock);
            m_Entered = true;
        });
        auto const end = std::chrono::steady_clock::now() + time;
        while (!m_Entered && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(1ms);
        return m_Entered;
    }

    void JoinOther() { m_Other.join(); }

    CLockMgr m_Lock;
    std::atomic<bool> m_Entered{false};
    std::thread m_Other;
};

TEST_F(CLockMgrTest, OneThreadEntersAgain) {
    m_Lock.Lock();
    m_Lock.Lock();
    CLockScope const scope(m_Lock);
    m_Lock.Unlock();
    m_Lock.Unlock();
}

TEST_F(CLockMgrTest, ADifferentThreadWaitsUntilTheLastUnlock) {
    m_Lock.Lock();
    m_Lock.Lock();
    EXPECT_FALSE(OtherThreadGetsItWithin(50ms));
    m_Lock.Unlock();
    std::this_thread::sleep_for(20ms);
    EXPECT_FALSE(m_Entered);
    m_Lock.Unlock();
    JoinOther();
    EXPECT_TRUE(m_Entered);
}

TEST_F(CLockMgrTest, AScopeGivesTheLockBackAtItsEnd) {
    { CLockScope const scope(m_Lock); }
    EXPECT_TRUE(OtherThreadGetsItWithin(10s));
    JoinOther();
}

TEST_F(CLockMgrTest, AScopeGivesTheLockBackOnAnException) {
    EXPECT_THROW(
        {
            CLockScope const scope(m_Lock);
            throw std::runtime_error("out");
        },
        std::runtime_error);
    EXPECT_TRUE(OtherThreadGetsItWithin(10s));
    JoinOther();
}

TEST_F(CLockMgrTest, ThreadsNeverHoldItTogether) {
    constexpr int rounds = 20'000;
    int count = 0;
    auto const add = [&] {
        for (int i = 0; i < rounds; ++i) {
            CLockScope const outer(m_Lock);
            CLockScope const inner(m_Lock);
            ++count;
        }
    };
    std::thread other(add);
    add();
    other.join();
    EXPECT_EQ(count, 2 * rounds);
}

} // namespace
