// Writes the journal.
#include "siblings/quillonlog/reports/Journal.h"

#include "siblings/quillonlog/reports/CleanText.h"

namespace {

char const * NameOf(EntryKind kind) {
    static constexpr char const * names[] = {"fail", "abort",   "error",  "warning",
                                             "info", "unknown", "prompt", "device"};
    return names[static_cast<std::size_t>(kind)];
}

char const * NameOf(SectionVerdict verdict) {
    static constexpr char const * names[] = {"open", "passed", "failed", "aborted", "done"};
    return names[static_cast<std::size_t>(verdict)];
}

char const * NameOf(ERunVerdict verdict) {
    static constexpr char const * names[] = {
        "passed", "failed", "no-test-ran", "aborted-by-operator", "could-not-run"};
    return names[static_cast<std::size_t>(verdict)];
}

char const * KindOf(Section const & section) {
    if (section.isTest) return "test";
    return section.isOutside ? "outside" : "utility";
}

constexpr char Format[] = "morvex-journal-1";

} // namespace

void Journal::Begin(char const * event, Moment const & time) {
    m_Line = "{\"event\":\"";
    m_Line.append(event).append("\",\"utc\":\"");
    AppendUtc(m_Line, time.utc);
    m_Line += '"';
    AddSeconds("at", time.steady - m_Start.steady);
}

void Journal::AddBare(char const * name, std::string_view value) {
    m_Line.append(",\"").append(name).append("\":").append(value);
}

void Journal::Add(char const * name, std::string_view text) {
    AddBare(name, "");
    CleanText::AppendJson(m_Line, text);
}

void Journal::Add(char const * name, std::size_t number) { AddBare(name, std::to_string(number)); }

// To the microsecond: entries follow each other faster than a clock of milliseconds ticks.
void Journal::AddSeconds(char const * name, std::chrono::nanoseconds length) {
    auto const micros = std::chrono::floor<std::chrono::microseconds>(length).count();
    std::string fraction = std::to_string(micros % 1'000'000);
    fraction.insert(0, 6 - fraction.size(), '0');
    AddBare(name, std::to_string(micros / 1'000'000) + '.' + fraction);
}

void Journal::AddSection(Section const * section) {
    if (section != nullptr) Add("section", section->number);
}

void Journal::AddGroups(CReportFacts const & facts) {
    AddBare("facts", "[");
    for (auto const & group : facts.groups)
        for (auto const & [name, value] : group.pairs) {
            m_Line += m_Line.ends_with('[') ? "[" : ",[";
            for (std::string_view const text :
                 {std::string_view(group.title), std::string_view(name)}) {
                CleanText::AppendJson(m_Line, text);
                m_Line += ',';
            }
            CleanText::AppendJson(m_Line, value);
            m_Line += ']';
        }
    m_Line += ']';
}

void Journal::End() {
    m_Line += "}\n";
    m_File->Append(m_Line);
}

void Journal::RunStarted(RunRecord const & run) {
    m_Start = run.start;
    Begin("run-start", run.start);
    Add("format", Format);
    Add("suite", run.facts.suite);
    AddGroups(run.facts);
    End();
}

void Journal::SectionOpened(RunRecord const &, Section const & section) {
    Begin("test-start", section.start);
    AddSection(&section);
    Add("kind", KindOf(section));
    Add("name", section.name);
    End();
}

void Journal::EntryWritten(Section const & section, SectionEntry const & entry) {
    // These have lines of their own.
    if (entry.kind == EntryKind::Prompt || entry.kind == EntryKind::Device) return;
    Begin("entry", entry.time);
    AddSection(&section);
    AddBare("status", "\"");
    m_Line.append(NameOf(entry.kind)).push_back('"');
    Add("text", entry.text);
    if (!entry.style.empty()) Add("style", entry.style);
    End();
}

void Journal::PromptEnded(
    Section const * section, CTestPrompt const & prompt, Moment const & time) {
    Begin("prompt", time);
    AddSection(section);
    Add("question", prompt.question);
    Add("answer", prompt.answer);
    Add("source", prompt.source);
    if (!prompt.reason.empty()) Add("reason", prompt.reason);
    AddSeconds(
        "seconds", std::chrono::duration_cast<std::chrono::nanoseconds>(
                       std::chrono::duration<double>(prompt.seconds)));
    AddBare("aborted", prompt.hasAborted ? "true" : "false");
    End();
}

void Journal::DeviceChanged(
    Section const * section, CTestDeviceEvent const & event, Moment const & time) {
    Begin("device", time);
    AddSection(section);
    Add("what", event.what);
    Add("device", event.device);
    End();
}

void Journal::SectionClosed(RunRecord const &, Section const & section) {
    Begin("test-stop", section.stop);
    AddSection(&section);
    Add("name", section.name);
    Add("verdict", NameOf(section.verdict));
    AddSeconds("seconds", section.Length());
    for (EntryKind const kind :
         {EntryKind::Fail, EntryKind::Abort, EntryKind::Error, EntryKind::Warning, EntryKind::Info})
        Add(NameOf(kind), section.CountOf(kind));
    End();
}

void Journal::RunEnded(RunRecord const & run) {
    Begin("run-stop", run.stop);
    Add("verdict", NameOf(run.verdict));
    if (!run.reason.empty()) Add("reason", run.reason);
    Add("tests", run.score.tests);
    Add("passed", run.score.passed);
    Add("failed", run.score.failed);
    Add("aborted", run.score.aborted);
    AddSeconds("seconds", run.stop.steady - run.start.steady);
    End();
}
