// The stop lines of a true test, its duration, and what was held back.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogStopLinesTest : public LogTest {
protected:
    std::string DurationOf(unsigned int seconds) {
        Log().InitTest();
        Start();
        m_Clock.Advance(seconds);
        Written();
        Stop();
        return Written().at(1);
    }
};

TEST_F(CMXLogStopLinesTest, DoStopTestGoesThroughItsStepsInOrder) {
    TraceOn();
    Start();
    m_Bench.m_Buffer.AddFormat(Log().DefaultWarningFormat());
    m_Clock.Advance(12);
    Watch();
    Log().DoStopTest(TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "started no",
                    "stopped yes",
                    "buffer default",
                    "stop time Nov 14, 2026 - 17:08:48",
                    R"(trace 13 "\nStop time: Nov 14, 2026 - 17:08:48")",
                    R"(write INFO passed "\nStop time: Nov 14, 2026 - 17:08:48")",
                    R"(trace 14 "Duration:  12 seconds.\n")",
                    R"(write INFO passed "Duration:  12 seconds.\n")",
                    R"(trace 16 "Stopping Test [ T1:\n     Number of: )"
                    R"(Fails (0); Aborts (0); Warnings (0) ]\r\n\r\n")",
                    R"(write INFO passed "Stopping Test [ T1:\n     Number of: )"
                    R"(Fails (0); Aborts (0); Warnings (0) ]\r\n\r\n")",
                    "meta Test-Pass = T1 [Fails (0); Aborts (0); Warnings (0)]",
                    "buffer default",
                    "update",
                    "clear",
                }));
    EXPECT_EQ(m_Bench.m_Buffer.FormatDepth(), 0u);
}

TEST_F(CMXLogStopLinesTest, AnInactiveTestIsOnlyTidiedUp) {
    Start();
    Log().GlobalLogExists(false);
    Stop();
    Watch();
    Log().DoStopTest(TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "started no",
                    "stopped yes",
                    "buffer default",
                    "buffer default",
                    "update",
                    "clear",
                }));
}

TEST_F(CMXLogStopLinesTest, TheColourFollowsTheResultAndTheFilingTheWord) {
    struct Case {
        TEST_STATUS word;
        TEST_STATUS result;
        char const * look;
        char const * key;
    };
    for (auto const & [word, result, look, key] :
         {Case{0x00000001, 0x00000001, "passed", "Test-Pass"},
          {0x80000001, 0x80000000, "failed", "Test-Fail"},
          {0x40000001, 0xC0000000, "failed", "Test-Fail"},
          {0x88000001, 0x80000000, "failed", "Test-Pass"},
          {0x80000001, 0x00000001, "passed", "Test-Fail"},
          {0x00000001, 0x08000000, "passed", "Test-Pass"},
          {0x00000001, 0x00000000, "failed", "Test-Pass"}}) {
        SCOPED_TRACE(Hex(word) + ' ' + Hex(result));
        OpenTrueTest();
        Log().DisableLogging();
        Enter(word);
        Log().EnableLogging();
        Start();
        Written();
        Log().DoStopTest(result);
        EXPECT_EQ(
            Written(),
            (Lines{
                std::string("INFO ") + look + R"( "\nStop time: Nov 14, 2026 - 17:08:36")",
                std::string("INFO ") + look + R"( "Duration:  0 seconds.\n")",
                std::string("INFO ") + look
                    + R"( "Stopping Test [ T1:\n     Number of: )"
                      R"(Fails (0); Aborts (0); Warnings (0) ]\r\n\r\n")",
            }));
        EXPECT_EQ(
            Suite().Meta().back(),
            (std::pair<std::string, std::string>{key, "T1 [Fails (0); Aborts (0); Warnings (0)]"}));
    }
}

TEST_F(CMXLogStopLinesTest, TheClosingShowsTheCountsInTheirOrder) {
    Start("Port T");
    TestRecord().IncrFailures();
    for (int i = 0; i < 2; ++i)
        TestRecord().IncrAborts();
    for (int i = 0; i < 3; ++i)
        TestRecord().IncrWarnings();
    for (int i = 0; i < 4; ++i)
        TestRecord().IncrInfo();
    for (int i = 0; i < 5; ++i)
        TestRecord().IncrUnknowns();
    Written();
    Log().DoStopTest(TEST_STATUS_FAIL);
    EXPECT_EQ(
        Written().at(2), R"(INFO failed "Stopping Test [ Port T:\n     Number of: )"
                         R"(Fails (1); Aborts (2); Warnings (3) ]\r\n\r\n")");
    EXPECT_EQ(
        Suite().Meta(),
        (CTestSuiteLog::Pairs{{"Test-Pass", "Port T [Fails (1); Aborts (2); Warnings (3)]"}}));
}

TEST_F(CMXLogStopLinesTest, NothingStopsTheStopLinesAndTheyAreNotCounted) {
    Start();
    Level(Quiet);
    Log().DisableLogging();
    Written();
    Stop();
    EXPECT_EQ(Written().size(), 3u);
    EXPECT_EQ(Counts(), "failures 0, aborts 0, warnings 0, infos 0, unknowns 0");
}

TEST_F(CMXLogStopLinesTest, WhatClearAnswersIsIgnored) {
    Log().m_Answer = TS_FILE_REOPEN_FAILED;
    Start();
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
}

TEST_F(CMXLogStopLinesTest, TheNameOfATestIsNotAFormat) {
    Start("100% %s");
    Written();
    Stop();
    EXPECT_EQ(
        Written().at(2), R"(INFO passed "Stopping Test [ 100% %s:\n     Number of: )"
                         R"(Fails (0); Aborts (0); Warnings (0) ]\r\n\r\n")");
    EXPECT_EQ(Suite().Meta().back().second, "100% %s [Fails (0); Aborts (0); Warnings (0)]");
}

// Durations.

TEST_F(CMXLogStopLinesTest, UpToAMinuteADurationHasNoBreakdown) {
    EXPECT_EQ(DurationOf(0), R"(INFO passed "Duration:  0 seconds.\n")");
    EXPECT_EQ(DurationOf(1), R"(INFO passed "Duration:  1 second.\n")");
    EXPECT_EQ(DurationOf(2), R"(INFO passed "Duration:  2 seconds.\n")");
    EXPECT_EQ(DurationOf(59), R"(INFO passed "Duration:  59 seconds.\n")");
    EXPECT_EQ(DurationOf(60), R"(INFO passed "Duration:  60 seconds.\n")");
}

TEST_F(CMXLogStopLinesTest, ADurationOfMinutesShowsMinutesAndSeconds) {
    EXPECT_EQ(DurationOf(61), R"(INFO passed "Duration:  61 seconds (1 minute, 1 second).\n")");
    EXPECT_EQ(DurationOf(62), R"(INFO passed "Duration:  62 seconds (1 minute, 2 seconds).\n")");
    EXPECT_EQ(DurationOf(120), R"(INFO passed "Duration:  120 seconds (2 minutes, 0 seconds).\n")");
    EXPECT_EQ(
        DurationOf(3599), R"(INFO passed "Duration:  3599 seconds (59 minutes, 59 seconds).\n")");
}

TEST_F(CMXLogStopLinesTest, ADurationOfHoursShowsMinutesEvenAtZero) {
    EXPECT_EQ(
        DurationOf(3600),
        R"(INFO passed "Duration:  3600 seconds (1 hour, 0 minutes, 0 seconds).\n")");
    EXPECT_EQ(
        DurationOf(3661),
        R"(INFO passed "Duration:  3661 seconds (1 hour, 1 minute, 1 second).\n")");
    EXPECT_EQ(
        DurationOf(7322),
        R"(INFO passed "Duration:  7322 seconds (2 hours, 2 minutes, 2 seconds).\n")");
    EXPECT_EQ(
        DurationOf(86399),
        R"(INFO passed "Duration:  86399 seconds (23 hours, 59 minutes, 59 seconds).\n")");
}

TEST_F(CMXLogStopLinesTest, ADurationOfDaysShowsHoursEvenAtZero) {
    EXPECT_EQ(
        DurationOf(86400),
        R"(INFO passed "Duration:  86400 seconds (1 day, 0 hours, 0 minutes, 0 seconds).\n")");
    EXPECT_EQ(
        DurationOf(90061),
        R"(INFO passed "Duration:  90061 seconds (1 day, 1 hour, 1 minute, 1 second).\n")");
    EXPECT_EQ(
        DurationOf(180122),
        R"(INFO passed "Duration:  180122 seconds (2 days, 2 hours, 2 minutes, 2 seconds).\n")");
}

// Log only failures.

TEST_F(CMXLogStopLinesTest, WithLogOnlyFailuresAPassingTestVanishesButForItsTimes) {
    Log().EnableLogOnlyFailures();
    TraceOn();
    Watch();
    Start();
    Enter(TEST_STATUS_INFO, "i");
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(),
        (Lines{
            "started yes",
            "buffer default",
            R"(trace 11 "Start time: Nov 14, 2026 - 17:08:36\r\n")",
            R"(write INFO start "Start time: Nov 14, 2026 - 17:08:36\r\n")",
            "record name \"T1\"",
            "buffer default",
            "update",
            "word 04000001",
            "trace 10 \"i\"",
            "infos 1",
            R"(trace 12 "TEST_STATUS has element TEST_STATUS_INFO:  (status = 0x04000001).")",
            "started no",
            "stopped yes",
            "buffer default",
            "stop time Nov 14, 2026 - 17:08:36",
            R"(trace 13 "\nStop time: Nov 14, 2026 - 17:08:36")",
            R"(write INFO passed "\nStop time: Nov 14, 2026 - 17:08:36")",
            R"(trace 14 "Duration:  0 seconds.\n")",
            R"(write INFO passed "Duration:  0 seconds.\n")",
            "meta Test-Pass = T1 [Fails (0); Aborts (0); Warnings (0)]",
            "buffer default",
            "update",
            "clear",
            "active no",
            "result 00000001",
        }));
}

TEST_F(CMXLogStopLinesTest, WithLogOnlyFailuresAFailingTestFollowsInOneEntryBehindTheDuration) {
    Log().EnableLogOnlyFailures();
    TraceOn();
    Start();
    Enter(TEST_STATUS_INFO, "one ");
    Enter(TEST_STATUS_FAIL, "two\n");
    Watch();
    EXPECT_EQ(Stop(), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(),
        (Lines{
            R"(trace 12 "TEST_STATUS has element TEST_STATUS_INFO:  (status = 0x84000001).")",
            "started no",
            "stopped yes",
            "buffer default",
            "stop time Nov 14, 2026 - 17:08:36",
            R"(trace 13 "\nStop time: Nov 14, 2026 - 17:08:36")",
            R"(write INFO failed "\nStop time: Nov 14, 2026 - 17:08:36")",
            R"(trace 14 "Duration:  0 seconds.\n")",
            R"(write INFO failed "Duration:  0 seconds.\n")",
            R"(trace 15 "\r\n===============\r\n\r\nNow Starting Test: T1\r\none two\n)"
            R"(Stopping Test [ T1:\n     Number of: Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")",
            R"(write INFO failed "\r\n===============\r\n\r\nNow Starting Test: T1\r\none two\n)"
            R"(Stopping Test [ T1:\n     Number of: Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")",
            "meta Test-Fail = T1 [Fails (1); Aborts (0); Warnings (0)]",
            "buffer default",
            "update",
            "clear",
            "active no",
            "result 80000000",
        }));
}

TEST_F(CMXLogStopLinesTest, WithLogOnlyFailuresAnAbortShowsTheTestAsWell) {
    Start();
    Log().EnableLogOnlyFailures();
    TestRecord().IncrAborts();
    Written();
    Log().DoStopTest(TEST_STATUS_ABORT);
    EXPECT_EQ(
        Written().at(2), R"(INFO failed "Stopping Test [ T1:\n     Number of: )"
                         R"(Fails (0); Aborts (1); Warnings (0) ]\r\n\r\n")");
}

TEST_F(CMXLogStopLinesTest, VerdictEntriesAreHeldBackToo) {
    Log().EnableLogOnlyFailures();
    Start();
    Written();
    EXPECT_EQ(Stop(TEST_STATUS_ABORT), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Written(),
        (Lines{
            R"(INFO failed "\nStop time: Nov 14, 2026 - 17:08:36")",
            R"(INFO failed "Duration:  0 seconds.\n")",
            R"(INFO failed "\r\n===============\r\n\r\nNow Starting Test: T1\r\nTest aborted.)"
            R"(Test did not execute all required steps.Stopping Test [ T1:\n     Number of: )"
            R"(Fails (1); Aborts (1); Warnings (0) ]\r\n\r\n")",
        }));
}

TEST_F(CMXLogStopLinesTest, HeldTextIsNotEmptiedByTheStop) {
    Log().EnableLogOnlyFailures();
    Enter(TEST_STATUS_FAIL, "kept ");
    Start("T1");
    Enter(TEST_STATUS_INFO, "first ");
    Stop();
    Log().InitTest();
    Written();
    TestRecord().IncrFailures();
    Log().DoStopTest(TEST_STATUS_FAIL);
    EXPECT_EQ(
        Written().at(2),
        R"(INFO failed "\r\n===============\r\n\r\nNow Starting Test: T1\r\nfirst Stopping Test [ T1:)"
        R"(\n     Number of: Fails (1); Aborts (0); Warnings (0) ]\r\n\r\nStopping Test [ T1:)"
        R"(\n     Number of: Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")");
}

// The operator's abort during the close.

TEST_F(CMXLogStopLinesTest, AnAbortDuringTheCloseSkipsClearAndLeavesTheTestOpen) {
    Start();
    AskForAbort(true);
    Watch();
    EXPECT_EQ(Thrown([&] { Stop(); }), "Test Aborted by user.");
    EXPECT_EQ(
        Seen(), (Lines{
                    "started no",
                    "stopped yes",
                    "buffer default",
                    "stop time Nov 14, 2026 - 17:08:36",
                    R"(write INFO passed "\nStop time: Nov 14, 2026 - 17:08:36")",
                    R"(write INFO passed "Duration:  0 seconds.\n")",
                    R"(write INFO passed "Stopping Test [ T1:\n     Number of: )"
                    R"(Fails (0); Aborts (0); Warnings (0) ]\r\n\r\n")",
                    "meta Test-Pass = T1 [Fails (0); Aborts (0); Warnings (0)]",
                    "buffer default",
                    "update",
                }));
    EXPECT_TRUE(Log().TestActive());
    EXPECT_FALSE(TestRecord().HasResult());
}

TEST_F(CMXLogStopLinesTest, AnAbortThatDoesNotThrowLetsTheCloseFinish) {
    Start();
    AskForAbort(false);
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_FALSE(Log().TestActive());
    EXPECT_TRUE(TestRecord().HasResult());
}
