// The log sink that discards everything.
#include "log/CDummyMXLog.h"

CDummyMXLog::CDummyMXLog() = default;

CDummyMXLog::~CDummyMXLog() = default;

TS_STATUS CDummyMXLog::Clear() { return TS_SUCCESS; }

// Deliberate: a test that starts here answers 0. Pinned by
// CDummyMXLogTest.StartTestReturnsZeroAtOnce.
TEST_STATUS CDummyMXLog::StartTest(char const *, unsigned long) { return TEST_STATUS_UNKNOWN; }

TEST_STATUS CDummyMXLog::StopTest(TEST_STATUS status) { return status; }

TS_STATUS CDummyMXLog::InternalWrite(TEST_STATUS, char const * const, CFormatInfo const *) {
    return TS_SUCCESS;
}
