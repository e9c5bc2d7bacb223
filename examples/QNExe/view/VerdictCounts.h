// How a run stands, in numbers, while it goes on.
#pragma once

#include <atomic>
#include <cstdint>

#include "siblings/QuillonLog.h"

struct VerdictCounts {
    // True tests that are closed.
    int passed = 0;
    int failed = 0;
    // What was counted in every record.
    unsigned long failures = 0;
    unsigned long aborts = 0;
    unsigned long warnings = 0;

    bool operator==(VerdictCounts const &) const = default;
};

// Counts the run that it hears of. The records belong to the test thread, so their sums are read
// while it stands still; in between the numbers of the test that runs follow each entry.
class VerdictTally : public CTestSuiteListener {
public:
    // Before a run.
    void Begin();

    // On the test thread.
    void EntryWritten(CTestLog const & test, CTestLogEntry const & entry) override;

    // While the test thread stands still, or is gone. One walk over all records.
    void Sum(CTestSuiteLog & suite);

    // At any time, from the thread that sums.
    VerdictCounts Now() const;

private:
    void Take(CTestLog const & test);

    // Without the test that runs.
    VerdictCounts m_Earlier;
    std::atomic<unsigned long> m_Failures = 0;
    std::atomic<unsigned long> m_Aborts = 0;
    std::atomic<unsigned long> m_Warnings = 0;
};
