// The break on failure, and entries that are held back; entries outside a test.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

class CMXLogHoldBackTest : public LogTest {
protected:
    CMXLogHoldBackTest() { Log().EnableBreakOnLogFailure(&m_Prompt); }

    FakePrompt m_Prompt{m_Journal};
};

TEST_F(CMXLogHoldBackTest, AFailureIsCountedThenShownToTheOperatorThenWritten) {
    TraceOn();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001",
                    "trace 10 \"f\"",
                    "failures 1",
                    "prompt \"Test Failure:  f\" 0 true null null null",
                    "write FAIL none \"f\"",
                }));
}

TEST_F(CMXLogHoldBackTest, WhatThePromptAnswersIsIgnored) {
    m_Prompt.m_Answer = TS_ABORTED;
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_FAIL);
    EXPECT_EQ(Written(), Lines{"FAIL none \"f\""});
    EXPECT_EQ(Log().TestStatus(), 0x80000001u);
}

TEST_F(CMXLogHoldBackTest, AFailureOutlivesWhatThePromptFormats) {
    m_Prompt.m_OnPrompt = [] { FormatText(nullptr, nullptr, FormatPadding{0, 0}, "overwritten"); };
    Log().Write(TEST_STATUS_FAIL, "%s", "the failure");
    EXPECT_EQ(Written(), Lines{"FAIL none \"the failure\""});
}

TEST_F(CMXLogHoldBackTest, APromptMayWriteEntriesOfItsOwn) {
    m_Prompt.m_OnPrompt = [this] { Log().Write(TEST_STATUS_INFO, "%s", "the prompt's own entry"); };
    Log().Write(TEST_STATUS_FAIL, "%s", "the failure");
    EXPECT_EQ(
        Written(), (Lines{"INFO none \"the prompt's own entry\"", "FAIL none \"the failure\""}));
}

TEST_F(CMXLogHoldBackTest, APercentSignInAFailureIsShownAsItIs) {
    Watch();
    Enter(TEST_STATUS_FAIL, "50%d %s");
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001",
                    "failures 1",
                    "prompt \"Test Failure:  50%d %s\" 0 true null null null",
                    "write FAIL none \"50%d %s\"",
                }));
}

TEST_F(CMXLogHoldBackTest, AFailureBesideOtherElementsBreaksToo) {
    Watch();
    Enter(0x8C000000, "f");
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 8C000001",
                    "failures 1",
                    "prompt \"Test Failure:  f\" 0 true null null null",
                    "write FAIL none \"f\"",
                }));
}

TEST_F(CMXLogHoldBackTest, AnAbortDoesNotBreak) {
    Watch();
    Enter(TEST_STATUS_ABORT, "a");
    EXPECT_EQ(Seen(), (Lines{"word 40000001", "aborts 1", "write ABORT none \"a\""}));
}

TEST_F(CMXLogHoldBackTest, AFailureThatIsAlsoAnAbortDoesNotBreak) {
    Watch();
    EXPECT_EQ(Enter(0xC0000000, "a"), TEST_STATUS_ABORT);
    EXPECT_EQ(Seen(), (Lines{"word C0000001", "aborts 1", "write ABORT none \"a\""}));
}

TEST_F(CMXLogHoldBackTest, WarningErrorAndInformationDoNotBreak) {
    Watch();
    Enter(TEST_STATUS_WARNING, "w");
    Enter(TEST_STATUS_ERROR, "e");
    Enter(TEST_STATUS_INFO, "i");
    Enter(0, "u");
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 08000001",
                    "warnings 1",
                    "write WARNING none \"w\"",
                    "infos 1",
                    "write ERROR none \"e\"",
                    "word 0C000001",
                    "infos 2",
                    "write INFO none \"i\"",
                    "unknowns 1",
                    "write 0 none \"u\"",
                }));
}

TEST_F(CMXLogHoldBackTest, AFailureThatIsDroppedDoesNotBreak) {
    Watch();
    Enter(TEST_STATUS_FAIL, Verbose, "f");
    Log().DisableLogging();
    Enter(TEST_STATUS_FAIL, "f");
    EXPECT_EQ(Seen(), Lines{"word 80000001"});
}

TEST_F(CMXLogHoldBackTest, AFailureInARunThatIsNoTrueTestDoesNotBreak) {
    OpenOtherRun();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_ABORT);
    EXPECT_EQ(Seen(), (Lines{"word 80000001", "aborts 1", "write ABORT none \"f\""}));
}

TEST_F(CMXLogHoldBackTest, AFailureOutsideATestDoesNotBreak) {
    Stop();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_FAIL);
    EXPECT_EQ(Seen(), (Lines{"word 80000001", "failures 1", "write FAIL none \"f\""}));
}

TEST_F(CMXLogHoldBackTest, AFailureThatIsHeldBackBreaksAllTheSame) {
    Log().EnableLogOnlyFailures();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_FAIL, "f"), TEST_STATUS_FAIL);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 80000001",
                    "failures 1",
                    "prompt \"Test Failure:  f\" 0 true null null null",
                }));
}

TEST_F(CMXLogHoldBackTest, HeldBackEntriesAreTracedCountedAndAnsweredButNotWritten) {
    TraceOn();
    Log().EnableLogOnlyFailures();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_INFO, "i"), TEST_STATUS_INFO);
    EXPECT_EQ(Enter(TEST_STATUS_WARNING, "w"), TEST_STATUS_WARNING);
    EXPECT_EQ(Enter(TEST_STATUS_SUCCESS, "s"), TEST_STATUS_INFO);
    EXPECT_EQ(Enter(0, "u"), 0u);
    EXPECT_EQ(
        Seen(), (Lines{
                    "word 04000001",
                    "trace 10 \"i\"",
                    "word 0C000001",
                    "infos 1",
                    "trace 10 \"w\"",
                    "warnings 1",
                    "trace 10 \"s\"",
                    "trace 12 \"TEST_STATUS_SUCCESS isn't a valid status for "
                    "logging--converting to TEST_STATUS_INFORMATION: (status = 0x00000001)\"",
                    "infos 2",
                    "trace 10 \"u\"",
                    R"(trace 12 "TEST_STATUS has no valid elements: (status = 0x00000000).")",
                    "unknowns 1",
                }));
}

TEST_F(CMXLogHoldBackTest, HeldBackEntriesAreJoinedWithoutSeparators) {
    Start();
    Log().EnableLogOnlyFailures();
    Enter(TEST_STATUS_INFO, "one");
    Enter(TEST_STATUS_WARNING, "two\n");
    Enter(TEST_STATUS_FAIL, "three");
    Written();
    Stop();
    EXPECT_EQ(
        Written().back(), R"(INFO failed "onetwo\nthreeStopping Test [ T1:\n     Number of: )"
                          R"(Fails (1); Aborts (0); Warnings (1) ]\r\n\r\n")");
}

TEST_F(CMXLogHoldBackTest, AFilteredEntryIsNotHeldBack) {
    Start();
    Log().EnableLogOnlyFailures();
    Enter(TEST_STATUS_INFO, Verbose, "filtered");
    Enter(TEST_STATUS_FAIL, "failure");
    Written();
    Stop();
    EXPECT_EQ(
        Written().back(), R"(INFO failed "failureStopping Test [ T1:\n     Number of: )"
                          R"(Fails (1); Aborts (0); Warnings (0) ]\r\n\r\n")");
}

TEST_F(CMXLogHoldBackTest, OutsideATestNothingIsHeldBack) {
    Stop();
    Log().EnableLogOnlyFailures();
    Watch();
    EXPECT_EQ(Enter(TEST_STATUS_INFO, "i"), TEST_STATUS_INFO);
    EXPECT_EQ(Seen(), (Lines{"word 04000001", "infos 1", "write INFO none \"i\""}));
}

TEST_F(CMXLogHoldBackTest, OutsideATestTheFilterAndTheSwitchHoldAsWell) {
    Stop();
    EXPECT_EQ(Enter(TEST_STATUS_INFO, Verbose, "v"), TEST_STATUS_NOT_LOGGED);
    Log().DisableLogging();
    EXPECT_EQ(Enter(TEST_STATUS_INFO, "off"), 0u);
    EXPECT_EQ(Counts(), "failures 0, aborts 0, warnings 0, infos 0, unknowns 0");
}
