// Writes the page.
#include "siblings/quillonlog/reports/HtmlReport.h"

#include "siblings/quillonlog/reports/CleanText.h"
#include "siblings/quillonlog/reports/EntryLook.h"
#include "siblings/quillonlog/reports/HtmlParts.h"

namespace {

// A browser without scripts reads the entries in place. One with scripts sees a block of them as
// one text, and unfolds it when it comes into view.
constexpr std::size_t BlockSize = 250;
constexpr std::string_view BlockBegin = "<noscript><ol>\n";
constexpr std::string_view BlockEnd = "</ol></noscript>\n";

constexpr std::size_t StateSize = 512;

// Entries that follow each other faster than anybody reads them are written in pieces.
constexpr std::size_t PieceSize = ReportFile::PageSize;
constexpr std::chrono::milliseconds BurstTime{10};

// The letter is the element's class, for the style sheet and the filter.
struct KindForm {
    char const * letter;
    char const * word;
};

KindForm const & FormOf(EntryKind kind) {
    static constexpr KindForm forms[] = {{"f", "Fail"},     {"a", "Abort"}, {"e", "Error"},
                                         {"w", "Warning"},  {"i", "Info"},  {"u", "Unclear"},
                                         {"q", "Question"}, {"d", "Device"}};
    return forms[static_cast<std::size_t>(kind)];
}

std::string IdOf(Section const & section, std::size_t entry) {
    std::string id = "e";
    return id.append(std::to_string(section.number)).append("-").append(std::to_string(entry));
}

} // namespace

void HtmlReport::RunStarted(RunRecord const & run) {
    m_File->Append(HtmlParts::DocumentBegin(run.facts.suite));
    // In one page of the file, where each state replaces the one before in one piece.
    std::size_t const used = static_cast<std::size_t>(m_File->Size() % ReportFile::PageSize);
    if (used + StateSize > ReportFile::PageSize)
        m_File->Append(std::string(ReportFile::PageSize - used, '\n'));
    m_State = m_File->Size();
    WriteState(run);
    m_File->Append(HtmlParts::GrowingHead(run));
}

void HtmlReport::WriteState(RunRecord const & run) {
    std::string state = HtmlParts::State(run);
    state.resize(StateSize - 1, ' ');
    m_File->WriteAt(m_State, state += '\n');
}

void HtmlReport::SectionOpened(RunRecord const &, Section const & section) {
    m_File->Append(HtmlParts::GrowingSectionBegin(section));
    m_Begin = m_File->Size();
    m_EntryCount = m_SectionShown = m_SectionLeftOut = 0;
    m_LastWritten = {};
}

bool HtmlReport::IsLeftOut(SectionEntry const & entry) const {
    bool const isInformation = entry.kind == EntryKind::Info || entry.kind == EntryKind::Unknown;
    return isInformation && m_Shown >= MostEntries && m_SectionShown >= LeastOfSection;
}

// Of a test that hangs or dies the last entries tell the most: an entry is in the file at once, or
// in a burst of them with those that follow. A problem is always there at once. A test that hangs
// right behind a burst leaves its end, less than a piece, to the journal.
void HtmlReport::EntryWritten(Section const & section, SectionEntry const & entry) {
    ++m_EntryCount;
    if (IsLeftOut(entry)) {
        ++m_SectionLeftOut;
        return;
    }
    if (m_SectionShown % BlockSize == 0) {
        if (m_SectionShown != 0) m_Text += BlockEnd;
        m_Text += BlockBegin;
    }
    ++m_SectionShown;
    ++m_Shown;
    AppendEntry(section, entry);
    bool const isInBurst = entry.time.steady - m_LastWritten < BurstTime;
    if (isInBurst && m_Text.size() < PieceSize && !IsProblem(entry.kind)) return;
    m_LastWritten = entry.time.steady;
    WritePending();
}

void HtmlReport::WritePending() {
    m_File->Append(m_Text);
    m_Text.clear();
}

void HtmlReport::AppendEntry(Section const & section, SectionEntry const & entry) {
    KindForm const & form = FormOf(entry.kind);
    std::string const id = IdOf(section, m_EntryCount);
    m_Text.append("<li id=").append(id);
    if (entry.style.empty())
        m_Text.append(" class=\"").append(form.letter).append("\"");
    else
        m_Text += EntryLook::Attributes(form.letter, entry.style);
    m_Text.append("><a href=#").append(id).append(">");
    AppendSeconds(m_Text, entry.time.steady - section.start.steady);
    m_Text.append("</a><b>").append(form.word).append("</b><span>");
    CleanText::AppendMarkup(m_Text, entry.text);
    m_Text += "</span></li>\n";
}

void HtmlReport::SectionClosed(RunRecord const & run, Section const & section) {
    m_LeftOut += m_SectionLeftOut;
    WritePending();
    std::string const end =
        std::string(m_SectionShown != 0 ? BlockEnd : "") + HtmlParts::LeftOut(m_SectionLeftOut);
    m_Entries.push_back({m_Begin, m_File->Size() + end.size()});
    m_File->Append(end + HtmlParts::GrowingSectionEnd(section));
    WriteState(run);
}

void HtmlReport::RunEnded(RunRecord const & run) {
    ReportFile::Replacement page(*m_File);
    page.Append(HtmlParts::DocumentBegin(run.facts.suite));
    page.Append(HtmlParts::Head(run, m_LeftOut));
    for (std::size_t i = 0; i < run.sections.size(); ++i) {
        page.Append(HtmlParts::SectionBegin(run.sections[i]));
        page.Copy(m_Entries[i]);
        page.Append(HtmlParts::SectionEnd());
    }
    page.Append(HtmlParts::DocumentEnd());
    page.Commit();
}
