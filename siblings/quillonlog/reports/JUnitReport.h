// The report for servers of continuous integration, in the dialect that the strictest of them
// validates.
//
// A test that passed, failed, or was aborted is a case; so is what is no test, when it failed. The
// file is complete and well-formed at every moment. Until the run ends it has an error at its end,
// so that a run that dies is never taken for one that passed: the case of the open test, or while
// there is none a case of the run.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "siblings/quillonlog/reports/ReportFile.h"
#include "siblings/quillonlog/reports/ReportSink.h"

class JUnitReport : public ReportSink {
public:
    explicit JUnitReport(std::unique_ptr<ReportFile> file) : m_File(std::move(file)) {}

    void RunStarted(RunRecord const & run) override;
    void SectionOpened(RunRecord const & run, Section const & section) override;
    void EntryWritten(Section const & section, SectionEntry const & entry) override;
    void SectionClosed(RunRecord const & run, Section const & section) override;
    void RunEnded(RunRecord const & run) override;

private:
    struct Counts {
        std::size_t tests = 0;
        std::size_t failures = 0;
        std::size_t errors = 0;
    };

    static std::string Head(RunRecord const & run, Counts const & counts, std::string_view seconds);
    std::string PaddedHead(RunRecord const & run, Counts const & counts) const;
    std::string UniqueName(std::string const & name);
    std::string CaseOf(Section const & section, std::string_view name) const;
    std::string CaseOfRun(std::string const & problem) const;
    void Count(SectionVerdict verdict);
    Counts WithOpenCase() const;
    void ReplaceEnd(RunRecord const & run, std::string const & closed, std::string const & open);
    void WriteEnd(std::string text);

    std::unique_ptr<ReportFile> m_File;
    std::string m_ClassName;
    // How many cases bear a name.
    std::map<std::string, std::size_t, std::less<>> m_Names;
    Counts m_Counts;
    // Where the cases that are over stand.
    FileRange m_Cases;
    std::string m_OpenName;
    // What the failures of the open test say.
    std::string m_Texts;
    std::size_t m_OmittedTexts = 0;
};
