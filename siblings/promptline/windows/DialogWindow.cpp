// One question as a dialog box.
#include "siblings/promptline/windows/DialogWindow.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "siblings/promptline/Reply.h"
#include "siblings/promptline/windows/DialogTemplate.h"

namespace {

using Control = DialogTemplate::Control;

constexpr int Width = 260;
constexpr int Margin = 7;
constexpr int LineHeight = 8;
constexpr int CharactersInLine = 58;
constexpr int ButtonHeight = 14;
constexpr int SmallestButton = 50;
constexpr int LinesOfList = 8;

int LinesIn(std::wstring const & text) {
    int lines = 1;
    int column = 0;
    for (wchar_t const letter : text) {
        bool const isFull = ++column > CharactersInLine;
        if (letter != L'\n' && !isFull) continue;
        ++lines;
        column = 0;
    }
    return lines;
}

bool HasList(Question const & question) { return !question.list.empty(); }

bool HasEdit(Question const & question) {
    return question.kind == QuestionKind::Number || question.kind == QuestionKind::Text;
}

bool HasSecond(Question const & question) {
    return question.kind == QuestionKind::Choice || question.kind == QuestionKind::OneOfListOrOut;
}

bool IsSeveral(Question const & question) { return question.kind == QuestionKind::SeveralOfList; }

// Builds the box from top to bottom.
class Layout {
public:
    explicit Layout(Question const & question)
        : m_Question(question), m_Template(question.header, Width) {}

    DLGTEMPLATE const * Build() {
        AddMessage();
        if (HasList(m_Question)) AddList();
        if (HasEdit(m_Question)) AddEdit();
        AddLine(DialogWindow::Problem);
        AddLine(DialogWindow::TimeLeft);
        if (m_Question.kind != QuestionKind::Notice) AddButtons();
        return m_Template.Finish(m_Y);
    }

private:
    void Add(Control control, int id, DWORD style, int height, std::wstring const & text) {
        m_Template.Add(
            control, static_cast<WORD>(id), style, {Margin, m_Y, Width - 2 * Margin, height}, text);
        m_Y += height + 4;
    }

    void AddMessage() {
        std::wstring text = m_Question.title;
        if (!text.empty() && !m_Question.text.empty()) text += L"\n";
        text += m_Question.text;
        int const height = LineHeight * LinesIn(text);
        Add(Control::Text, DialogWindow::Message, SS_LEFT | SS_NOPREFIX, height, text);
    }

    void AddList() {
        auto const lines = std::min<std::size_t>(m_Question.list.size() + 1, LinesOfList);
        DWORD const several = IsSeveral(m_Question) ? LBS_MULTIPLESEL : 0;
        DWORD const style = WS_BORDER | WS_VSCROLL | WS_TABSTOP | LBS_NOTIFY | several;
        Add(Control::List, DialogWindow::List, style, LineHeight * static_cast<int>(lines), L"");
    }

    void AddEdit() {
        DWORD const style = WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
        Add(Control::Edit, DialogWindow::Edit, style, 12, m_Question.preset);
    }

    void AddLine(int id) { Add(Control::Text, id, SS_LEFT | SS_NOPREFIX, LineHeight, L""); }

    void AddButtons() {
        int right = Width - Margin;
        if (HasSecond(m_Question))
            right = AddButton(DialogWindow::SecondButton, BS_PUSHBUTTON, right, m_Question.second);
        AddButton(IDOK, BS_DEFPUSHBUTTON, right, m_Question.first);
        m_Y += ButtonHeight + Margin;
    }

    int AddButton(int id, DWORD style, int right, std::wstring const & label) {
        int const width =
            std::clamp(static_cast<int>(label.size()) * 5 + 10, SmallestButton, Width / 2 - Margin);
        m_Template.Add(
            Control::Button, static_cast<WORD>(id), style | WS_TABSTOP,
            {right - width, m_Y, width, ButtonHeight}, label);
        return right - width - 4;
    }

    Question const & m_Question;
    DialogTemplate m_Template;
    int m_Y = Margin;
};

} // namespace

DialogWindow::DialogWindow(SharedDialog dialog) : m_Dialog(std::move(dialog)) {
    Layout layout(m_Dialog->question);
    m_Handle = CreateDialogIndirectParamW(
        GetModuleHandleW(nullptr), layout.Build(), nullptr, Receive,
        reinterpret_cast<LPARAM>(this));
    if (m_Handle != nullptr) ShowTimeLeft();
}

DialogWindow::~DialogWindow() {
    if (m_Handle != nullptr) DestroyWindow(m_Handle);
}

INT_PTR CALLBACK DialogWindow::Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<DialogWindow *>(lParam)->Fill(window);
        return TRUE;
    }
    auto * const self = reinterpret_cast<DialogWindow *>(GetWindowLongPtrW(window, DWLP_USER));
    if (self == nullptr || message != WM_COMMAND) return FALSE;
    // Each of these may end the object. Escape comes as IDCANCEL, which is no answer.
    if (LOWORD(wParam) == IDOK) self->OnFirst();
    if (LOWORD(wParam) == SecondButton)
        Desk::The().Answer(SharedDialog(self->m_Dialog), Reply{.affirmed = false}, "operator");
    return TRUE;
}

void DialogWindow::Fill(HWND window) {
    m_Filled = window;
    FillList();
    Place();
    if (m_Dialog->question.inputEnabled) return;
    for (int const control : {IDOK, SecondButton, List, Edit})
        if (HWND const item = GetDlgItem(window, control)) EnableWindow(item, FALSE);
}

void DialogWindow::FillList() {
    Question const & question = m_Dialog->question;
    for (auto const & entry : question.list)
        Send(List, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    if (question.presetPlace) Send(List, LB_SETCURSEL, *question.presetPlace, 0);
}

void DialogWindow::Place() const {
    WINDOW_ARGS const & where = m_Dialog->question.where;
    bool const isSized = where.width > 0 && where.height > 0;
    bool const isPlaced = where.x != 0 || where.y != 0;
    UINT const flags = SWP_NOZORDER | SWP_NOACTIVATE | (isSized ? 0u : UINT{SWP_NOSIZE})
                       | (isPlaced ? 0u : UINT{SWP_NOMOVE});
    SetWindowPos(m_Filled, nullptr, where.x, where.y, where.width, where.height, flags);
}

void DialogWindow::ShowTimeLeft() {
    auto const left = m_Dialog->SecondsLeft();
    if (!left) return;
    SetDlgItemTextW(m_Handle, TimeLeft, (std::to_wstring(*left) + L" s left").c_str());
}

void DialogWindow::OnFirst() {
    std::wstring problem;
    auto const reply = ReadReplyFromControls(problem);
    if (reply) return Desk::The().Answer(SharedDialog(m_Dialog), *reply, "operator");
    SetDlgItemTextW(m_Handle, Problem, problem.c_str());
}

std::wstring DialogWindow::TextOf(int control) const {
    HWND const item = GetDlgItem(m_Handle, control);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(item)) + 1, 0);
    text.resize(
        static_cast<std::size_t>(GetWindowTextW(item, text.data(), static_cast<int>(text.size()))));
    return text;
}

// What stands in the controls is the answer; an empty field is not the preset.
std::optional<Reply> DialogWindow::ReadReplyFromControls(std::wstring & problem) const {
    Question question = m_Dialog->question;
    if (question.kind == QuestionKind::Choice) return Reply{};
    if (HasList(question)) return ReadList(problem);
    if (question.kind == QuestionKind::Text) return Reply{.texts = {TextOf(Edit)}};
    question.preset.clear();
    return ReadReply(question, HasEdit(question) ? TextOf(Edit) : L"", problem);
}

std::optional<Reply> DialogWindow::ReadList(std::wstring & problem) const {
    if (IsSeveral(m_Dialog->question)) {
        std::vector<int> chosen(m_Dialog->question.list.size());
        auto const count =
            Send(List, LB_GETSELITEMS, chosen.size(), reinterpret_cast<LPARAM>(chosen.data()));
        Reply reply;
        reply.places.assign(chosen.begin(), chosen.begin() + std::max<LRESULT>(count, 0));
        return reply;
    }
    LRESULT const chosen = Send(List, LB_GETCURSEL, 0, 0);
    if (chosen >= 0) return Reply{.places = {static_cast<std::uint32_t>(chosen)}};
    problem = L"Choose an entry.";
    return std::nullopt;
}

LRESULT DialogWindow::Send(int control, UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendDlgItemMessageW(m_Filled, control, message, wParam, lParam);
}
