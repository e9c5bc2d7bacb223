// The numbers of a run while it goes on.
#include "examples/QNExe/view/VerdictCounts.h"

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "examples/QNExe/reports/Listeners.h"

void PrintTo(VerdictCounts const & counts, std::ostream * stream) {
    *stream << counts.passed << " passed, " << counts.failed << " failed, " << counts.failures
            << " failures, " << counts.aborts << " aborts, " << counts.warnings << " warnings";
}

namespace {

class Listener : public CTestSuiteListener {
public:
    void EntryWritten(CTestLog const &, CTestLogEntry const & entry) override {
        texts.push_back(entry.text);
    }

    std::vector<std::string> texts;
};

class VerdictCountsTest : public testing::Test {
protected:
    VerdictCountsTest() { Begin(); }
    ~VerdictCountsTest() override { m_Suite.Listener(nullptr); }

    void Begin() {
        m_Tally.Begin();
        m_Suite.Listener(&m_Tally);
    }

    void Fail() {
        m_Suite.CurrentTestLog()->IncrFailures();
        m_Suite.CurrentTestLog()->Write(TEST_STATUS_FAIL, "failed", nullptr);
    }

    void Warn() {
        m_Suite.CurrentTestLog()->IncrWarnings();
        m_Suite.CurrentTestLog()->Write(TEST_STATUS_WARNING, "warned", nullptr);
    }

    void Close(TEST_STATUS status) {
        m_Suite.CurrentTestLog()->TestStatus(status);
        m_Suite.CloseTest();
    }

    VerdictCounts Summed() {
        m_Tally.Sum(m_Suite);
        return m_Tally.Now();
    }

    CTestSuiteLog m_Suite;
    VerdictTally m_Tally;
};

TEST_F(VerdictCountsTest, NothingIsCountedAtFirst) { EXPECT_EQ(Summed(), VerdictCounts{}); }

TEST_F(VerdictCountsTest, EntriesOfTheTestThatRunsCountAtOnce) {
    m_Suite.OpenTest(true);
    Summed();
    Fail();
    Fail();
    Warn();
    EXPECT_EQ(m_Tally.Now(), (VerdictCounts{.failures = 2, .warnings = 1}));
}

TEST_F(VerdictCountsTest, ATestThatRunsHasNotFailedYet) {
    m_Suite.OpenTest(true);
    EXPECT_EQ(Summed(), VerdictCounts{});
    Close(TEST_STATUS_SUCCESS);
    EXPECT_EQ(Summed(), VerdictCounts{.passed = 1});
}

TEST_F(VerdictCountsTest, EarlierTestsStayCountedWhenTheNextOneRuns) {
    m_Suite.OpenTest(true);
    Fail();
    Close(TEST_STATUS_FAIL);
    m_Suite.OpenTest(true);
    Summed();
    Fail();
    Warn();
    EXPECT_EQ(m_Tally.Now(), (VerdictCounts{.failed = 1, .failures = 2, .warnings = 1}));
}

TEST_F(VerdictCountsTest, ASumInTheMiddleOfATestCountsNothingTwice) {
    m_Suite.OpenTest(true);
    Fail();
    EXPECT_EQ(Summed(), VerdictCounts{.failures = 1});
    m_Suite.CurrentTestLog()->IncrAborts();
    EXPECT_EQ(Summed(), (VerdictCounts{.failures = 1, .aborts = 1}));
}

TEST_F(VerdictCountsTest, AUtilityPassesAndFailsNothing) {
    m_Suite.OpenTest(false);
    EXPECT_EQ(Summed(), VerdictCounts{});
    Close(TEST_STATUS_SUCCESS);
    EXPECT_EQ(Summed(), VerdictCounts{});
}

TEST_F(VerdictCountsTest, AnotherRunBeginsAtNothing) {
    m_Suite.OpenTest(true);
    Fail();
    Summed();
    Begin();
    EXPECT_EQ(m_Tally.Now(), VerdictCounts{});
}

TEST_F(VerdictCountsTest, OtherListenersHearOfTheRunToo) {
    Listener other;
    Listeners all;
    all.AddAny(nullptr);
    all.AddAny(&m_Tally);
    all.Add(other);
    m_Suite.Listener(&all);
    Fail();
    Warn();
    EXPECT_EQ(other.texts, (std::vector<std::string>{"failed", "warned"}));
    EXPECT_EQ(Summed().warnings, 1u);
}

} // namespace
