// What an entry carries and a test returns: the two conversions of a status word.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

namespace {

// One message about a status word, as the sink gets it.
std::string Warning(std::string const & text) { return "WARNING diagnostic " + Quoted(text); }
std::string Report(std::string const & text) { return "WARNING warning " + Quoted(text); }

std::string NoValidElements(char const * word) {
    return Warning("TEST_STATUS has no valid elements: (status = 0x" + std::string(word) + ").");
}
std::string InvalidElements(char const * word) {
    return Warning("TEST_STATUS has invalid elements: (status = 0x" + std::string(word) + ").");
}
std::string SuccessIsNoEntry(char const * word) {
    return Warning(
        "TEST_STATUS_SUCCESS isn't a valid status for logging--converting to "
        "TEST_STATUS_INFORMATION: (status = 0x"
        + std::string(word) + ")");
}
std::string NothingToLog(char const * word) {
    return Warning(
        "TEST_STATUS has no elements that are valid for logging: (status = 0x" + std::string(word)
        + ").");
}
std::string NoPassFailTest(char const * word) {
    return Warning(
        "This is not a pass/fail test.  TEST_STATUS should only be set to TEST_STATUS_FAIL when "
        "it fails to pass a true pass/fail test: (status = 0x"
        + std::string(word) + ").");
}
std::string HasElement(char const * element, char const * word) {
    return Report(
        "TEST_STATUS has element " + std::string(element) + ":  (status = 0x" + word + ").");
}
std::string NotSet(char const * word) {
    return Report("The status is not set:  (status = 0x" + std::string(word) + ").");
}

struct Case {
    TEST_STATUS status;
    TEST_STATUS result;
    Lines messages;
};

} // namespace

class CMXLogStatusTest : public LogTest {
protected:
    // Converts for an entry and compares result and messages, in a run that shows all messages.
    void ExpectForLog(std::initializer_list<Case> cases) {
        Level(Diagnostic);
        for (auto const & [status, result, messages] : cases) {
            SCOPED_TRACE(Hex(status));
            EXPECT_EQ(CMXLog::ConvertStatusForLog(m_Log.get(), status), result);
            EXPECT_EQ(Written(), messages);
        }
    }

    void ExpectReturn(std::initializer_list<Case> cases) {
        Level(Internal);
        for (auto const & [status, result, messages] : cases) {
            SCOPED_TRACE(Hex(status));
            EXPECT_EQ(Return(status), result);
            EXPECT_EQ(Written(), messages);
        }
    }

    TEST_STATUS Return(TEST_STATUS status) {
        return CMXLog::ConvertStatusToReturn(m_Log.get(), status);
    }

    std::string Refused(TEST_STATUS status) {
        return Thrown([&] { Return(status); });
    }
};

// For an entry.

TEST_F(CMXLogStatusTest, AnEntryGetsTheFirstElementByPriority) {
    ExpectForLog({
        {0x80000000, TEST_STATUS_FAIL, {}},
        {0x40000000, TEST_STATUS_ABORT, {}},
        {0x08000000, TEST_STATUS_WARNING, {}},
        {0x20000000, TEST_STATUS_ERROR, {}},
        {0x04000000, TEST_STATUS_INFO, {}},
        {0xC0000000, TEST_STATUS_ABORT, {}},
        {0xEC000003, TEST_STATUS_ABORT, {}},
        {0xAC000003, TEST_STATUS_FAIL, {}},
        {0x2C000003, TEST_STATUS_WARNING, {}},
        {0x24000003, TEST_STATUS_ERROR, {}},
        {0x04000003, TEST_STATUS_INFO, {}},
        {0x80000001, TEST_STATUS_FAIL, {}},
    });
}

TEST_F(CMXLogStatusTest, AWordWithoutValidElementsGivesNone) {
    ExpectForLog({
        {0x00000000, 0, {NoValidElements("00000000")}},
        {0x10000000, 0, {NoValidElements("10000000")}},
        {0x00000004, 0, {NoValidElements("00000004")}},
        {0x13FFFFFC, 0, {NoValidElements("13FFFFFC")}},
    });
}

TEST_F(CMXLogStatusTest, InvalidElementsBesideValidOnesAreReportedAndPassedOver) {
    ExpectForLog({
        {0x04000004, TEST_STATUS_INFO, {InvalidElements("04000004")}},
        {0x90000000, TEST_STATUS_FAIL, {InvalidElements("90000000")}},
        {0xFFFFFFFF, TEST_STATUS_ABORT, {InvalidElements("FFFFFFFF")}},
        {0x10000001, TEST_STATUS_INFO, {InvalidElements("10000001"), SuccessIsNoEntry("10000001")}},
        {0x10000002, 0, {InvalidElements("10000002"), NothingToLog("10000002")}},
    });
}

TEST_F(CMXLogStatusTest, SuccessBecomesInformation) {
    ExpectForLog({
        {0x00000001, TEST_STATUS_INFO, {SuccessIsNoEntry("00000001")}},
        {0x00000003, TEST_STATUS_INFO, {SuccessIsNoEntry("00000003")}},
    });
}

TEST_F(CMXLogStatusTest, NotLoggedAloneGivesNone) {
    ExpectForLog({{0x00000002, 0, {NothingToLog("00000002")}}});
}

TEST_F(CMXLogStatusTest, OutsideATrueTestAFailureTurnsIntoAnAbort) {
    OpenOtherRun();
    ExpectForLog({
        {0x80000000, TEST_STATUS_ABORT, {NoPassFailTest("80000000")}},
        {0xAC000003, TEST_STATUS_ABORT, {NoPassFailTest("AC000003")}},
        {0x90000000, TEST_STATUS_ABORT, {InvalidElements("90000000"), NoPassFailTest("90000000")}},
        {0xC0000000, TEST_STATUS_ABORT, {}},
        {0x40000000, TEST_STATUS_ABORT, {}},
        {0x08000000, TEST_STATUS_WARNING, {}},
        {0x20000000, TEST_STATUS_ERROR, {}},
        {0x04000000, TEST_STATUS_INFO, {}},
    });
}

TEST_F(CMXLogStatusTest, AWarningAboutAnEntryCountsButStaysOutOfTheWord) {
    Level(Diagnostic);
    Watch();
    CMXLog::ConvertStatusForLog(m_Log.get(), 0);
    EXPECT_EQ(Seen(), (Lines{"warnings 1", "write " + NoValidElements("00000000")}));
}

TEST_F(CMXLogStatusTest, WarningsAboutEntriesAreDroppedAndTracedBelowDiagnostic) {
    TraceOn();
    Level(Verbose);
    Watch();
    EXPECT_EQ(CMXLog::ConvertStatusForLog(m_Log.get(), 0), 0u);
    EXPECT_EQ(
        Seen(), Lines{R"(trace 12 "TEST_STATUS has no valid elements: (status = 0x00000000).")"});
}

TEST_F(CMXLogStatusTest, InARunOfLevelInternalWarningsAreNotEvenTraced) {
    TraceOn();
    OpenOtherRun();
    Level(Internal);
    Watch();
    for (TEST_STATUS const status : {0u, 0x04000004u, 1u, 2u, 0x80000000u})
        CMXLog::ConvertStatusForLog(m_Log.get(), status);
    EXPECT_EQ(Seen(), Lines{});
}

// For a return value.

TEST_F(CMXLogStatusTest, SuccessIsReturnedWithOrWithoutAWarning) {
    ExpectReturn({
        {0x00000001, 0x00000001, {}},
        {0x08000001, 0x00000001, {}},
        {0x10000001, 0x00000001, {}},
        {0x13FFFFFD, 0x00000001, {}},
    });
}

TEST_F(CMXLogStatusTest, ATrueTestReturnsFailureOrFailureWithAbort) {
    ExpectReturn({
        {0x80000000, 0x80000000, {}},
        {0x80000001, 0x80000000, {}},
        {0x88000001, 0x80000000, {}},
        {0xC0000000, 0xC0000000, {}},
        {0xC8000001, 0xC0000000, {}},
        {0x90000001, 0x80000000, {}},
    });
}

TEST_F(CMXLogStatusTest, ATrueTestThatAbortedHasFailed) {
    ExpectReturn(
        {{0x40000001,
          0xC0000000,
          {Report("TEST_STATUS has TEST_STATUS_ABORT set but not TEST_STATUS_FAIL set: "
                  "(status = 0x40000001).")}},
         {0x48000000,
          0xC0000000,
          {Report("TEST_STATUS has TEST_STATUS_ABORT set but not TEST_STATUS_FAIL set: "
                  "(status = 0x48000000).")}}});
}

TEST_F(CMXLogStatusTest, AnotherRunReturnsAbort) {
    OpenOtherRun();
    ExpectReturn(
        {{0x80000001,
          0x40000000,
          {Report("TEST_STATUS has TEST_STATUS_FAIL set but not TEST_STATUS_ABORT: "
                  "(status = 0x80000001).")}},
         {0xC0000001, 0x40000000, {}},
         {0x40000001, 0x40000000, {}},
         {0x48000000, 0x40000000, {}},
         {0x00000001, 0x00000001, {}},
         {0x08000001, 0x00000001, {}}});
}

TEST_F(CMXLogStatusTest, InformationAndErrorReadAsSuccess) {
    ExpectReturn(
        {{0x04000000, 0x00000001, {HasElement("TEST_STATUS_INFO", "04000000")}},
         {0x0C000000, 0x00000001, {HasElement("TEST_STATUS_INFO", "0C000000")}},
         {0x20000000, 0x00000001, {HasElement("TEST_STATUS_ERROR", "20000000")}},
         {0x24000001,
          0x00000001,
          {HasElement("TEST_STATUS_INFO", "24000001"),
           HasElement("TEST_STATUS_ERROR", "24000001")}},
         {0x84000001, 0x80000000, {HasElement("TEST_STATUS_INFO", "84000001")}},
         {0xA0000001, 0x80000000, {HasElement("TEST_STATUS_ERROR", "A0000001")}}});
}

TEST_F(CMXLogStatusTest, NotLoggedIsReportedAndLeftOut) {
    ExpectReturn(
        {{0x00000003, 0x00000001, {HasElement("TEST_STATUS_NOT_LOGGED", "00000003")}},
         {0x80000002, 0x80000000, {HasElement("TEST_STATUS_NOT_LOGGED", "80000002")}},
         {0x24000003,
          0x00000001,
          {HasElement("TEST_STATUS_NOT_LOGGED", "24000003"),
           HasElement("TEST_STATUS_INFO", "24000003"),
           HasElement("TEST_STATUS_ERROR", "24000003")}}});
}

TEST_F(CMXLogStatusTest, AWordThatIsNotSetAbortsAndFailsATrueTest) {
    Lines const messages = {HasElement("TEST_STATUS_NOT_LOGGED", "00000002"), NotSet("00000002")};
    for (std::uint32_t const phase : {0u, 1u, 2u, 4u}) {
        Suite().m_RunPhase = phase;
        ExpectReturn({{0x00000002, 0xC0000000, messages}});
    }
    ExpectReturn(
        {{0x10000002,
          0xC0000000,
          {HasElement("TEST_STATUS_NOT_LOGGED", "10000002"), NotSet("10000002")}}});
}

TEST_F(CMXLogStatusTest, AWordThatIsNotSetFailsATrueTestInRunPhaseThree) {
    Suite().m_RunPhase = 3;
    ExpectReturn(
        {{0x00000002,
          0x80000000,
          {HasElement("TEST_STATUS_NOT_LOGGED", "00000002"), NotSet("00000002")}}});
}

TEST_F(CMXLogStatusTest, AWordThatIsNotSetAbortsAnotherRun) {
    OpenOtherRun();
    ExpectReturn(
        {{0x00000002,
          0x40000000,
          {HasElement("TEST_STATUS_NOT_LOGGED", "00000002"), NotSet("00000002")}}});
}

TEST_F(CMXLogStatusTest, AWordThatIsNotSetPassesAnotherRunInRunPhaseThree) {
    OpenOtherRun();
    Suite().m_RunPhase = 3;
    ExpectReturn(
        {{0x00000002,
          0x00000001,
          {HasElement("TEST_STATUS_NOT_LOGGED", "00000002"), NotSet("00000002")}}});
}

TEST_F(CMXLogStatusTest, AWordWithoutValidElementsIsRefused) {
    Level(Internal);
    EXPECT_EQ(Refused(0x00000000), "Unrecognized return code: (status = 0x00000000).");
    EXPECT_EQ(Refused(0x10000000), "Unrecognized return code: (status = 0x10000000).");
    EXPECT_EQ(Refused(0x13FFFFFC), "Unrecognized return code: (status = 0x13FFFFFC).");
    EXPECT_EQ(Written(), Lines{});
}

TEST_F(CMXLogStatusTest, AWarningAloneIsRefused) {
    Level(Internal);
    EXPECT_EQ(Refused(0x08000000), "Illegal test return code. (test status = 0x08000000)");
    EXPECT_EQ(Written(), Lines{});
    EXPECT_EQ(Refused(0x18000000), "Illegal test return code. (test status = 0x18000000)");
}

TEST_F(CMXLogStatusTest, ARefusalShowsTheWordAsItCame) {
    Level(Internal);
    EXPECT_EQ(Refused(0x18000002), "Illegal test return code. (test status = 0x18000002)");
    EXPECT_EQ(Written(), Lines{HasElement("TEST_STATUS_NOT_LOGGED", "18000002")});
}

TEST_F(CMXLogStatusTest, BelowInternalOnlyTheReportOfNotLoggedShows) {
    for (int const level : {Normal, Verbose, Diagnostic, static_cast<eQNLogVerbosity>(254)}) {
        Level(level);
        EXPECT_EQ(Return(0x40000001), 0xC0000000u);
        EXPECT_EQ(Return(0x24000000), 0x00000001u);
        EXPECT_EQ(Return(0x00000002), 0xC0000000u);
        EXPECT_EQ(Written(), Lines{HasElement("TEST_STATUS_NOT_LOGGED", "00000002")}) << level;
    }
}

TEST_F(CMXLogStatusTest, BelowNormalReportsAreTracedAndNoMore) {
    TraceOn();
    Level(Low);
    Watch();
    EXPECT_EQ(Return(0x00000002), 0xC0000000u);
    EXPECT_EQ(
        Seen(),
        (Lines{
            R"(trace 12 "TEST_STATUS has element TEST_STATUS_NOT_LOGGED:  (status = 0x00000002).")",
            R"(trace 12 "The status is not set:  (status = 0x00000002).")",
        }));
}

TEST_F(CMXLogStatusTest, AReportCountsAsAWarningAndStaysOutOfTheWord) {
    Level(Internal);
    Watch();
    Return(0x20000001);
    EXPECT_EQ(
        Seen(), (Lines{"warnings 1", "write " + HasElement("TEST_STATUS_ERROR", "20000001")}));
}
