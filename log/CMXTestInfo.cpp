// A plain record of one test's outcome.
#include "log/CMXTestInfo.h"

#include <utility>

CMXTestInfo::CMXTestInfo() = default;

CMXTestInfo::CMXTestInfo(CMXTestInfo const & other) = default;

CMXTestInfo & CMXTestInfo::operator=(CMXTestInfo const & other) = default;

CMXTestInfo::CMXTestInfo(CMXTestInfo && other) noexcept
    : m_TestName(std::exchange(other.m_TestName, {})),
      m_TestStatus(other.m_TestStatus),
      m_FailureCount(other.m_FailureCount),
      m_AbortCount(other.m_AbortCount),
      m_WarningCount(other.m_WarningCount),
      m_StartTime(other.m_StartTime),
      m_StopTime(other.m_StopTime) {}

CMXTestInfo & CMXTestInfo::operator=(CMXTestInfo && other) noexcept {
    m_TestName = std::exchange(other.m_TestName, {});
    m_TestStatus = other.m_TestStatus;
    m_FailureCount = other.m_FailureCount;
    m_AbortCount = other.m_AbortCount;
    m_WarningCount = other.m_WarningCount;
    m_StartTime = other.m_StartTime;
    m_StopTime = other.m_StopTime;
    return *this;
}

CMXTestInfo::~CMXTestInfo() = default;
