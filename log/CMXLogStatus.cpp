// How status words are corrected, reduced to one element, made a verdict and given a look.
#include "log/CMXLog.h"

#include "log/CurrentTest.h"
#include "log/EntryFormats.h"
#include "output/CFormatInfo.h"
#include "siblings/QuillonLog.h"

namespace {

// What an entry can carry, the element that wins first.
constexpr TEST_STATUS kByPriority[] = {
    TEST_STATUS_ABORT, TEST_STATUS_FAIL, TEST_STATUS_WARNING, TEST_STATUS_ERROR, TEST_STATUS_INFO};
constexpr TEST_STATUS kLoggable = TEST_STATUS_ABORT | TEST_STATUS_FAIL | TEST_STATUS_WARNING
                                  | TEST_STATUS_ERROR | TEST_STATUS_INFO;
constexpr TEST_STATUS kVerdict = TEST_STATUS_FAIL | TEST_STATUS_ABORT;

constexpr TS_STATUS kCodeFailed = 0x80000000;
constexpr TS_STATUS kCodeWarning = 0x40000000;
constexpr TS_STATUS kCodeAborted = 0x10000000;

constexpr std::uint32_t kPhaseWithoutVerdict = 3;

bool HasNoValidElement(TEST_STATUS status) { return (status & TEST_STATUS_VALID_MASK) == 0; }

TEST_STATUS Replace(TEST_STATUS word, TEST_STATUS element, TEST_STATUS by) {
    return (word & ~element) | by;
}

// The result of a test whose word says nothing.
TEST_STATUS ResultOfUnsetWord(bool actualTest) {
    CTestSuiteLog const * const suite = CAppState::TestSuiteLog();
    bool const succeeds = suite != nullptr && suite->m_RunPhase == kPhaseWithoutVerdict;
    TEST_STATUS const result = succeeds ? TEST_STATUS_SUCCESS : TEST_STATUS_ABORT;
    return actualTest ? result | TEST_STATUS_FAIL : result;
}

} // namespace

TEST_STATUS CMXLog::TranslateTestStatus(TS_STATUS code) {
    if ((code & kCodeFailed) != 0) m_TestStatus |= TEST_STATUS_FAIL;
    if ((code & kCodeAborted) != 0) m_TestStatus |= TEST_STATUS_ABORT;
    if ((code & kCodeWarning) != 0) m_TestStatus |= TEST_STATUS_WARNING;
    return m_TestStatus;
}

void CMXLog::Report(eQNLogVerbosity level, char const * message, TEST_STATUS status) {
    SimulateLog(TEST_STATUS_WARNING, level, CBasicFormattedString<char>(message, status));
}

void CMXLog::Warn(char const * message, TEST_STATUS status) {
    // Deliberate: the most talkative run hears nothing of this. Pinned by
    // CMXLogTest.ARunOfLevelInternalHearsNoWarningAboutAStatus.
    if (CAppState::QNLogVerbosityLevel() == Internal) return;
    Report(Diagnostic, message, status);
}

TEST_STATUS CMXLog::ConvertStatusForLog(CMXLog * log, TEST_STATUS status) {
    if (HasNoValidElement(status)) {
        log->Warn("TEST_STATUS has no valid elements: (status = 0x%08X).", status);
        return TEST_STATUS_UNKNOWN;
    }
    if ((status & TEST_STATUS_INVALID_MASK) != 0)
        log->Warn("TEST_STATUS has invalid elements: (status = 0x%08X).", status);
    if ((status & kLoggable) == 0) return log->ConvertUnloggable(status);
    if ((status & kVerdict) == TEST_STATUS_FAIL && !CurrentTest::IsActualTest()) {
        log->Warn(
            "This is not a pass/fail test.  TEST_STATUS should only be set to TEST_STATUS_FAIL "
            "when it fails to pass a true pass/fail test: (status = 0x%08X).",
            status);
        return TEST_STATUS_ABORT;
    }
    for (TEST_STATUS const element : kByPriority) {
        if ((status & element) != 0) return element;
    }
    log->Warn("Unexpected TEST_STATUS value: (status = 0x%08X).", status);
    return TEST_STATUS_UNKNOWN;
}

TEST_STATUS CMXLog::ConvertUnloggable(TEST_STATUS status) {
    if ((status & TEST_STATUS_SUCCESS) != 0) {
        Warn(
            "TEST_STATUS_SUCCESS isn't a valid status for logging--converting to "
            "TEST_STATUS_INFORMATION: (status = 0x%08X)",
            status);
        return TEST_STATUS_INFO;
    }
    Warn("TEST_STATUS has no elements that are valid for logging: (status = 0x%08X).", status);
    return TEST_STATUS_UNKNOWN;
}

TEST_STATUS CMXLog::ConvertStatusToReturn(CMXLog * const log, TEST_STATUS status) {
    if (HasNoValidElement(status))
        ThrowQNRunTime("Unrecognized return code: (status = 0x%08X).", status);

    TEST_STATUS word = log->DropMisusedElements(status);
    bool const actualTest = CurrentTest::IsActualTest();
    if (word == 0) {
        log->Report(Internal, "The status is not set:  (status = 0x%08X).", status);
        word = ResultOfUnsetWord(actualTest);
    }
    if ((word & (kVerdict | TEST_STATUS_SUCCESS)) == 0)
        ThrowQNRunTime("Illegal test return code. (test status = 0x%08X)", status);
    if ((word & kVerdict) == 0) return TEST_STATUS_SUCCESS;
    return actualTest ? log->ReturnOfTrueTest(word, status) : log->ReturnOfOtherRun(word, status);
}

// The word without invalid bits and without elements that only entries have.
TEST_STATUS CMXLog::DropMisusedElements(TEST_STATUS status) {
    TEST_STATUS word = status & TEST_STATUS_VALID_MASK;
    if ((word & TEST_STATUS_NOT_LOGGED) != 0) {
        Report(
            Normal, "TEST_STATUS has element TEST_STATUS_NOT_LOGGED:  (status = 0x%08X).", status);
        word &= ~TEST_STATUS_NOT_LOGGED;
    }
    if ((word & TEST_STATUS_INFO) != 0) {
        Report(Internal, "TEST_STATUS has element TEST_STATUS_INFO:  (status = 0x%08X).", status);
        word = Replace(word, TEST_STATUS_INFO, TEST_STATUS_SUCCESS);
    }
    if ((word & TEST_STATUS_ERROR) != 0) {
        Report(Internal, "TEST_STATUS has element TEST_STATUS_ERROR:  (status = 0x%08X).", status);
        word = Replace(word, TEST_STATUS_ERROR, TEST_STATUS_SUCCESS);
    }
    return word;
}

// A true test that did not pass has failed, whether or not it aborted as well.
TEST_STATUS CMXLog::ReturnOfTrueTest(TEST_STATUS word, TEST_STATUS status) {
    if ((word & TEST_STATUS_FAIL) == 0) {
        Report(
            Internal,
            "TEST_STATUS has TEST_STATUS_ABORT set but not TEST_STATUS_FAIL set: (status = "
            "0x%08X).",
            status);
    }
    return (word & kVerdict) | TEST_STATUS_FAIL;
}

// What is no true test cannot fail, it can only abort.
TEST_STATUS CMXLog::ReturnOfOtherRun(TEST_STATUS word, TEST_STATUS status) {
    if ((word & TEST_STATUS_ABORT) == 0) {
        Report(
            Internal,
            "TEST_STATUS has TEST_STATUS_FAIL set but not TEST_STATUS_ABORT: (status = 0x%08X).",
            status);
    }
    return TEST_STATUS_ABORT;
}

CFormatInfo const & CMXLog::GetDefaultFormat(TEST_STATUS status, CMXLog * log) {
    switch (status) {
    case TEST_STATUS_INFO:
        return DefaultInfoFormat();
    case TEST_STATUS_WARNING:
        return DefaultWarningFormat();
    case TEST_STATUS_FAIL:
    case TEST_STATUS_ABORT:
    case TEST_STATUS_ERROR:
    case TEST_STATUS_UNKNOWN:
        return DefaultFailFormat();
    default:
        break;
    }
    if (log != nullptr) {
        log->SimulateLog(
            TEST_STATUS_INFO, Diagnostic,
            CBasicFormattedString<char>(
                "Unexpected TEST_STATUS 0x%08X.  Returning TEST_STATUS_UNKNOWN default format.",
                status));
    }
    return DefaultUnknownFormat();
}

CFormatInfo const & CMXLog::DefaultInfoFormat() { return EntryFormats::Info(); }

CFormatInfo const & CMXLog::DefaultWarningFormat() { return EntryFormats::Warning(); }

CFormatInfo const & CMXLog::DefaultFailFormat() { return EntryFormats::Fail(); }

CFormatInfo const & CMXLog::DefaultDiagnosticFormat() { return EntryFormats::Diagnostic(); }
