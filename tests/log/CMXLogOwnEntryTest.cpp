// Entries of the log's own, how an entry is counted, and how it looks.
#include <regex>

#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogOwnEntryTest : public LogTest {
protected:
    using Text = CBasicFormattedString<char>;

    TEST_STATUS Own(TEST_STATUS status, eQNLogVerbosity level, char const * text = "own") {
        return Log().SimulateLog(status, level, Text("%s", text));
    }
};

TEST_F(CMXLogOwnEntryTest, AnOwnEntryIsCountedThenWrittenAndLeavesTheWord) {
    TraceOn();
    Watch();
    EXPECT_EQ(Own(TEST_STATUS_FAIL, Normal), TEST_STATUS_FAIL);
    EXPECT_EQ(Seen(), (Lines{"failures 1", "write FAIL fail \"own\""}));
}

TEST_F(CMXLogOwnEntryTest, ADroppedOwnEntryIsTracedAndNotCounted) {
    TraceOn();
    Watch();
    EXPECT_EQ(Own(TEST_STATUS_FAIL, Verbose), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Seen(), Lines{"trace 12 \"own\""});
}

TEST_F(CMXLogOwnEntryTest, NeitherSwitchStopsAnOwnEntry) {
    Log().DisableLogging();
    Log().EnableLogOnlyFailures();
    Watch();
    EXPECT_EQ(Own(TEST_STATUS_WARNING, Quiet), TEST_STATUS_WARNING);
    EXPECT_EQ(Seen(), (Lines{"warnings 1", "write WARNING warning \"own\""}));
}

TEST_F(CMXLogOwnEntryTest, AnOwnFailureDoesNotBreak) {
    FakePrompt prompt(m_Journal);
    Log().EnableBreakOnLogFailure(&prompt);
    Watch();
    Own(TEST_STATUS_FAIL, Quiet);
    EXPECT_EQ(Seen(), (Lines{"failures 1", "write FAIL fail \"own\""}));
}

TEST_F(CMXLogOwnEntryTest, TheLookFollowsTheStatus) {
    for (TEST_STATUS const status :
         {TEST_STATUS_INFO, TEST_STATUS_WARNING, TEST_STATUS_FAIL, TEST_STATUS_ABORT,
          TEST_STATUS_ERROR, TEST_STATUS_UNKNOWN, TEST_STATUS_INFO | TEST_STATUS_WARNING})
        EXPECT_EQ(Own(status, Normal), status);
    EXPECT_EQ(
        Written(), (Lines{
                       "INFO info \"own\"",
                       "WARNING warning \"own\"",
                       "FAIL fail \"own\"",
                       "ABORT fail \"own\"",
                       "ERROR fail \"own\"",
                       "0 fail \"own\"",
                       "0C000000 fail \"own\"",
                   }));
}

TEST_F(CMXLogOwnEntryTest, AtLevelDiagnosticEveryStatusHasTheDiagnosticLook) {
    Level(Internal);
    Own(TEST_STATUS_INFO, Diagnostic);
    Own(TEST_STATUS_WARNING, Diagnostic);
    Own(TEST_STATUS_FAIL, Diagnostic);
    Own(TEST_STATUS_INFO, Internal);
    EXPECT_EQ(
        Written(), (Lines{
                       "INFO diagnostic \"own\"",
                       "WARNING diagnostic \"own\"",
                       "FAIL diagnostic \"own\"",
                       "INFO info \"own\"",
                   }));
}

TEST_F(CMXLogOwnEntryTest, TheLookIsACopy) {
    Level(Diagnostic);
    Own(TEST_STATUS_INFO, Normal);
    EXPECT_NE(Log().m_LastFormat, &CMXLog::DefaultInfoFormat());
    Own(TEST_STATUS_WARNING, Normal);
    EXPECT_NE(Log().m_LastFormat, &CMXLog::DefaultWarningFormat());
    Own(TEST_STATUS_FAIL, Normal);
    EXPECT_NE(Log().m_LastFormat, &CMXLog::DefaultFailFormat());
    Own(TEST_STATUS_FAIL, Diagnostic);
    EXPECT_NE(Log().m_LastFormat, &CMXLog::DefaultDiagnosticFormat());
}

TEST_F(CMXLogOwnEntryTest, ATextThatWasNotFormattedReadsEmpty) {
    EXPECT_EQ(Log().SimulateLog(TEST_STATUS_INFO, Quiet, Text()), TEST_STATUS_INFO);
    EXPECT_EQ(Written(), Lines{"INFO info \"\""});
}

TEST_F(CMXLogOwnEntryTest, WhatTheSinkAnswersIsIgnored) {
    Log().m_Answer = TS_WRITE_FAILED;
    EXPECT_EQ(Own(TEST_STATUS_WARNING, Quiet), TEST_STATUS_WARNING);
}

// Counting goes by the whole word.

TEST_F(CMXLogOwnEntryTest, EachStatusHasItsCount) {
    Log().IncrementTestLog(TEST_STATUS_FAIL);
    EXPECT_EQ(Counts(), "failures 1, aborts 0, warnings 0, infos 0, unknowns 0");
    Log().IncrementTestLog(TEST_STATUS_WARNING);
    EXPECT_EQ(Counts(), "failures 1, aborts 0, warnings 1, infos 0, unknowns 0");
    Log().IncrementTestLog(TEST_STATUS_ABORT);
    EXPECT_EQ(Counts(), "failures 1, aborts 1, warnings 1, infos 0, unknowns 0");
    Log().IncrementTestLog(TEST_STATUS_INFO);
    EXPECT_EQ(Counts(), "failures 1, aborts 1, warnings 1, infos 1, unknowns 0");
    Log().IncrementTestLog(TEST_STATUS_ERROR);
    EXPECT_EQ(Counts(), "failures 1, aborts 1, warnings 1, infos 2, unknowns 0");
}

TEST_F(CMXLogOwnEntryTest, EveryOtherWordCountsAsUnexpected) {
    for (TEST_STATUS const status :
         {0u, 1u, 2u, 0xC0000000u, 0x80000001u, 0x24000000u, 0x10000000u})
        Log().IncrementTestLog(status);
    EXPECT_EQ(Counts(), "failures 0, aborts 0, warnings 0, infos 0, unknowns 7");
}

// Looks.

TEST_F(CMXLogOwnEntryTest, TheDefaultLooksAreThese) {
    EXPECT_EQ(Line(CMXLog::DefaultInfoFormat()), "mask=00000000 effects=44000000 @0,0");
    EXPECT_EQ(
        Line(CMXLog::DefaultWarningFormat()), "mask=40000000 effects=04000000 color=0000FF @0,0");
    EXPECT_EQ(
        Line(CMXLog::DefaultFailFormat()),
        "mask=40400001 effects=04000001 color=0000FF weight=700 @0,0");
    EXPECT_EQ(
        Line(CMXLog::DefaultDiagnosticFormat()),
        "mask=44400003 effects=00000003 color=0000FF weight=700 back=00FFFF @0,0");
}

TEST_F(CMXLogOwnEntryTest, FailureAbortErrorAndUnknownShareOneLook) {
    CFormatInfo const * const look = &CMXLog::DefaultFailFormat();
    EXPECT_EQ(&CMXLog::DefaultAbortFormat(), look);
    EXPECT_EQ(&CMXLog::DefaultErrorFormat(), look);
    EXPECT_EQ(&CMXLog::DefaultUnknownFormat(), look);
}

TEST_F(CMXLogOwnEntryTest, EachStatusHasItsDefaultLook) {
    Level(Diagnostic);
    struct Case {
        TEST_STATUS status;
        CFormatInfo const * look;
    };
    CFormatInfo const * const fail = &CMXLog::DefaultFailFormat();
    for (auto const & [status, look] :
         {Case{TEST_STATUS_INFO, &CMXLog::DefaultInfoFormat()},
          {TEST_STATUS_WARNING, &CMXLog::DefaultWarningFormat()},
          {TEST_STATUS_FAIL, fail},
          {TEST_STATUS_ABORT, fail},
          {TEST_STATUS_ERROR, fail},
          {TEST_STATUS_UNKNOWN, fail}})
        EXPECT_EQ(&CMXLog::GetDefaultFormat(status, m_Log.get()), look) << Hex(status);
    EXPECT_EQ(Written(), Lines{});
}

TEST_F(CMXLogOwnEntryTest, AWordThatIsNotOneElementHasTheFailLookAndIsReported) {
    Level(Diagnostic);
    static std::regex const report(
        "INFO diagnostic \"Unexpected TEST_STATUS 0x[0-9A-F]{8}\\.  Returning TEST_STATUS_UNKNOWN "
        "default format\\.\"");
    for (TEST_STATUS const status : {1u, 2u, 0xC0000000u, 0x0C000000u, 0x10000000u}) {
        SCOPED_TRACE(Hex(status));
        EXPECT_EQ(&CMXLog::GetDefaultFormat(status, m_Log.get()), &CMXLog::DefaultFailFormat());
        Lines const written = Written();
        ASSERT_EQ(written.size(), 1u);
        EXPECT_TRUE(std::regex_match(written[0], report)) << written[0];
    }
    EXPECT_EQ(Counts(), "failures 0, aborts 0, warnings 0, infos 5, unknowns 0");
    EXPECT_EQ(Log().TestStatus(), 0x00000001u);
}

TEST_F(CMXLogOwnEntryTest, WithoutALogSuchAWordHasTheFailLook) {
    EXPECT_EQ(&CMXLog::GetDefaultFormat(1, nullptr), &CMXLog::DefaultFailFormat());
    EXPECT_EQ(&CMXLog::GetDefaultFormat(TEST_STATUS_INFO, nullptr), &CMXLog::DefaultInfoFormat());
}
