// The road of one entry: merged, traced, filtered, converted, counted, shown.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogWriteTest : public LogTest {};

TEST_F(CMXLogWriteTest, AnEntryIsMergedThenTracedThenCountedThenWritten) {
    TraceOn();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_WARNING, "w"), TEST_STATUS_WARNING);
    EXPECT_EQ(
        Seen(),
        (Lines{"word 08000001", "trace 10 \"w\"", "warnings 1", "write WARNING none \"w\""}));
}

TEST_F(CMXLogWriteTest, EachElementIsWrittenAndCountedAsItself) {
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_INFO, "i"), TEST_STATUS_INFO);
    EXPECT_EQ(Enter(TEST_STATUS_ERROR, "e"), TEST_STATUS_ERROR);
    EXPECT_EQ(Enter(TEST_STATUS_WARNING, "w"), TEST_STATUS_WARNING);
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_FAIL);
    EXPECT_EQ(Enter(TEST_STATUS_ABORT, "a"), TEST_STATUS_ABORT);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 04000001",
                    "infos 1",
                    "write INFO none \"i\"",
                    "infos 2",
                    "write ERROR none \"e\"",
                    "word 0C000001",
                    "warnings 1",
                    "write WARNING none \"w\"",
                    "word 8C000001",
                    "failures 1",
                    "write FAIL none \"f\"",
                    "word CC000001",
                    "aborts 1",
                    "write ABORT none \"a\"",
                }));
}

TEST_F(CMXLogWriteTest, AFilteredFailureIsNotCountedAndStillFailsTheWord) {
    TraceOn();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, Verbose, "f"), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Seen(), (Lines{"word 80000001", "trace 10 \"f\""}));
}

TEST_F(CMXLogWriteTest, WithLoggingOffAnAbortEntersTheWordAndNothingElse) {
    TraceOn();
    Log().DisableLogging();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_ABORT), 0u);
    EXPECT_EQ(Seen(), Lines{"word 40000001"});
}

TEST_F(CMXLogWriteTest, WithLoggingOffTheLevelIsNotAsked) {
    Log().DisableLogging();
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, Internal, "f"), 0u);
    EXPECT_EQ(Log().TestStatus(), 0x80000001u);
}

TEST_F(CMXLogWriteTest, AnEntryShowsWhenItsLevelIsNotAboveTheRuns) {
    for (int run : {0, 1, 2, 3, 4, 5, 6, 254, 255})
        for (int level : {0, 1, 2, 3, 4, 5, 6, 254, 255}) {
            Level(run);
            auto const answer =
                Enter(TEST_STATUS_INFO, static_cast<eQNLogVerbosity>(level), "text");
            EXPECT_EQ(answer, level <= run ? TEST_STATUS_INFO : TEST_STATUS_NOT_LOGGED)
                << level << " in a run of " << run;
        }
}

TEST_F(CMXLogWriteTest, ErrorAndNotLoggedNeverStayInTheWord) {
    Enter(0xFFFFFFFF);
    EXPECT_EQ(Log().TestStatus(), 0xDFFFFFFDu);
}

TEST_F(CMXLogWriteTest, AFilteredErrorDoesNotStayEither) {
    Enter(0x20000002, Internal, "e");
    EXPECT_EQ(Log().TestStatus(), 0x00000001u);
}

TEST_F(CMXLogWriteTest, SuccessIsWrittenAsInformationBehindAWarning) {
    Level(Diagnostic);
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_SUCCESS, "s"), TEST_STATUS_INFO);
    EXPECT_EQ(
        Seen(), (Lines{
                    "warnings 1",
                    "write WARNING diagnostic \"TEST_STATUS_SUCCESS isn't a valid status for "
                    "logging--converting to TEST_STATUS_INFORMATION: (status = 0x00000001)\"",
                    "infos 1",
                    "write INFO none \"s\"",
                }));
}

TEST_F(CMXLogWriteTest, SuccessOutsideATestIsWrittenInTheSameWay) {
    Level(Diagnostic);
    Stop();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_SUCCESS, "s"), TEST_STATUS_INFO);
    EXPECT_EQ(
        Seen(), (Lines{
                    "warnings 1",
                    "write WARNING diagnostic \"TEST_STATUS_SUCCESS isn't a valid status for "
                    "logging--converting to TEST_STATUS_INFORMATION: (status = 0x00000001)\"",
                    "infos 1",
                    "write INFO none \"s\"",
                }));
}

TEST_F(CMXLogWriteTest, TheWarningAboutSuccessIsDroppedBelowDiagnostic) {
    Level(Verbose);
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_SUCCESS, "s"), TEST_STATUS_INFO);
    EXPECT_EQ(Seen(), (Lines{"infos 1", "write INFO none \"s\""}));
}

TEST_F(CMXLogWriteTest, AnEntryWithoutAStatusIsUnexpected) {
    Watch();
    EXPECT_EQ(Enter(0, "u"), 0u);
    EXPECT_EQ(Seen(), (Lines{"unknowns 1", "write 0 none \"u\""}));
}

TEST_F(CMXLogWriteTest, AnEntryOfNotLoggedIsUnexpectedAndLeavesTheWord) {
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_NOT_LOGGED, "n"), 0u);
    EXPECT_EQ(Seen(), (Lines{"unknowns 1", "write 0 none \"n\""}));
}

TEST_F(CMXLogWriteTest, AnInvalidBitStaysInTheWordForGood) {
    Watch();
    EXPECT_EQ(Enter(0x10000000, "x"), 0u);
    EXPECT_EQ(Seen(), (Lines{"word 10000001", "unknowns 1", "write 0 none \"x\""}));
    Enter(TEST_STATUS_INFO);
    EXPECT_EQ(Log().TestStatus(), 0x14000001u);
}

TEST_F(CMXLogWriteTest, AnEntryOutsideATrueTestFailsAsAnAbort) {
    OpenOtherRun();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_ABORT);
    EXPECT_EQ(Seen(), (Lines{"word 80000001", "aborts 1", "write ABORT none \"f\""}));
}

TEST_F(CMXLogWriteTest, ADiagnosticEntryWithoutALookGetsTheDiagnosticOne) {
    Level(Internal);
    Enter(TEST_STATUS_INFO, Diagnostic, "d");
    Enter(TEST_STATUS_FAIL, Diagnostic, "f");
    Enter(TEST_STATUS_INFO, Verbose, "v");
    Enter(TEST_STATUS_INFO, static_cast<eQNLogVerbosity>(6), "6");
    Enter(TEST_STATUS_INFO, Internal, "i");
    EXPECT_EQ(
        Written(), (Lines{
                       "INFO diagnostic \"d\"",
                       "FAIL diagnostic \"f\"",
                       "INFO none \"v\"",
                       "INFO none \"6\"",
                       "INFO none \"i\"",
                   }));
}

TEST_F(CMXLogWriteTest, ALookOfTheCallersIsHandedOnAtEveryLevel) {
    Level(Diagnostic);
    CFormatInfo const & look = CMXLog::DefaultWarningFormat();
    Log().DoWrite(TEST_STATUS_INFO, Normal, &look, "n");
    Log().DoWrite(TEST_STATUS_INFO, Diagnostic, &look, "d");
    EXPECT_EQ(Written(), (Lines{"INFO warning \"n\"", "INFO warning \"d\""}));
}

TEST_F(CMXLogWriteTest, WhatTheSinkAnswersIsIgnored) {
    Log().m_Answer = TS_WRITE_FAILED;
    EXPECT_EQ(Enter(TEST_STATUS_WARNING), TEST_STATUS_WARNING);
}

TEST_F(CMXLogWriteTest, WideTextArrivesAsUtf8) {
    Watch();
    EXPECT_EQ(
        Log().DoWrite(TEST_STATUS_INFO, Quiet, &CMXLog::DefaultFailFormat(), L"caf\u00E9 \u20AC"),
        TEST_STATUS_INFO);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 04000001",
                    "infos 1",
                    R"(write INFO fail "caf\xC3\xA9 \xE2\x82\xAC")",
                }));
}

TEST_F(CMXLogWriteTest, WideTextIsFilteredLikeNarrowText) {
    EXPECT_EQ(Log().DoWrite(TEST_STATUS_FAIL, Verbose, nullptr, L"wide"), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Log().TestStatus(), 0x80000001u);
}

TEST_F(CMXLogWriteTest, APercentSignInATextIsNotADirective) {
    Enter(TEST_STATUS_INFO, "100% %s %d");
    Log().Write(TEST_STATUS_INFO, "%s", "100% %s %d");
    EXPECT_EQ(Written(), (Lines{"INFO none \"100% %s %d\"", "INFO none \"100% %s %d\""}));
}

TEST_F(CMXLogWriteTest, AnEntryOutlivesWhatTheSinkFormatsForAWarningBeforeIt) {
    Level(Diagnostic);
    Log().m_OnWrite = [](auto const &) {
        FormatText(nullptr, nullptr, FormatPadding{0, 0}, "overwritten");
    };
    Log().Write(TEST_STATUS_SUCCESS, "%s", "success");
    Log().Write(0, "%s", "nothing");
    OpenOtherRun();
    Log().Write(TEST_STATUS_FAIL, "%s", "failure");
    Lines const written = Written();
    ASSERT_EQ(written.size(), 6u);
    EXPECT_EQ(
        (Lines{written[1], written[3], written[5]}),
        (Lines{"INFO none \"success\"", "0 none \"nothing\"", "ABORT none \"failure\""}));
}

TEST_F(CMXLogWriteTest, TheDiagnosticLookIsACopyOfTheLogsOwnMadeOnce) {
    Level(Diagnostic);
    Enter(TEST_STATUS_INFO, Diagnostic, "one");
    CFormatInfo const * const look = Log().m_LastFormat;
    Enter(TEST_STATUS_FAIL, Diagnostic, "two");
    EXPECT_EQ(Log().m_LastFormat, look);
    EXPECT_NE(look, &CMXLog::DefaultDiagnosticFormat());
}

// The three public forms.

TEST_F(CMXLogWriteTest, WriteFormatsItsArguments) {
    EXPECT_EQ(
        Log().Write(TEST_STATUS_INFO, "%s has %d ports, 0x%04X", "hub", 4, 0xABu),
        TEST_STATUS_INFO);
    EXPECT_EQ(Written(), Lines{"INFO none \"hub has 4 ports, 0x00AB\""});
}

TEST_F(CMXLogWriteTest, WriteTakesItsLevelFromTheStatus) {
    struct Case {
        int run;
        Lines shown;
    };
    for (auto const & [run, shown] :
         {Case{Quiet, {}},
          {Minimal, {"FAIL none \"f\"", "ABORT none \"a\"", "ERROR none \"e\""}},
          {Low, {"FAIL none \"f\"", "ABORT none \"a\"", "ERROR none \"e\"", "WARNING none \"w\""}},
          {Normal,
           {"FAIL none \"f\"", "ABORT none \"a\"", "ERROR none \"e\"", "WARNING none \"w\"",
            "INFO none \"i\""}}}) {
        Level(run);
        Log().Write(TEST_STATUS_FAIL, "f");
        Log().Write(TEST_STATUS_ABORT, "a");
        Log().Write(TEST_STATUS_ERROR, "e");
        Log().Write(TEST_STATUS_WARNING, "w");
        Log().Write(TEST_STATUS_INFO, "i");
        EXPECT_EQ(Written(), shown) << "run level " << run;
    }
}

TEST_F(CMXLogWriteTest, WriteTakesALevel) {
    EXPECT_EQ(Log().Write(TEST_STATUS_FAIL, Verbose, "%d", 1), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Log().Write(TEST_STATUS_INFO, Quiet, "%d", 2), TEST_STATUS_INFO);
    EXPECT_EQ(Written(), Lines{"INFO none \"2\""});
    EXPECT_EQ(Log().TestStatus(), 0x84000001u);
}

TEST_F(CMXLogWriteTest, WriteTakesALevelAndALook) {
    CFormatInfo const & look = CMXLog::DefaultFailFormat();
    EXPECT_EQ(Log().Write(TEST_STATUS_INFO, Quiet, &look, "%d", 3), TEST_STATUS_INFO);
    EXPECT_EQ(Log().Write(TEST_STATUS_INFO, Quiet, nullptr, "%d", 4), TEST_STATUS_INFO);
    EXPECT_EQ(Log().Write(TEST_STATUS_INFO, Verbose, &look, "%d", 5), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Written(), (Lines{"INFO fail \"3\"", "INFO none \"4\""}));
}

TEST_F(CMXLogWriteTest, WriteMergesItsStatusWhateverBecomesOfTheEntry) {
    Level(Quiet);
    EXPECT_EQ(Log().Write(TEST_STATUS_FAIL, "dropped"), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Log().TestStatus(), 0x80000001u);
    Log().DisableLogging();
    EXPECT_EQ(Log().Write(TEST_STATUS_ABORT, "off"), 0u);
    EXPECT_EQ(Log().Write(0x20000002, Quiet, "off"), 0u);
    EXPECT_EQ(Log().TestStatus(), 0xC0000001u);
    EXPECT_EQ(Written(), Lines{});
}

TEST_F(CMXLogWriteTest, WriteIsNotIndented) {
    Indent const indent(2);
    Log().Write(TEST_STATUS_INFO, "%s", "x");
    EXPECT_EQ(Written(), Lines{"INFO none \"x\""});
}

TEST_F(CMXLogWriteTest, WriteOfADroppedEntryIsTracedInFull) {
    TraceOn();
    Watch();
    EXPECT_EQ(Log().Write(TEST_STATUS_INFO, Verbose, "%s %d", "x", 1), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Seen(), (Lines{"word 04000001", "trace 10 \"x 1\""}));
}

// Without a suite record nothing is counted, and no test is a true one.

TEST_F(CMXLogWriteTest, WithoutASuiteRecordEntriesAreWrittenAllTheSame) {
    Watch();
    CAppState::TestSuiteLog(nullptr);
    EXPECT_EQ(Enter(TEST_STATUS_INFO, "i"), TEST_STATUS_INFO);
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_ABORT);
    EXPECT_FALSE(Log().TestFailed());
    EXPECT_FALSE(Log().TestAborted());
    EXPECT_EQ(
        Seen(),
        (Lines{
            "word 04000001", "write INFO none \"i\"", "word 84000001", "write ABORT none \"f\""}));
}

TEST_F(CMXLogWriteTest, WithoutASuiteRecordATestRunsToItsEnd) {
    CAppState::TestSuiteLog(nullptr);
    Log().InitTest();
    EXPECT_EQ(Start(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Stop(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(CMXLog::ConvertStatusToReturn(&Log(), TEST_STATUS_NOT_LOGGED), TEST_STATUS_ABORT);
    EXPECT_NO_THROW(m_Log.reset());
}

TEST_F(CMXLogWriteTest, NoTextIsAnEmptyEntry) {
    char const * const narrow = nullptr;
    wchar_t const * const wide = nullptr;
    EXPECT_EQ(Log().DoWrite(TEST_STATUS_INFO, Quiet, nullptr, narrow), TEST_STATUS_INFO);
    EXPECT_EQ(Log().DoWrite(TEST_STATUS_INFO, Quiet, nullptr, wide), TEST_STATUS_INFO);
    EXPECT_EQ(Written(), (Lines{"INFO none \"\"", "INFO none \"\""}));
}
