// A prompt object that answers every wide question at once and keeps what it was asked.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "prompts/CMXUserInput.h"

// One question as it reached the wide form. What only passes through is kept by address or value,
// in the order of the arguments.
struct Question {
    std::string name;
    std::vector<std::optional<std::wstring>> texts;
    std::optional<std::vector<std::wstring>> list;
    std::vector<void const *> places;
    std::vector<unsigned long> numbers;
    std::optional<bool> flag;

    bool operator==(Question const &) const = default;
};

void PrintTo(Question const & question, std::ostream * out);

class RecordingInput : public CMXUserInput {
public:
    using CMXUserInput::CMXUserInput;
    using CMXUserInput::DisplayInfoToUser;
    using CMXUserInput::GetBooleanDecision;
    using CMXUserInput::GetInteger;
    using CMXUserInput::GetMultipleSelectionsFromList;
    using CMXUserInput::GetSelectionFromList;
    using CMXUserInput::GetSelectionFromListAllowAbort;
    using CMXUserInput::m_DialogHeader;
    using CMXUserInput::m_InputEnabled;
    using CMXUserInput::m_Log;

    static constexpr TS_STATUS Answer = 0x12345678;

    bool
    SelectSingleFile(CSafeString &, wchar_t const * const, wchar_t const * const, bool) override;
    bool SelectMultipleFiles(
        std::vector<CSafeString> *&, wchar_t const * const, wchar_t const * const, bool) override;
    bool
    SelectSingleVIF(CSafeString &, wchar_t const * const, wchar_t const * const, bool) override;
    bool SelectMultipleVIFs(
        std::vector<CSafeString> *&, wchar_t const * const, wchar_t const * const, bool) override;
    TS_STATUS GetSelectionFromList(
        std::wstring * prompt, std::vector<std::wstring> * list, unsigned long * selection,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) override;
    TS_STATUS GetSelectionFromListAllowAbort(
        std::wstring * first, std::wstring * second, std::wstring * third,
        std::vector<std::wstring> * list, unsigned long * selection, bool * aborted,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) override;
    TS_STATUS GetMultipleSelectionsFromList(
        std::wstring * prompt, std::vector<std::wstring> * list,
        std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
        WINDOW_ARGS * args) override;
    TS_STATUS DisplayInfoToUser(
        std::wstring * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
        std::wstring * button, WINDOW_ARGS * args) override;
    TS_STATUS GetBooleanDecision(
        std::wstring * first, std::wstring * second, std::wstring * third, bool * answer,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) override;
    TS_STATUS GetInteger(
        std::wstring * title, std::wstring * prompt, unsigned long * value, bool hexadecimal,
        unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
        WINDOW_ARGS * args) override;
    TS_STATUS GetString(
        std::wstring * title, std::wstring * prompt, std::wstring * answer, unsigned long timeout,
        CMXGuiEvent * event, WINDOW_ARGS * args) override;
    TS_STATUS CreateHelperDialog(CHelperDialogState * const state) override;
    TS_STATUS TerminateDialog() override;

    std::vector<Question> m_Asked;
    // Where the wide texts stood, and the list behind them.
    std::vector<void const *> m_TextPlaces;
    bool m_Throw = false;

private:
    TS_STATUS Keep(
        std::string const & name, std::vector<std::wstring const *> const & texts,
        std::vector<std::wstring> const * list, std::vector<void const *> const & places,
        std::vector<unsigned long> const & numbers, std::optional<bool> flag = std::nullopt);
};
