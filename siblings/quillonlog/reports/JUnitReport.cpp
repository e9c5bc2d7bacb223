// Keeps a JUnit file complete while the run goes on.
#include "siblings/quillonlog/reports/JUnitReport.h"

#include "siblings/quillonlog/reports/CleanText.h"

namespace {

// The whole file may have 30 MB at such a server.
constexpr std::uint64_t SizeWithTexts = 24'000'000;
constexpr std::size_t MostTextsOfCase = 16'384;
constexpr std::size_t LongestMessage = 300;
constexpr std::size_t LongestName = 400;
// Twice in the head, where a character may take six.
constexpr std::size_t LongestSuiteName = 200;
constexpr std::size_t HeadSize = 3072;
constexpr char NameOfRun[] = "The run";
constexpr char RunIsOpen[] = "The run was not finished.";
constexpr std::string_view Tail = "</testsuite>\n</testsuites>\n";

void AppendAttribute(std::string & out, char const * name, std::string_view text) {
    out.append(" ").append(name).append("=\"");
    CleanText::AppendAttribute(out, text);
    out += '"';
}

void AppendNumber(std::string & out, char const * name, std::size_t number) {
    AppendAttribute(out, name, std::to_string(number));
}

std::string PropertiesOf(CReportFacts const & facts) {
    std::string text;
    for (auto const & group : facts.groups)
        for (auto const & [name, value] : group.pairs) {
            text += "<property";
            AppendAttribute(text, "name", group.title + ": " + name);
            AppendAttribute(text, "value", value);
            text += "/>\n";
        }
    return text.empty() ? text : "<properties>\n" + text + "</properties>\n";
}

// The element of its result; null for a case that has passed.
char const * ElementOf(SectionVerdict verdict) {
    switch (verdict) {
    case SectionVerdict::Failed:
        return "failure";
    case SectionVerdict::Aborted:
    case SectionVerdict::Open:
        return "error";
    default:
        return nullptr;
    }
}

std::string MessageOf(Section const & section) {
    if (section.verdict == SectionVerdict::Open) return "The test was not finished.";
    if (!section.firstProblem.empty()) return CleanText::Cut(section.firstProblem, LongestMessage);
    return section.verdict == SectionVerdict::Aborted ? "Aborted." : "Failed.";
}

bool IsCase(Section const & section) { return section.isTest || section.IsBad(); }

} // namespace

std::string
JUnitReport::Head(RunRecord const & run, Counts const & counts, std::string_view seconds) {
    std::string const name = CleanText::Cut(run.facts.suite, LongestSuiteName);
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    for (char const * const element : {"<testsuites", "<testsuite"}) {
        text += element;
        AppendAttribute(text, "name", name);
        AppendNumber(text, "tests", counts.tests);
        AppendNumber(text, "failures", counts.failures);
        AppendNumber(text, "errors", counts.errors);
        AppendAttribute(text, "time", seconds);
        if (element == std::string_view("<testsuites")) text += ">\n";
    }
    AppendAttribute(text, "timestamp", UtcForJUnit(run.start.utc));
    return text + ">\n";
}

// Every head of the run has the same size, so that the next takes its place.
std::string JUnitReport::PaddedHead(RunRecord const & run, Counts const & counts) const {
    auto const stop = run.sections.empty() ? run.start : run.sections.back().stop;
    std::string head = Head(run, counts, Seconds(stop.steady - run.start.steady));
    head.resize(head.size() - 2);
    head.resize(HeadSize - 2, ' ');
    return head + ">\n";
}

void JUnitReport::RunStarted(RunRecord const & run) {
    m_ClassName =
        run.facts.suite.empty() ? "suite" : CleanText::Cut(run.facts.suite, LongestSuiteName);
    std::string const front = PaddedHead(run, WithOpenCase()) + PropertiesOf(run.facts);
    m_Cases = {front.size(), front.size()};
    m_File->Append(front + CaseOfRun(RunIsOpen) + std::string(Tail));
}

// A server drops all but one of the cases that bear one name.
std::string JUnitReport::UniqueName(std::string const & name) {
    std::string const wanted =
        name.empty() ? std::string("(no name)") : CleanText::Cut(name, LongestName);
    std::size_t run = ++m_Names[wanted];
    if (run == 1) return wanted;
    std::string unique = wanted + " (run " + std::to_string(run) + ")";
    while (m_Names.contains(unique))
        unique = wanted + " (run " + std::to_string(++run) + ")";
    m_Names[wanted] = run;
    m_Names[unique] = 1;
    return unique;
}

std::string JUnitReport::CaseOf(Section const & section, std::string_view name) const {
    std::string text = "<testcase";
    AppendAttribute(text, "name", name);
    AppendAttribute(text, "classname", m_ClassName);
    AppendAttribute(text, "time", Seconds(section.Length()));
    char const * const element = ElementOf(section.verdict);
    if (element == nullptr) return text + "/>\n";
    text.append("><").append(element);
    AppendAttribute(text, "message", MessageOf(section));
    text += '>';
    CleanText::AppendMarkup(text, m_Texts);
    if (m_OmittedTexts != 0)
        text += std::to_string(m_OmittedTexts) + " more; the journal and the page have them all.\n";
    return text.append("</").append(element).append("></testcase>\n");
}

// Under a name that is free as yet. No test is open.
std::string JUnitReport::CaseOfRun(std::string const & problem) const {
    Section whole;
    whole.verdict = SectionVerdict::Aborted;
    whole.firstProblem = problem;
    std::string name = NameOfRun;
    for (std::size_t run = 2; m_Names.contains(name); ++run)
        name = std::string(NameOfRun) + " (run " + std::to_string(run) + ")";
    return CaseOf(whole, name);
}

void JUnitReport::Count(SectionVerdict verdict) {
    ++m_Counts.tests;
    if (verdict == SectionVerdict::Failed) ++m_Counts.failures;
    if (verdict == SectionVerdict::Aborted) ++m_Counts.errors;
}

JUnitReport::Counts JUnitReport::WithOpenCase() const {
    Counts counts = m_Counts;
    ++counts.tests;
    ++counts.errors;
    return counts;
}

// The cases that are over grow by `closed`; `open` stands behind them until the next change.
void JUnitReport::ReplaceEnd(
    RunRecord const & run, std::string const & closed, std::string const & open) {
    WriteEnd(closed + open + std::string(Tail));
    m_Cases.end += closed.size();
    m_File->WriteAt(0, PaddedHead(run, WithOpenCase()));
}

// What stood there before and is longer is blanked. More than one write could be cut in two by the
// end of the process, and so the file is replaced then.
void JUnitReport::WriteEnd(std::string text) {
    std::uint64_t const at = m_Cases.end;
    if (at + text.size() < m_File->Size())
        text.resize(static_cast<std::size_t>(m_File->Size() - at), '\n');
    bool const isWithinPage =
        at / ReportFile::PageSize == (at + text.size() - 1) / ReportFile::PageSize;
    if (isWithinPage) return m_File->WriteAt(at, text);
    ReportFile::Replacement whole(*m_File);
    whole.Copy({0, at});
    whole.Append(text);
    whole.Commit();
}

void JUnitReport::SectionOpened(RunRecord const & run, Section const & section) {
    m_OpenName.clear();
    // What is no test is a case only if it fails; until then the run's own stands there.
    if (!section.isTest) return;
    m_OpenName = UniqueName(section.name);
    ReplaceEnd(run, "", CaseOf(section, m_OpenName));
}

void JUnitReport::EntryWritten(Section const &, SectionEntry const & entry) {
    if (entry.kind != EntryKind::Fail && entry.kind != EntryKind::Abort
        && entry.kind != EntryKind::Error)
        return;
    bool const hasRoom =
        m_Texts.size() + entry.text.size() < MostTextsOfCase && m_Cases.end < SizeWithTexts;
    if (!hasRoom) {
        ++m_OmittedTexts;
        return;
    }
    m_Texts.append(entry.text).push_back('\n');
}

void JUnitReport::SectionClosed(RunRecord const & run, Section const & section) {
    // What fails behind the last test tells of the failures before.
    bool const tellsOfOthers = section.isOutside && m_Counts.failures + m_Counts.errors != 0;
    bool const isCase = IsCase(section) && !tellsOfOthers;
    std::string closed;
    if (isCase) closed = CaseOf(section, section.isTest ? m_OpenName : UniqueName(section.name));
    m_Texts.clear();
    m_OmittedTexts = 0;
    if (!isCase) return;
    Count(section.verdict);
    ReplaceEnd(run, closed, CaseOfRun(RunIsOpen));
}

void JUnitReport::RunEnded(RunRecord const & run) {
    std::string added;
    if (run.verdict != ERunVerdict::Passed && m_Counts.failures + m_Counts.errors == 0) {
        added = CaseOfRun(run.reason.empty() ? "The run has not passed." : run.reason);
        Count(SectionVerdict::Aborted);
    }
    ReportFile::Replacement text(*m_File);
    text.Append(Head(run, m_Counts, Seconds(run.stop.steady - run.start.steady)));
    text.Append(PropertiesOf(run.facts));
    text.Copy(m_Cases);
    text.Append(added);
    text.Append(Tail);
    text.Commit();
}
