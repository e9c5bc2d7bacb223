// Takes formatted text out of the library and shows it.
#include "examples/QNExe/view/FormattedView.h"

#include <cstdlib>
#include <utility>

#include "examples/QNExe/view/Terminal.h"
#include "output/CUIUpdate.h"

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

bool IsColorTerminal(std::FILE * stream) {
    ColorEnvironment const environment = ReadEnvironment();
    return IsCapable(stream, environment) && WantsColor(environment, StreamKind::Terminal);
}

FormattedView::FormattedView(std::FILE * stream) : m_View(stream, SettingsFor(stream)) {}

bool FormattedView::TakeOver(bool testWaits) {
    CUIUpdate const & update = *CUIUpdate::GetUIUpdate();
    Progress progress{update.ProgressPosition(), update.ProgressRange(), m_Progress.label};
    if (testWaits) progress.label = update.ProgressLabel();
    if (progress != m_Progress) {
        m_Progress = std::move(progress);
        m_ProgressIsNew = true;
    }
    if (COutputBuffer * const buffer = CUIUpdate::GetBuffer())
        if (COutputBuffer::DataTable * const table = buffer->GetText())
            m_Tables.emplace_back(table);
    return m_ProgressIsNew || !m_Tables.empty();
}

void FormattedView::Render() {
    while (!m_Tables.empty()) {
        auto const table = std::move(m_Tables.front());
        m_Tables.pop_front();
        m_View.Show(m_Reader.Read(*table));
    }
    if (std::exchange(m_ProgressIsNew, false)) m_View.Show(m_Progress);
}
