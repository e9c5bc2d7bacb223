// The record of one test, kept in memory for the report that follows the run.
#include "siblings/QuillonLog.h"

struct CTestLog::Data {
    std::string name;
    time_point start;
    time_point stop;
    TEST_STATUS result = TEST_STATUS_UNKNOWN;
    bool hasResult = false;
    unsigned long failures = 0;
    unsigned long warnings = 0;
    unsigned long aborts = 0;
    unsigned long infos = 0;
    unsigned long unknowns = 0;
    std::vector<CTestLogEntry> entries;
};

namespace {

std::string TextOf(char const * text) { return text != nullptr ? text : std::string(); }

} // namespace

CTestLog::CTestLog(bool actualTest, CTestSuiteLog const * suite)
    : m_IsActualTest(actualTest), m_Suite(suite), m_Data(std::make_unique<Data>()) {}

CTestLog::~CTestLog() = default;

void CTestLog::Reset() {
    *m_Data = Data();
    m_AbortedByUser = false;
    m_Content = 0;
}

void CTestLog::StartTime(time_point const & time) { m_Data->start = time; }
void CTestLog::StopTime(time_point const & time) { m_Data->stop = time; }
CTestLog::time_point CTestLog::StartTime() const { return m_Data->start; }
CTestLog::time_point CTestLog::StopTime() const { return m_Data->stop; }

unsigned int CTestLog::GetTestDuration() const {
    if (m_Data->stop < m_Data->start) return 0;
    auto const whole = std::chrono::floor<std::chrono::seconds>(m_Data->stop - m_Data->start);
    return static_cast<unsigned int>(whole.count());
}

void CTestLog::TestName(char const * name) {
    m_Data->name = TextOf(name);
    ++m_Content;
}

std::string const & CTestLog::TestName() const { return m_Data->name; }

void CTestLog::TestStatus(TEST_STATUS status) {
    m_Data->result = status;
    m_Data->hasResult = true;
    ++m_Content;
}

TEST_STATUS CTestLog::TestStatus() const { return m_Data->result; }
bool CTestLog::HasResult() const { return m_Data->hasResult; }
bool CTestLog::IsActualTest() const { return m_IsActualTest; }

void CTestLog::IncrFailures() { Count(m_Data->failures); }
void CTestLog::IncrWarnings() { Count(m_Data->warnings); }
void CTestLog::IncrAborts() { Count(m_Data->aborts); }
void CTestLog::IncrInfo() { Count(m_Data->infos); }
void CTestLog::IncrUnknowns() { Count(m_Data->unknowns); }

void CTestLog::Count(unsigned long & counter) {
    ++counter;
    ++m_Content;
}

unsigned long CTestLog::FailureCount() const { return m_Data->failures; }
unsigned long CTestLog::WarningCount() const { return m_Data->warnings; }
unsigned long CTestLog::AbortCount() const { return m_Data->aborts; }
unsigned long CTestLog::InfoCount() const { return m_Data->infos; }
unsigned long CTestLog::UnknownCount() const { return m_Data->unknowns; }

void CTestLog::Write(TEST_STATUS status, char const * text, char const * style) {
    m_Data->entries.push_back(
        {status, TextOf(text), TextOf(style), std::chrono::system_clock::now()});
    ++m_Content;
    CTestSuiteListener * const listener = m_Suite != nullptr ? m_Suite->Listener() : nullptr;
    if (listener != nullptr) listener->EntryWritten(*this, m_Data->entries.back());
}

std::vector<CTestLogEntry> const & CTestLog::Entries() const { return m_Data->entries; }
