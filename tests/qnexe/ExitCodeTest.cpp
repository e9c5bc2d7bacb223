// The number that a run ends with, out of what was recorded.
#include "examples/QNExe/ExitCode.h"

#include <gtest/gtest.h>

namespace {

class ExitCodeTest : public testing::Test {
protected:
    ExitCodeTest() { m_Suite.m_RequireTests = true; }

    CTestLog & Record(TEST_STATUS result, bool actualTest = true) {
        CTestLog & test = m_Suite.OpenTest(actualTest);
        test.TestStatus(result);
        return test;
    }

    ExitCode Code() { return ExitCodeOf(m_Suite, false); }

    CTestSuiteLog m_Suite;
};

TEST_F(ExitCodeTest, NumbersAreThoseThatScriptsKnow) {
    EXPECT_EQ(static_cast<int>(ExitCode::Passed), 0);
    EXPECT_EQ(static_cast<int>(ExitCode::Failed), 1);
    EXPECT_EQ(static_cast<int>(ExitCode::NoTestRan), 2);
    EXPECT_EQ(static_cast<int>(ExitCode::AbortedByOperator), 3);
    EXPECT_EQ(static_cast<int>(ExitCode::CouldNotRun), 4);
}

TEST_F(ExitCodeTest, PassedTestsPass) {
    Record(TEST_STATUS_SUCCESS).IncrWarnings();
    EXPECT_EQ(Code(), ExitCode::Passed);
}

TEST_F(ExitCodeTest, FailureBesideAWarningFails) {
    CTestLog & test = Record(TEST_STATUS_FAIL);
    test.IncrFailures();
    test.IncrWarnings();
    EXPECT_EQ(Code(), ExitCode::Failed);
}

TEST_F(ExitCodeTest, FailureThatWasOnlyCountedFails) {
    Record(TEST_STATUS_SUCCESS).IncrFailures();
    EXPECT_EQ(Code(), ExitCode::Failed);
}

TEST_F(ExitCodeTest, AbortedUtilityFailsARunWhoseTestsPassed) {
    Record(TEST_STATUS_SUCCESS);
    Record(TEST_STATUS_ABORT, false);
    EXPECT_EQ(Code(), ExitCode::Failed);
}

TEST_F(ExitCodeTest, RunWithoutTrueTestsIsOneInWhichNoTestRan) {
    EXPECT_EQ(Code(), ExitCode::NoTestRan);
    Record(TEST_STATUS_SUCCESS, false);
    EXPECT_EQ(Code(), ExitCode::NoTestRan);
}

TEST_F(ExitCodeTest, RunWithoutTestsPassesWhereNoneIsRequired) {
    m_Suite.m_RequireTests = false;
    EXPECT_EQ(Code(), ExitCode::Passed);
}

TEST_F(ExitCodeTest, OperatorsAbortComesBeforeEveryVerdict) {
    EXPECT_EQ(ExitCodeOf(m_Suite, true), ExitCode::AbortedByOperator);
    Record(TEST_STATUS_SUCCESS);
    EXPECT_EQ(ExitCodeOf(m_Suite, true), ExitCode::AbortedByOperator);
    Record(TEST_STATUS_FAIL);
    EXPECT_EQ(ExitCodeOf(m_Suite, true), ExitCode::AbortedByOperator);
}

} // namespace
