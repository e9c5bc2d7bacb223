// What the library requires of QuillonLog: the records of a suite and of its tests.
//
// The host owns the suite record and the engine that drives the run opens and closes its tests;
// the log fills the record of the test that is current. But for the questions to the operator
// nothing here takes a lock: a record belongs to the thread that runs the tests, and may be read
// elsewhere when that thread is done.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "log/TestStatus.h"
#include "platform/BaseTypes.h"

#if defined(QUILLONLOG_BUILD)
#define QUILLONLOG_API MORVEX_SYMBOL_EXPORT
#else
#define QUILLONLOG_API MORVEX_SYMBOL_IMPORT
#endif

// One entry of a test's record.
struct CTestLogEntry {
    TEST_STATUS status;
    std::string text;
    // CSS declarations, empty when the entry has no style of its own.
    std::string style;
    std::chrono::system_clock::time_point time;
};

// One question to the operator, and what became of it. Texts are UTF-8.
struct CTestPrompt {
    std::string question{};
    // What was chosen or entered; empty without an answer.
    std::string answer{};
    // Where the answer came from: "operator" or "file"; "none" without one.
    std::string source{};
    // Why there is no answer.
    std::string reason{};
    double seconds = 0;
    // The run was aborted because nobody could answer it.
    bool hasAborted = false;
    // Which of the suite's TestLogs() was current, counted from 0.
    std::size_t test = 0;
};

// Something that happened to a device while the tests ran. Texts are UTF-8.
struct CTestDeviceEvent {
    std::string what{};
    // The system's name of the device; empty where it gave none.
    std::string device{};
};

class CTestLog;
class CTestSuiteLog;

// Told of what is stored as it is stored, on the thread that stores it: for a host that keeps what
// the records hold in a place of its own. All arguments are borrowed for the call. An exception
// leaves through the operation that told; what it stored is stored all the same.
class QUILLONLOG_API CTestSuiteListener {
public:
    virtual ~CTestSuiteListener();

    virtual void EntryWritten(CTestLog const & test, CTestLogEntry const & entry) = 0;

    // The record is new, and so without the name that its test will bear. Nothing happens unless
    // overridden, as with all that follows.
    virtual void TestOpened(CTestLog const & test, std::string const & name);

    // The record has all that the test left in it. Later entries of the same record may follow.
    virtual void TestClosed(CTestLog const & test);

    // These two come on any thread, also at the same time as the others.
    virtual void PromptAdded(CTestPrompt const & prompt);
    virtual void DeviceEventAdded(CTestDeviceEvent const & event);
};

// The record of one test: its name, times, result, entries, and how many of each kind were logged.
class QUILLONLOG_API CTestLog {
public:
    using time_point = std::chrono::system_clock::time_point;

    // A true test is one that passes or fails a device; anything else is set-up or a utility.
    // `suite` is the record that it belongs to, if any.
    explicit CTestLog(bool actualTest, CTestSuiteLog const * suite = nullptr);
    CTestLog(CTestLog const &) = delete;
    CTestLog & operator=(CTestLog const &) = delete;
    ~CTestLog();

    // Clears name, times, result, entries, counts and m_AbortedByUser; the kind of test stays.
    void Reset();

    void StartTime(time_point const & time);
    void StopTime(time_point const & time);
    time_point StartTime() const;
    time_point StopTime() const;

    // Whole seconds from start to stop, 0 when the stop lies before the start.
    unsigned int GetTestDuration() const;

    // A null name counts as empty.
    void TestName(char const * name);
    std::string const & TestName() const;

    // Stores the test's result, which closes the record.
    void TestStatus(TEST_STATUS status);
    TEST_STATUS TestStatus() const;
    bool HasResult() const;

    bool IsActualTest() const;

    void IncrFailures();
    void IncrWarnings();
    void IncrAborts();
    void IncrInfo();
    void IncrUnknowns();
    unsigned long FailureCount() const;
    unsigned long WarningCount() const;
    unsigned long AbortCount() const;
    unsigned long InfoCount() const;
    unsigned long UnknownCount() const;

    // Stores one entry with the present time. A null text counts as empty, a null style as none.
    void Write(TEST_STATUS status, char const * text, char const * style);
    std::vector<CTestLogEntry> const & Entries() const;

    // Set by the engine when the operator stopped the test.
    bool m_AbortedByUser = false;

    // How many facts were recorded since the record was new or reset: each entry counted, each
    // entry written, each name, each result. Zero means that nothing was recorded.
    std::uint64_t m_Content = 0;

private:
    struct Data;

    void Count(unsigned long & counter);

    bool m_IsActualTest;
    CTestSuiteLog const * m_Suite;
    std::unique_ptr<Data> m_Data;
};

// The record of a suite: its tests in running order, and what was filed for the reports.
class QUILLONLOG_API CTestSuiteLog {
public:
    using Pairs = std::vector<std::pair<std::string, std::string>>;

    // A suite starts with one record that is not a true test, for what is logged before the first.
    CTestSuiteLog();
    CTestSuiteLog(CTestSuiteLog const &) = delete;
    CTestSuiteLog & operator=(CTestSuiteLog const &) = delete;
    ~CTestSuiteLog();

    // The engine's side: makes a new record the current one, and says that its test has ended,
    // which is the stop time of a test whose log has stored none. The record stays current until
    // the next one is opened, so that later entries have a place.
    CTestLog & OpenTest(bool actualTest);
    // The name is for the listener alone.
    CTestLog & OpenTest(bool actualTest, std::string const & name);
    void CloseTest();

    // The record of the current test; the suite keeps it.
    CTestLog * CurrentTestLog();

    // Whom to tell of what is stored; null, as at first, for nobody. It stays the caller's. It is
    // set on the thread that runs the tests; when that returns, no call is on its way to the one
    // before.
    void Listener(CTestSuiteListener * listener);
    CTestSuiteListener * Listener() const;

    // Every record in running order, the one before the first test included.
    std::vector<std::unique_ptr<CTestLog>> const & TestLogs() const;

    // Keeps a question, as one of the current test, whatever its `test` says. These four may be
    // called from any thread, also while the tests run.
    void AddPrompt(CTestPrompt prompt);
    std::vector<CTestPrompt> Prompts() const;
    void AddDeviceEvent(CTestDeviceEvent event);
    std::vector<CTestDeviceEvent> DeviceEvents() const;

    // Report data in the order in which it came; a key may stand more than once.
    void AddMeta(std::string const & key, std::string const & value);
    Pairs const & Meta() const;
    void AddToSummary(std::string const & key, std::string const & value);
    Pairs const & Summary() const;
    void SetOSVersion(char const * text);
    std::string const & OSVersion() const;

    // The sums over every record of the suite.
    void GetLogStats(
        unsigned long & aborts, unsigned long & fails, unsigned long & warnings,
        unsigned long & infos, unsigned long & unknowns);

    // True tests that were opened; those whose result is success; all others of them. A test that
    // has no result yet, because it runs or because it was never closed, has not passed.
    int TestCount();
    int PassedTestCount();
    int FailedTestCount();

    // No failure and no abort was counted in any record or is any record's result, every true
    // test has passed, and at least one was run where tests are required. Warnings do not count.
    bool SuitePassed();

    // Cleared when the program's configured name is not that of the running application.
    bool m_ProgramNameMatches = true;

    // Set by the engine: a suite in which no test was run is a failure.
    bool m_RequireTests = false;

    // 3 makes a word without a usable element return success in place of an abort; a true test adds
    // a failure to either. Reset by the end of a log.
    std::uint32_t m_RunPhase = 0;

private:
    struct Data;
    std::unique_ptr<Data> m_Data;
};
