// The sink that discards everything.
#include "log/CDummyMXLog.h"

#include <gtest/gtest.h>

#include "log/LogFixture.h"

namespace {

class DummySink : public CDummyMXLog {
public:
    using CDummyMXLog::InternalWrite;
};

class CDummyMXLogTest : public LogTest {
protected:
    CDummyMXLogTest() { m_Dummy.GlobalLogExists(true); }

    void WatchDummy() { m_Journal.Watch(&m_Dummy); }

    DummySink m_Dummy;
};

} // namespace

TEST_F(CDummyMXLogTest, StartTestReturnsZeroAtOnce) {
    WatchDummy();
    EXPECT_EQ(m_Dummy.StartTest("T1", 25), 0u);
    EXPECT_EQ(m_Dummy.StartTest(std::string("T1"), 25), 0u);
    EXPECT_EQ(Seen(), Lines{});
}

TEST_F(CDummyMXLogTest, StopTestReturnsItsArgumentAtOnce) {
    WatchDummy();
    EXPECT_EQ(m_Dummy.StopTest(TEST_STATUS_FAIL), TEST_STATUS_FAIL);
    EXPECT_EQ(m_Dummy.StopTest(0x08000000), 0x08000000u);
    EXPECT_EQ(m_Dummy.StopTest(0), 0u);
    EXPECT_EQ(Seen(), Lines{});
}

TEST_F(CDummyMXLogTest, StopTestWithoutAnArgumentReturnsTheWord) {
    m_Dummy.Write(TEST_STATUS_FAIL, "f");
    EXPECT_EQ(m_Dummy.StopTest(), 0x80000001u);
    EXPECT_TRUE(m_Dummy.TestActive());
}

TEST_F(CDummyMXLogTest, ClearAndWritesSucceed) {
    WatchDummy();
    EXPECT_EQ(m_Dummy.Clear(), TS_SUCCESS);
    EXPECT_EQ(m_Dummy.InternalWrite(TEST_STATUS_FAIL, "f", nullptr), TS_SUCCESS);
    EXPECT_EQ(Seen(), Lines{});
}

TEST_F(CDummyMXLogTest, EntriesAreMergedFilteredAndCounted) {
    WatchDummy();
    EXPECT_EQ(m_Dummy.Write(TEST_STATUS_WARNING, "w"), TEST_STATUS_WARNING);
    EXPECT_EQ(m_Dummy.Write(TEST_STATUS_FAIL, Verbose, "v"), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Seen(), (Lines{"word 88000001", "warnings 1"}));
}

TEST_F(CDummyMXLogTest, CompleteTestByHandWritesVerdictsAndNoStopLines) {
    m_Dummy.StartTest("T1", 0);
    WatchDummy();
    EXPECT_EQ(m_Dummy.CompleteTest(TEST_STATUS_ABORT), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word C0000001",
                    "active no",
                    "failures 1",
                    "aborts 1",
                    "result C0000000",
                }));
}

TEST_F(CDummyMXLogTest, TheEndOfTheLogWritesNoSummaryAndResetsTheRunPhase) {
    auto dummy = std::make_unique<CDummyMXLog>();
    dummy->Write(TEST_STATUS_INFO, "i");
    Suite().m_RunPhase = 3;
    m_Journal.Watch(nullptr);
    dummy.reset();
    EXPECT_EQ(Seen(), Lines{});
    EXPECT_EQ(Suite().m_RunPhase, 0u);
}
