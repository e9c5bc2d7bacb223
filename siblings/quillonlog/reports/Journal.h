// The journal: a line of JSON for whatever happens, in the file before the call returns.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "siblings/quillonlog/reports/ReportFile.h"
#include "siblings/quillonlog/reports/ReportSink.h"

class Journal : public ReportSink {
public:
    explicit Journal(std::unique_ptr<ReportFile> file) : m_File(std::move(file)) {}

    void RunStarted(RunRecord const & run) override;
    void SectionOpened(RunRecord const & run, Section const & section) override;
    void EntryWritten(Section const & section, SectionEntry const & entry) override;
    void PromptEnded(Section const *, CTestPrompt const &, Moment const &) override;
    void DeviceChanged(Section const *, CTestDeviceEvent const &, Moment const &) override;
    void SectionClosed(RunRecord const & run, Section const & section) override;
    void RunEnded(RunRecord const & run) override;

private:
    // A line is begun, gets its members, and is written.
    void Begin(char const * event, Moment const & time);
    void Add(char const * name, std::string_view text);
    void Add(char const * name, std::size_t number);
    void AddSeconds(char const * name, std::chrono::nanoseconds length);
    void AddBare(char const * name, std::string_view value);
    void AddSection(Section const * section);
    void AddGroups(CReportFacts const & facts);
    void End();

    std::unique_ptr<ReportFile> m_File;
    Moment m_Start;
    std::string m_Line;
};
