// The record of one test: what it keeps, what it counts, what a reset takes away.
#include "siblings/QuillonLog.h"

#include <chrono>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using Counts =
    std::tuple<unsigned long, unsigned long, unsigned long, unsigned long, unsigned long>;
using Written = std::vector<std::tuple<TEST_STATUS, std::string, std::string>>;

class CTestLogTest : public testing::Test {
protected:
    // Failures, warnings, aborts, informations, unknown.
    Counts AllCounts() const {
        return {
            m_Log.FailureCount(), m_Log.WarningCount(), m_Log.AbortCount(), m_Log.InfoCount(),
            m_Log.UnknownCount()};
    }

    Written AllEntries() const {
        Written entries;
        for (auto const & entry : m_Log.Entries())
            entries.emplace_back(entry.status, entry.text, entry.style);
        return entries;
    }

    unsigned int DurationOf(std::chrono::milliseconds length) {
        m_Log.StartTime(Noon());
        m_Log.StopTime(Noon() + length);
        return m_Log.GetTestDuration();
    }

    static CTestLog::time_point Noon() { return CTestLog::time_point(1'794'000'000s); }

    void RecordOneOfEach() {
        m_Log.TestName("T1");
        m_Log.StartTime(Noon());
        m_Log.StopTime(Noon() + 5s);
        m_Log.IncrFailures();
        m_Log.IncrWarnings();
        m_Log.IncrAborts();
        m_Log.IncrInfo();
        m_Log.IncrUnknowns();
        m_Log.Write(TEST_STATUS_INFO, "text", "style");
        m_Log.TestStatus(TEST_STATUS_FAIL);
        m_Log.m_AbortedByUser = true;
    }

    CTestLog m_Log{true};
};

TEST_F(CTestLogTest, NewRecordHoldsNothing) {
    EXPECT_EQ(m_Log.TestName(), "");
    EXPECT_EQ(m_Log.StartTime(), CTestLog::time_point());
    EXPECT_EQ(m_Log.StopTime(), CTestLog::time_point());
    EXPECT_EQ(m_Log.GetTestDuration(), 0u);
    EXPECT_FALSE(m_Log.HasResult());
    EXPECT_EQ(m_Log.TestStatus(), TEST_STATUS_UNKNOWN);
    EXPECT_EQ(AllCounts(), Counts(0, 0, 0, 0, 0));
    EXPECT_THAT(m_Log.Entries(), IsEmpty());
    EXPECT_FALSE(m_Log.m_AbortedByUser);
    EXPECT_EQ(m_Log.m_Content, 0u);
}

TEST_F(CTestLogTest, KindOfTestIsThatOfTheConstructor) {
    EXPECT_TRUE(CTestLog(true).IsActualTest());
    EXPECT_FALSE(CTestLog(false).IsActualTest());
}

TEST_F(CTestLogTest, EachKindOfEntryHasItsOwnCount) {
    for (int i = 0; i < 1; ++i)
        m_Log.IncrFailures();
    for (int i = 0; i < 2; ++i)
        m_Log.IncrWarnings();
    for (int i = 0; i < 3; ++i)
        m_Log.IncrAborts();
    for (int i = 0; i < 4; ++i)
        m_Log.IncrInfo();
    for (int i = 0; i < 5; ++i)
        m_Log.IncrUnknowns();
    EXPECT_EQ(AllCounts(), Counts(1, 2, 3, 4, 5));
}

TEST_F(CTestLogTest, EntriesAreKeptInOrderWithStatusTextAndStyle) {
    m_Log.Write(TEST_STATUS_FAIL, "no answer", "font-weight: bold");
    m_Log.Write(TEST_STATUS_INFO, "100% done\nline 2", nullptr);
    m_Log.Write(TEST_STATUS_UNKNOWN, nullptr, nullptr);
    EXPECT_EQ(
        AllEntries(), (Written{
                          {TEST_STATUS_FAIL, "no answer", "font-weight: bold"},
                          {TEST_STATUS_INFO, "100% done\nline 2", ""},
                          {TEST_STATUS_UNKNOWN, "", ""}}));
}

TEST_F(CTestLogTest, EntryCarriesTheTimeAtWhichItWasWritten) {
    auto const before = std::chrono::system_clock::now();
    m_Log.Write(TEST_STATUS_INFO, "now", nullptr);
    auto const after = std::chrono::system_clock::now();
    ASSERT_EQ(m_Log.Entries().size(), 1u);
    EXPECT_LE(before, m_Log.Entries()[0].time);
    EXPECT_GE(after, m_Log.Entries()[0].time);
}

TEST_F(CTestLogTest, WrittenEntriesAreNotCountedByTheirStatus) {
    m_Log.Write(TEST_STATUS_FAIL, "text", nullptr);
    EXPECT_EQ(AllCounts(), Counts(0, 0, 0, 0, 0));
}

TEST_F(CTestLogTest, TimesComeBackAsStored) {
    m_Log.StartTime(Noon());
    m_Log.StopTime(Noon() + 1ms);
    EXPECT_EQ(m_Log.StartTime(), Noon());
    EXPECT_EQ(m_Log.StopTime(), Noon() + 1ms);
}

TEST_F(CTestLogTest, DurationIsWholeSecondsRoundedDown) {
    EXPECT_EQ(DurationOf(0ms), 0u);
    EXPECT_EQ(DurationOf(999ms), 0u);
    EXPECT_EQ(DurationOf(1000ms), 1u);
    EXPECT_EQ(DurationOf(12'999ms), 12u);
    EXPECT_EQ(DurationOf(86'400'000ms), 86'400u);
}

TEST_F(CTestLogTest, DurationOfAStopBeforeTheStartIsZero) {
    EXPECT_EQ(DurationOf(-1ms), 0u);
    EXPECT_EQ(DurationOf(-5000ms), 0u);
}

TEST_F(CTestLogTest, NullNameCountsAsEmpty) {
    m_Log.TestName("T1");
    EXPECT_EQ(m_Log.TestName(), "T1");
    m_Log.TestName(nullptr);
    EXPECT_EQ(m_Log.TestName(), "");
}

TEST_F(CTestLogTest, ResultClosesTheRecordWhateverItIs) {
    m_Log.TestStatus(TEST_STATUS_UNKNOWN);
    EXPECT_TRUE(m_Log.HasResult());
    m_Log.TestStatus(TEST_STATUS_FAIL | TEST_STATUS_ABORT);
    EXPECT_EQ(m_Log.TestStatus(), 0xC0000000u);
}

TEST_F(CTestLogTest, EveryFactAddsToTheContent) {
    std::vector<std::uint64_t> content;
    auto const note = [&] { content.push_back(m_Log.m_Content); };
    m_Log.TestName("T1"), note();
    m_Log.IncrFailures(), note();
    m_Log.IncrWarnings(), note();
    m_Log.IncrAborts(), note();
    m_Log.IncrInfo(), note();
    m_Log.IncrUnknowns(), note();
    m_Log.Write(TEST_STATUS_INFO, "text", nullptr), note();
    m_Log.TestStatus(TEST_STATUS_SUCCESS), note();
    EXPECT_THAT(content, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST_F(CTestLogTest, TimesAreNoContent) {
    m_Log.StartTime(Noon());
    m_Log.StopTime(Noon());
    EXPECT_EQ(m_Log.m_Content, 0u);
}

TEST_F(CTestLogTest, ResetTakesAllButTheKindOfTest) {
    RecordOneOfEach();
    m_Log.Reset();
    EXPECT_EQ(m_Log.TestName(), "");
    EXPECT_EQ(m_Log.StartTime(), CTestLog::time_point());
    EXPECT_EQ(m_Log.StopTime(), CTestLog::time_point());
    EXPECT_FALSE(m_Log.HasResult());
    EXPECT_EQ(m_Log.TestStatus(), TEST_STATUS_UNKNOWN);
    EXPECT_EQ(AllCounts(), Counts(0, 0, 0, 0, 0));
    EXPECT_THAT(m_Log.Entries(), IsEmpty());
    EXPECT_FALSE(m_Log.m_AbortedByUser);
    EXPECT_EQ(m_Log.m_Content, 0u);
    EXPECT_TRUE(m_Log.IsActualTest());
}

} // namespace
