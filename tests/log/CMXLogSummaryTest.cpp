// The summary of a suite.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogSummaryTest : public LogTest {
protected:
    using Pairs = CTestSuiteLog::Pairs;

    // One true test from start to stop.
    void Run(TEST_STATUS status = TEST_STATUS_SUCCESS) {
        Start();
        Stop(status);
    }

    TS_STATUS Summarise() { return Log().DumpSummaryCounts(); }

    std::pair<std::string, std::string> SuiteResult() { return Suite().Meta().back(); }
};

TEST_F(CMXLogSummaryTest, ASuiteThatPassedIsSummedUpInOrder) {
    Run();
    TraceOn();
    Watch();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Seen(),
        (Lines{
            "meta Suite-Result = PASS [Fails (0); Aborts (0); Warnings (0)]",
            R"(trace 17 "TEST SUITE SUMMARY:\n    [ Fails (0); Aborts (0); Warnings (0) ]\n")",
            R"(write INFO suite-passed "TEST SUITE SUMMARY:\n    )"
            R"([ Fails (0); Aborts (0); Warnings (0) ]\n")",
            R"(trace 18 "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
            R"(write INFO suite-passed "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
        }));
}

TEST_F(CMXLogSummaryTest, ASuiteThatFailedIsShownInDarkRed) {
    Run(TEST_STATUS_FAIL);
    Watch();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "meta Suite-Result = FAIL [Fails (1); Aborts (0); Warnings (0)]",
                    R"(write INFO suite-failed "TEST SUITE SUMMARY:\n    )"
                    R"([ Fails (1); Aborts (0); Warnings (0) ]\n")",
                    R"(write INFO suite-failed "TEST RESULTS:\n    [ Passed (0); Failed (1) ]")",
                }));
}

TEST_F(CMXLogSummaryTest, TheCountsAreThoseOfTheSuiteInTheirOrder) {
    Run();
    for (int i = 0; i < 2; ++i)
        TestRecord().IncrFailures();
    for (int i = 0; i < 3; ++i)
        TestRecord().IncrWarnings();
    OpenTrueTest();
    Run();
    OpenTrueTest();
    Run();
    TestRecord().IncrFailures();
    for (int i = 0; i < 7; ++i)
        TestRecord().IncrWarnings();
    for (int i = 0; i < 20; ++i)
        TestRecord().IncrInfo();
    Written();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Written(), (Lines{
                       R"(INFO suite-failed "TEST SUITE SUMMARY:\n    )"
                       R"([ Fails (3); Aborts (0); Warnings (10) ]\n")",
                       R"(INFO suite-failed "TEST RESULTS:\n    [ Passed (3); Failed (0) ]")",
                   }));
    EXPECT_EQ(
        SuiteResult(), (std::pair<std::string, std::string>{
                           "Suite-Result", "FAIL [Fails (3); Aborts (0); Warnings (10)]"}));
}

TEST_F(CMXLogSummaryTest, TheVerdictIsTheSuitesOwn) {
    Run();
    // A true test that has no result yet: no count tells of it.
    Suite().OpenTest(true);
    TestRecord().IncrInfo();
    Summarise();
    EXPECT_EQ(
        SuiteResult(), (std::pair<std::string, std::string>{
                           "Suite-Result", "FAIL [Fails (0); Aborts (0); Warnings (0)]"}));
}

TEST_F(CMXLogSummaryTest, WarningsDoNotFailASuite) {
    Run();
    TestRecord().IncrWarnings();
    Summarise();
    EXPECT_EQ(
        SuiteResult(), (std::pair<std::string, std::string>{
                           "Suite-Result", "PASS [Fails (0); Aborts (0); Warnings (1)]"}));
}

TEST_F(CMXLogSummaryTest, NothingStopsTheSummaryAndItIsNotCounted) {
    Run();
    Level(Quiet);
    Log().DisableLogging();
    Log().EnableLogOnlyFailures();
    Log().InitTest();
    TestRecord().TestName("again");
    Written();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Written(), (Lines{
                       R"(INFO suite-failed "TEST SUITE SUMMARY:\n    )"
                       R"([ Fails (0); Aborts (0); Warnings (0) ]\n")",
                       R"(INFO suite-failed "TEST RESULTS:\n    [ Passed (0); Failed (1) ]")",
                   }));
    EXPECT_EQ(Counts(), "failures 0, aborts 0, warnings 0, infos 0, unknowns 0");
}

TEST_F(CMXLogSummaryTest, InAnActiveTestThatHoldsBackTheAbortLineIsHeldBackToo) {
    Log().EnableLogOnlyFailures();
    Start();
    TestRecord().IncrInfo();
    AskForAbort(false);
    Written();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    Lines const summary = Written();
    Stop();
    Lines const stop = Written();
    ASSERT_EQ(summary.size(), 3u);
    EXPECT_EQ(
        summary[0], "FAIL fail \"One or more functions called in this Test Suite failed to perform "
                    "required tasks.\"");
    EXPECT_NE(stop.back().find("*** TEST SUITE WAS ABORTED BY USER ***"), std::string::npos);
}

TEST_F(CMXLogSummaryTest, WithNothingRecordedThereIsNoSummary) {
    TestRecord().Reset();
    AskForAbort(false);
    TraceOn();
    Watch();
    EXPECT_EQ(Summarise(), TS_ABORTED);
    EXPECT_EQ(Seen(), Lines{});
    EXPECT_TRUE(Log().SummaryDumped());
}

TEST_F(CMXLogSummaryTest, WithoutARecordThereIsNoSummary) {
    Run();
    Written();
    CAppState::TestSuiteLog(nullptr);
    EXPECT_EQ(Summarise(), TS_ABORTED);
    CAppState::TestSuiteLog(&Suite());
    EXPECT_EQ(Written(), Lines{});
    EXPECT_TRUE(Log().SummaryDumped());
}

TEST_F(CMXLogSummaryTest, TheSummaryIsNotedAsDumpedFirstOfAll) {
    Run();
    bool dumped = false;
    Log().m_OnWrite = [&](auto const &) { dumped = Log().SummaryDumped(); };
    EXPECT_FALSE(Log().SummaryDumped());
    Summarise();
    EXPECT_TRUE(dumped);
}

TEST_F(CMXLogSummaryTest, ASecondSummaryIsWrittenAlike) {
    Run();
    Summarise();
    Written();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Written(), (Lines{
                       R"(INFO suite-passed "TEST SUITE SUMMARY:\n    )"
                       R"([ Fails (0); Aborts (0); Warnings (0) ]\n")",
                       R"(INFO suite-passed "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
                   }));
}

// What is written before the summary.

TEST_F(CMXLogSummaryTest, TheOperatorsAbortIsWrittenFirstAndCounts) {
    Run();
    AskForAbort(false);
    TraceOn();
    Watch();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Seen(),
        (Lines{
            "word 40000001",
            R"(trace 10 "\n*** TEST SUITE WAS ABORTED BY USER ***")",
            "aborts 1",
            R"(write ABORT none "\n*** TEST SUITE WAS ABORTED BY USER ***")",
            "failures 1",
            "write FAIL fail \"One or more functions called in this Test Suite failed to perform "
            "required tasks.\"",
            "meta Suite-Result = FAIL [Fails (1); Aborts (1); Warnings (0)]",
            R"(trace 17 "TEST SUITE SUMMARY:\n    [ Fails (1); Aborts (1); Warnings (0) ]\n")",
            R"(write INFO suite-failed "TEST SUITE SUMMARY:\n    )"
            R"([ Fails (1); Aborts (1); Warnings (0) ]\n")",
            R"(trace 18 "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
            R"(write INFO suite-failed "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
        }));
}

TEST_F(CMXLogSummaryTest, TheOperatorsAbortShowsInTheQuietestRun) {
    Run();
    AskForAbort(false);
    Level(Quiet);
    Written();
    Summarise();
    EXPECT_EQ(Written().front(), R"(ABORT none "\n*** TEST SUITE WAS ABORTED BY USER ***")");
}

TEST_F(CMXLogSummaryTest, WithLoggingOffTheOperatorsAbortEntersTheWordAlone) {
    Run();
    AskForAbort(false);
    Log().DisableLogging();
    Watch();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 40000001",
                    "meta Suite-Result = PASS [Fails (0); Aborts (0); Warnings (0)]",
                    R"(write INFO suite-passed "TEST SUITE SUMMARY:\n    )"
                    R"([ Fails (0); Aborts (0); Warnings (0) ]\n")",
                    R"(write INFO suite-passed "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
                }));
}

TEST_F(CMXLogSummaryTest, OneUnexpectedEntryOfTheSuiteIsReported) {
    Run();
    TestRecord().IncrUnknowns();
    Level(Diagnostic);
    Watch();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "warnings 1",
                    "write WARNING diagnostic \"Test Suite has 1 unexpected log entry\"",
                    "meta Suite-Result = PASS [Fails (0); Aborts (0); Warnings (1)]",
                    R"(write INFO suite-passed "TEST SUITE SUMMARY:\n    )"
                    R"([ Fails (0); Aborts (0); Warnings (1) ]\n")",
                    R"(write INFO suite-passed "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
                }));
    EXPECT_EQ(Log().TestStatus(), 0x00000001u);
}

TEST_F(CMXLogSummaryTest, UnexpectedEntriesOfAllTestsAreReportedTogether) {
    Run();
    TestRecord().IncrUnknowns();
    OpenTrueTest();
    Run();
    for (int i = 0; i < 2; ++i)
        TestRecord().IncrUnknowns();
    Level(Diagnostic);
    Written();
    Summarise();
    EXPECT_EQ(Written().front(), "WARNING diagnostic \"Test Suite has 3 unexpected log entries\"");
}

TEST_F(CMXLogSummaryTest, BelowDiagnosticUnexpectedEntriesAreOnlyTraced) {
    Run();
    TestRecord().IncrUnknowns();
    Level(Verbose);
    TraceOn();
    Watch();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Seen(),
        (Lines{
            "trace 12 \"Test Suite has 1 unexpected log entry\"",
            "meta Suite-Result = PASS [Fails (0); Aborts (0); Warnings (0)]",
            R"(trace 17 "TEST SUITE SUMMARY:\n    [ Fails (0); Aborts (0); Warnings (0) ]\n")",
            R"(write INFO suite-passed "TEST SUITE SUMMARY:\n    )"
            R"([ Fails (0); Aborts (0); Warnings (0) ]\n")",
            R"(trace 18 "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
            R"(write INFO suite-passed "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
        }));
}

TEST_F(CMXLogSummaryTest, AnAbortInAnEarlierTestAddsAFailureToTheClosedRecord) {
    TestRecord().IncrAborts();
    OpenTrueTest();
    Run();
    Level(Quiet);
    Log().DisableLogging();
    Written();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(
        Written().front(),
        "FAIL fail \"One or more functions called in this Test Suite failed to perform required "
        "tasks.\"");
    EXPECT_EQ(Counts(), "failures 1, aborts 0, warnings 0, infos 0, unknowns 0");
    EXPECT_EQ(TestRecord().TestStatus(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        SuiteResult(), (std::pair<std::string, std::string>{
                           "Suite-Result", "FAIL [Fails (1); Aborts (1); Warnings (0)]"}));
}

TEST_F(CMXLogSummaryTest, ASuiteThatRequiresTestsAndRanNoneFails) {
    // A suite of its own: the fixture's has a true test.
    CTestSuiteLog suite;
    suite.m_RequireTests = true;
    CAppState::TestSuiteLog(&suite);
    suite.CurrentTestLog()->IncrInfo();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    CAppState::TestSuiteLog(&Suite());
    EXPECT_EQ(
        Written(), (Lines{
                       "FAIL fail \"No tests in this Test Suite were run.\"",
                       R"(INFO suite-failed "TEST SUITE SUMMARY:\n    )"
                       R"([ Fails (1); Aborts (0); Warnings (0) ]\n")",
                       R"(INFO suite-failed "TEST RESULTS:\n    [ Passed (0); Failed (0) ]")",
                   }));
    EXPECT_EQ(
        suite.Meta(), (Pairs{{"Suite-Result", "FAIL [Fails (1); Aborts (0); Warnings (0)]"}}));
}

TEST_F(CMXLogSummaryTest, ASuiteThatRequiresNoTestsMayRunNone) {
    CTestSuiteLog suite;
    CAppState::TestSuiteLog(&suite);
    suite.CurrentTestLog()->IncrInfo();
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    CAppState::TestSuiteLog(&Suite());
    EXPECT_EQ(
        suite.Meta(), (Pairs{{"Suite-Result", "PASS [Fails (0); Aborts (0); Warnings (0)]"}}));
}

TEST_F(CMXLogSummaryTest, ASuiteThatRequiresTestsAndRanOnePasses) {
    Suite().m_RequireTests = true;
    Run();
    Written();
    Summarise();
    EXPECT_EQ(
        Written(), (Lines{
                       R"(INFO suite-passed "TEST SUITE SUMMARY:\n    )"
                       R"([ Fails (0); Aborts (0); Warnings (0) ]\n")",
                       R"(INFO suite-passed "TEST RESULTS:\n    [ Passed (1); Failed (0) ]")",
                   }));
}

TEST_F(CMXLogSummaryTest, AllThatIsWrongIsWrittenInOrder) {
    CTestSuiteLog suite;
    suite.m_RequireTests = true;
    CAppState::TestSuiteLog(&suite);
    suite.CurrentTestLog()->IncrUnknowns();
    AskForAbort(false);
    Level(Diagnostic);
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    CAppState::TestSuiteLog(&Suite());
    EXPECT_EQ(
        Written(), (Lines{
                       R"(ABORT none "\n*** TEST SUITE WAS ABORTED BY USER ***")",
                       "WARNING diagnostic \"Test Suite has 1 unexpected log entry\"",
                       "FAIL fail \"One or more functions called in this Test Suite failed to "
                       "perform required tasks.\"",
                       "FAIL fail \"No tests in this Test Suite were run.\"",
                       R"(INFO suite-failed "TEST SUITE SUMMARY:\n    )"
                       R"([ Fails (2); Aborts (1); Warnings (1) ]\n")",
                       R"(INFO suite-failed "TEST RESULTS:\n    [ Passed (0); Failed (0) ]")",
                   }));
}

// The self-check.

TEST_F(CMXLogSummaryTest, AnUnexpectedEntryDuringTheSummaryEndsIt) {
    Run();
    TestRecord().IncrUnknowns();
    Level(Diagnostic);
    Log().m_OnWrite = [&](std::string const & text) {
        if (text.starts_with("Test Suite has")) TestRecord().IncrUnknowns();
    };
    Watch();
    EXPECT_EQ(Thrown([&] { Summarise(); }), "Couldn't write test suite summary.");
    EXPECT_EQ(
        Seen(), (Lines{
                    "warnings 1",
                    "write WARNING diagnostic \"Test Suite has 1 unexpected log entry\"",
                    "failures 1",
                    "unknowns 2",
                    "write FAIL fail \"INTERNAL ERROR: malformed log status!\"",
                }));
    EXPECT_TRUE(Log().SummaryDumped());
}

TEST_F(CMXLogSummaryTest, TheSelfCheckIsWrittenInTheQuietestRun) {
    Run();
    TestRecord().IncrAborts();
    Level(Quiet);
    Log().m_OnWrite = [&](std::string const & text) {
        if (text.starts_with("One or more")) TestRecord().IncrUnknowns();
    };
    Written();
    EXPECT_EQ(Thrown([&] { Summarise(); }), "Couldn't write test suite summary.");
    EXPECT_EQ(
        Written(), (Lines{
                       "FAIL fail \"One or more functions called in this Test Suite failed to "
                       "perform required tasks.\"",
                       "FAIL fail \"INTERNAL ERROR: malformed log status!\"",
                   }));
}

TEST_F(CMXLogSummaryTest, OtherCountsMayChangeDuringTheSummary) {
    Run();
    TestRecord().IncrAborts();
    Log().m_OnWrite = [&](std::string const & text) {
        if (text.starts_with("One or more")) TestRecord().IncrWarnings();
    };
    EXPECT_EQ(Summarise(), TS_SUCCESS);
    EXPECT_EQ(SuiteResult().second, "FAIL [Fails (1); Aborts (1); Warnings (1)]");
}
