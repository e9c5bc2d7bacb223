// How a log's doings become lines of text.
#include "log/LogFixture.h"

#include <cstdio>
#include <map>

#include "log/TestStatus.h"

namespace {

std::string Escape(char character) {
    switch (character) {
    case '\r':
        return "\\r";
    case '\n':
        return "\\n";
    default:
        return Number("\\x%02lX", static_cast<unsigned char>(character));
    }
}

std::string Narrow(std::wstring const & text) {
    std::string narrow;
    for (wchar_t const character : text)
        narrow += character < 0x80 ? static_cast<char>(character) : '?';
    return narrow;
}

std::string YesNo(bool value) { return value ? "yes" : "no"; }

std::string ShownTime(TestClock::time_point time) {
    return time == TestClock::time_point() ? "-" : TimeText(time);
}

std::string ShownPointer(void const * pointer) { return pointer == nullptr ? " null" : " set"; }

} // namespace

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (char const character : text) {
        if (character >= ' ' && character < 0x7F)
            quoted += character;
        else
            quoted += Escape(character);
    }
    return quoted + '"';
}

std::string StatusName(TEST_STATUS status) {
    static std::map<TEST_STATUS, char const *> const names = {
        {0x80000000, "FAIL"},  {0x40000000, "ABORT"}, {0x08000000, "WARNING"},
        {0x20000000, "ERROR"}, {0x04000000, "INFO"},  {0, "0"}};
    auto const name = names.find(status);
    return name != names.end() ? name->second : Hex(status);
}

std::string LookName(CHARFORMAT2A const & record) {
    static std::map<std::string, char const *> const names = {
        {"mask=00000000 effects=44000000", "info"},
        {"mask=40000000 effects=04000000 color=0000FF", "warning"},
        {"mask=40400001 effects=04000001 color=0000FF weight=700", "fail"},
        {"mask=44400003 effects=00000003 color=0000FF weight=700 back=00FFFF", "diagnostic"},
        {"mask=40400003 effects=04000003 color=AA0000 weight=700", "start"},
        {"mask=40400001 effects=04000001 color=007F00 weight=700", "passed"},
        {"mask=40400001 effects=04000001 color=0000BF weight=700", "failed"},
        {"mask=40400003 effects=04000003 color=007F00 weight=700", "suite-passed"},
        {"mask=40400003 effects=04000003 color=0000BF weight=700", "suite-failed"},
        {"mask=80000000 effects=40000000", "default"}};
    std::string const line = Line(record);
    auto const name = names.find(line);
    return name != names.end() ? name->second : '<' + line + '>';
}

std::string LookName(CFormatInfo const * look) {
    return look != nullptr ? LookName(look->format) : "none";
}

std::string Hex(std::uint32_t word) { return Number("%08lX", word); }

void Journal::Watch(CMXLog const * log) {
    m_Log = log;
    COutputBuffer::DeleteDataTable(m_Bench.m_Buffer.GetText());
    m_Facts = Facts();
    m_MetaSeen = m_Bench.m_Suite.Meta().size();
    m_Lines.clear();
    m_Watching = true;
}

Lines Journal::Take() {
    Note();
    return std::exchange(m_Lines, {});
}

void Journal::Add(std::string const & line) {
    if (!m_Watching) return;
    Note();
    m_Lines.push_back(line);
}

void Journal::TraceOn() {
    m_Tap.emplace([this](std::uint16_t number, std::string const & text) {
        Add("trace " + std::to_string(number) + ' ' + Quoted(text));
    });
}

std::vector<Journal::Fact> Journal::Facts() const {
    std::vector<Fact> facts;
    if (m_Log != nullptr)
        facts = {
            {"word", Hex(m_Log->TestStatus())},
            {"active", YesNo(m_Log->TestActive())},
            {"started", YesNo(m_Log->StartTestHasBeenCalled())},
            {"stopped", YesNo(m_Log->StopTestHasBeenCalled())}};
    CTestLog const & record = *m_Bench.m_Suite.CurrentTestLog();
    facts.insert(
        facts.end(), {{"record name", Quoted(record.TestName())},
                      {"failures", std::to_string(record.FailureCount())},
                      {"aborts", std::to_string(record.AbortCount())},
                      {"warnings", std::to_string(record.WarningCount())},
                      {"infos", std::to_string(record.InfoCount())},
                      {"unknowns", std::to_string(record.UnknownCount())},
                      {"start time", ShownTime(record.StartTime())},
                      {"stop time", ShownTime(record.StopTime())},
                      {"result", record.HasResult() ? Hex(record.TestStatus()) : "-"}});
    return facts;
}

void Journal::Note() {
    if (!m_Watching || m_Noting) return;
    m_Noting = true;
    NoteBuffer();
    NoteFacts();
    NoteMeta();
    m_Noting = false;
}

void Journal::NoteFacts() {
    auto facts = Facts();
    for (std::size_t i = 0; i < facts.size(); ++i) {
        auto const & [name, value] = facts[i];
        if (m_Facts[i].second != value) m_Lines.push_back(name + (' ' + value));
    }
    m_Facts = std::move(facts);
}

void Journal::NoteMeta() {
    auto const & meta = m_Bench.m_Suite.Meta();
    for (; m_MetaSeen < meta.size(); ++m_MetaSeen)
        m_Lines.push_back("meta " + meta[m_MetaSeen].first + " = " + meta[m_MetaSeen].second);
}

void Journal::NoteBuffer() {
    auto * const table = m_Bench.m_Buffer.GetText();
    if (table == nullptr) return;
    for (auto const & [text, look] : *table) {
        std::string const shown = text != nullptr ? ' ' + Quoted(Narrow(*text)) : "";
        m_Lines.push_back("buffer " + LookName(look.format) + shown);
    }
    COutputBuffer::DeleteDataTable(table);
}

void Journal::OnLock() {
    if (m_LockDepth == 0) Note();
    ++m_LockDepth;
}

void Journal::OnUpdate(char const * line, UINT message, WPARAM wParam, LPARAM lParam) {
    bool const plain = message == 0x8014 && wParam == 0 && lParam == 0;
    Add(plain ? line : Number("message %04lX", message));
    if (m_OnUpdate) m_OnUpdate();
}

TS_STATUS RecordingSink::Clear() {
    m_Journal.Add("clear");
    return m_Answer;
}

TS_STATUS RecordingSink::InternalWrite(
    TEST_STATUS status, char const * const text, CFormatInfo const * format) {
    m_Entries.push_back(StatusName(status) + ' ' + LookName(format) + ' ' + Quoted(text));
    m_LastFormat = format;
    m_Journal.Add("write " + m_Entries.back());
    if (m_OnWrite) m_OnWrite(text);
    return m_Answer;
}

TS_STATUS FakePrompt::DisplayInfoToUser(
    std::string * text, unsigned long timeout, bool flag, CMXGuiEvent * event, std::string * button,
    WINDOW_ARGS * args) {
    m_Journal.Add(
        "prompt " + Quoted(*text) + ' ' + std::to_string(timeout) + (flag ? " true" : " false")
        + ShownPointer(event) + (button != nullptr ? ' ' + Quoted(*button) : " null")
        + ShownPointer(args));
    if (m_OnPrompt) m_OnPrompt();
    return m_Answer;
}

TS_STATUS FakePrompt::TerminateDialog() {
    m_Journal.Add("terminate dialog");
    return TS_SUCCESS;
}

std::string LogTest::CountsOf(CTestLog const & record) {
    return "failures " + std::to_string(record.FailureCount()) + ", aborts "
           + std::to_string(record.AbortCount()) + ", warnings "
           + std::to_string(record.WarningCount()) + ", infos " + std::to_string(record.InfoCount())
           + ", unknowns " + std::to_string(record.UnknownCount());
}
