// The record of a suite: its tests in order, their sums, and the verdict.
#include "siblings/QuillonLog.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class CTestSuiteLogTest : public testing::Test {
protected:
    // Runs a whole test that leaves this result behind.
    CTestLog & Run(TEST_STATUS result, bool actualTest = true) {
        CTestLog & test = m_Suite.OpenTest(actualTest);
        test.TestStatus(result);
        m_Suite.CloseTest();
        return test;
    }

    // Tests, passed, failed.
    std::tuple<int, int, int> Score() {
        return {m_Suite.TestCount(), m_Suite.PassedTestCount(), m_Suite.FailedTestCount()};
    }

    // Aborts, fails, warnings, infos, unknowns.
    std::vector<unsigned long> Stats() {
        std::vector<unsigned long> stats(5, 77);
        m_Suite.GetLogStats(stats[0], stats[1], stats[2], stats[3], stats[4]);
        return stats;
    }

    CTestSuiteLog m_Suite;
};

TEST_F(CTestSuiteLogTest, NewSuiteHasOneRecordThatIsNoTrueTest) {
    ASSERT_EQ(m_Suite.TestLogs().size(), 1u);
    EXPECT_EQ(m_Suite.CurrentTestLog(), m_Suite.TestLogs()[0].get());
    EXPECT_FALSE(m_Suite.CurrentTestLog()->IsActualTest());
    EXPECT_EQ(m_Suite.CurrentTestLog()->m_Content, 0u);
    EXPECT_EQ(Score(), std::tuple(0, 0, 0));
}

TEST_F(CTestSuiteLogTest, NewSuiteHasTheFlagsThatItsReadersExpect) {
    EXPECT_TRUE(m_Suite.m_ProgramNameMatches);
    EXPECT_FALSE(m_Suite.m_RequireTests);
    EXPECT_EQ(m_Suite.m_RunPhase, 0u);
}

TEST_F(CTestSuiteLogTest, OpenedTestsAreKeptInRunningOrder) {
    CTestLog * const first = m_Suite.CurrentTestLog();
    CTestLog * const setUp = &m_Suite.OpenTest(false);
    CTestLog * const test = &m_Suite.OpenTest(true);
    std::vector<CTestLog *> kept;
    for (auto const & record : m_Suite.TestLogs())
        kept.push_back(record.get());
    EXPECT_THAT(kept, ElementsAre(first, setUp, test));
    EXPECT_EQ(m_Suite.CurrentTestLog(), test);
    EXPECT_FALSE(setUp->IsActualTest());
    EXPECT_TRUE(test->IsActualTest());
}

TEST_F(CTestSuiteLogTest, RecordStaysWhereItIsHoweverManyFollow) {
    CTestLog * const test = &m_Suite.OpenTest(true);
    test->TestName("T1");
    for (int i = 0; i < 1000; ++i)
        m_Suite.OpenTest(true);
    EXPECT_EQ(m_Suite.TestLogs()[1].get(), test);
    EXPECT_EQ(test->TestName(), "T1");
}

TEST_F(CTestSuiteLogTest, ClosedTestStaysCurrent) {
    CTestLog * const test = &m_Suite.OpenTest(true);
    m_Suite.CloseTest();
    EXPECT_EQ(m_Suite.CurrentTestLog(), test);
}

TEST_F(CTestSuiteLogTest, CloseGivesAStopTimeToATestWithoutOne) {
    auto const before = std::chrono::system_clock::now();
    CTestLog & test = m_Suite.OpenTest(false);
    m_Suite.CloseTest();
    auto const stopped = test.StopTime();
    EXPECT_LE(before, stopped);
    EXPECT_LE(stopped, std::chrono::system_clock::now());
    m_Suite.CloseTest();
    EXPECT_EQ(test.StopTime(), stopped);
}

TEST_F(CTestSuiteLogTest, CloseKeepsTheStopTimeOfTheLog) {
    CTestLog::time_point const stop(std::chrono::seconds(5));
    CTestLog & test = m_Suite.OpenTest(true);
    test.StopTime(stop);
    m_Suite.CloseTest();
    EXPECT_EQ(test.StopTime(), stop);
}

TEST_F(CTestSuiteLogTest, OnlyTrueTestsAreCounted) {
    Run(TEST_STATUS_SUCCESS);
    Run(TEST_STATUS_SUCCESS);
    Run(TEST_STATUS_FAIL);
    Run(TEST_STATUS_SUCCESS, false);
    Run(TEST_STATUS_ABORT, false);
    EXPECT_EQ(Score(), std::tuple(3, 2, 1));
}

TEST_F(CTestSuiteLogTest, OnlyTheResultSuccessIsAPass) {
    for (TEST_STATUS const result :
         {TEST_STATUS_FAIL, TEST_STATUS_ABORT, TEST_STATUS_FAIL | TEST_STATUS_ABORT,
          TEST_STATUS_WARNING, TEST_STATUS_SUCCESS | TEST_STATUS_WARNING, TEST_STATUS_UNKNOWN})
        Run(result);
    EXPECT_EQ(Score(), std::tuple(6, 0, 6));
}

TEST_F(CTestSuiteLogTest, TestWithoutAResultHasNotPassed) {
    m_Suite.OpenTest(true);
    EXPECT_EQ(Score(), std::tuple(1, 0, 1));
    m_Suite.CloseTest();
    EXPECT_EQ(Score(), std::tuple(1, 0, 1));
}

TEST_F(CTestSuiteLogTest, StatsAreTheSumsOfEveryRecord) {
    m_Suite.CurrentTestLog()->IncrWarnings();
    CTestLog & test = m_Suite.OpenTest(true);
    test.IncrAborts();
    for (int i = 0; i < 2; ++i)
        test.IncrFailures();
    for (int i = 0; i < 3; ++i)
        test.IncrWarnings();
    CTestLog & utility = m_Suite.OpenTest(false);
    for (int i = 0; i < 5; ++i)
        utility.IncrInfo();
    for (int i = 0; i < 6; ++i)
        utility.IncrUnknowns();
    utility.IncrFailures();
    EXPECT_THAT(Stats(), ElementsAre(1, 3, 4, 5, 6));
}

TEST_F(CTestSuiteLogTest, StatsOfANewSuiteAreZero) {
    EXPECT_THAT(Stats(), ElementsAre(0, 0, 0, 0, 0));
}

TEST_F(CTestSuiteLogTest, SuiteOfPassedTestsPasses) {
    m_Suite.m_RequireTests = true;
    Run(TEST_STATUS_SUCCESS);
    Run(TEST_STATUS_SUCCESS, false);
    EXPECT_TRUE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, WarningsAndUnexpectedEntriesDoNotFailASuite) {
    CTestLog & test = Run(TEST_STATUS_SUCCESS);
    test.IncrWarnings();
    test.IncrInfo();
    test.IncrUnknowns();
    EXPECT_TRUE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, FailedTestFailsTheSuite) {
    Run(TEST_STATUS_SUCCESS);
    Run(TEST_STATUS_FAIL);
    Run(TEST_STATUS_SUCCESS);
    EXPECT_FALSE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, WarningHidesNoFailure) {
    CTestLog & test = Run(TEST_STATUS_FAIL);
    test.IncrFailures();
    test.IncrWarnings();
    EXPECT_EQ(Score(), std::tuple(1, 0, 1));
    EXPECT_FALSE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, FailureEntryFailsTheSuiteWhateverTheResultSays) {
    Run(TEST_STATUS_SUCCESS).IncrFailures();
    EXPECT_FALSE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, AbortEntryFailsTheSuiteWhereverItStands) {
    Run(TEST_STATUS_SUCCESS);
    m_Suite.TestLogs()[0]->IncrAborts();
    EXPECT_FALSE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, AbortedUtilityFailsTheSuiteWithoutAnEntry) {
    Run(TEST_STATUS_ABORT, false);
    EXPECT_FALSE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, TestWithoutAResultFailsTheSuite) {
    m_Suite.OpenTest(true);
    EXPECT_FALSE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, UtilityWithoutAResultDoesNotFailTheSuite) {
    m_Suite.OpenTest(false);
    EXPECT_TRUE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, SuiteWithoutTestsPassesUnlessTestsAreRequired) {
    Run(TEST_STATUS_SUCCESS, false);
    EXPECT_TRUE(m_Suite.SuitePassed());
    m_Suite.m_RequireTests = true;
    EXPECT_FALSE(m_Suite.SuitePassed());
}

TEST_F(CTestSuiteLogTest, ReportDataKeepsItsOrderAndItsRepeats) {
    m_Suite.AddMeta("Test-Pass", "T2");
    m_Suite.AddMeta("Suite-Result", "PASS");
    m_Suite.AddMeta("Test-Pass", "T1");
    EXPECT_THAT(
        m_Suite.Meta(),
        ElementsAre(
            Pair("Test-Pass", "T2"), Pair("Suite-Result", "PASS"), Pair("Test-Pass", "T1")));
    EXPECT_THAT(m_Suite.Summary(), IsEmpty());
}

TEST_F(CTestSuiteLogTest, SummaryDataIsKeptApartFromTheReportData) {
    m_Suite.AddToSummary("TestVersion", "1.2");
    m_Suite.AddToSummary("TestVersion", "");
    EXPECT_THAT(
        m_Suite.Summary(), ElementsAre(Pair("TestVersion", "1.2"), Pair("TestVersion", "")));
    EXPECT_THAT(m_Suite.Meta(), IsEmpty());
}

TEST_F(CTestSuiteLogTest, OSVersionIsTheLastOneSet) {
    EXPECT_EQ(m_Suite.OSVersion(), "");
    m_Suite.SetOSVersion("One");
    m_Suite.SetOSVersion("Two");
    EXPECT_EQ(m_Suite.OSVersion(), "Two");
    m_Suite.SetOSVersion(nullptr);
    EXPECT_EQ(m_Suite.OSVersion(), "");
}

class Listener : public CTestSuiteListener {
public:
    void EntryWritten(CTestLog const & test, CTestLogEntry const & entry) override {
        heard.emplace_back(test.TestName() + ": " + entry.text, entry.status);
    }
    void TestOpened(CTestLog const & test, std::string const & name) override {
        events.push_back("opened " + name + (test.m_Content == 0 ? "" : " late"));
    }
    void TestClosed(CTestLog const & test) override {
        bool const hasStop = test.StopTime() != CTestLog::time_point();
        events.push_back("closed " + test.TestName() + (hasStop ? "" : " without a stop time"));
    }
    void PromptAdded(CTestPrompt const & prompt) override {
        events.push_back("asked " + prompt.question + " in " + std::to_string(prompt.test));
    }
    void DeviceEventAdded(CTestDeviceEvent const & event) override {
        events.push_back(event.device + ' ' + event.what);
    }

    std::vector<std::string> events;

    std::vector<std::pair<std::string, TEST_STATUS>> heard;
};

TEST_F(CTestSuiteLogTest, AListenerIsToldOfWhatElseHappensInOrder) {
    Listener listener;
    m_Suite.Listener(&listener);
    m_Suite.OpenTest(true, "first").TestName("T1");
    m_Suite.AddPrompt({.question = "Q"});
    m_Suite.CloseTest();
    m_Suite.AddDeviceEvent({"arrived", "D"});
    m_Suite.OpenTest(false);
    EXPECT_THAT(
        listener.events,
        ElementsAre("opened first", "asked Q in 1", "closed T1", "D arrived", "opened "));
}

TEST_F(CTestSuiteLogTest, DeviceEventsAreKeptInTheirOrder) {
    m_Suite.AddDeviceEvent({"arrived", "D1"});
    m_Suite.AddDeviceEvent({"was removed", "D2"});
    auto const events = m_Suite.DeviceEvents();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].what, "arrived");
    EXPECT_EQ(events[1].device, "D2");
}

TEST_F(CTestSuiteLogTest, AListenerIsToldOfEveryEntryWithItsTest) {
    Listener listener;
    m_Suite.Listener(&listener);
    m_Suite.OpenTest(true).TestName("T1");
    m_Suite.CurrentTestLog()->Write(TEST_STATUS_INFO, "one", nullptr);
    m_Suite.CurrentTestLog()->Write(TEST_STATUS_FAIL, "two", nullptr);
    EXPECT_THAT(
        listener.heard,
        ElementsAre(Pair("T1: one", TEST_STATUS_INFO), Pair("T1: two", TEST_STATUS_FAIL)));
}

TEST_F(CTestSuiteLogTest, AListenerThatWasTakenBackHearsNothing) {
    Listener listener;
    m_Suite.Listener(&listener);
    m_Suite.Listener(nullptr);
    m_Suite.CurrentTestLog()->Write(TEST_STATUS_INFO, "one", nullptr);
    EXPECT_THAT(listener.heard, IsEmpty());
}

TEST(CTestSuiteLogPromptTest, AQuestionIsKeptWithTheTestThatIsCurrent) {
    CTestSuiteLog suite;
    suite.AddPrompt({.question = "a", .answer = "1", .source = "operator", .seconds = 2.5});
    suite.OpenTest(true);
    std::thread([&] {
        suite.AddPrompt(
            {.question = "b", .source = "none", .reason = "r", .hasAborted = true, .test = 99});
    }).join();
    auto const prompts = suite.Prompts();
    ASSERT_EQ(prompts.size(), 2u);
    EXPECT_EQ(prompts[0].question, "a");
    EXPECT_EQ(prompts[0].answer, "1");
    EXPECT_EQ(prompts[0].source, "operator");
    EXPECT_EQ(prompts[0].seconds, 2.5);
    EXPECT_FALSE(prompts[0].hasAborted);
    EXPECT_EQ(prompts[0].test, 0u);
    EXPECT_EQ(prompts[1].reason, "r");
    EXPECT_TRUE(prompts[1].hasAborted);
    EXPECT_EQ(prompts[1].test, 1u);
}

} // namespace
