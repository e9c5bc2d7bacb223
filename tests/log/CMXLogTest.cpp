// A log's switches and flags, its beginning and its end.
#include "log/CMXLog.h"

#include <type_traits>

#include <gtest/gtest.h>

#include "log/LogFixture.h"

static_assert(std::is_abstract_v<CMXLog>);
static_assert(std::has_virtual_destructor_v<CMXLog>);

class CMXLogTest : public LogTest {};

TEST_F(CMXLogTest, ANewLogHasAnOpenTestThatWasNotStarted) {
    RecordingSink const log(m_Journal);
    EXPECT_TRUE(log.TestActive());
    EXPECT_FALSE(log.StartTestHasBeenCalled());
    EXPECT_FALSE(log.StopTestHasBeenCalled());
    EXPECT_FALSE(log.GlobalLogExists());
    EXPECT_FALSE(log.SummaryDumped());
    EXPECT_EQ(log.TestStatus(), 0x00000001u);
}

TEST_F(CMXLogTest, ANewLogOpensTheTestInTheRecordAndRingsTheHost) {
    TestRecord().TestName("left over");
    TestRecord().IncrInfo();
    TestRecord().TestStatus(TEST_STATUS_FAIL);
    m_Clock.Advance(24);
    m_Journal.Watch(nullptr);
    RecordingSink const log(m_Journal);
    EXPECT_EQ(
        Seen(), (Lines{
                    "record name \"\"", "infos 0", "start time Nov 14, 2026 - 17:09:00", "result -",
                    "update"}));
}

TEST_F(CMXLogTest, ANewLogLetsNoAbortOutAndLeavesItToTheNextUpdate) {
    AskForAbort(true);
    m_Journal.Watch(nullptr);
    EXPECT_NO_THROW(RecordingSink{m_Journal});
    EXPECT_EQ(Seen(), Lines{"update"});
    EXPECT_EQ(Thrown([] { CUIUpdate::DoUpdate(true); }), "Test Aborted by user.");
}

TEST_F(CMXLogTest, TheStopTimeIsTheEpochUntilATestStops) {
    EXPECT_EQ(Log().MakeStopTimeString(), TimeText(TestClock::time_point()));
}

TEST_F(CMXLogTest, TimesAreShownToTheSecond) {
    EXPECT_EQ(Log().MakeStartTimeString(), "Nov 14, 2026 - 17:08:36");
    Start();
    m_Clock.Advance(86400 + 52 * 60);
    Stop();
    EXPECT_EQ(Log().MakeStartTimeString(), "Nov 14, 2026 - 17:08:36");
    EXPECT_EQ(Log().MakeStopTimeString(), "Nov 15, 2026 - 18:00:36");
}

TEST_F(CMXLogTest, TheEndOfALogResetsTheRunPhaseAndWritesNothing) {
    Enter(TEST_STATUS_FAIL);
    Suite().m_RunPhase = 3;
    m_Journal.Watch(nullptr);
    m_Log.reset();
    EXPECT_EQ(Suite().m_RunPhase, 0u);
    EXPECT_EQ(Seen(), Lines{});
}

TEST_F(CMXLogTest, ClearDoesNothing) {
    Watch();
    EXPECT_EQ(Log().CMXLog::Clear(), TS_SUCCESS);
    EXPECT_EQ(Seen(), Lines{});
}

TEST_F(CMXLogTest, TheGlobalLogFlagIsKept) {
    Log().GlobalLogExists(false);
    EXPECT_FALSE(Log().GlobalLogExists());
    Log().GlobalLogExists(true);
    EXPECT_TRUE(Log().GlobalLogExists());
}

TEST_F(CMXLogTest, EverySwitchAnswersSuccess) {
    FakePrompt prompt(m_Journal);
    EXPECT_EQ(Log().EnableLogOnlyFailures(), TS_SUCCESS);
    EXPECT_EQ(Log().DisableLogOnlyFailures(), TS_SUCCESS);
    EXPECT_EQ(Log().DisableLogging(), TS_SUCCESS);
    EXPECT_EQ(Log().EnableLogging(), TS_SUCCESS);
    EXPECT_EQ(Log().EnableBreakOnLogFailure(&prompt), TS_SUCCESS);
    EXPECT_EQ(Log().DisableBreakOnLogFailure(), TS_SUCCESS);
}

TEST_F(CMXLogTest, LoggingCanBeSwitchedOnAgain) {
    Log().DisableLogging();
    Enter(TEST_STATUS_INFO, "lost");
    Log().EnableLogging();
    Enter(TEST_STATUS_INFO, "kept");
    EXPECT_EQ(Written(), Lines{"INFO none \"kept\""});
}

TEST_F(CMXLogTest, LogOnlyFailuresCanBeSwitchedOff) {
    Log().EnableLogOnlyFailures();
    Enter(TEST_STATUS_INFO, "held back");
    Log().DisableLogOnlyFailures();
    Enter(TEST_STATUS_INFO, "shown");
    EXPECT_EQ(Written(), Lines{"INFO none \"shown\""});
}

TEST_F(CMXLogTest, ABreakWithoutAPromptIsRefused) {
    EXPECT_EQ(Log().EnableBreakOnLogFailure(nullptr), 0x80000000u);
    Watch();
    Enter(TEST_STATUS_FAIL, "f");
    EXPECT_EQ(Seen(), (Lines{"word 80000001", "failures 1", "write FAIL none \"f\""}));
}

TEST_F(CMXLogTest, ARefusedBreakLeavesTheOneThatIsSet) {
    FakePrompt prompt(m_Journal);
    Log().EnableBreakOnLogFailure(&prompt);
    EXPECT_EQ(Log().EnableBreakOnLogFailure(nullptr), 0x80000000u);
    Watch();
    Enter(TEST_STATUS_FAIL, "f");
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001", "failures 1",
                    "prompt \"Test Failure:  f\" 0 true null null null", "write FAIL none \"f\""}));
}

TEST_F(CMXLogTest, ASecondBreakAsksTheSecondPrompt) {
    FakePrompt first(m_Journal);
    Journal elsewhere(m_Bench);
    FakePrompt second(elsewhere);
    Log().EnableBreakOnLogFailure(&second);
    Log().EnableBreakOnLogFailure(&first);
    Watch();
    Enter(TEST_STATUS_FAIL, "f");
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001", "failures 1",
                    "prompt \"Test Failure:  f\" 0 true null null null", "write FAIL none \"f\""}));
}

TEST_F(CMXLogTest, ABreakThatIsSwitchedOffDoesNotPrompt) {
    FakePrompt prompt(m_Journal);
    Log().EnableBreakOnLogFailure(&prompt);
    Log().DisableBreakOnLogFailure();
    Watch();
    Enter(TEST_STATUS_FAIL, "f");
    EXPECT_EQ(Seen(), (Lines{"word 80000001", "failures 1", "write FAIL none \"f\""}));
}

TEST_F(CMXLogTest, ClearTestStatusPutsTheWordBackToSuccess) {
    Enter(0xCC000000);
    Log().ClearTestStatus();
    EXPECT_EQ(Log().TestStatus(), 0x00000001u);
}

TEST_F(CMXLogTest, ATestHasFailedByItsCountAndNotByItsWord) {
    Log().TranslateTestStatus(TS_FAILED);
    EXPECT_FALSE(Log().TestFailed());
    Log().ClearTestStatus();
    TestRecord().IncrFailures();
    EXPECT_TRUE(Log().TestFailed());
    EXPECT_FALSE(Log().TestAborted());
}

TEST_F(CMXLogTest, ATestHasAbortedByItsCountAndNotByItsWord) {
    Log().TranslateTestStatus(0x10000000);
    EXPECT_FALSE(Log().TestAborted());
    Log().ClearTestStatus();
    TestRecord().IncrAborts();
    EXPECT_TRUE(Log().TestAborted());
    EXPECT_FALSE(Log().TestFailed());
}

TEST_F(CMXLogTest, FailureAndAbortAreThoseOfTheCurrentRecord) {
    Enter(TEST_STATUS_FAIL);
    Enter(TEST_STATUS_ABORT);
    EXPECT_TRUE(Log().TestFailed());
    EXPECT_TRUE(Log().TestAborted());
    OpenTrueTest();
    EXPECT_FALSE(Log().TestFailed());
    EXPECT_FALSE(Log().TestAborted());
}

// The level of the run against the warnings about misused words.

TEST_F(CMXLogTest, ARunOfLevelInternalHearsNoWarningAboutAStatus) {
    Level(Internal);
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_SUCCESS, "s"), TEST_STATUS_INFO);
    EXPECT_EQ(Enter(0, "none"), 0u);
    EXPECT_EQ(Enter(TEST_STATUS_NOT_LOGGED, "n"), 0u);
    EXPECT_EQ(Enter(0x04000004, "i"), TEST_STATUS_INFO);
    EXPECT_EQ(
        Seen(),
        (Lines{
            "infos 1", "write INFO none \"s\"", "unknowns 1", "write 0 none \"none\"", "unknowns 2",
            "write 0 none \"n\"", "word 04000005", "infos 2", "write INFO none \"i\""}));
}

TEST_F(CMXLogTest, ARunJustBelowInternalHearsThem) {
    Level(254);
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_SUCCESS, "s"), TEST_STATUS_INFO);
    EXPECT_EQ(
        Seen(), (Lines{
                    "warnings 1",
                    "write WARNING diagnostic \"TEST_STATUS_SUCCESS isn't a valid status for "
                    "logging--converting to TEST_STATUS_INFORMATION: (status = 0x00000001)\"",
                    "infos 1", "write INFO none \"s\""}));
}

TEST_F(CMXLogTest, ALevelOfSixLiesBetweenDiagnosticAndInternal) {
    Level(6);
    EXPECT_EQ(Enter(TEST_STATUS_INFO, Diagnostic, "5"), TEST_STATUS_INFO);
    EXPECT_EQ(Enter(TEST_STATUS_INFO, static_cast<eQNLogVerbosity>(6), "6"), TEST_STATUS_INFO);
    EXPECT_EQ(
        Enter(TEST_STATUS_INFO, static_cast<eQNLogVerbosity>(7), "7"), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Enter(TEST_STATUS_INFO, Internal, "255"), TEST_STATUS_NOT_LOGGED);
    EXPECT_EQ(Written(), (Lines{"INFO diagnostic \"5\"", "INFO none \"6\""}));
}
