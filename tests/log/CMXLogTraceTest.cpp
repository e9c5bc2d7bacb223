// The log's texts in the trace: each point has its number.
#include <algorithm>

#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogTraceTest : public LogTest {
protected:
    CMXLogTraceTest() {
        TraceOn();
        Watch();
    }

    // The trace alone.
    Lines Traced() {
        Lines lines = Seen();
        std::erase_if(lines, [](auto const & line) { return !line.starts_with("trace "); });
        return lines;
    }
};

TEST_F(CMXLogTraceTest, AnEntryIsNumber10) {
    Enter(TEST_STATUS_INFO, "shown");
    Enter(TEST_STATUS_INFO, Internal, "dropped");
    EXPECT_EQ(Traced(), (Lines{"trace 10 \"shown\"", "trace 10 \"dropped\""}));
}

TEST_F(CMXLogTraceTest, AnEntryWithLoggingOffIsNotTraced) {
    Log().DisableLogging();
    Enter(TEST_STATUS_INFO, "off");
    EXPECT_EQ(Traced(), Lines{});
}

TEST_F(CMXLogTraceTest, AnEntryWithoutATextReadsNull) {
    char const * const none = nullptr;
    EXPECT_EQ(Log().DoWrite(TEST_STATUS_INFO, Internal, nullptr, none), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Traced(), Lines{"trace 10 \"NULL\""});
}

TEST_F(CMXLogTraceTest, WideTextIsTracedAsUtf8) {
    Log().DoWrite(TEST_STATUS_INFO, Quiet, nullptr, L"\u20AC");
    EXPECT_EQ(Traced(), Lines{R"(trace 10 "\xE2\x82\xAC")"});
}

TEST_F(CMXLogTraceTest, TheStartLineIsNumber11AndTheHeadingIsNotTraced) {
    Start();
    EXPECT_EQ(Traced(), Lines{R"(trace 11 "Start time: Nov 14, 2026 - 17:08:36\r\n")"});
}

TEST_F(CMXLogTraceTest, ADroppedOwnEntryIsNumber12AndAShownOneIsNotTraced) {
    CBasicFormattedString<char> const text("own");
    Log().SimulateLog(TEST_STATUS_WARNING, Verbose, text);
    Log().SimulateLog(TEST_STATUS_WARNING, Normal, text);
    EXPECT_EQ(Traced(), Lines{"trace 12 \"own\""});
}

TEST_F(CMXLogTraceTest, TheDroppedReportOfUnexpectedEntriesIsNumber12) {
    TestRecord().IncrUnknowns();
    Log().UpdateTestStatus();
    EXPECT_EQ(Traced(), Lines{"trace 12 \"Test log has 1 unexpected log entry\""});
    Level(Diagnostic);
    Log().UpdateTestStatus();
    EXPECT_EQ(Traced(), Lines{});
}

TEST_F(CMXLogTraceTest, StopTimeDurationAndClosingAreNumbers13To16WithoutHeldText) {
    Start();
    Traced();
    Log().DoStopTest(TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Traced(), (Lines{
                      R"(trace 13 "\nStop time: Nov 14, 2026 - 17:08:36")",
                      R"(trace 14 "Duration:  0 seconds.\n")",
                      R"(trace 16 "Stopping Test [ T1:\n     Number of: )"
                      R"(Fails (0); Aborts (0); Warnings (0) ]\r\n\r\n")",
                  }));
}

TEST_F(CMXLogTraceTest, HeldTextThatIsShownIsNumber15) {
    Start();
    Log().EnableLogOnlyFailures();
    Enter(TEST_STATUS_FAIL, "held ");
    Traced();
    Log().DoStopTest(TEST_STATUS_FAIL);
    EXPECT_EQ(
        Traced(), (Lines{
                      R"(trace 13 "\nStop time: Nov 14, 2026 - 17:08:36")",
                      R"(trace 14 "Duration:  0 seconds.\n")",
                      R"(trace 15 "held Stopping Test [ T1:\n     Number of: )"
                      R"(Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")",
                  }));
}

TEST_F(CMXLogTraceTest, HeldTextThatIsNotShownIsNotTraced) {
    Log().EnableLogOnlyFailures();
    Start();
    Traced();
    Log().DoStopTest(TEST_STATUS_SUCCESS);
    EXPECT_EQ(
        Traced(), (Lines{
                      R"(trace 13 "\nStop time: Nov 14, 2026 - 17:08:36")",
                      R"(trace 14 "Duration:  0 seconds.\n")",
                  }));
}

TEST_F(CMXLogTraceTest, SummaryAndResultsAreNumbers17And18) {
    TestRecord().IncrInfo();
    Log().DumpSummaryCounts();
    EXPECT_EQ(
        Traced(),
        (Lines{
            R"(trace 17 "TEST SUITE SUMMARY:\n    [ Fails (0); Aborts (0); Warnings (0) ]\n")",
            R"(trace 18 "TEST RESULTS:\n    [ Passed (0); Failed (1) ]")",
        }));
}
