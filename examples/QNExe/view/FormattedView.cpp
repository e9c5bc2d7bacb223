// Takes formatted text out of the library and shows it.
#include "examples/QNExe/view/FormattedView.h"

#include <cstdlib>
#include <string>

#include "examples/QNExe/view/Terminal.h"

namespace {

std::string Variable(char const * name) {
    char const * const value = std::getenv(name);
    return value != nullptr ? value : std::string();
}

ColorEnvironment ReadEnvironment() {
    return {
        .noColor = Variable("NO_COLOR"),
        .cliColorForce = Variable("CLICOLOR_FORCE"),
        .cliColor = Variable("CLICOLOR"),
        .term = Variable("TERM")};
}

// A terminal that obeys control sequences.
bool IsCapable(std::FILE * stream, ColorEnvironment const & environment) {
    return KindOf(stream) == StreamKind::Terminal && environment.term != "dumb"
           && EnableControlSequences(stream);
}

TerminalView::Settings SettingsFor(std::FILE * stream) {
    ColorEnvironment const environment = ReadEnvironment();
    StreamKind const kind = KindOf(stream);
    bool const capable = IsCapable(stream, environment);
    bool const colors = WantsColor(environment, kind);
    return {
        .styled = colors && (capable || kind != StreamKind::Terminal),
        .progress = capable,
        .columns = [stream] { return ColumnsOf(stream); }};
}

} // namespace

bool IsCapableTerminal(std::FILE * stream) { return IsCapable(stream, ReadEnvironment()); }

bool IsColorTerminal(std::FILE * stream) {
    ColorEnvironment const environment = ReadEnvironment();
    return IsCapable(stream, environment) && WantsColor(environment, StreamKind::Terminal);
}

FormattedView::FormattedView(std::FILE * stream) : m_View(stream, SettingsFor(stream)) {}

void FormattedView::Render() {
    while (auto const table = m_Intake.NextTable())
        m_View.Show(m_Reader.Read(*table));
    if (auto const progress = m_Intake.NewProgress()) m_View.Show(*progress);
}
