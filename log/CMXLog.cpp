// The life of a test up to its stop, and the road of an entry to the sink.
#include "log/CMXLog.h"

#include <memory>

#include "log/CurrentTest.h"
#include "log/EntryFormats.h"
#include "log/TracePoints.h"
#include "output/CFormatInfo.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "platform/Synchronization.h"
#include "prompts/CMXUserInput.h"
#include "siblings/QuillonLog.h"

namespace {

using Clock = std::chrono::system_clock;

constexpr char kTimeFormat[] = "%b %d, %Y - %H:%M:%S";

std::string TimeText(Clock::time_point const & time) {
    return TimeToString(kTimeFormat, time).get();
}

// A look of the log's own for an entry that brings none, or null.
CFormatInfo const * LookOfLevel(eQNLogVerbosity level) {
    static CFormatInfo const diagnostic = EntryFormats::Diagnostic();
    return level == Diagnostic ? &diagnostic : nullptr;
}

// A copy, because a sink must not get hold of the shared one.
CFormatInfo LookOfOwnEntry(TEST_STATUS status, eQNLogVerbosity level) {
    if (level == Diagnostic) return EntryFormats::Diagnostic();
    if (status == TEST_STATUS_INFO) return EntryFormats::Info();
    if (status == TEST_STATUS_WARNING) return EntryFormats::Warning();
    return EntryFormats::Fail();
}

bool IsOneLoggableElement(TEST_STATUS status) {
    switch (status) {
    case TEST_STATUS_ABORT:
    case TEST_STATUS_FAIL:
    case TEST_STATUS_WARNING:
    case TEST_STATUS_ERROR:
    case TEST_STATUS_INFO:
        return true;
    default:
        return false;
    }
}

} // namespace

CMXLog::CMXLog() : m_StartTime(nullptr), m_StopTime(nullptr) {
    auto start = std::make_unique<Clock::time_point>();
    auto stop = std::make_unique<Clock::time_point>();
    m_StartTime = start.get();
    m_StopTime = stop.get();
    OpenTest();
    CUIUpdate::SendUpdate(true);
    start.release();
    stop.release();
}

CMXLog::~CMXLog() {
    delete m_StartTime;
    delete m_StopTime;
    if (CTestSuiteLog * const suite = CAppState::TestSuiteLog()) suite->m_RunPhase = 0;
}

TS_STATUS CMXLog::Clear() { return TS_SUCCESS; }

void CMXLog::InitTest() {
    OpenTest();
    CUIUpdate::DoUpdate(true);
}

void CMXLog::OpenTest() {
    CurrentTest::With([](CTestLog & record) { record.Reset(); });
    ++m_TestCount;
    m_TestInitialized = true;
    m_StopTestCalled = false;
    *m_StartTime = Clock::now();
    CurrentTest::With([this](CTestLog & record) { record.StartTime(*m_StartTime); });
    m_TestActive = true;
}

TEST_STATUS CMXLog::StartTest(char const * name, unsigned long delay) {
    m_StartTestCalled = true;
    if (!m_TestInitialized) InitTest();
    COutputBuffer * const buffer = CUIUpdate::GetUIUpdate()->GetOutputBuffer();
    buffer->SetDefaultFormatInfo();
    m_TestName = name != nullptr ? name : "";

    CFormatInfo const look = EntryFormats::Start();
    ShowHeading(look);
    WriteOwnLine(TracePoints::kStartLine, "Start time: " + MakeStartTimeString() + "\r\n", look);
    CurrentTest::With([this](CTestLog & record) { record.TestName(m_TestName.c_str()); });

    buffer->SetDefaultFormatInfo();
    CUIUpdate::DoUpdate(true);
    Sleep(static_cast<DWORD>(delay));
    return m_TestStatus & TEST_STATUS_SUCCESS;
}

// The heading is no entry: it goes to the display alone, or into the text that is held back.
void CMXLog::ShowHeading(CFormatInfo const & look) {
    std::string heading = "\r\n===============\r\n\r\nNow Starting Test: " + m_TestName + "\r\n";
    if (m_LogOnlyFailures) {
        m_PendingText = std::move(heading);
    } else if (COutputBuffer * const buffer = CUIUpdate::GetUIUpdate()->GetOutputBuffer()) {
        buffer->AddItem(heading, look);
    }
}

// Start, stop and summary lines stand in every log: nothing filters them and nothing counts them.
void CMXLog::WriteOwnLine(
    std::uint16_t traceNumber, std::string const & text, CFormatInfo const & look) {
    TracePoints::Send(traceNumber, text.c_str());
    InternalWrite(TEST_STATUS_INFO, text.c_str(), &look);
}

TEST_STATUS CMXLog::StopTest(TEST_STATUS status) { return CompleteTest(status); }

TS_STATUS CMXLog::EnableLogOnlyFailures() {
    m_LogOnlyFailures = true;
    return TS_SUCCESS;
}

TS_STATUS CMXLog::DisableLogOnlyFailures() {
    m_LogOnlyFailures = false;
    return TS_SUCCESS;
}

TS_STATUS CMXLog::EnableLogging() {
    m_LoggingEnabled = true;
    return TS_SUCCESS;
}

TS_STATUS CMXLog::DisableLogging() {
    m_LoggingEnabled = false;
    return TS_SUCCESS;
}

TS_STATUS CMXLog::EnableBreakOnLogFailure(CMXUserInput * input) {
    if (input == nullptr) return TS_FAILED;
    m_BreakUserInput = input;
    m_BreakOnLogFailure = true;
    return TS_SUCCESS;
}

TS_STATUS CMXLog::DisableBreakOnLogFailure() {
    m_BreakOnLogFailure = false;
    return TS_SUCCESS;
}

bool CMXLog::TestFailed() const { return CurrentTest::FailureCount() != 0; }

bool CMXLog::TestAborted() const { return CurrentTest::AbortCount() != 0; }

std::string CMXLog::MakeStartTimeString() { return TimeText(*m_StartTime); }

std::string CMXLog::MakeStopTimeString() { return TimeText(*m_StopTime); }

TEST_STATUS CMXLog::DoWrite(
    TEST_STATUS status, eQNLogVerbosity level, CFormatInfo const * format,
    char const * const text) {
    Merge(status);
    if (!m_LoggingEnabled) return TEST_STATUS_UNKNOWN;
    TracePoints::Send(TracePoints::kEntry, text);
    if (!CAppState::IsLogVerbosityLevel(level)) return TEST_STATUS_NOT_LOGGED;

    char const * entry = text != nullptr ? text : "";
    std::string kept;
    TEST_STATUS element = status;
    if (SpeaksBeforeEntry(status)) {
        entry = (kept = entry).c_str();
        element = ConvertStatusForLog(this, status);
    }
    IncrementTestLog(element);
    if (m_TestActive && m_BreakOnLogFailure && element == TEST_STATUS_FAIL) ShowFailure(entry);
    if (m_TestActive && m_LogOnlyFailures) {
        m_PendingText += entry;
        return element;
    }
    InternalWrite(element, entry, format != nullptr ? format : LookOfLevel(level));
    return element;
}

TEST_STATUS CMXLog::DoWrite(
    TEST_STATUS status, eQNLogVerbosity level, CFormatInfo const * format,
    wchar_t const * const text) {
    NarrowText const narrow = Utf16ToUtf8(text);
    return DoWrite(status, level, format, narrow ? narrow->c_str() : nullptr);
}

// Whether a report on the status or a prompt may come between an entry and its writing. Either may
// format a text of its own, and the entry's text may lie in the buffer that this would use. All
// other entries keep their status as it is.
bool CMXLog::SpeaksBeforeEntry(TEST_STATUS status) const {
    if (!IsOneLoggableElement(status)) return true;
    return status == TEST_STATUS_FAIL && (m_BreakOnLogFailure || !CurrentTest::IsActualTest());
}

void CMXLog::ShowFailure(char const * text) {
    std::string message = std::string("Test Failure:  ") + text;
    m_BreakUserInput->DisplayInfoToUser(&message, 0, true, nullptr, nullptr, nullptr);
}

TEST_STATUS CMXLog::SimulateLog(
    TEST_STATUS status, eQNLogVerbosity level, CBasicFormattedString<char> const & text) {
    if (!CAppState::IsLogVerbosityLevel(level)) {
        TracePoints::Send(TracePoints::kDroppedOwnEntry, text);
        return TEST_STATUS_NOT_LOGGED;
    }
    CFormatInfo const look = LookOfOwnEntry(status, level);
    IncrementTestLog(status);
    InternalWrite(status, text, &look);
    return status;
}

void CMXLog::IncrementTestLog(TEST_STATUS status) const {
    CurrentTest::With([status](CTestLog & record) {
        switch (status) {
        case TEST_STATUS_FAIL:
            return record.IncrFailures();
        case TEST_STATUS_WARNING:
            return record.IncrWarnings();
        case TEST_STATUS_ABORT:
            return record.IncrAborts();
        case TEST_STATUS_INFO:
        case TEST_STATUS_ERROR:
            return record.IncrInfo();
        default:
            return record.IncrUnknowns();
        }
    });
}
