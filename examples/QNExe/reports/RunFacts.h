// What was tested with what, gathered for the reports before the tests begin.
//
// CAppState is up and has its application name. For one thread.
#pragma once

#include <string>

#include "siblings/QuillonReports.h"

struct HostOptions;
class RunSettings;

// Versions, system, device under test, input files with their SHA-256, and settings. A file that
// cannot be read is named with that in place of its digest.
CReportFacts
GatherFacts(HostOptions const & options, RunSettings const & settings, std::string const & suite);
