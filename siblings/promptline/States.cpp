// The states of the helper dialogs: each copies its question and knows where the answer goes.
#include <utility>

#include "siblings/Keelbase.h"
#include "siblings/promptline/Desk.h"
#include "siblings/promptline/PromptState.h"

CHelperDialogState::CHelperDialogState() = default;
CHelperDialogState::~CHelperDialogState() = default;

PromptState::PromptState(Question asked, StoreReply storing)
    : question(std::move(asked)), store(std::move(storing)) {}

PromptState::~PromptState() { Desk::The().Forget(this); }

namespace {

std::wstring TextOr(std::wstring const * text, wchar_t const * instead) {
    return text != nullptr ? *text : instead;
}

Question Asking(
    QuestionKind kind, std::wstring const & header, std::wstring const * text, WINDOW_ARGS * args) {
    Question question;
    question.kind = kind;
    question.header = header;
    question.text = TextOr(text, L"");
    if (args != nullptr) question.where = *args;
    return question;
}

Question
Listing(Question question, std::vector<std::wstring> const * list, unsigned long const * preset) {
    if (list != nullptr) question.list = *list;
    if (preset != nullptr && *preset < question.list.size())
        question.presetPlace = static_cast<std::uint32_t>(*preset);
    return question;
}

template <typename Store>
CHelperDialogState *
MakeState(Question question, unsigned long timeout, CMXGuiEvent * event, Store store) {
    auto * const state = new PromptState(std::move(question), std::move(store));
    state->timeout = static_cast<std::uint32_t>(timeout);
    state->event = event;
    return state;
}

template <typename Value, typename Given>
void StoreAt(Value * place, Given const & value) {
    if (place != nullptr) *place = value;
}

std::wstring NumberText(std::uint32_t number, bool hexadecimal) {
    return static_cast<wchar_t const *>(
        CBasicFormattedString<wchar_t>(hexadecimal ? L"0x%X" : L"%u", number));
}

} // namespace

CHelperDialogState * InitDisplayInfoToUserDialog(
    std::wstring const & header, std::wstring * text, bool closable, unsigned long timeout,
    std::wstring * button, CMXGuiEvent * event, WINDOW_ARGS * args) {
    auto const kind = closable ? QuestionKind::Information : QuestionKind::Notice;
    Question question = Asking(kind, header, text, args);
    question.first = TextOr(button, L"OK");
    return MakeState(std::move(question), timeout, event, [](Reply const &) {});
}

CHelperDialogState * InitGetUserBooleanChoiceDialog(
    std::wstring const & header, std::wstring * text, std::wstring * first, std::wstring * second,
    bool * answer, unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    Question question = Asking(QuestionKind::Choice, header, text, args);
    question.first = TextOr(first, L"Yes");
    question.second = TextOr(second, L"No");
    return MakeState(std::move(question), timeout, event, [answer](Reply const & reply) {
        StoreAt(answer, reply.affirmed);
    });
}

CHelperDialogState * InitGetUserItemDialog(
    std::wstring const & header, std::wstring * title, std::wstring * prompt, bool numeric,
    bool hexadecimal, unsigned long timeout, unsigned long * value, std::wstring * string,
    CMXGuiEvent * event, WINDOW_ARGS * args) {
    auto const kind = numeric ? QuestionKind::Number : QuestionKind::Text;
    Question question = Asking(kind, header, prompt, args);
    question.title = TextOr(title, L"");
    question.hexadecimal = hexadecimal;
    question.first = L"OK";
    if (numeric && value != nullptr)
        question.preset = NumberText(static_cast<std::uint32_t>(*value), hexadecimal);
    if (!numeric && string != nullptr) question.preset = *string;
    return MakeState(
        std::move(question), timeout, event, [numeric, value, string](Reply const & reply) {
            if (numeric)
                StoreAt(value, reply.number);
            else
                StoreAt(string, reply.texts.at(0));
        });
}

CHelperDialogState * InitGetUserListSingleSelectionDialog(
    std::wstring const & header, std::wstring * text, std::vector<std::wstring> * list,
    unsigned long timeout, unsigned long * selection, CMXGuiEvent * event, WINDOW_ARGS * args) {
    Question question =
        Listing(Asking(QuestionKind::OneOfList, header, text, args), list, selection);
    question.first = L"OK";
    return MakeState(std::move(question), timeout, event, [selection](Reply const & reply) {
        StoreAt(selection, reply.places.at(0));
    });
}

CHelperDialogState * InitGetUserListSingleSelectionAllowAbortDialog(
    std::wstring const & header, std::wstring * text, std::wstring * first, std::wstring * second,
    std::vector<std::wstring> * list, unsigned long timeout, unsigned long * selection,
    bool * aborted, CMXGuiEvent * event, WINDOW_ARGS * args) {
    Question question =
        Listing(Asking(QuestionKind::OneOfListOrOut, header, text, args), list, selection);
    question.first = TextOr(first, L"OK");
    question.second = TextOr(second, L"Abort");
    return MakeState(
        std::move(question), timeout, event, [selection, aborted](Reply const & reply) {
            StoreAt(aborted, !reply.affirmed);
            if (reply.affirmed) StoreAt(selection, reply.places.at(0));
        });
}

CHelperDialogState * InitGetUserListSelectionsDialog(
    std::wstring const & header, std::wstring * text, std::vector<std::wstring> * list,
    unsigned long timeout, std::vector<unsigned long> ** selections, CMXGuiEvent * event,
    WINDOW_ARGS * args) {
    Question question =
        Listing(Asking(QuestionKind::SeveralOfList, header, text, args), list, nullptr);
    question.first = L"OK";
    return MakeState(std::move(question), timeout, event, [selections](Reply const & reply) {
        if (selections != nullptr)
            *selections = new std::vector<unsigned long>(reply.places.begin(), reply.places.end());
    });
}
