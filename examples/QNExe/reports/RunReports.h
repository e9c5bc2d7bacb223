// The reports of one run of the host.
//
// Made, told of the run and ended on the test thread; Tell is for the view's thread when that is
// done.
#pragma once

#include <memory>
#include <string>

#include "examples/QNExe/ExitCode.h"
#include "siblings/QuillonReports.h"

struct HostOptions;
class RunSettings;
class RunView;

// Which reports the options ask for or else the variable QN_REPORT. Throws std::runtime_error,
// whose text says what to do.
CReportRequest RequestedReports(HostOptions const & options);

class RunReports {
public:
    // Begins the files. Throws std::runtime_error, whose text says what to do.
    RunReports(CReportRequest const & request, CReportFacts facts);

    CTestSuiteListener & Listener() { return m_Reports; }

    // Completes the files. Returns the number with which the run is to end: a report that could not
    // be written is no silent pass.
    ExitCode End(CTestSuiteLog const & suite, ExitCode code, std::string const & reason = {});

    // Names the files on standard output, and what went wrong with them on standard error; all of
    // it in `view` too, which may be null.
    void Tell(RunView * view) const;

private:
    CReportSet m_Reports;
};
