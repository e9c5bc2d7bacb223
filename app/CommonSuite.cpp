// The start of a suite, whose failures are reported rather than thrown, and its end.
#include "app/Common.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <iterator>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include "app/CAppState.h"
#include "log/CConsoleOutMXLog.h"
#include "log/CHTMLMXLog.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "prompts/CMFCDialogMXUserInput.h"
#include "siblings/Keelbase.h"

namespace {

struct Request {
    char const * dialogHeader;
    bool displayVersions;
    bool makeGlobal;
};

// Shows what has come and lets the operator's abort out.
void AbortPoint() {
    CUIUpdate::SendUpdate(true);
    CUIUpdate::GetUIUpdate()->CheckAbort();
}

CMXLog * MakeLog(tagTS_LOG_TYPE logType, COutputBuffer * outputBuffer, char const * fileName) {
    switch (logType) {
    case TS_LOG_CONSOLE:
        return new CConsoleOutMXLog(fileName);
    case TS_LOG_HTML:
        return new CHTMLMXLog(outputBuffer);
    }
    throw std::runtime_error("Unknown log type: HTML or Console expected");
}

template <typename LogMaker>
void StartLog(CMXLog *& log, LogMaker const & makeLog, Request const & request) {
    log = makeLog();
    if (request.makeGlobal) CAppState::Log(log);
    log->GlobalLogExists(CAppState::Log() != nullptr);
    log->Write(TEST_STATUS_INFO, Quiet, nullptr, "Test log initialized.");
    auto const level = GetLogLevelName(CAppState::QNLogVerbosityLevel());
    log->Write(TEST_STATUS_INFO, Quiet, nullptr, "Log Level: %s", *level);
    AbortPoint();
}

// Until it has met the abort point it is nobody's but the local owner's.
void StartUserInput(CMXUserInput *& userInput, CMXLog * log, Request const & request) {
    char const * const header = request.dialogHeader != nullptr ? request.dialogHeader : "Quillon";
    std::unique_ptr<CMXUserInput> input =
        std::make_unique<CMFCDialogMXUserInput>(log, std::string(header));
    CAppState::UserInput(input.get());
    log->Write(TEST_STATUS_INFO, Quiet, nullptr, "User Input module initialized");
    AbortPoint();
    userInput = input.release();
    AbortPoint();
}

void ShowVersions(CMXLog * log) {
    Common_DisplayOSVersionInfo(log);
    Common_DisplayEngineFileVersions(log);
    CUIUpdate::DoUpdate(true);
}

// What went wrong; nothing when nothing did.
template <typename LogMaker>
std::optional<std::string>
Start(CMXLog *& log, CMXUserInput *& userInput, LogMaker const & makeLog, Request const & request) {
    try {
        StartLog(log, makeLog, request);
        StartUserInput(userInput, log, request);
        if (request.displayVersions) ShowVersions(log);
    } catch (std::bad_alloc const &) {
        throw;
    } catch (std::exception const & failure) {
        return failure.what();
    } catch (...) {
        return "<unknown type: no message>.";
    }
    return std::nullopt;
}

// Without a sink and without a buffer the line is lost.
void Show(CMXLog * sink, CBasicFormattedString<char> const & line) {
    char const * const text = line;
    CFormatInfo const & look = CMXLog::DefaultErrorFormat();
    if (sink != nullptr)
        sink->Write(TEST_STATUS_ABORT, Minimal, &look, "%s", text);
    else if (COutputBuffer * const buffer = CUIUpdate::GetBuffer())
        buffer->AddVerbose(line, Quiet, look);
}

template <typename... Values>
void Report(CMXLog * sink, char const * format, Values const &... values) {
    CBasicFormattedString<char> const text(format, values...);
    // Deliberate: a text that was formatted is a format again.
    // Pinned by CommonInitFailureTest.APercentSignInAReasonIsReadAsADirective.
    Show(sink, CBasicFormattedString<char>(static_cast<char const *>(text)));
}

template <typename LogMaker>
TS_STATUS StartOrReport(
    CMXLog *& log, CMXUserInput *& userInput, LogMaker const & makeLog, Request const & request) {
    CAppState::Log(nullptr);
    log = nullptr;
    userInput = nullptr;
    auto const failure = Start(log, userInput, makeLog, request);
    if (!failure) return TS_SUCCESS;
    CMXLog * const sink = log != nullptr ? log : CAppState::Log();
    // Deliberate: a reason that ends in a full stop gets a second one.
    // Pinned by CommonInitFailureTest.AnAbortIsReportedWithTwoFullStops.
    Report(sink, "Exception thrown: %s.\n", *failure);
    if (log == nullptr) Report(sink, "Unable to create test log.\n");
    if (userInput == nullptr) Report(sink, "Unable to create User Input module.\n");
    return TS_ABORTED;
}

template <typename Object>
void DeleteAndClear(Object *& object) {
    delete std::exchange(object, nullptr);
}

} // namespace

TS_STATUS Common_InitTestSuite(
    CMXLog *& log, tagTS_LOG_TYPE logType, CMXUserInput *& userInput, char const * dialogHeader,
    COutputBuffer * const outputBuffer, bool displayVersions, char * logFileName, bool makeGlobal) {
    auto const makeLog = [&] { return MakeLog(logType, outputBuffer, logFileName); };
    return StartOrReport(log, userInput, makeLog, {dialogHeader, displayVersions, makeGlobal});
}

TS_STATUS Common_InitTestSuiteWithLog(
    CMXLog *& log, std::unique_ptr<CMXLog> given, CMXUserInput *& userInput,
    char const * dialogHeader, bool displayVersions, bool makeGlobal) {
    auto const giveLog = [&] {
        if (given == nullptr) throw std::runtime_error("No test log was given");
        return given.release();
    };
    return StartOrReport(log, userInput, giveLog, {dialogHeader, displayVersions, makeGlobal});
}

TS_STATUS Common_EndTestSuite() {
    CMXLog * log = CAppState::Log();
    CMXUserInput * input = CAppState::UserInput();
    return Common_EndTestSuite(log, input);
}

TS_STATUS Common_EndTestSuite(CMXLog *& log, CMXUserInput *& userInput) {
    Common_CleanupUserInput(userInput);
    if (log != nullptr)
        DeleteAndClear(log);
    else
        delete CAppState::Log();
    CAppState::Log(nullptr);
    return TS_SUCCESS;
}

TS_STATUS Common_CleanupUserInput(CMXUserInput *& userInput) {
    CAppState::UserInput(nullptr);
    DeleteAndClear(userInput);
    return TS_SUCCESS;
}

std::unique_ptr<std::string, std::function<void(std::string *)>>
GetLogLevelName(eQNLogVerbosity level) {
    static constexpr wchar_t const * names[] = {L"Quiet",  L"Minimal", L"Low",
                                                L"Normal", L"Verbose", L"Diagnostic"};
    auto const index = std::min<std::size_t>(level, std::size(names) - 1);
    NarrowText name = Utf16ToUtf8(level == Internal ? L"Internal" : names[index]);
    // Made beforehand: it may need memory, which the pointer's own conversion must not.
    std::function<void(std::string *)> deleter = name.get_deleter();
    return {name.release(), std::move(deleter)};
}
