// Shows the entries of a run on standard error, when the log itself writes into the record.
//
// For the thread that runs the tests.
#pragma once

#include "siblings/QuillonLog.h"

class ConsoleLines : public CTestSuiteListener {
public:
    // The lines of LogFile.
    void EntryWritten(CTestLog const & test, CTestLogEntry const & entry) override;
};
