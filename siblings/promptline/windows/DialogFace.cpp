// Questions as the system's dialogs.
#include <algorithm>
#include <memory>
#include <vector>

#include "siblings/promptline/Face.h"
#include "siblings/promptline/windows/DialogWindow.h"
#include "siblings/promptline/windows/FileChooser.h"

namespace {

bool IsFiles(Question const & question) {
    return question.kind == QuestionKind::OneFile || question.kind == QuestionKind::SeveralFiles;
}

class DialogFace : public Face {
public:
    void Show(SharedDialog const & dialog) override {
        if (IsFiles(dialog->question)) return ChooseFiles(dialog);
        auto window = std::make_unique<DialogWindow>(dialog);
        if (window->IsShown())
            m_Windows.push_back(std::move(window));
        else
            Desk::The().LeaveUnanswered(dialog, "the system shows no dialog");
    }

    void Remove(SharedDialog const & dialog) override {
        CancelChoice(dialog);
        std::erase_if(
            m_Windows, [&](auto const & window) { return window->GetDialog() == dialog; });
    }

    void Tick() override {
        for (auto const & window : m_Windows)
            window->ShowTimeLeft();
    }

    bool TakesMessage(MSG & message) override {
        return std::any_of(m_Windows.begin(), m_Windows.end(), [&](auto const & window) {
            return window->TakesMessage(message);
        });
    }

private:
    std::vector<std::unique_ptr<DialogWindow>> m_Windows;
};

} // namespace

std::unique_ptr<Face> MakeOperatorsFace(Pump &, CPromptListener *) {
    return std::make_unique<DialogFace>();
}
