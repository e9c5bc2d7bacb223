// The record of a suite, and the verdict that its tests add up to.
#include "siblings/QuillonLog.h"

#include <algorithm>
#include <functional>
#include <mutex>

struct CTestSuiteLog::Data {
    std::vector<std::unique_ptr<CTestLog>> tests;
    Pairs meta;
    Pairs summary;
    std::string osVersion;
    // Written under the lock, by the thread that runs the tests.
    CTestSuiteListener * listener = nullptr;
    // Guards what follows.
    std::mutex lock;
    std::vector<CTestPrompt> prompts;
    std::vector<CTestDeviceEvent> deviceEvents;
    std::size_t current = 0;
};

namespace {

using Records = std::vector<std::unique_ptr<CTestLog>>;

bool HasPassed(CTestLog const & test) {
    return test.HasResult() && test.TestStatus() == TEST_STATUS_SUCCESS;
}

bool HasBadResult(CTestLog const & test) {
    return (test.TestStatus() & (TEST_STATUS_FAIL | TEST_STATUS_ABORT)) != 0;
}

bool HasBadEntries(CTestLog const & test) {
    return test.FailureCount() != 0 || test.AbortCount() != 0;
}

bool SpoilsTheSuite(CTestLog const & test) {
    if (HasBadEntries(test) || HasBadResult(test)) return true;
    return test.IsActualTest() && !HasPassed(test);
}

template <typename Predicate>
int CountTrueTests(Records const & tests, Predicate predicate) {
    return static_cast<int>(std::count_if(tests.begin(), tests.end(), [&](auto const & test) {
        return test->IsActualTest() && predicate(*test);
    }));
}

} // namespace

CTestSuiteListener::~CTestSuiteListener() = default;
void CTestSuiteListener::TestOpened(CTestLog const &, std::string const &) {}
void CTestSuiteListener::TestClosed(CTestLog const &) {}
void CTestSuiteListener::PromptAdded(CTestPrompt const &) {}
void CTestSuiteListener::DeviceEventAdded(CTestDeviceEvent const &) {}

CTestSuiteLog::CTestSuiteLog() : m_Data(std::make_unique<Data>()) { OpenTest(false); }

CTestSuiteLog::~CTestSuiteLog() = default;

CTestLog & CTestSuiteLog::OpenTest(bool actualTest) { return OpenTest(actualTest, {}); }

CTestLog & CTestSuiteLog::OpenTest(bool actualTest, std::string const & name) {
    m_Data->tests.push_back(std::make_unique<CTestLog>(actualTest, this));
    {
        std::scoped_lock const lock(m_Data->lock);
        m_Data->current = m_Data->tests.size() - 1;
    }
    CTestLog & test = *m_Data->tests.back();
    if (m_Data->listener != nullptr) m_Data->listener->TestOpened(test, name);
    return test;
}

void CTestSuiteLog::CloseTest() {
    CTestLog & test = *CurrentTestLog();
    if (test.StopTime() == CTestLog::time_point()) test.StopTime(std::chrono::system_clock::now());
    if (m_Data->listener != nullptr) m_Data->listener->TestClosed(test);
}

CTestLog * CTestSuiteLog::CurrentTestLog() { return m_Data->tests.back().get(); }

void CTestSuiteLog::Listener(CTestSuiteListener * listener) {
    std::scoped_lock const lock(m_Data->lock);
    m_Data->listener = listener;
}

CTestSuiteListener * CTestSuiteLog::Listener() const { return m_Data->listener; }

Records const & CTestSuiteLog::TestLogs() const { return m_Data->tests; }

void CTestSuiteLog::AddPrompt(CTestPrompt prompt) {
    std::scoped_lock const lock(m_Data->lock);
    prompt.test = m_Data->current;
    m_Data->prompts.push_back(std::move(prompt));
    if (m_Data->listener != nullptr) m_Data->listener->PromptAdded(m_Data->prompts.back());
}

std::vector<CTestPrompt> CTestSuiteLog::Prompts() const {
    std::scoped_lock const lock(m_Data->lock);
    return m_Data->prompts;
}

void CTestSuiteLog::AddDeviceEvent(CTestDeviceEvent event) {
    std::scoped_lock const lock(m_Data->lock);
    m_Data->deviceEvents.push_back(std::move(event));
    if (m_Data->listener != nullptr)
        m_Data->listener->DeviceEventAdded(m_Data->deviceEvents.back());
}

std::vector<CTestDeviceEvent> CTestSuiteLog::DeviceEvents() const {
    std::scoped_lock const lock(m_Data->lock);
    return m_Data->deviceEvents;
}

void CTestSuiteLog::AddMeta(std::string const & key, std::string const & value) {
    m_Data->meta.emplace_back(key, value);
}

CTestSuiteLog::Pairs const & CTestSuiteLog::Meta() const { return m_Data->meta; }

void CTestSuiteLog::AddToSummary(std::string const & key, std::string const & value) {
    m_Data->summary.emplace_back(key, value);
}

CTestSuiteLog::Pairs const & CTestSuiteLog::Summary() const { return m_Data->summary; }

void CTestSuiteLog::SetOSVersion(char const * text) {
    m_Data->osVersion = text != nullptr ? text : "";
}

std::string const & CTestSuiteLog::OSVersion() const { return m_Data->osVersion; }

void CTestSuiteLog::GetLogStats(
    unsigned long & aborts, unsigned long & fails, unsigned long & warnings, unsigned long & infos,
    unsigned long & unknowns) {
    aborts = fails = warnings = infos = unknowns = 0;
    for (auto const & test : m_Data->tests) {
        aborts += test->AbortCount();
        fails += test->FailureCount();
        warnings += test->WarningCount();
        infos += test->InfoCount();
        unknowns += test->UnknownCount();
    }
}

int CTestSuiteLog::TestCount() {
    return CountTrueTests(m_Data->tests, [](CTestLog const &) { return true; });
}

int CTestSuiteLog::PassedTestCount() { return CountTrueTests(m_Data->tests, HasPassed); }

int CTestSuiteLog::FailedTestCount() {
    return CountTrueTests(m_Data->tests, std::not_fn(HasPassed));
}

bool CTestSuiteLog::SuitePassed() {
    if (m_RequireTests && TestCount() == 0) return false;
    auto const & tests = m_Data->tests;
    return std::none_of(
        tests.begin(), tests.end(), [](auto const & test) { return SpoilsTheSuite(*test); });
}
