// The system's dialog for choosing files, which runs a loop of its own.
#include "siblings/promptline/windows/FileChooser.h"

#include <algorithm>
#include <vector>

#include <commdlg.h>

namespace {

// Room for many long paths.
constexpr std::size_t Capacity = 256 * 1024;

// The choices that are up, the innermost last.
struct Choice {
    SharedDialog dialog;
    HWND window = nullptr;
};
std::vector<Choice *> choices;

UINT_PTR CALLBACK OnDialog(HWND child, UINT message, WPARAM, LPARAM lParam) {
    if (message != WM_INITDIALOG) return 0;
    auto const & given = *reinterpret_cast<OPENFILENAMEW const *>(lParam);
    reinterpret_cast<Choice *>(given.lCustData)->window = GetParent(child);
    return 0;
}

// The system's form: each part ended by a NUL, and another at the end.
std::wstring FilterOf(Question const & question) {
    std::wstring filter = question.filter;
    if (!filter.empty() && filter.back() != L'|') filter += L'|';
    std::replace(filter.begin(), filter.end(), L'|', L'\0');
    return filter + L'\0';
}

// One path, or a folder and names, each ended by a NUL.
std::vector<std::wstring> PathsOf(std::vector<wchar_t> const & buffer) {
    std::vector<std::wstring> parts;
    for (wchar_t const * part = buffer.data(); *part != 0; part += parts.back().size() + 1)
        parts.emplace_back(part);
    if (parts.size() < 2) return parts;
    std::wstring const folder = parts.front() + L'\\';
    parts.erase(parts.begin());
    for (auto & name : parts)
        name.insert(0, folder);
    return parts;
}

DWORD FlagsOf(Question const & question) {
    DWORD flags =
        OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_ENABLESIZING | OFN_ENABLEHOOK;
    if (question.mustExist) flags |= OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    if (question.kind == QuestionKind::SeveralFiles) flags |= OFN_ALLOWMULTISELECT;
    return flags;
}

} // namespace

void ChooseFiles(SharedDialog const & dialog) {
    Question const & question = dialog->question;
    std::vector<wchar_t> buffer(Capacity);
    std::wstring const filter = FilterOf(question);
    Choice choice{dialog};
    OPENFILENAMEW given = {};
    given.lStructSize = sizeof given;
    given.lpstrFilter = question.filter.empty() ? nullptr : filter.c_str();
    given.lpstrFile = buffer.data();
    given.nMaxFile = static_cast<DWORD>(buffer.size());
    given.lpstrTitle = question.text.c_str();
    given.Flags = FlagsOf(question);
    given.lCustData = reinterpret_cast<LPARAM>(&choice);
    given.lpfnHook = OnDialog;
    choices.push_back(&choice);
    bool const isChosen = GetOpenFileNameW(&given) != 0;
    DWORD const error = isChosen ? 0 : CommDlgExtendedError();
    std::erase(choices, &choice);
    if (error != 0)
        return Desk::The().LeaveUnanswered(
            dialog, "the system's file dialog fails (error " + std::to_string(error) + ")");
    Reply reply{.affirmed = isChosen};
    if (isChosen) reply.texts = PathsOf(buffer);
    Desk::The().Answer(dialog, reply, "operator");
}

void CancelChoice(SharedDialog const & dialog) {
    for (Choice const * const choice : choices)
        if (choice->dialog == dialog) PostMessageW(choice->window, WM_COMMAND, IDCANCEL, 0);
}
