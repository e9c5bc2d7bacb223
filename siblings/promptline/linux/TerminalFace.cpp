// Questions at the terminal, line by line.
//
// The dialog that was shown last has the terminal; when it ends, the one before is shown again.
#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include "siblings/Keelbase.h"
#include "siblings/promptline/Face.h"
#include "siblings/promptline/Reply.h"
#include "siblings/promptline/linux/LineEditor.h"
#include "siblings/promptline/linux/PathCompletion.h"

namespace {

bool IsFiles(Question const & question) {
    return question.kind == QuestionKind::OneFile || question.kind == QuestionKind::SeveralFiles;
}

// What to type, in front of the cursor.
std::wstring Hint(Question const & question) {
    auto const & [kind, count] = std::pair(question.kind, std::to_wstring(question.list.size()));
    switch (kind) {
    case QuestionKind::Information:
        return L"Press Enter: " + question.first;
    case QuestionKind::Choice:
        return L"1 " + question.first + L", 2 " + question.second;
    case QuestionKind::Number:
        return question.hexadecimal ? L"Hexadecimal number" : L"Number";
    case QuestionKind::OneOfList:
        return L"Number 1-" + count;
    case QuestionKind::OneOfListOrOut:
        return L"Number 0-" + count;
    case QuestionKind::SeveralOfList:
        return L"Numbers 1-" + count + L", or nothing";
    case QuestionKind::OneFile:
        return L"File, or nothing";
    case QuestionKind::SeveralFiles:
        return L"Next file, or nothing to end";
    default:
        return L"Text";
    }
}

std::wstring Preset(Question const & question) {
    if (question.presetPlace) return std::to_wstring(*question.presetPlace + 1);
    return question.preset;
}

std::wstring PromptFor(Dialog const & dialog) {
    std::wstring prompt = Hint(dialog.question);
    std::wstring const preset = Preset(dialog.question);
    if (!preset.empty()) prompt += L" [" + preset + L"]";
    if (auto const left = dialog.SecondsLeft()) prompt += L" (" + std::to_wstring(*left) + L" s)";
    return prompt + L"> ";
}

void AddLine(std::wstring & lines, std::wstring const & line) {
    if (!line.empty()) lines += line + L"\n";
}

std::wstring LinesOf(Question const & question) {
    std::wstring lines = L"\n";
    AddLine(lines, question.header);
    AddLine(lines, question.title);
    AddLine(lines, question.text);
    for (std::size_t i = 0; i < question.list.size(); ++i)
        lines += L"  " + std::to_wstring(i + 1) + L"  " + question.list[i] + L"\n";
    if (question.kind == QuestionKind::OneOfListOrOut) lines += L"  0  " + question.second + L"\n";
    return lines;
}

bool HasInput() {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) == 1;
}

// Below the line: at most so many names, then a mark that there are more.
constexpr std::size_t MostNames = 40;

std::wstring Listed(std::vector<std::wstring> const & names) {
    std::wstring lines = L"\n";
    for (std::size_t i = 0; i < std::min(names.size(), MostNames); ++i)
        lines += L"  " + names[i] + L"\n";
    if (names.size() > MostNames) lines += L"  ...\n";
    return lines;
}

std::wstring CompleteFile(std::wstring const & line, bool & wrote) {
    PathCompletion const completion = CompletePath(line);
    wrote = completion.added.empty() && completion.names.size() > 1;
    if (wrote) LineEditor::Write(Listed(completion.names));
    return completion.added;
}

class TerminalFace : public Face {
public:
    TerminalFace(Pump & pump, CPromptListener * listener) : m_Pump(pump), m_Listener(listener) {}
    ~TerminalFace() override { Leave(); }

    void Show(SharedDialog const & dialog) override {
        Leave();
        m_Shown.push_back(dialog);
        Enter();
    }

    void Remove(SharedDialog const & dialog) override {
        bool const isLast = !m_Shown.empty() && m_Shown.back() == dialog;
        if (isLast) Leave();
        std::erase(m_Shown, dialog);
        if (isLast) Enter();
    }

    void Tick() override {
        if (!m_Editor.CanRedraw() || !m_Editor.IsActive()) return;
        if (PromptFor(*m_Shown.back()) == m_Prompt) return;
        m_Editor.Hide();
        m_Editor.Redraw();
    }

    void Serve() override {
        m_Editor.RedrawContinued();
        while (m_Editor.IsActive() && HasInput())
            ReadKey();
    }

    void BeforeOutput() override { m_Editor.Hide(); }
    void AfterOutput() override { m_Editor.Redraw(); }

private:
    void Enter() {
        if (m_Shown.empty()) return;
        m_Files.clear();
        if (m_Listener != nullptr) m_Listener->PromptShown();
        Question const & question = m_Shown.back()->question;
        LineEditor::Write(LinesOf(question));
        if (question.kind == QuestionKind::Notice || !question.inputEnabled) return;
        Edit();
    }

    void Edit() {
        SharedDialog const dialog = m_Shown.back();
        m_Editor.Begin(
            [this, dialog] { return m_Prompt = PromptFor(*dialog); },
            IsFiles(dialog->question) ? CompleteFile : LineEditor::Complete());
        WatchInput(true);
    }

    void WatchInput(bool on) {
        m_Pump.WatchInput(STDIN_FILENO, on);
        m_Pump.WatchInput(LineEditor::ContinuedDescriptor(), on);
    }

    void Leave() {
        WatchInput(false);
        m_Editor.End();
        if (!m_Shown.empty() && m_Listener != nullptr) m_Listener->PromptGone();
    }

    void ReadKey() {
        std::wstring line;
        auto const outcome = m_Editor.Read(line);
        SharedDialog const dialog = m_Shown.back();
        if (outcome == LineEditor::Outcome::EndOfInput)
            Desk::The().LeaveUnanswered(dialog, "the input has ended");
        if (outcome == LineEditor::Outcome::Line) Accept(dialog, line);
    }

    void Accept(SharedDialog const & dialog, std::wstring const & line) {
        // The terminal has gone to the next line.
        m_Editor.EndLine();
        std::wstring problem;
        auto const reply = IsFiles(dialog->question) ? ReadFile(dialog->question, line, problem)
                                                     : ReadReply(dialog->question, line, problem);
        if (reply) return Desk::The().Answer(dialog, *reply, "operator");
        if (!problem.empty()) LineEditor::Write(problem + L"\n");
        Edit();
    }

    // Files are gathered line by line; empty without a problem: the next one is asked for.
    std::optional<Reply>
    ReadFile(Question const & question, std::wstring const & line, std::wstring & problem) {
        std::wstring const file = ExpandedPath(Trimmed(line));
        if (file.empty()) return Reply{.affirmed = !m_Files.empty(), .texts = m_Files};
        if (question.mustExist && !IsFile(file)) {
            problem = L"There is no file \"" + file + L"\".";
            return std::nullopt;
        }
        m_Files.push_back(file);
        if (question.kind == QuestionKind::OneFile) return Reply{.texts = m_Files};
        return std::nullopt;
    }

    Pump & m_Pump;
    CPromptListener * const m_Listener;
    LineEditor m_Editor;
    std::vector<SharedDialog> m_Shown;
    std::vector<std::wstring> m_Files;
    std::wstring m_Prompt;
};

} // namespace

std::unique_ptr<Face> MakeOperatorsFace(Pump & pump, CPromptListener * listener) {
    if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0)
        return MakeNobodysFace("there is no terminal and no file of answers (QN_PROMPTS)");
    return std::make_unique<TerminalFace>(pump, listener);
}
