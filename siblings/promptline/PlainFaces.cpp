// The faces without an operator: answers from a file, and no answers at all.
#include <utility>

#include "siblings/promptline/AnswerFile.h"
#include "siblings/promptline/Face.h"

namespace {

// A notice asks nothing and stays until it is ended.
bool IsAsked(SharedDialog const & dialog) { return dialog->question.kind != QuestionKind::Notice; }

class NobodysFace : public Face {
public:
    explicit NobodysFace(std::string reason) : m_Reason(std::move(reason)) {}

    void Show(SharedDialog const & dialog) override {
        if (IsAsked(dialog)) Desk::The().LeaveUnanswered(dialog, m_Reason);
    }
    void Remove(SharedDialog const &) override {}

private:
    std::string const m_Reason;
};

class FileFace : public Face {
public:
    explicit FileFace(std::string const & file) : m_Answers(file) {}

    void Show(SharedDialog const & dialog) override {
        if (!IsAsked(dialog)) return;
        std::string problem = "its dialog takes no input";
        std::optional<Reply> reply;
        if (dialog->question.inputEnabled) reply = m_Answers.Take(dialog->question, problem);
        if (reply)
            Desk::The().Answer(dialog, *reply, "file");
        else
            Desk::The().LeaveUnanswered(dialog, problem);
    }
    void Remove(SharedDialog const &) override {}

private:
    AnswerFile m_Answers;
};

} // namespace

std::unique_ptr<Face> MakeNobodysFace(std::string const & reason) {
    return std::make_unique<NobodysFace>(reason);
}

std::unique_ptr<Face> MakeFileFace(std::string const & file) {
    return std::make_unique<FileFace>(file);
}
