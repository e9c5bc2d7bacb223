// How a run of the host ends, as a number for whoever started it.
//
// The verdict is read from what was recorded, result by result and count by count. It is never
// read from a status word with TestStatusPasses, where one warning hides a failure.
#pragma once

#include "siblings/QuillonLog.h"

enum class ExitCode : int {
    Passed = 0,
    Failed = 1,
    // No test ran although one was required.
    NoTestRan = 2,
    AbortedByOperator = 3,
    // Bad arguments, a suite that does not load or cannot list its tests, a log file that cannot
    // be opened or has lost entries. What was wrong stands on standard error.
    CouldNotRun = 4,
};

// The verdict on a suite that ran to its end, or until the operator's abort.
inline ExitCode ExitCodeOf(CTestSuiteLog & suite, bool abortedByOperator) {
    if (abortedByOperator) return ExitCode::AbortedByOperator;
    if (suite.m_RequireTests && suite.TestCount() == 0) return ExitCode::NoTestRan;
    return suite.SuitePassed() ? ExitCode::Passed : ExitCode::Failed;
}
