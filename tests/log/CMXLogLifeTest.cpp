// How a test is opened and started, step by step.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogLifeTest : public LogTest {};

TEST_F(CMXLogLifeTest, InitTestOpensTheTestBeforeItRings) {
    Start();
    Enter(TEST_STATUS_INFO);
    Stop();
    m_Clock.Advance(24);
    Watch();
    Log().InitTest();
    EXPECT_EQ(
        Seen(), (Lines{
                    "active yes", "stopped no", "record name \"\"", "infos 0",
                    "start time Nov 14, 2026 - 17:09:00", "stop time -", "result -", "update"}));
}

TEST_F(CMXLogLifeTest, InitTestTakesTheStartTimeAfterTheReset) {
    m_Clock.Advance(1);
    Log().InitTest();
    EXPECT_EQ(TestRecord().StartTime(), m_Clock.Now());
    EXPECT_EQ(Log().MakeStartTimeString(), "Nov 14, 2026 - 17:08:37");
}

TEST_F(CMXLogLifeTest, InitTestLeavesTheWord) {
    Enter(TEST_STATUS_FAIL);
    Log().InitTest();
    EXPECT_EQ(Log().TestStatus(), 0x80000001u);
}

TEST_F(CMXLogLifeTest, InitTestLeavesTheFlagOfAStart) {
    Start();
    Log().InitTest();
    EXPECT_TRUE(Log().StartTestHasBeenCalled());
}

TEST_F(CMXLogLifeTest, InitTestUnderAnAbortThrowsWithTheTestOpen) {
    Start();
    Stop();
    AskForAbort(true);
    Watch();
    EXPECT_EQ(Thrown([&] { Log().InitTest(); }), "Test Aborted by user.");
    EXPECT_EQ(
        Seen(),
        (Lines{
            "active yes", "stopped no", "record name \"\"", "stop time -", "result -", "update"}));
}

TEST_F(CMXLogLifeTest, InitTestUnderAnAbortThatDoesNotThrowGoesOn) {
    AskForAbort(false);
    EXPECT_NO_THROW(Log().InitTest());
    EXPECT_TRUE(Log().TestActive());
}

TEST_F(CMXLogLifeTest, StartTestGoesThroughItsStepsInOrder) {
    TraceOn();
    m_Bench.m_Buffer.AddFormat(Log().DefaultWarningFormat());
    Watch();
    EXPECT_EQ(Start("T1", 25), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "started yes",
                    "buffer default",
                    R"(buffer start "\r\n===============\r\n\r\nNow Starting Test: T1\r\n ")",
                    R"(trace 11 "Start time: Nov 14, 2026 - 17:08:36\r\n")",
                    R"(write INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")",
                    "record name \"T1\"",
                    "buffer default",
                    "update",
                    "sleep 25",
                }));
    EXPECT_EQ(m_Bench.m_Buffer.FormatDepth(), 0u);
}

TEST_F(CMXLogLifeTest, TheStandardStringFormOfStartTestDoesTheSame) {
    Watch();
    EXPECT_EQ(Log().StartTest(std::string("T2"), 7), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "started yes",
                    "buffer default",
                    R"(buffer start "\r\n===============\r\n\r\nNow Starting Test: T2\r\n ")",
                    R"(write INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")",
                    "record name \"T2\"",
                    "buffer default",
                    "update",
                    "sleep 7",
                }));
}

TEST_F(CMXLogLifeTest, TheStartLineShowsWhenTheTestWasOpened) {
    m_Clock.Advance(60);
    Start();
    EXPECT_EQ(Written(), Lines{R"(INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")"});
}

TEST_F(CMXLogLifeTest, NothingStopsTheStartLineAndItIsNotCounted) {
    Level(Quiet);
    Log().DisableLogging();
    Log().EnableLogOnlyFailures();
    Start();
    EXPECT_EQ(Written(), Lines{R"(INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")"});
    EXPECT_EQ(Counts(), "failures 0, aborts 0, warnings 0, infos 0, unknowns 0");
}

TEST_F(CMXLogLifeTest, WithLogOnlyFailuresTheHeadingIsHeldBack) {
    Log().EnableLogOnlyFailures();
    Watch();
    Start();
    EXPECT_EQ(
        Seen(), (Lines{
                    "started yes",
                    "buffer default",
                    R"(write INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")",
                    "record name \"T1\"",
                    "buffer default",
                    "update",
                }));
}

TEST_F(CMXLogLifeTest, TheHeadingReplacesWhatWasHeldBack) {
    Log().EnableLogOnlyFailures();
    Enter(TEST_STATUS_INFO, "before the start");
    Start();
    Enter(TEST_STATUS_FAIL, "failure");
    Written();
    Stop();
    EXPECT_EQ(
        Written().back(),
        R"(INFO failed "\r\n===============\r\n\r\nNow Starting Test: T1\r\nfailureStopping )"
        R"(Test [ T1:\n     Number of: Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")");
}

TEST_F(CMXLogLifeTest, StartTestAnswersSuccessWhateverTheWordHolds) {
    Enter(TEST_STATUS_FAIL);
    EXPECT_EQ(Start(), 0x00000001u);
    EXPECT_EQ(Log().TestStatus(), 0x80000001u);
}

TEST_F(CMXLogLifeTest, ARunThatIsNoTrueTestStartsAlike) {
    OpenOtherRun();
    Watch();
    EXPECT_EQ(Start("Setup", 5), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "started yes",
                    "buffer default",
                    R"(buffer start "\r\n===============\r\n\r\nNow Starting Test: Setup\r\n ")",
                    R"(write INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")",
                    "record name \"Setup\"",
                    "buffer default",
                    "update",
                    "sleep 5",
                }));
}

TEST_F(CMXLogLifeTest, StartTestUnderAnAbortThrowsBehindTheStartLineAndDoesNotWait) {
    AskForAbort(true);
    Watch();
    EXPECT_EQ(Thrown([&] { Start("T1", 25); }), "Test Aborted by user.");
    EXPECT_EQ(
        Seen(), (Lines{
                    "started yes",
                    "buffer default",
                    R"(buffer start "\r\n===============\r\n\r\nNow Starting Test: T1\r\n ")",
                    R"(write INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")",
                    "record name \"T1\"",
                    "buffer default",
                    "update",
                }));
}

TEST_F(CMXLogLifeTest, ASinkThatCannotWriteDoesNotStopATest) {
    Log().m_Answer = TS_WRITE_FAILED;
    EXPECT_EQ(Start(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Enter(TEST_STATUS_INFO), TEST_STATUS_INFO);
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
}
