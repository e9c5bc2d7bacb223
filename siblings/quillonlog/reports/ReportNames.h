// The names of a run's reports: unique unless asked otherwise, and `latest` beside them.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "siblings/QuillonReports.h"
#include "siblings/quillonlog/reports/ReportFile.h"

namespace ReportNames {

// What the run of a suite takes its names from where a folder was given.
struct Run {
    std::string suite;
    std::chrono::system_clock::time_point start;
};

// Begins the file: of the wanted name, or of the next that is free. Throws std::runtime_error,
// whose text names the file and says what to do.
std::unique_ptr<ReportFile>
Begin(CReportRequest::File const & wanted, bool overwrite, Run const & run);

// Has latest.html, latest.junit or latest.jsonl in the report's folder lead to the report: a link
// or, where there are none, a small file that names it. Returns why it does not, or an empty text;
// what somebody else has put there under that name stays.
std::string PointLatestAt(std::string const & report, EReportFormat format);

} // namespace ReportNames
