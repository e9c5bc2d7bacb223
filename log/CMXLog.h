// The base of every log sink, and the one place where a test's outcome is kept.
//
// A log belongs to the thread that runs the test: nothing here takes a lock. It needs CAppState, a
// suite record and an output buffer set on CUIUpdate for as long as it lives; it owns none of them.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "app/CAppState.h"
#include "app/Export.h"
#include "app/TraceProvider.h"
#include "log/TestStatus.h"
#include "siblings/Keelbase.h"

class CMXUserInput;
class CTestSuiteLog;
struct CFormatInfo;

class MORVEX_API CMXLog {
public:
    // Opens the first test, so that entries before the first StartTest have one. Rings the host,
    // but lets no abort of the operator out.
    CMXLog();
    CMXLog(CMXLog const &) = delete;
    CMXLog & operator=(CMXLog const &) = delete;

    // Resets the suite record's m_RunPhase. Sinks write their summary before this.
    virtual ~CMXLog();

    // Called at the end of every test that had stop lines. Here: does nothing.
    virtual TS_STATUS Clear();

    // Writes heading and start line, waits `delay` milliseconds, returns TEST_STATUS_SUCCESS.
    // Calls out of order are not refused. Throws CQNRunTimeException when the operator has aborted
    // and throwing is on.
    virtual TEST_STATUS StartTest(char const * name, unsigned long delay);

    // Closes the test with `status`, as CompleteTest.
    virtual TEST_STATUS StopTest(TEST_STATUS status);

    // Merges `status` into the word, writes the verdict entries and the stop lines, and files the
    // result in the test's record. Returns the result: TEST_STATUS_SUCCESS, _FAIL or _ABORT; a true
    // test never answers _ABORT, the record keeps that it aborted. Throws CQNRunTimeException for a
    // word that cannot be returned.
    virtual TEST_STATUS CompleteTest(TEST_STATUS status);

    // Opens a further test on this log: resets the current record and takes the start time.
    void InitTest();

    TEST_STATUS StartTest(std::string const & name, unsigned long delay) {
        return StartTest(name.c_str(), delay);
    }

    // Closes the test with the word that it has.
    TEST_STATUS StopTest() { return StopTest(m_TestStatus); }

    // The accumulated word: it starts as TEST_STATUS_SUCCESS and gains bits with each entry.
    TEST_STATUS TestStatus() const { return m_TestStatus; }
    void ClearTestStatus() { m_TestStatus = TEST_STATUS_SUCCESS; }

    bool TestActive() const { return m_TestActive; }
    bool StartTestHasBeenCalled() const { return m_StartTestCalled; }
    bool StopTestHasBeenCalled() const { return m_StopTestCalled; }

    // Whether the run has a global log; without one no test has stop lines.
    bool GlobalLogExists() const { return m_GlobalLogExists; }
    void GlobalLogExists(bool exists) { m_GlobalLogExists = exists; }

    // Holds the entries of a test back and shows them at its stop, if it failed or aborted.
    TS_STATUS EnableLogOnlyFailures();
    TS_STATUS DisableLogOnlyFailures();

    TS_STATUS EnableLogging();
    TS_STATUS DisableLogging();

    // Shows each failure entry to the operator before the test goes on. `input` stays the caller's
    // and must outlive the break. TS_FAILED for null, and nothing changes.
    TS_STATUS EnableBreakOnLogFailure(CMXUserInput * input);
    TS_STATUS DisableBreakOnLogFailure();

    // Folds the result code of a library function into the word and returns the word.
    TEST_STATUS TranslateTestStatus(TS_STATUS code);

    // By the counts of the current record, not by the word.
    bool TestFailed() const;
    bool TestAborted() const;

    // Writes the suite's summary and files its verdict. TS_ABORTED, and nothing written, when
    // nothing was recorded. Throws CQNRunTimeException when the count of unexpected entries changes
    // under it.
    TS_STATUS DumpSummaryCounts();

    // Reduces a caller's word to the one element that an entry carries, or 0. What had to be
    // corrected is written to `log`, which must not be null.
    static TEST_STATUS ConvertStatusForLog(CMXLog * log, TEST_STATUS status);

    // Makes a legal return value of an accumulated word. What had to be corrected is written to
    // `log`, which must not be null. Throws CQNRunTimeException for a word that has no verdict.
    static TEST_STATUS ConvertStatusToReturn(CMXLog * const log, TEST_STATUS status);

    // The look of an entry with this status. `log` may be null; otherwise it is told of a word
    // that is not one element.
    static CFormatInfo const & GetDefaultFormat(TEST_STATUS status, CMXLog * log);

    static CFormatInfo const & DefaultInfoFormat();
    static CFormatInfo const & DefaultWarningFormat();
    static CFormatInfo const & DefaultFailFormat();
    static CFormatInfo const & DefaultAbortFormat() { return DefaultFailFormat(); }
    static CFormatInfo const & DefaultErrorFormat() { return DefaultFailFormat(); }
    static CFormatInfo const & DefaultUnknownFormat() { return DefaultFailFormat(); }
    static CFormatInfo const & DefaultDiagnosticFormat();

    // Write one entry, formatted printf-style (siblings/Keelbase.h tells how). Each returns the
    // element that was logged, TEST_STATUS_NOT_LOGGED when the run's level dropped the entry, or 0
    // when logging is off or the status had no element. The word takes the status in every case.
    template <typename... Values>
    TEST_STATUS Write(TEST_STATUS status, char const * format, Values const &... values) {
        return WriteFormatted(status, GetDefaultLogVerbosity(status), nullptr, format, values...);
    }

    template <typename... Values>
    TEST_STATUS Write(
        TEST_STATUS status, eQNLogVerbosity level, char const * format, Values const &... values) {
        return WriteFormatted(status, level, nullptr, format, values...);
    }

    template <typename... Values>
    TEST_STATUS Write(
        TEST_STATUS status, eQNLogVerbosity level, CFormatInfo const * look, char const * format,
        Values const &... values) {
        return WriteFormatted(status, level, look, format, values...);
    }

    template <typename... Values>
    TEST_STATUS Write(
        TEST_STATUS status, eQNLogVerbosity level, std::nullptr_t, char const * format,
        Values const &... values) {
        return WriteFormatted(status, level, nullptr, format, values...);
    }

protected:
    // The level of an entry that names none. Only a word of one element has a level of its own.
    static eQNLogVerbosity GetDefaultLogVerbosity(TEST_STATUS status) {
        switch (status) {
        case TEST_STATUS_FAIL:
        case TEST_STATUS_ABORT:
        case TEST_STATUS_ERROR:
            return Minimal;
        case TEST_STATUS_WARNING:
            return Low;
        default:
            return Normal;
        }
    }

    // The sink's one duty: shows one entry. `status` is one element or 0, `text` is UTF-8 and not
    // null, `format` may be null. Both are borrowed. The log ignores the result.
    virtual TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) = 0;

    // The times of start and stop as they stand in the log: Nov 14, 2026 - 17:08:36.
    virtual std::string MakeStartTimeString();
    virtual std::string MakeStopTimeString();

    TEST_STATUS DoWrite(
        TEST_STATUS status, eQNLogVerbosity level, CFormatInfo const * format,
        char const * const text);
    TEST_STATUS DoWrite(
        TEST_STATUS status, eQNLogVerbosity level, CFormatInfo const * format,
        wchar_t const * const text);

    // Writes an entry of the log's own: filtered and counted, but the word stays as it is.
    TEST_STATUS SimulateLog(
        TEST_STATUS status, eQNLogVerbosity level, CBasicFormattedString<char> const & text);

    void IncrementTestLog(TEST_STATUS status) const;

    // Writes the stop lines and files the test's counts. `status` is UpdateTestStatus's result.
    void DoStopTest(TEST_STATUS status);

    // Writes the verdict entries and returns the test's result.
    TEST_STATUS UpdateTestStatus();

    // Whether DumpSummaryCounts has been entered, with whatever outcome.
    bool SummaryDumped() const { return m_SummaryDumped; }

private:
    // True when an entry of this level reaches neither the sink nor the trace.
    bool IsDropped(eQNLogVerbosity level) const {
        if (!m_LoggingEnabled) return true;
        return !CAppState::IsLogVerbosityLevel(level) && !TraceProvider::IsOn(TraceFlag::Log);
    }

    void Merge(TEST_STATUS status) {
        m_TestStatus = (m_TestStatus | status) & ~(TEST_STATUS_ERROR | TEST_STATUS_NOT_LOGGED);
    }

    // InitTest without its update of the display.
    void OpenTest();

    // The life of a test, in pieces.
    void ShowHeading(CFormatInfo const & look);
    void
    WriteOwnLine(std::uint16_t traceNumber, std::string const & text, CFormatInfo const & look);
    void WriteStopLines(CFormatInfo const & look);
    void WriteClosing(CFormatInfo const & look);
    void FileCounts() const;

    // One entry on its way to the sink.
    bool SpeaksBeforeEntry(TEST_STATUS status) const;
    void ShowFailure(char const * text);

    // Verdict entries of a test's close.
    void WriteVerdicts();
    void WriteTrueTestVerdicts();
    void WriteMisusedElements();
    void WriteUnexpectedEntries();

    // The summary of a suite, in pieces.
    void WriteSuiteFailures(CTestSuiteLog & suite, unsigned long aborts, unsigned long unknowns);
    void WriteSuiteFailure(char const * text);
    [[noreturn]] void ThrowMalformedStatus();
    void WriteSummary(CTestSuiteLog & suite, std::string const & counts);

    // Writes an entry about a status word. `message` has one directive, for the word.
    void Report(eQNLogVerbosity level, char const * message, TEST_STATUS status);

    // The same at level Diagnostic, and not in a run of level Internal.
    void Warn(char const * message, TEST_STATUS status);

    // Steps of the two conversions. `word` is what is left of `status`, the one that is reported.
    TEST_STATUS ConvertUnloggable(TEST_STATUS status);
    TEST_STATUS DropMisusedElements(TEST_STATUS status);
    TEST_STATUS ReturnOfTrueTest(TEST_STATUS word, TEST_STATUS status);
    TEST_STATUS ReturnOfOtherRun(TEST_STATUS word, TEST_STATUS status);

    template <typename... Values>
    TEST_STATUS WriteFormatted(
        TEST_STATUS status, eQNLogVerbosity level, CFormatInfo const * look, char const * format,
        Values const &... values) {
        if (IsDropped(level)) {
            Merge(status);
            return m_LoggingEnabled ? TEST_STATUS_NOT_LOGGED : TEST_STATUS_UNKNOWN;
        }
        return DoWrite(
            status, level, look,
            FormatText(nullptr, nullptr, FormatPadding{0, 0}, format, values...));
    }

    std::string m_PendingText;
    bool m_LogOnlyFailures = false;
    std::string m_TestName;
    std::uint32_t m_TestCount = 0;
    bool m_TestActive = false;
    bool m_LoggingEnabled = true;
    bool m_BreakOnLogFailure = false;
    bool m_TestInitialized = false;
    bool m_StopTestCalled = false;
    bool m_StartTestCalled = false;
    bool m_SummaryDumped = false;
    CMXUserInput * m_BreakUserInput = nullptr;
    bool m_GlobalLogExists = false;
    TEST_STATUS m_TestStatus = TEST_STATUS_SUCCESS;
    std::chrono::system_clock::time_point * m_StartTime;
    std::chrono::system_clock::time_point * m_StopTime;
};
