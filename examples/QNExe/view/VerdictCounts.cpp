// How a run stands, in numbers.
#include "examples/QNExe/view/VerdictCounts.h"

void VerdictTally::Begin() {
    m_Earlier = {};
    m_Failures = 0;
    m_Aborts = 0;
    m_Warnings = 0;
}

void VerdictTally::EntryWritten(CTestLog const & test, CTestLogEntry const &) { Take(test); }

void VerdictTally::Sum(CTestSuiteLog & suite) {
    VerdictCounts all;
    unsigned long infos = 0;
    unsigned long unknowns = 0;
    suite.GetLogStats(all.aborts, all.failures, all.warnings, infos, unknowns);
    CTestLog const & current = *suite.CurrentTestLog();
    // A true test without a result counts as failed there, and is not closed here.
    bool const runs = current.IsActualTest() && !current.HasResult();
    m_Earlier = {
        .passed = suite.PassedTestCount(),
        .failed = suite.FailedTestCount() - (runs ? 1 : 0),
        .failures = all.failures - current.FailureCount(),
        .aborts = all.aborts - current.AbortCount(),
        .warnings = all.warnings - current.WarningCount()};
    Take(current);
}

VerdictCounts VerdictTally::Now() const {
    VerdictCounts now = m_Earlier;
    now.failures += m_Failures;
    now.aborts += m_Aborts;
    now.warnings += m_Warnings;
    return now;
}

void VerdictTally::Take(CTestLog const & test) {
    m_Failures = test.FailureCount();
    m_Aborts = test.AbortCount();
    m_Warnings = test.WarningCount();
}
