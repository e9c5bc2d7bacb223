// The page: it grows with its entries while the run goes on, and is made whole at its end.
//
// While it grows, the page begins with how the run stands, and each section says that it is not
// finished until its result follows: a browser shows whatever is there of it. At the end the
// entries are copied into a page with a head that knows them all.
//
// A page of a million entries opens slowly. So from MostEntries on, what is mere information is
// left out but for the begin of each test; the page says how much that is. All else is always kept.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "siblings/quillonlog/reports/ReportFile.h"
#include "siblings/quillonlog/reports/ReportSink.h"

class HtmlReport : public ReportSink {
public:
    static constexpr std::size_t MostEntries = 100'000;
    static constexpr std::size_t LeastOfSection = 10;

    explicit HtmlReport(std::unique_ptr<ReportFile> file) : m_File(std::move(file)) {}

    void RunStarted(RunRecord const & run) override;
    void SectionOpened(RunRecord const & run, Section const & section) override;
    void EntryWritten(Section const & section, SectionEntry const & entry) override;
    void SectionClosed(RunRecord const & run, Section const & section) override;
    void RunEnded(RunRecord const & run) override;

private:
    bool IsLeftOut(SectionEntry const & entry) const;
    void WritePending();
    void AppendEntry(Section const & section, SectionEntry const & entry);
    void WriteState(RunRecord const & run);

    std::unique_ptr<ReportFile> m_File;
    // Where the line stands that says how the run is.
    std::uint64_t m_State = 0;
    // Where the entries of each section that is over stand.
    std::vector<FileRange> m_Entries;
    // How many entries of the run stand in the page, and how many do not.
    std::size_t m_Shown = 0;
    std::size_t m_LeftOut = 0;
    // Of the open section: where its entries begin, how many came, stand there, and do not.
    std::uint64_t m_Begin = 0;
    std::size_t m_EntryCount = 0;
    std::size_t m_SectionShown = 0;
    std::size_t m_SectionLeftOut = 0;
    // Entries that are not in the file yet, and when the last one went there.
    std::string m_Text;
    std::chrono::steady_clock::time_point m_LastWritten;
};
