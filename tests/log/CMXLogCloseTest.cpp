// How a test ends: its verdict entries and its result.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogCloseTest : public LogTest {};

// CompleteTest.

TEST_F(CMXLogCloseTest, ATestWithoutEntriesPasses) {
    Start();
    Written();
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Written(), (Lines{
                       R"(INFO passed "\nStop time: Nov 14, 2026 - 17:08:36")",
                       R"(INFO passed "Duration:  0 seconds.\n")",
                       R"(INFO passed "Stopping Test [ T1:\n     Number of: )"
                       R"(Fails (0); Aborts (0); Warnings (0) ]\r\n\r\n")",
                   }));
    EXPECT_EQ(
        Suite().Meta(),
        (CTestSuiteLog::Pairs{{"Test-Pass", "T1 [Fails (0); Aborts (0); Warnings (0)]"}}));
    EXPECT_EQ(TestRecord().TestStatus(), TEST_STATUS_SUCCESS);
}

TEST_F(CMXLogCloseTest, OneFailureEntryIsVerdictEnough) {
    Start();
    Enter(TEST_STATUS_FAIL, "f");
    Written();
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Written(), (Lines{
                       R"(INFO failed "\nStop time: Nov 14, 2026 - 17:08:36")",
                       R"(INFO failed "Duration:  0 seconds.\n")",
                       R"(INFO failed "Stopping Test [ T1:\n     Number of: )"
                       R"(Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")",
                   }));
    EXPECT_EQ(
        Suite().Meta(),
        (CTestSuiteLog::Pairs{{"Test-Fail", "T1 [Fails (1); Aborts (0); Warnings (0)]"}}));
}

TEST_F(CMXLogCloseTest, AFailureWithoutAnEntryGetsOne) {
    Start();
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_FAIL), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001",
                    "failures 1",
                    "write FAIL none \"Test failed.\"",
                    "started no",
                    "stopped yes",
                    "buffer default",
                    "stop time Nov 14, 2026 - 17:08:36",
                    R"(write INFO failed "\nStop time: Nov 14, 2026 - 17:08:36")",
                    R"(write INFO failed "Duration:  0 seconds.\n")",
                    R"(write INFO failed "Stopping Test [ T1:\n     Number of: )"
                    R"(Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")",
                    "meta Test-Fail = T1 [Fails (1); Aborts (0); Warnings (0)]",
                    "buffer default",
                    "update",
                    "clear",
                    "active no",
                    "result 80000000",
                }));
}

TEST_F(CMXLogCloseTest, AnAbortedTrueTestFails) {
    TraceOn();
    Start();
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_ABORT), TEST_STATUS_FAIL);
    Lines const seen = Seen();
    EXPECT_EQ(
        Lines(seen.begin(), seen.begin() + 8),
        (Lines{
            "word 40000001",
            "trace 10 \"Test aborted.\"",
            "aborts 1",
            "write ABORT none \"Test aborted.\"",
            "word C0000001",
            "trace 10 \"Test did not execute all required steps.\"",
            "failures 1",
            "write FAIL none \"Test did not execute all required steps.\"",
        }));
    EXPECT_EQ(TestRecord().TestStatus(), 0xC0000000u);
    EXPECT_EQ(Counts(), "failures 1, aborts 1, warnings 0, infos 0, unknowns 0");
    EXPECT_EQ(
        Suite().Meta(),
        (CTestSuiteLog::Pairs{{"Test-Fail", "T1 [Fails (1); Aborts (1); Warnings (0)]"}}));
}

TEST_F(CMXLogCloseTest, AnAbortEntryNeedsNoSecondOne) {
    Start();
    Enter(TEST_STATUS_ABORT, "a");
    Written();
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Written(), (Lines{
                       "FAIL none \"Test did not execute all required steps.\"",
                       R"(INFO failed "\nStop time: Nov 14, 2026 - 17:08:36")",
                       R"(INFO failed "Duration:  0 seconds.\n")",
                       R"(INFO failed "Stopping Test [ T1:\n     Number of: )"
                       R"(Fails (1); Aborts (1); Warnings (0) ]\r\n\r\n")",
                   }));
    EXPECT_EQ(TestRecord().TestStatus(), 0xC0000000u);
}

TEST_F(CMXLogCloseTest, AnotherRunClosedWithAFailureAbortsWithoutAWord) {
    OpenOtherRun();
    Start();
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_FAIL), TEST_STATUS_ABORT);
    EXPECT_EQ(Seen(), (Lines{"word 80000001", "active no", "result 40000000"}));
}

TEST_F(CMXLogCloseTest, AnotherRunClosedWithAFailureIsReportedAtLevelInternal) {
    OpenOtherRun();
    Level(Internal);
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_FAIL), TEST_STATUS_ABORT);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001",
                    "warnings 1",
                    "write WARNING warning \"TEST_STATUS has TEST_STATUS_FAIL set but not "
                    "TEST_STATUS_ABORT: (status = 0x80000001).\"",
                    "active no",
                    "result 40000000",
                }));
}

TEST_F(CMXLogCloseTest, AFailureEntryOfAnotherRunCountsAndReturnsAsAnAbort) {
    OpenOtherRun();
    Start();
    Enter(TEST_STATUS_FAIL, "f");
    Watch();
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_ABORT);
    EXPECT_EQ(Seen(), (Lines{"word C0000001", "active no", "result 40000000"}));
    EXPECT_EQ(Counts(), "failures 0, aborts 1, warnings 0, infos 0, unknowns 0");
}

TEST_F(CMXLogCloseTest, AnotherRunClosedWithAnAbortHasAnAbortEntry) {
    OpenOtherRun();
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_ABORT), TEST_STATUS_ABORT);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 40000001",
                    "aborts 1",
                    "write ABORT none \"Test aborted.\"",
                    "active no",
                    "result 40000000",
                }));
}

TEST_F(CMXLogCloseTest, AnotherRunNeverEntersTheResults) {
    OpenOtherRun();
    Start();
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Suite().Meta(), CTestSuiteLog::Pairs{});
    EXPECT_EQ(TestRecord().TestStatus(), TEST_STATUS_SUCCESS);
}

TEST_F(CMXLogCloseTest, WithoutAGlobalLogThereAreNoStopLines) {
    Log().GlobalLogExists(false);
    Start();
    Watch();
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Seen(), (Lines{"active no", "result 00000001"}));
}

TEST_F(CMXLogCloseTest, AFailedTestWithAWarningIsFiledAsPassed) {
    Start();
    Enter(TEST_STATUS_FAIL, "f");
    Enter(TEST_STATUS_WARNING, "w");
    Written();
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Written(), (Lines{
                       R"(INFO failed "\nStop time: Nov 14, 2026 - 17:08:36")",
                       R"(INFO failed "Duration:  0 seconds.\n")",
                       R"(INFO failed "Stopping Test [ T1:\n     Number of: )"
                       R"(Fails (1); Aborts (0); Warnings (1) ]\r\n\r\n")",
                   }));
    EXPECT_EQ(
        Suite().Meta(),
        (CTestSuiteLog::Pairs{{"Test-Pass", "T1 [Fails (1); Aborts (0); Warnings (1)]"}}));
    EXPECT_EQ(TestRecord().TestStatus(), 0x80000000u);
}

TEST_F(CMXLogCloseTest, TheResultOfTheRecordKeepsTheAbort) {
    EXPECT_EQ(Stop(0xC0000000), TEST_STATUS_FAIL);
    EXPECT_EQ(TestRecord().TestStatus(), 0xC0000000u);
}

// UpdateTestStatus.

TEST_F(CMXLogCloseTest, TheOperatorsAbortIsWrittenInATrueTest) {
    TestRecord().m_AbortedByUser = true;
    Watch();
    EXPECT_EQ(Log().UpdateTestStatus(), 0xC0000000u);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 40000001",
                    "aborts 1",
                    "write ABORT none \"Test aborted by user.\"",
                    "word C0000001",
                    "failures 1",
                    "write FAIL none \"Test did not execute all required steps.\"",
                }));
}

TEST_F(CMXLogCloseTest, TheOperatorsAbortIsWrittenInAnotherRun) {
    OpenOtherRun();
    TestRecord().m_AbortedByUser = true;
    Watch();
    EXPECT_EQ(Log().UpdateTestStatus(), TEST_STATUS_ABORT);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 40000001",
                    "aborts 1",
                    "write ABORT none \"Aborted by user.\"",
                }));
}

TEST_F(CMXLogCloseTest, CountsWithoutTheirBitsSetThem) {
    OpenOtherRun();
    TestRecord().IncrAborts();
    TestRecord().IncrFailures();
    Watch();
    EXPECT_EQ(Log().UpdateTestStatus(), TEST_STATUS_ABORT);
    EXPECT_EQ(Seen(), Lines{"word C0000001"});
}

TEST_F(CMXLogCloseTest, ACountedFailureFailsATrueTestWithoutAnEntry) {
    TestRecord().IncrFailures();
    Watch();
    EXPECT_EQ(Log().UpdateTestStatus(), TEST_STATUS_FAIL);
    EXPECT_EQ(Seen(), Lines{"word 80000001"});
}

TEST_F(CMXLogCloseTest, ACountedAbortIsNotWrittenAgainButFailsATrueTest) {
    TestRecord().IncrAborts();
    Watch();
    EXPECT_EQ(Log().UpdateTestStatus(), 0xC0000000u);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word C0000001",
                    "failures 1",
                    "write FAIL none \"Test did not execute all required steps.\"",
                }));
}

TEST_F(CMXLogCloseTest, VerdictEntriesShowInTheQuietestRun) {
    Level(Quiet);
    EXPECT_EQ(Stop(TEST_STATUS_ABORT), TEST_STATUS_FAIL);
    OpenTrueTest();
    EXPECT_EQ(Stop(TEST_STATUS_FAIL), TEST_STATUS_FAIL);
    OpenTrueTest();
    TestRecord().m_AbortedByUser = true;
    EXPECT_EQ(Stop(), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Written(), (Lines{
                       "ABORT none \"Test aborted.\"",
                       "FAIL none \"Test did not execute all required steps.\"",
                       "FAIL none \"Test failed.\"",
                       "ABORT none \"Test aborted by user.\"",
                       "FAIL none \"Test did not execute all required steps.\"",
                   }));
}

TEST_F(CMXLogCloseTest, VerdictEntriesBreakAsAnyOther) {
    FakePrompt prompt(m_Journal);
    Log().EnableBreakOnLogFailure(&prompt);
    Watch();
    Stop(TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001",
                    "failures 1",
                    "prompt \"Test Failure:  Test failed.\" 0 true null null null",
                    "write FAIL none \"Test failed.\"",
                    "active no",
                    "result 80000000",
                }));
}

TEST_F(CMXLogCloseTest, WithLoggingOffNoVerdictIsWrittenAndTheTestDoesNotPassAllTheSame) {
    Log().DisableLogging();
    Enter(TEST_STATUS_ABORT, "a");
    Watch();
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_FAIL);
    EXPECT_EQ(Seen(), (Lines{"word C0000001", "active no", "result C0000000"}));
}

TEST_F(CMXLogCloseTest, ANotLoggedBitIsReportedAndWarns) {
    Level(Diagnostic);
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_NOT_LOGGED), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 08000001",
                    "warnings 1",
                    "write WARNING diagnostic \"Unexpected TEST_STATUS return value element: "
                    "TEST_STATUS_NOT_LOGGED\"",
                    "active no",
                    "result 00000001",
                }));
}

TEST_F(CMXLogCloseTest, AnErrorBitIsReportedAndWarns) {
    Level(Diagnostic);
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_ERROR), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 08000001",
                    "warnings 1",
                    "write WARNING diagnostic \"Unexpected TEST_STATUS return value element: "
                    "TEST_STATUS_ERROR\"",
                    "active no",
                    "result 00000001",
                }));
}

TEST_F(CMXLogCloseTest, BelowDiagnosticTheReportsOfMisusedElementsStillWarn) {
    Watch();
    EXPECT_EQ(Stop(TEST_STATUS_ERROR), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Seen(), (Lines{"word 08000001", "active no", "result 00000001"}));
}

TEST_F(CMXLogCloseTest, OfBothMisusedElementsOnlyTheFirstIsReported) {
    Level(Diagnostic);
    EXPECT_EQ(Stop(TEST_STATUS_NOT_LOGGED | TEST_STATUS_ERROR), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Written(), Lines{"WARNING diagnostic \"Unexpected TEST_STATUS return value element: "
                         "TEST_STATUS_NOT_LOGGED\""});
}

TEST_F(CMXLogCloseTest, AfterAVerdictEntryNeitherMisusedElementIsReported) {
    Level(Diagnostic);
    EXPECT_EQ(
        Stop(TEST_STATUS_FAIL | TEST_STATUS_NOT_LOGGED | TEST_STATUS_ERROR), TEST_STATUS_FAIL);
    EXPECT_EQ(Written(), Lines{"FAIL none \"Test failed.\""});
    EXPECT_EQ(Log().TestStatus(), 0x80000001u);
}

TEST_F(CMXLogCloseTest, OneUnexpectedEntryIsReportedAtTheClose) {
    Level(Diagnostic);
    TestRecord().IncrUnknowns();
    TraceOn();
    Watch();
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "warnings 1",
                    "write WARNING diagnostic \"Test log has 1 unexpected log entry\"",
                    "active no",
                    "result 00000001",
                }));
    EXPECT_EQ(Log().TestStatus(), 0x00000001u);
}

TEST_F(CMXLogCloseTest, SeveralUnexpectedEntriesAreReportedAtTheClose) {
    Level(Diagnostic);
    TestRecord().IncrUnknowns();
    TestRecord().IncrUnknowns();
    Stop();
    EXPECT_EQ(Written(), Lines{"WARNING diagnostic \"Test log has 2 unexpected log entries\""});
}

TEST_F(CMXLogCloseTest, BelowDiagnosticUnexpectedEntriesAreTracedAndNotCounted) {
    TestRecord().IncrUnknowns();
    Level(Verbose);
    TraceOn();
    Watch();
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Seen(), (Lines{
                    "trace 12 \"Test log has 1 unexpected log entry\"",
                    "active no",
                    "result 00000001",
                }));
}

TEST_F(CMXLogCloseTest, NeitherSwitchStopsTheReportOfUnexpectedEntries) {
    Level(Internal);
    TestRecord().IncrUnknowns();
    Log().DisableLogging();
    Log().EnableLogOnlyFailures();
    Stop();
    EXPECT_EQ(Written(), Lines{"WARNING diagnostic \"Test log has 1 unexpected log entry\""});
}

TEST_F(CMXLogCloseTest, TheUnexpectedEntriesTextIsIndentedTwice) {
    Indent const indent(1);
    Level(Diagnostic);
    TestRecord().IncrUnknowns();
    Log().UpdateTestStatus();
    EXPECT_EQ(Written(), Lines{"WARNING diagnostic \"    Test log has 1 unexpected log entry\""});
}

TEST_F(CMXLogCloseTest, UnexpectedEntriesAreReportedBehindAllElse) {
    Level(Diagnostic);
    TestRecord().IncrUnknowns();
    TestRecord().m_AbortedByUser = true;
    Stop();
    EXPECT_EQ(
        Written(), (Lines{
                       "ABORT none \"Test aborted by user.\"",
                       "FAIL none \"Test did not execute all required steps.\"",
                       "WARNING diagnostic \"Test log has 1 unexpected log entry\"",
                   }));
}

TEST_F(CMXLogCloseTest, MisusedElementsAreReportedBeforeUnexpectedEntries) {
    Level(Diagnostic);
    TestRecord().IncrUnknowns();
    Stop(TEST_STATUS_ERROR);
    EXPECT_EQ(
        Written(), (Lines{
                       "WARNING diagnostic \"Unexpected TEST_STATUS return value element: "
                       "TEST_STATUS_ERROR\"",
                       "WARNING diagnostic \"Test log has 1 unexpected log entry\"",
                   }));
}

TEST_F(CMXLogCloseTest, TheReportOfUnexpectedEntriesHasACopyOfTheDiagnosticLook) {
    Level(Diagnostic);
    TestRecord().IncrUnknowns();
    Log().UpdateTestStatus();
    EXPECT_NE(Log().m_LastFormat, &CMXLog::DefaultDiagnosticFormat());
}
