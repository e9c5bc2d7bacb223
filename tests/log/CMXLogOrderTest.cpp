// Calls out of order: none is refused, and each does what it always does.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogOrderTest : public LogTest {
protected:
    std::string Flags() {
        auto const yes = [](bool value) { return value ? "yes" : "no"; };
        return std::string("active ") + yes(Log().TestActive()) + ", started "
               + yes(Log().StartTestHasBeenCalled()) + ", stopped "
               + yes(Log().StopTestHasBeenCalled());
    }
};

TEST_F(CMXLogOrderTest, TheFlagsFollowTheLifeOfATest) {
    EXPECT_EQ(Flags(), "active yes, started no, stopped no");
    Start();
    EXPECT_EQ(Flags(), "active yes, started yes, stopped no");
    Log().DoStopTest(TEST_STATUS_SUCCESS);
    EXPECT_EQ(Flags(), "active yes, started no, stopped yes");
    Stop();
    EXPECT_EQ(Flags(), "active no, started no, stopped yes");
    Start();
    EXPECT_EQ(Flags(), "active no, started yes, stopped yes");
    Log().InitTest();
    EXPECT_EQ(Flags(), "active yes, started yes, stopped no");
}

TEST_F(CMXLogOrderTest, CompleteTestLeavesTheFlagsOfATestThatWasNotStopped) {
    Log().GlobalLogExists(false);
    Start();
    Stop();
    EXPECT_EQ(Flags(), "active no, started yes, stopped no");
}

TEST_F(CMXLogOrderTest, ASecondStartShowsTheSameTimeUnderANewName) {
    Start("T1");
    Enter(TEST_STATUS_FAIL, "f");
    m_Clock.Advance(5);
    Watch();
    EXPECT_EQ(Start("T2", 3), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "buffer default",
                    R"(buffer start "\r\n===============\r\n\r\nNow Starting Test: T2\r\n ")",
                    R"(write INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")",
                    "record name \"T2\"",
                    "buffer default",
                    "update",
                    "sleep 3",
                }));
    EXPECT_EQ(Counts(), "failures 1, aborts 0, warnings 0, infos 0, unknowns 0");
    EXPECT_EQ(Log().TestStatus(), 0x80000001u);
    Written();
    Stop();
    EXPECT_EQ(
        Written().back(), R"(INFO failed "Stopping Test [ T2:\n     Number of: )"
                          R"(Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")");
}

TEST_F(CMXLogOrderTest, ASecondStartDropsTheHeldText) {
    Log().EnableLogOnlyFailures();
    Start("T1");
    Enter(TEST_STATUS_FAIL, "dropped");
    Start("T2");
    Written();
    Stop();
    EXPECT_EQ(
        Written().back(),
        R"(INFO failed "\r\n===============\r\n\r\nNow Starting Test: T2\r\nStopping Test [ T2:\n)"
        R"(     Number of: Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")");
}

TEST_F(CMXLogOrderTest, AStartWithoutAnInitAfterACloseLeavesTheTestInactive) {
    Start("T1");
    Stop();
    FakePrompt prompt(m_Journal);
    Log().EnableBreakOnLogFailure(&prompt);
    Log().EnableLogOnlyFailures();
    Start("T2");
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_FAIL);
    EXPECT_EQ(Stop(), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001",
                    "failures 1",
                    "write FAIL none \"f\"",
                    "result 80000000",
                }));
}

TEST_F(CMXLogOrderTest, AStopWithoutAStartWritesNoStopLines) {
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_FAIL), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001",
                    "failures 1",
                    "write FAIL none \"Test failed.\"",
                    "active no",
                    "result 80000000",
                }));
}

TEST_F(CMXLogOrderTest, ASecondStopWritesTheVerdictsThatStillHold) {
    Start();
    EXPECT_EQ(Stop(TEST_STATUS_ABORT), TEST_STATUS_FAIL);
    TestRecord().TestStatus(TEST_STATUS_SUCCESS);
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_ABORT), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(), (Lines{
                    "failures 2",
                    "write FAIL none \"Test did not execute all required steps.\"",
                    "result C0000000",
                }));
}

TEST_F(CMXLogOrderTest, ASecondStopWithAStartBetweenWritesNoStopLines) {
    Start();
    Stop();
    Start();
    Watch();
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Seen(), Lines{});
    EXPECT_TRUE(Log().StartTestHasBeenCalled());
}

TEST_F(CMXLogOrderTest, EntriesAfterTheCloseAreCountedAndWrittenAtOnce) {
    Start();
    Stop();
    Log().EnableLogOnlyFailures();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_WARNING, "late"), TEST_STATUS_WARNING);
    EXPECT_EQ(Seen(), (Lines{"word 08000001", "warnings 1", "write WARNING none \"late\""}));
}

TEST_F(CMXLogOrderTest, AFurtherTestOnTheSameLogRunsWhole) {
    Start("T1");
    Stop();
    m_Clock.Advance(24);
    OpenTrueTest();
    Start("T2");
    Written();
    Watch();
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "started no",
                    "stopped yes",
                    "buffer default",
                    "stop time Nov 14, 2026 - 17:09:00",
                    R"(write INFO passed "\nStop time: Nov 14, 2026 - 17:09:00")",
                    R"(write INFO passed "Duration:  0 seconds.\n")",
                    R"(write INFO passed "Stopping Test [ T2:\n     Number of: )"
                    R"(Fails (0); Aborts (0); Warnings (0) ]\r\n\r\n")",
                    "meta Test-Pass = T2 [Fails (0); Aborts (0); Warnings (0)]",
                    "buffer default",
                    "update",
                    "clear",
                    "active no",
                    "result 00000001",
                }));
}

TEST_F(CMXLogOrderTest, ATestWithoutANameIsRecordedUnderAnEmptyOne) {
    Start("T1");
    Watch();
    Start(nullptr);
    EXPECT_EQ(
        Seen(), (Lines{
                    "buffer default",
                    R"(buffer start "\r\n===============\r\n\r\nNow Starting Test: \r\n ")",
                    R"(write INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")",
                    "record name \"\"",
                    "buffer default",
                    "update",
                }));
}
