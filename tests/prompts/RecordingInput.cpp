// The recording prompt object.
#include "prompts/RecordingInput.h"

#include <ostream>
#include <stdexcept>

#include <gtest/gtest.h>

void PrintTo(Question const & question, std::ostream * out) {
    *out << question.name << " texts " << testing::PrintToString(question.texts) << " list "
         << testing::PrintToString(question.list) << " places "
         << testing::PrintToString(question.places) << " numbers "
         << testing::PrintToString(question.numbers) << " flag "
         << testing::PrintToString(question.flag);
}

TS_STATUS RecordingInput::Keep(
    std::string const & name, std::vector<std::wstring const *> const & texts,
    std::vector<std::wstring> const * list, std::vector<void const *> const & places,
    std::vector<unsigned long> const & numbers, std::optional<bool> flag) {
    if (m_Throw) throw std::runtime_error("the dialog broke");
    Question question{name, {}, std::nullopt, places, numbers, flag};
    m_TextPlaces.assign(texts.begin(), texts.end());
    m_TextPlaces.push_back(list);
    for (std::wstring const * const text : texts)
        question.texts.push_back(text != nullptr ? std::optional(*text) : std::nullopt);
    if (list != nullptr) question.list = *list;
    m_Asked.push_back(question);
    return Answer;
}

bool RecordingInput::SelectSingleFile(
    CSafeString &, wchar_t const * const, wchar_t const * const, bool) {
    return false;
}

bool RecordingInput::SelectMultipleFiles(
    std::vector<CSafeString> *&, wchar_t const * const, wchar_t const * const, bool) {
    return false;
}

bool RecordingInput::SelectSingleVIF(
    CSafeString &, wchar_t const * const, wchar_t const * const, bool) {
    return false;
}

bool RecordingInput::SelectMultipleVIFs(
    std::vector<CSafeString> *&, wchar_t const * const, wchar_t const * const, bool) {
    return false;
}

TS_STATUS RecordingInput::GetSelectionFromList(
    std::wstring * prompt, std::vector<std::wstring> * list, unsigned long * selection,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Keep("GetSelectionFromList", {prompt}, list, {selection, event, args}, {timeout});
}

TS_STATUS RecordingInput::GetSelectionFromListAllowAbort(
    std::wstring * first, std::wstring * second, std::wstring * third,
    std::vector<std::wstring> * list, unsigned long * selection, bool * aborted,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Keep(
        "GetSelectionFromListAllowAbort", {first, second, third}, list,
        {selection, aborted, event, args}, {timeout});
}

TS_STATUS RecordingInput::GetMultipleSelectionsFromList(
    std::wstring * prompt, std::vector<std::wstring> * list,
    std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
    WINDOW_ARGS * args) {
    return Keep(
        "GetMultipleSelectionsFromList", {prompt}, list, {selections, event, args}, {timeout});
}

TS_STATUS RecordingInput::DisplayInfoToUser(
    std::wstring * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
    std::wstring * button, WINDOW_ARGS * args) {
    return Keep("DisplayInfoToUser", {text, button}, nullptr, {event, args}, {timeout}, flag);
}

TS_STATUS RecordingInput::GetBooleanDecision(
    std::wstring * first, std::wstring * second, std::wstring * third, bool * answer,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Keep(
        "GetBooleanDecision", {first, second, third}, nullptr, {answer, event, args}, {timeout});
}

TS_STATUS RecordingInput::GetInteger(
    std::wstring * title, std::wstring * prompt, unsigned long * value, bool hexadecimal,
    unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
    WINDOW_ARGS * args) {
    return Keep(
        "GetInteger", {title, prompt}, nullptr, {value, event, args}, {timeout, upper, lower},
        hexadecimal);
}

TS_STATUS RecordingInput::GetString(
    std::wstring * title, std::wstring * prompt, std::wstring * answer, unsigned long timeout,
    CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Keep("GetString", {title, prompt}, nullptr, {answer, event, args}, {timeout});
}

TS_STATUS RecordingInput::CreateHelperDialog(CHelperDialogState * const) { return Answer; }
TS_STATUS RecordingInput::TerminateDialog() { return Answer; }
