// Words and classes by verdict.
#include "siblings/quillonlog/reports/HtmlWords.h"

namespace {

struct Form {
    char const * word;
    char const * style;
};

Form const & FormOf(SectionVerdict verdict) {
    static constexpr Form forms[] = {
        {"Not finished", "o"}, {"Passed", "p"}, {"Failed", "f"}, {"Aborted", "a"}, {"Done", "n"}};
    return forms[static_cast<std::size_t>(verdict)];
}

Form const & FormOf(ERunVerdict verdict) {
    static constexpr Form forms[] = {
        {"Passed", "p"},
        {"Failed", "f"},
        {"No test ran", "a"},
        {"Aborted by the operator", "a"},
        {"Could not run", "a"}};
    return forms[static_cast<std::size_t>(verdict)];
}

} // namespace

char const * HtmlWords::VerdictOf(Section const & section) { return FormOf(section.verdict).word; }
char const * HtmlWords::ClassOf(Section const & section) { return FormOf(section.verdict).style; }
char const * HtmlWords::VerdictOf(RunRecord const & run) { return FormOf(run.verdict).word; }
char const * HtmlWords::ClassOf(RunRecord const & run) { return FormOf(run.verdict).style; }

std::string HtmlWords::Amount(std::size_t count, char const * one, char const * many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}
