// The record of the test that is current, for the library's own use.
//
// A run may have no suite record, or a suite no current test: then the operations have no effect,
// the test is not a true one, and all counts are 0. Each call asks for the record anew, because the
// engine may open another at any time.
#pragma once

#include <chrono>

#include "app/CAppState.h"
#include "log/TestStatus.h"
#include "siblings/QuillonLog.h"

namespace CurrentTest {

template <typename Operation>
void With(Operation operation) {
    if (CTestLog * const record = CAppState::CurrentTestLog()) operation(*record);
}

template <typename Value, typename Query>
Value Read(Value absent, Query query) {
    CTestLog const * const record = CAppState::CurrentTestLog();
    return record != nullptr ? query(*record) : absent;
}

inline bool IsActualTest() {
    return Read(false, [](CTestLog const & record) { return record.IsActualTest(); });
}

inline bool AbortedByUser() {
    return Read(false, [](CTestLog const & record) { return record.m_AbortedByUser; });
}

inline bool HasContent() {
    return Read(false, [](CTestLog const & record) { return record.m_Content != 0; });
}

inline unsigned long FailureCount() {
    return Read(0ul, [](CTestLog const & record) { return record.FailureCount(); });
}

inline unsigned long WarningCount() {
    return Read(0ul, [](CTestLog const & record) { return record.WarningCount(); });
}

inline unsigned long AbortCount() {
    return Read(0ul, [](CTestLog const & record) { return record.AbortCount(); });
}

inline unsigned long UnknownCount() {
    return Read(0ul, [](CTestLog const & record) { return record.UnknownCount(); });
}

// In seconds.
inline unsigned int Duration() {
    return Read(0u, [](CTestLog const & record) { return record.GetTestDuration(); });
}

} // namespace CurrentTest
