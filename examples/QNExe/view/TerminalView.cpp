// The log on a stream, progress beneath it.
#include "examples/QNExe/view/TerminalView.h"

#include <utility>

#include "examples/QNExe/view/TerminalText.h"

namespace {

// Back to the first column, and the line away.
constexpr char EraseLine[] = "\r\x1b[K";

} // namespace

TerminalView::TerminalView(std::FILE * stream, Settings settings)
    : m_Stream(stream), m_Settings(std::move(settings)) {}

TerminalView::~TerminalView() { Put(Erase()); }

void TerminalView::Show(std::vector<StyledText> const & pieces) {
    std::string const text = TerminalText(pieces, m_Settings.styled);
    if (text.empty()) return;
    std::string sent = Erase() + text;
    m_AtLineStart = text.ends_with('\n');
    sent += Draw();
    Put(sent);
}

void TerminalView::Show(Progress const & progress) {
    if (progress == m_Progress) return;
    m_Progress = progress;
    std::string sent = Erase();
    sent += Draw();
    Put(sent);
}

void TerminalView::HoldProgress(bool hold) {
    if (hold == m_IsHeld) return;
    m_IsHeld = hold;
    std::string sent = Erase();
    sent += Draw();
    Put(sent);
}

void TerminalView::Put(std::string const & text) {
    if (text.empty()) return;
    std::fwrite(text.data(), 1, text.size(), m_Stream);
    std::fflush(m_Stream);
}

std::string TerminalView::Erase() {
    return std::exchange(m_StatusShown, false) ? EraseLine : std::string();
}

std::string TerminalView::Draw() {
    if (!m_Settings.progress || !m_AtLineStart || m_IsHeld) return {};
    std::size_t const columns = m_Settings.columns();
    // The last column stays free: a full line makes some terminals wrap.
    std::string line = StatusLine(m_Progress, columns > 0 ? columns - 1 : 0);
    m_StatusShown = !line.empty();
    return line;
}
