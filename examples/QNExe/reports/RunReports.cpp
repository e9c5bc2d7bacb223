// Makes, ends and names the reports.
#include "examples/QNExe/reports/RunReports.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/ProgramName.h"
#include "examples/QNExe/view/RunView.h"

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

void TellProblem(std::string const & text, RunView * view) {
    std::fprintf(stderr, "%s: %s\n", ProgramName, text.c_str());
    if (view != nullptr) view->TellProblem(text);
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

void RunReports::Tell(RunView * view) const {
    for (std::string const & notice : m_Reports.Notices())
        TellProblem(notice, view);
    for (std::string const & problem : m_Reports.Problems())
        TellProblem(problem, view);
    for (auto const & file : m_Reports.Files()) {
        std::string const line = "Report: " + file.path;
        std::printf("%s\n", line.c_str());
        if (view != nullptr) view->Tell(line);
    }
    std::fflush(stdout);
}
