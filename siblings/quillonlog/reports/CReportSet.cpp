// One run as its reports see it: sections in order, whatever thread tells of them.
#include <algorithm>
#include <mutex>
#include <optional>
#include <system_error>

#include "siblings/QuillonReports.h"
#include "siblings/quillonlog/reports/CleanText.h"
#include "siblings/quillonlog/reports/HtmlReport.h"
#include "siblings/quillonlog/reports/JUnitReport.h"
#include "siblings/quillonlog/reports/Journal.h"
#include "siblings/quillonlog/reports/RawFile.h"
#include "siblings/quillonlog/reports/ReportNames.h"

namespace {

constexpr std::size_t LongestProblem = 300;

std::unique_ptr<ReportSink> MakeSink(EReportFormat format, std::unique_ptr<ReportFile> file) {
    switch (format) {
    case EReportFormat::Html:
        return std::make_unique<HtmlReport>(std::move(file));
    case EReportFormat::JUnit:
        return std::make_unique<JUnitReport>(std::move(file));
    default:
        return std::make_unique<Journal>(std::move(file));
    }
}

// A report and what became of it.
struct Output {
    CReportRequest::File file;
    std::unique_ptr<ReportSink> sink;
    std::string problem{};
};

bool IsAborted(CTestLog const & test) {
    return test.AbortCount() != 0 || (test.TestStatus() & TEST_STATUS_ABORT) != 0;
}

bool HasFailed(CTestLog const & test) {
    return test.FailureCount() != 0 || (test.TestStatus() & TEST_STATUS_FAIL) != 0;
}

// A test that is left without a result has not run to its end.
SectionVerdict VerdictOf(CTestLog const & test) {
    if (IsAborted(test)) return SectionVerdict::Aborted;
    if (!test.IsActualTest())
        return HasFailed(test) ? SectionVerdict::Failed : SectionVerdict::Done;
    if (!test.HasResult()) return SectionVerdict::Aborted;
    return test.TestStatus() == TEST_STATUS_SUCCESS ? SectionVerdict::Passed
                                                    : SectionVerdict::Failed;
}

// Outside of tests nothing has a result but its entries.
SectionVerdict VerdictOf(Section const & outside) {
    if (outside.CountOf(EntryKind::Abort) != 0) return SectionVerdict::Aborted;
    return outside.CountOf(EntryKind::Fail) != 0 ? SectionVerdict::Failed : SectionVerdict::Done;
}

void Count(Score & score, Section const & section) {
    if (!section.isTest) return;
    ++score.tests;
    if (section.verdict == SectionVerdict::Passed) ++score.passed;
    if (section.verdict == SectionVerdict::Failed) ++score.failed;
    if (section.verdict == SectionVerdict::Aborted) ++score.aborted;
}

// Each test has filed one of these; the sections tell the same.
bool IsOfATest(std::string const & key) { return key == "Test-Pass" || key == "Test-Fail"; }

void AddGroup(CReportFacts & facts, char const * title, CTestSuiteLog::Pairs const & pairs) {
    CReportFacts::Group group{title, {}};
    for (auto const & pair : pairs)
        if (!IsOfATest(pair.first)) group.pairs.push_back(pair);
    if (!group.pairs.empty()) facts.groups.push_back(std::move(group));
}

std::string TextOf(CTestPrompt const & prompt) {
    std::string const answer =
        prompt.source == "none" ? "no answer: " + prompt.reason : '"' + prompt.answer + '"';
    return prompt.question + "\n" + answer + " (" + prompt.source + ")";
}

std::string TextOf(CTestDeviceEvent const & event) {
    return event.device.empty() ? event.what : event.what + ": " + event.device;
}

} // namespace

EntryKind KindOfStatus(TEST_STATUS status) {
    switch (status) {
    case TEST_STATUS_FAIL:
        return EntryKind::Fail;
    case TEST_STATUS_ABORT:
        return EntryKind::Abort;
    case TEST_STATUS_ERROR:
        return EntryKind::Error;
    case TEST_STATUS_WARNING:
        return EntryKind::Warning;
    case TEST_STATUS_INFO:
        return EntryKind::Info;
    default:
        return EntryKind::Unknown;
    }
}

struct CReportSet::Data {
    RunRecord run;
    std::vector<Output> outputs;
    std::vector<std::string> notices;
    // The section that is open; empty between two.
    std::optional<Section> open;
    // Its record; null outside of tests.
    CTestLog const * test = nullptr;
    std::mutex lock;

    void Begin(CReportRequest const & request);
    void BeginFiles(CReportRequest const & request);
    void GiveUp() noexcept;
    template <typename Tell>
    void TellAll(Tell const & tell);
    void Open(Section section);
    void OpenOutside(Moment const & start);
    void Close(SectionVerdict verdict);
    void CloseOutside();
    void Write(SectionEntry const & entry);
};

void CReportSet::Data::BeginFiles(CReportRequest const & request) {
    ReportNames::Run const names{run.facts.suite, run.start.utc};
    for (auto const & wanted : request.files) {
        auto file = ReportNames::Begin(wanted, request.overwrite, names);
        std::string const name = file->Name();
        outputs.push_back({{wanted.format, name}, MakeSink(wanted.format, std::move(file))});
    }
}

// There is no run of which the files could tell.
void CReportSet::Data::GiveUp() noexcept {
    for (Output & output : outputs) {
        output.sink.reset();
        RemoveFile(output.file.path);
    }
}

void CReportSet::Data::Begin(CReportRequest const & request) {
    try {
        BeginFiles(request);
    } catch (...) {
        GiveUp();
        throw;
    }
    for (Output const & output : outputs)
        if (auto notice = ReportNames::PointLatestAt(output.file.path, output.file.format);
            !notice.empty())
            notices.push_back(std::move(notice));
}

// A report whose file fails is told of nothing more, and is told of at the end.
template <typename Tell>
void CReportSet::Data::TellAll(Tell const & tell) {
    for (Output & output : outputs) {
        if (!output.problem.empty()) continue;
        try {
            tell(*output.sink);
        } catch (std::system_error const & error) {
            output.problem = error.code().message();
        }
    }
}

void CReportSet::Data::Open(Section section) {
    section.number = run.sections.size() + 1;
    open = std::move(section);
    TellAll([this](ReportSink & sink) { sink.SectionOpened(run, *open); });
}

void CReportSet::Data::OpenOutside(Moment const & start) {
    Section section;
    section.name =
        run.sections.empty() ? "Before the first test" : "After " + run.sections.back().name;
    section.isOutside = true;
    section.start = start;
    Open(std::move(section));
}

void CReportSet::Data::Close(SectionVerdict verdict) {
    open->stop = Moment::Now();
    open->verdict = verdict;
    Count(run.score, *open);
    run.sections.push_back(std::move(*open));
    open.reset();
    test = nullptr;
    TellAll([this](ReportSink & sink) { sink.SectionClosed(run, run.sections.back()); });
}

void CReportSet::Data::CloseOutside() {
    if (open && open->isOutside) Close(VerdictOf(*open));
}

void CReportSet::Data::Write(SectionEntry const & entry) {
    if (!open) OpenOutside(entry.time);
    ++open->counts[static_cast<std::size_t>(entry.kind)];
    if (open->firstProblem.empty() && IsProblem(entry.kind))
        open->firstProblem = CleanText::Cut(entry.text, LongestProblem);
    TellAll([&](ReportSink & sink) { sink.EntryWritten(*open, entry); });
}

CReportSet::CReportSet(CReportRequest const & request, CReportFacts facts)
    : m_Data(std::make_unique<Data>()) {
    m_Data->run.facts = std::move(facts);
    m_Data->run.start = m_Data->run.stop = Moment::Now();
    m_Data->Begin(request);
    m_Data->TellAll([this](ReportSink & sink) { sink.RunStarted(m_Data->run); });
}

CReportSet::~CReportSet() = default;

void CReportSet::EntryWritten(CTestLog const &, CTestLogEntry const & entry) {
    std::scoped_lock const lock(m_Data->lock);
    m_Data->Write(
        {KindOfStatus(entry.status),
         entry.text,
         entry.style,
         {entry.time, std::chrono::steady_clock::now()}});
}

// A test that the engine has left open has died, even if the run has not.
void CReportSet::TestOpened(CTestLog const & test, std::string const & name) {
    std::scoped_lock const lock(m_Data->lock);
    m_Data->CloseOutside();
    if (m_Data->open) m_Data->Close(SectionVerdict::Aborted);
    m_Data->test = &test;
    Section section;
    section.name = name;
    section.isTest = test.IsActualTest();
    section.start = Moment::Now();
    m_Data->Open(std::move(section));
}

void CReportSet::TestClosed(CTestLog const & test) {
    std::scoped_lock const lock(m_Data->lock);
    if (m_Data->open && m_Data->test == &test) m_Data->Close(VerdictOf(test));
}

void CReportSet::PromptAdded(CTestPrompt const & prompt) {
    std::scoped_lock const lock(m_Data->lock);
    Moment const now = Moment::Now();
    m_Data->Write({EntryKind::Prompt, TextOf(prompt), "", now});
    Section const * const section = &*m_Data->open;
    m_Data->TellAll([&](ReportSink & sink) { sink.PromptEnded(section, prompt, now); });
}

void CReportSet::DeviceEventAdded(CTestDeviceEvent const & event) {
    std::scoped_lock const lock(m_Data->lock);
    Moment const now = Moment::Now();
    m_Data->Write({EntryKind::Device, TextOf(event), "", now});
    Section const * const section = &*m_Data->open;
    m_Data->TellAll([&](ReportSink & sink) { sink.DeviceChanged(section, event, now); });
}

void CReportSet::End(CTestSuiteLog const & suite, ERunVerdict verdict, std::string const & reason) {
    std::scoped_lock const lock(m_Data->lock);
    RunRecord & run = m_Data->run;
    m_Data->CloseOutside();
    if (m_Data->open) m_Data->Close(SectionVerdict::Aborted);
    run.stop = Moment::Now();
    run.verdict = verdict;
    run.reason = reason;
    AddGroup(run.facts, "Summary", suite.Summary());
    AddGroup(run.facts, "Filed for the reports", suite.Meta());
    m_Data->TellAll([&run](ReportSink & sink) { sink.RunEnded(run); });
}

std::vector<CReportRequest::File> CReportSet::Files() const {
    std::scoped_lock const lock(m_Data->lock);
    std::vector<CReportRequest::File> files;
    for (Output const & output : m_Data->outputs)
        files.push_back(output.file);
    return files;
}

std::vector<std::string> CReportSet::Problems() const {
    std::scoped_lock const lock(m_Data->lock);
    std::vector<std::string> problems;
    for (Output const & output : m_Data->outputs)
        if (!output.problem.empty())
            problems.push_back(
                "the report \"" + output.file.path + "\" cannot be written: " + output.problem);
    return problems;
}

std::vector<std::string> CReportSet::Notices() const { return m_Data->notices; }
