// The test helper: the life of a test on a log and a prompt object.
#include "log/QNHelper.h"

#include "app/CAppState.h"
#include "log/CMXLog.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "platform/Messaging.h"
#include "prompts/CMXUserInput.h"
#include "siblings/Keelbase.h"

namespace {

constexpr unsigned long PauseBeforeTest = 1000;
constexpr unsigned long WithoutTimeout = 0xFFFFFFFF;

CFormatInfo const & LookOf(TEST_STATUS status) {
    if (status == TEST_STATUS_INFO) return CMXLog::DefaultInfoFormat();
    if (status == TEST_STATUS_WARNING) return CMXLog::DefaultWarningFormat();
    return CMXLog::DefaultFailFormat();
}

void Ask(CMXUserInput & input, std::string text) {
    std::string button = "OK";
    input.DisplayInfoToUser(&text, WithoutTimeout, true, nullptr, &button, nullptr);
}

void ShowBox(char const * text) {
    CUIUpdate::DoUpdate(true);
    MessageBoxA(nullptr, text, nullptr, MB_ICONERROR);
}

} // namespace

QNHelper::QNHelper(CMXLog * const log, CMXUserInput * const input, bool keepGlobalHelper)
    : m_Log(log), m_UserInput(input), m_KeepGlobalHelper(keepGlobalHelper) {
    BecomeCurrent();
}

QNHelper::~QNHelper() {
    m_Log = nullptr;
    m_UserInput = nullptr;
}

void QNHelper::BecomeCurrent() {
    if (!m_KeepGlobalHelper) CAppState::SetHelper(this);
}

void QNHelper::Reinit(CMXLog * const log, CMXUserInput * const input) {
    m_KeepGlobalHelper = true;
    SetLog(log);
    SetUserInput(input, log);
    m_KeepGlobalHelper = false;
    BecomeCurrent();
}

void QNHelper::SetLog(CMXLog * const log) {
    m_Log = log;
    BecomeCurrent();
}

void QNHelper::SetUserInput(CMXUserInput * const input, CMXLog * const log) {
    m_UserInput = input;
    m_UserInput->SetLog(log);
    BecomeCurrent();
}

CMXLog * QNHelper::GetLogger() { return m_Log != nullptr ? m_Log : CAppState::Log(); }

TEST_STATUS QNHelper::StartTest(char const * name) const {
    return m_Log->StartTest(name, PauseBeforeTest);
}

void QNHelper::StopTestInit() const {
    if (m_UserInput != nullptr) m_UserInput->TerminateDialog();
    CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(false);
}

TEST_STATUS QNHelper::CompleteTest(TEST_STATUS status) const {
    StopTestInit();
    return m_Log != nullptr ? m_Log->StopTest(status) : status | TEST_STATUS_ABORT;
}

TEST_STATUS QNHelper::TestStatus() const {
    return m_Log != nullptr ? m_Log->TestStatus() : TEST_STATUS_ABORT;
}

bool QNHelper::TestFailed() const { return m_Log == nullptr || m_Log->TestFailed(); }
bool QNHelper::TestAborted() const { return m_Log == nullptr || m_Log->TestAborted(); }

TEST_STATUS QNHelper::TranslateTestStatus(TS_STATUS code) {
    return m_Log->TranslateTestStatus(code);
}

TEST_STATUS QNHelper::ValidatePointers() const {
    if (m_Log == nullptr) return TEST_STATUS_ABORT;
    if (m_UserInput != nullptr) return TEST_STATUS_SUCCESS;
    m_Log->Write(TEST_STATUS_ABORT, Minimal, nullptr, "Internal Error: NULL User Input module.");
    return TEST_STATUS_ABORT;
}

TEST_STATUS QNHelper::ValidatePointerFail(TEST_STATUS status) const {
    LogValidatePointerFail(status, nullptr);
    return CompleteTest(status);
}

void QNHelper::LogValidatePointerFail(TEST_STATUS status, char const * text) const {
    if (text == nullptr || *text == '\0') text = "Internal Error -- Pointer validation failed.";
    if (m_Log != nullptr) {
        m_Log->Write(status, text);
    } else if (COutputBuffer * const buffer = CUIUpdate::GetBuffer()) {
        buffer->AddItem(std::string(text), LookOf(status));
        CUIUpdate::DoUpdate(true);
    } else if (m_UserInput != nullptr) {
        Ask(*m_UserInput, text);
    } else {
        ShowBox(text);
    }
}

void QNHelper::CancelTestSuite() {}

void QNHelper::HandleRunTimeException(CQNRunTimeException const & exception, TEST_STATUS status) {
    if (CMXLog * const log = GetLogger()) {
        log->Write(TEST_STATUS_ERROR, "...skipping test steps because of failure...");
        log->Write(status, "Test failure info:  %s", exception.what());
    }
    CUIUpdate::DoUpdate(true);
}
