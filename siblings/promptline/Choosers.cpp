// The choosers of files: questions without a state, whose asker waits inside the call.
#include "siblings/Keelbase.h"
#include "siblings/promptline/Desk.h"

namespace {

constexpr wchar_t VifFilter[] = L"Vendor information files|*.xml;*.txt|All files|*.*|";

Question Asking(QuestionKind kind, wchar_t const * title, wchar_t const * filter, bool mustExist) {
    Question question;
    question.kind = kind;
    bool const isOne = kind == QuestionKind::OneFile;
    question.text = title != nullptr ? title : isOne ? L"Choose a file" : L"Choose files";
    question.filter = filter != nullptr ? filter : L"";
    question.first = L"OK";
    question.mustExist = mustExist;
    return question;
}

CSafeString Path(std::wstring const & text) { return CSafeString(Utf16ToUtf8(text)->c_str()); }

bool ChooseOne(CSafeString & file, Question const & question) {
    bool chosen = false;
    Desk::The().Choose(question, [&](Reply const & reply) {
        if (!reply.affirmed) return;
        file = Path(reply.texts.at(0));
        chosen = true;
    });
    return chosen;
}

bool ChooseSeveral(std::vector<CSafeString> *& files, Question const & question) {
    bool chosen = false;
    Desk::The().Choose(question, [&](Reply const & reply) {
        if (!reply.affirmed) return;
        auto paths = std::make_unique<std::vector<CSafeString>>();
        for (auto const & text : reply.texts)
            paths->push_back(Path(text));
        files = paths.release();
        chosen = true;
    });
    return chosen;
}

} // namespace

bool SelectSingleFile(
    CSafeString & file, wchar_t const * const title, wchar_t const * const filter, bool mustExist) {
    return ChooseOne(file, Asking(QuestionKind::OneFile, title, filter, mustExist));
}

bool SelectMultipleFiles(
    std::vector<CSafeString> *& files, wchar_t const * const title, wchar_t const * const filter,
    bool mustExist) {
    return ChooseSeveral(files, Asking(QuestionKind::SeveralFiles, title, filter, mustExist));
}

bool SelectSingleVIF(CSafeString & file, wchar_t const * const title, bool mustExist) {
    return ChooseOne(file, Asking(QuestionKind::OneFile, title, VifFilter, mustExist));
}

bool SelectMultipleVIFs(
    std::vector<CSafeString> *& files, wchar_t const * const title, bool mustExist) {
    return ChooseSeveral(files, Asking(QuestionKind::SeveralFiles, title, VifFilter, mustExist));
}
