// The prompt base: header and switch, the narrow forms, and the questions of a debug run.
#include "prompts/CMXUserInput.h"

#include <memory>

#include "app/CAppState.h"
#include "platform/Synchronization.h"
#include "siblings/Keelbase.h"

namespace {

std::wstring Widened(std::string const & text) {
    WideText const wide = Utf8ToUtf16(text);
    return wide ? *wide : std::wstring();
}

// A null list stays null.
std::unique_ptr<std::vector<std::wstring>> WidenedList(std::vector<std::string> const * list) {
    if (list == nullptr) return nullptr;
    auto wide = std::make_unique<std::vector<std::wstring>>();
    wide->reserve(list->size());
    for (std::string const & entry : *list)
        wide->push_back(Widened(entry));
    return wide;
}

bool IsDebugRun() { return CAppState::GetRunType() == RunTypeDebug; }

[[noreturn]] void NeverReturn() {
    for (;;)
        Sleep(1000);
}

CBasicFormattedString<char>
DescribeBounds(bool hexadecimal, unsigned long lower, unsigned long upper, unsigned long value) {
    char const * const format = hexadecimal ? "MIN: 0x%X, MAX: 0x%X, input value: 0x%X"
                                            : "MIN: %lu, MAX: %lu, input value: %lu";
    return CBasicFormattedString<char>(format, lower, upper, value);
}

[[noreturn]] void ThrowPresetError(char const * format, char const * description) {
    CBasicFormattedString<char> const error(format, description);
    CBasicFormattedString<char> const text(
        "%s\n\nThis is almost certainly an error in the test.  "
        "Contact the test developer for more information.",
        static_cast<char const *>(error));
    throw CQNRunTimeException(text);
}

} // namespace

CMXUserInput::CMXUserInput() = default;

CMXUserInput::CMXUserInput(CMXLog * const log, std::wstring const & header)
    : m_DialogHeader(header), m_Log(log) {}

CMXUserInput::CMXUserInput(CMXLog * const log, std::string const & header)
    : m_DialogHeader(Widened(header)), m_Log(log) {}

CMXUserInput::CMXUserInput(CMXLog * const log) : m_Log(log) {}

CMXUserInput::CMXUserInput(CMXUserInput const &) = default;
CMXUserInput & CMXUserInput::operator=(CMXUserInput const &) = default;

CMXUserInput::~CMXUserInput() {
    if (CAppState::UserInput() == this) CAppState::UserInput(nullptr);
}

TS_STATUS CMXUserInput::DisableInput() {
    m_InputEnabled = false;
    return TS_SUCCESS;
}

TS_STATUS CMXUserInput::EnableInput() {
    m_InputEnabled = true;
    return TS_SUCCESS;
}

TS_STATUS CMXUserInput::SetDialogHeader(std::wstring * header) {
    if (header == nullptr)
        m_DialogHeader.clear();
    else
        m_DialogHeader = *header;
    return TS_SUCCESS;
}

TS_STATUS CMXUserInput::SetDialogHeader(std::string * header) {
    m_DialogHeader = Widened(header != nullptr ? *header : std::string());
    return TS_SUCCESS;
}

// The narrow forms: the temporaries live in the order of their making, so that they go in the
// opposite one, the list before the texts.

TS_STATUS CMXUserInput::GetSelectionFromList(
    std::string * prompt, std::vector<std::string> * list, unsigned long * selection,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    WideText const widePrompt = Utf8ToUtf16(prompt);
    auto const wideList = WidenedList(list);
    return GetSelectionFromList(widePrompt.get(), wideList.get(), selection, timeout, event, args);
}

TS_STATUS CMXUserInput::GetSelectionFromListAllowAbort(
    std::string * first, std::string * second, std::string * third, std::vector<std::string> * list,
    unsigned long * selection, bool * aborted, unsigned long timeout, CMXGuiEvent * event,
    WINDOW_ARGS * args) {
    WideText const wideFirst = Utf8ToUtf16(first);
    WideText const wideSecond = Utf8ToUtf16(second);
    WideText const wideThird = Utf8ToUtf16(third);
    auto const wideList = WidenedList(list);
    return GetSelectionFromListAllowAbort(
        wideFirst.get(), wideSecond.get(), wideThird.get(), wideList.get(), selection, aborted,
        timeout, event, args);
}

TS_STATUS CMXUserInput::GetMultipleSelectionsFromList(
    std::string * prompt, std::vector<std::string> * list, std::vector<unsigned long> ** selections,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    WideText const widePrompt = Utf8ToUtf16(prompt);
    auto const wideList = WidenedList(list);
    return GetMultipleSelectionsFromList(
        widePrompt.get(), wideList.get(), selections, timeout, event, args);
}

TS_STATUS CMXUserInput::DisplayInfoToUser(
    std::string * text, unsigned long timeout, bool flag, CMXGuiEvent * event, std::string * button,
    WINDOW_ARGS * args) {
    WideText const wideText = Utf8ToUtf16(text);
    WideText const wideButton = Utf8ToUtf16(button);
    return DisplayInfoToUser(wideText.get(), timeout, flag, event, wideButton.get(), args);
}

TS_STATUS CMXUserInput::GetBooleanDecision(
    std::string * first, std::string * second, std::string * third, bool * answer,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    WideText const wideFirst = Utf8ToUtf16(first);
    WideText const wideSecond = Utf8ToUtf16(second);
    WideText const wideThird = Utf8ToUtf16(third);
    return GetBooleanDecision(
        wideFirst.get(), wideSecond.get(), wideThird.get(), answer, timeout, event, args);
}

TS_STATUS CMXUserInput::GetInteger(
    std::string * title, std::string * prompt, unsigned long * value, bool hexadecimal,
    unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
    WINDOW_ARGS * args) {
    WideText const wideTitle = Utf8ToUtf16(title);
    WideText const widePrompt = Utf8ToUtf16(prompt);
    return GetInteger(
        wideTitle.get(), widePrompt.get(), value, hexadecimal, timeout, event, upper, lower, args);
}

TS_STATUS CMXUserInput::DebugGetSelectionFromList(
    std::wstring * prompt, std::vector<std::wstring> * list, unsigned long * selection,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    if (!IsDebugRun()) return TS_SUCCESS;
    return GetSelectionFromList(prompt, list, selection, timeout, event, args);
}

TS_STATUS CMXUserInput::DebugGetSelectionFromList(
    std::string * prompt, std::vector<std::string> * list, unsigned long * selection,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    if (!IsDebugRun()) return TS_SUCCESS;
    return GetSelectionFromList(prompt, list, selection, timeout, event, args);
}

TS_STATUS CMXUserInput::DebugGetMultipleSelectionsFromList(
    std::wstring * prompt, std::vector<std::wstring> * list,
    std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
    WINDOW_ARGS * args) {
    if (!IsDebugRun()) return TS_SUCCESS;
    return GetMultipleSelectionsFromList(prompt, list, selections, timeout, event, args);
}

TS_STATUS CMXUserInput::DebugGetMultipleSelectionsFromList(
    std::string * prompt, std::vector<std::string> * list, std::vector<unsigned long> ** selections,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    if (!IsDebugRun()) return TS_SUCCESS;
    return GetMultipleSelectionsFromList(prompt, list, selections, timeout, event, args);
}

TS_STATUS CMXUserInput::DebugDisplayInfoToUser(
    std::wstring * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
    std::wstring * button, WINDOW_ARGS * args) {
    if (!IsDebugRun()) return TS_SUCCESS;
    return DisplayInfoToUser(text, timeout, flag, event, button, args);
}

TS_STATUS CMXUserInput::DebugDisplayInfoToUser(
    std::string * text, unsigned long timeout, bool flag, CMXGuiEvent * event, std::string * button,
    WINDOW_ARGS * args) {
    if (!IsDebugRun()) return TS_SUCCESS;
    return DisplayInfoToUser(text, timeout, flag, event, button, args);
}

TS_STATUS CMXUserInput::DebugGetBooleanDecision(
    std::wstring * first, std::wstring * second, std::wstring * third, bool * answer,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    if (!IsDebugRun()) return TS_SUCCESS;
    return GetBooleanDecision(first, second, third, answer, timeout, event, args);
}

TS_STATUS CMXUserInput::DebugGetBooleanDecision(
    std::string * first, std::string * second, std::string * third, bool * answer,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    if (!IsDebugRun()) return TS_SUCCESS;
    return GetBooleanDecision(first, second, third, answer, timeout, event, args);
}

TS_STATUS CMXUserInput::DebugGetInteger(
    std::wstring * title, std::wstring * prompt, unsigned long * value, bool hexadecimal,
    unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
    WINDOW_ARGS * args) {
    if (IsDebugRun())
        return GetInteger(title, prompt, value, hexadecimal, timeout, event, upper, lower, args);
    if (value == nullptr) return TS_NULL_RESULT;
    if (*value >= lower && *value <= upper) return TS_SUCCESS;
    auto const description = DescribeBounds(hexadecimal, lower, upper, *value);
    bool const above = *value > upper;
    *value = above ? upper : lower;
    // The value is corrected, and it is still an error: a preset out of its bounds is a defect in
    // the test.
    ThrowPresetError(
        above ? "The input value for a debug-mode only dialog is greater than the maximum allowed "
                "value.  The input value is set to the max value:\n    %s."
              : "The input value for a debug-mode only dialog is smaller than the minimum allowed "
                "value.  The input value is set to the min value:\n    %s.",
        description);
}

TS_STATUS CMXUserInput::DebugGetInteger(
    std::string * title, std::string * prompt, unsigned long * value, bool hexadecimal,
    unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
    WINDOW_ARGS * args) {
    WideText const wideTitle = Utf8ToUtf16(title);
    WideText const widePrompt = Utf8ToUtf16(prompt);
    return DebugGetInteger(
        wideTitle.get(), widePrompt.get(), value, hexadecimal, timeout, event, upper, lower, args);
}

TS_STATUS CMXUserInput::DebugGetSelectionFromListAllowAbort(
    std::wstring *, std::wstring *, std::wstring *, std::vector<std::wstring> *, unsigned long *,
    bool *, unsigned long, CMXGuiEvent *, WINDOW_ARGS *) {
    // Deliberate: a debug run stays here. Pinned by CMXUserInputDebugTest.WideChoiceNeverReturns.
    if (IsDebugRun()) NeverReturn();
    return TS_SUCCESS;
}

TS_STATUS CMXUserInput::DebugGetSelectionFromListAllowAbort(
    std::string *, std::string *, std::string *, std::vector<std::string> *, unsigned long *,
    bool *, unsigned long, CMXGuiEvent *, WINDOW_ARGS *) {
    // Deliberate: a debug run stays here. Pinned by CMXUserInputDebugTest.NarrowChoiceNeverReturns.
    if (IsDebugRun()) NeverReturn();
    return TS_SUCCESS;
}

TS_STATUS CMXUserInput::DebugGetString(
    std::wstring *, std::wstring *, std::wstring *, unsigned long, CMXGuiEvent *, WINDOW_ARGS *) {
    // Deliberate: a debug run stays here. Pinned by CMXUserInputDebugTest.StringNeverReturns.
    if (IsDebugRun()) NeverReturn();
    return TS_SUCCESS;
}
