// The close of a test, and the summary of a suite.
#include "log/CMXLog.h"

#include "log/CurrentTest.h"
#include "log/EntryFormats.h"
#include "log/TracePoints.h"
#include "output/CFormatInfo.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "siblings/QuillonLog.h"

namespace {

constexpr unsigned int kMinute = 60;
constexpr unsigned int kHour = 60 * kMinute;
constexpr unsigned int kDay = 24 * kHour;

std::string Amount(unsigned int count, char const * unit) {
    return std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

// Each unit shows from the first one on that is not zero; seconds always do.
std::string Breakdown(unsigned int seconds) {
    std::string text;
    if (seconds >= kDay) text += Amount(seconds / kDay, "day") + ", ";
    if (seconds >= kHour) text += Amount(seconds % kDay / kHour, "hour") + ", ";
    if (seconds >= kMinute) text += Amount(seconds % kHour / kMinute, "minute") + ", ";
    return text + Amount(seconds % kMinute, "second");
}

std::string DurationText(unsigned int seconds) {
    std::string text = "Duration:  " + Amount(seconds, "second");
    if (seconds > kMinute) text += " (" + Breakdown(seconds) + ")";
    return text + ".\n";
}

std::string
CountText(char const * format, unsigned long fails, unsigned long aborts, unsigned long warnings) {
    return FormatText(nullptr, nullptr, FormatPadding{0, 0}, format, fails, aborts, warnings);
}

std::string TestCountText() {
    return CountText(
        "Fails (%d); Aborts (%d); Warnings (%d)", CurrentTest::FailureCount(),
        CurrentTest::AbortCount(), CurrentTest::WarningCount());
}

char const * EntryEnding(unsigned long count) { return count == 1 ? "y" : "ies"; }

struct SuiteCounts {
    unsigned long aborts = 0;
    unsigned long fails = 0;
    unsigned long warnings = 0;
    unsigned long infos = 0;
    unsigned long unknowns = 0;
};

SuiteCounts CountsOf(CTestSuiteLog & suite) {
    SuiteCounts counts;
    suite.GetLogStats(counts.aborts, counts.fails, counts.warnings, counts.infos, counts.unknowns);
    return counts;
}

} // namespace

TEST_STATUS CMXLog::CompleteTest(TEST_STATUS status) {
    m_TestStatus |= status;
    bool const actualTest = CurrentTest::IsActualTest();
    TEST_STATUS const result = UpdateTestStatus();
    if (actualTest && m_StartTestCalled && m_GlobalLogExists && !m_StopTestCalled)
        DoStopTest(result);
    m_TestActive = false;
    CurrentTest::With([result](CTestLog & record) { record.TestStatus(result); });
    return actualTest ? result & ~TEST_STATUS_ABORT : result;
}

TEST_STATUS CMXLog::UpdateTestStatus() {
    WriteVerdicts();
    WriteMisusedElements();
    WriteUnexpectedEntries();
    return ConvertStatusToReturn(this, m_TestStatus);
}

// Brings word and counts into step: what the word claims gets an entry, what was counted gets its
// bit.
void CMXLog::WriteVerdicts() {
    bool const actualTest = CurrentTest::IsActualTest();
    if (CurrentTest::AbortedByUser())
        Write(TEST_STATUS_ABORT, Quiet, "%sborted by user.", actualTest ? "Test a" : "A");
    if ((m_TestStatus & TEST_STATUS_ABORT) != 0 && CurrentTest::AbortCount() == 0)
        Write(TEST_STATUS_ABORT, Quiet, "Test aborted.");
    if (CurrentTest::AbortCount() != 0) m_TestStatus |= TEST_STATUS_ABORT;
    if (CurrentTest::FailureCount() != 0) m_TestStatus |= TEST_STATUS_FAIL;
    if (actualTest) WriteTrueTestVerdicts();
}

void CMXLog::WriteTrueTestVerdicts() {
    if (CurrentTest::AbortCount() != 0)
        Write(TEST_STATUS_FAIL, Quiet, "Test did not execute all required steps.");
    bool const bad = (m_TestStatus & (TEST_STATUS_FAIL | TEST_STATUS_ABORT)) != 0;
    if (bad && CurrentTest::FailureCount() == 0) Write(TEST_STATUS_FAIL, Quiet, "Test failed.");
}

// Deliberate: every entry takes both elements out of the word, so after any verdict entry neither
// is noticed, and of the two only the first. Pinned by
// CMXLogCloseTest.OfBothMisusedElementsOnlyTheFirstIsReported.
void CMXLog::WriteMisusedElements() {
    if ((m_TestStatus & TEST_STATUS_NOT_LOGGED) != 0) {
        Write(
            TEST_STATUS_WARNING, Diagnostic,
            "Unexpected TEST_STATUS return value element: TEST_STATUS_NOT_LOGGED");
    }
    if ((m_TestStatus & TEST_STATUS_ERROR) != 0) {
        Write(
            TEST_STATUS_WARNING, Diagnostic,
            "Unexpected TEST_STATUS return value element: TEST_STATUS_ERROR");
    }
}

void CMXLog::WriteUnexpectedEntries() {
    unsigned long const count = CurrentTest::UnknownCount();
    if (count == 0) return;
    CBasicFormattedString<char> const counted(
        "Test log has %u unexpected log entr%s", count, EntryEnding(count));
    // Deliberate: the text is a format once more, so that an indent counts twice. Pinned by
    // CMXLogCloseTest.TheUnexpectedEntriesTextIsIndentedTwice.
    CBasicFormattedString<char> const text(static_cast<char const *>(counted));
    if (!CAppState::IsLogVerbosityLevel(Diagnostic)) {
        TracePoints::Send(TracePoints::kDroppedOwnEntry, text);
        return;
    }
    CFormatInfo const look = EntryFormats::Diagnostic();
    IncrementTestLog(TEST_STATUS_WARNING);
    InternalWrite(TEST_STATUS_WARNING, text, &look);
}

void CMXLog::DoStopTest(TEST_STATUS status) {
    m_StopTestCalled = true;
    m_StartTestCalled = false;
    COutputBuffer * const buffer = CUIUpdate::GetUIUpdate()->GetOutputBuffer();
    buffer->SetDefaultFormatInfo();
    if (m_TestActive) {
        *m_StopTime = std::chrono::system_clock::now();
        CurrentTest::With([this](CTestLog & record) { record.StopTime(*m_StopTime); });
        CFormatInfo const look = EntryFormats::Stop(TestStatusPasses(status));
        WriteStopLines(look);
        WriteClosing(look);
        FileCounts();
    }
    buffer->SetDefaultFormatInfo();
    CUIUpdate::DoUpdate(true);
    Clear();
}

void CMXLog::WriteStopLines(CFormatInfo const & look) {
    WriteOwnLine(TracePoints::kStopLine, "\nStop time: " + MakeStopTimeString(), look);
    WriteOwnLine(TracePoints::kDuration, DurationText(CurrentTest::Duration()), look);
}

void CMXLog::WriteClosing(CFormatInfo const & look) {
    std::string const closing =
        "Stopping Test [ " + m_TestName + ":\n     Number of: " + TestCountText() + " ]\r\n\r\n";
    if (!m_LogOnlyFailures) {
        WriteOwnLine(TracePoints::kClosing, closing, look);
        return;
    }
    m_PendingText += closing;
    if (TestFailed() || TestAborted())
        WriteOwnLine(TracePoints::kHeldBackText, m_PendingText, look);
}

void CMXLog::FileCounts() const {
    CTestSuiteLog * const suite = CAppState::TestSuiteLog();
    if (suite == nullptr) return;
    // Deliberate: filed by the word, in which a warning outweighs a failure, not by the result that
    // the colour shows. Pinned by CMXLogCloseTest.AFailedTestWithAWarningIsFiledAsPassed.
    char const * const key = TestStatusPasses(m_TestStatus) ? "Test-Pass" : "Test-Fail";
    suite->AddMeta(key, m_TestName + " [" + TestCountText() + "]");
}

TS_STATUS CMXLog::DumpSummaryCounts() {
    m_SummaryDumped = true;
    CTestSuiteLog * const suite = CAppState::TestSuiteLog();
    if (suite == nullptr || !CurrentTest::HasContent()) return TS_ABORTED;

    if (CUIUpdate::GetUIUpdate()->AbortFunction())
        DoWrite(TEST_STATUS_ABORT, Quiet, nullptr, "\n*** TEST SUITE WAS ABORTED BY USER ***");
    SuiteCounts const before = CountsOf(*suite);
    WriteSuiteFailures(*suite, before.aborts, before.unknowns);

    SuiteCounts const counts = CountsOf(*suite);
    if (counts.unknowns != before.unknowns) ThrowMalformedStatus();
    WriteSummary(
        *suite, CountText(
                    "Fails (%lu); Aborts (%lu); Warnings (%lu)", counts.fails, counts.aborts,
                    counts.warnings));
    return TS_SUCCESS;
}

void CMXLog::WriteSuiteFailures(
    CTestSuiteLog & suite, unsigned long aborts, unsigned long unknowns) {
    if (unknowns != 0) {
        SimulateLog(
            TEST_STATUS_WARNING, Diagnostic,
            CBasicFormattedString<char>(
                "Test Suite has %u unexpected log entr%s", unknowns, EntryEnding(unknowns)));
    }
    if (aborts != 0) {
        WriteSuiteFailure(
            "One or more functions called in this Test Suite failed to perform required tasks.");
    }
    if (suite.m_RequireTests && suite.TestCount() == 0)
        WriteSuiteFailure("No tests in this Test Suite were run.");
}

void CMXLog::WriteSuiteFailure(char const * text) {
    SimulateLog(TEST_STATUS_FAIL, Quiet, CBasicFormattedString<char>(text));
}

void CMXLog::ThrowMalformedStatus() {
    WriteSuiteFailure("INTERNAL ERROR: malformed log status!");
    ThrowQNRunTime("Couldn't write test suite summary.");
}

void CMXLog::WriteSummary(CTestSuiteLog & suite, std::string const & counts) {
    bool const passed = suite.SuitePassed();
    CFormatInfo const look = EntryFormats::Summary(passed);
    suite.AddMeta("Suite-Result", std::string(passed ? "PASS" : "FAIL") + " [" + counts + "]");
    WriteOwnLine(TracePoints::kSummary, "TEST SUITE SUMMARY:\n    [ " + counts + " ]\n", look);
    WriteOwnLine(
        TracePoints::kResults,
        "TEST RESULTS:\n    [ Passed (" + std::to_string(suite.PassedTestCount()) + "); Failed ("
            + std::to_string(suite.FailedTestCount()) + ") ]",
        look);
}
