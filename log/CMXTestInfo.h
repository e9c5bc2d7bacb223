// A plain record of one test's outcome, for test suites and hosts; the library itself has no use
// for it.
//
// It owns its name and nothing else, and belongs to one thread at a time.
#pragma once

#include <cstdint>
#include <string>

#include "app/Export.h"
#include "log/TestStatus.h"

class MORVEX_API CMXTestInfo {
public:
    CMXTestInfo();
    CMXTestInfo(CMXTestInfo const & other);
    CMXTestInfo & operator=(CMXTestInfo const & other);

    // The source keeps its numbers, but its name is empty afterwards.
    CMXTestInfo(CMXTestInfo && other) noexcept;
    CMXTestInfo & operator=(CMXTestInfo && other) noexcept;
    ~CMXTestInfo();

    std::string m_TestName;
    TEST_STATUS m_TestStatus = TEST_STATUS_UNKNOWN;
    std::uint32_t m_FailureCount = 0;
    std::uint32_t m_AbortCount = 0;
    std::uint32_t m_WarningCount = 0;
    // In seconds since the epoch of the system's clock.
    std::uint64_t m_StartTime = 0;
    std::uint64_t m_StopTime = 0;
};
