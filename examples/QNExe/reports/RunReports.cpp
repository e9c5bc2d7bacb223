// Makes, ends and names the reports.
#include "examples/QNExe/reports/RunReports.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/ProgramName.h"

namespace {

ERunVerdict VerdictOf(ExitCode code) {
    switch (code) {
    case ExitCode::Passed:
        return ERunVerdict::Passed;
    case ExitCode::Failed:
        return ERunVerdict::Failed;
    case ExitCode::NoTestRan:
        return ERunVerdict::NoTestRan;
    case ExitCode::AbortedByOperator:
        return ERunVerdict::AbortedByOperator;
    default:
        return ERunVerdict::CouldNotRun;
    }
}

} // namespace

CReportRequest RequestedReports(HostOptions const & options) {
    if (options.reports) return *options.reports;
    char const * const asked = std::getenv("QN_REPORT");
    try {
        return ReadReportRequest(asked != nullptr ? asked : "");
    } catch (std::runtime_error const & wrong) {
        throw std::runtime_error(std::string("QN_REPORT: ") + wrong.what());
    }
}

RunReports::RunReports(CReportRequest const & request, CReportFacts facts)
    : m_Reports(request, std::move(facts)) {}

ExitCode RunReports::End(CTestSuiteLog const & suite, ExitCode code, std::string const & reason) {
    m_Reports.End(suite, VerdictOf(code), reason);
    return m_Reports.Problems().empty() ? code : ExitCode::CouldNotRun;
}

void RunReports::Tell() const {
    for (std::string const & notice : m_Reports.Notices())
        std::fprintf(stderr, "%s: %s\n", ProgramName, notice.c_str());
    for (std::string const & problem : m_Reports.Problems())
        std::fprintf(stderr, "%s: %s\n", ProgramName, problem.c_str());
    for (auto const & file : m_Reports.Files())
        std::printf("Report: %s\n", file.path.c_str());
    std::fflush(stdout);
}
