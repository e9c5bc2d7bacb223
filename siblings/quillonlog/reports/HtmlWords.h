// The words and classes that the page has for verdicts.
//
// Pure.
#pragma once

#include <string>

#include "siblings/quillonlog/reports/ReportSink.h"

namespace HtmlWords {

char const * VerdictOf(Section const & section);
char const * ClassOf(Section const & section);
char const * VerdictOf(RunRecord const & run);
char const * ClassOf(RunRecord const & run);

// "1 test", "2 tests"
std::string Amount(std::size_t count, char const * one, char const * many);

} // namespace HtmlWords
