// The pictures in the page's head, as SVG.
//
// Pure.
#pragma once

#include <string>

#include "siblings/quillonlog/reports/ReportSink.h"

namespace HtmlPictures {

// A ring of the tests' verdicts.
std::string Ring(Score const & score);

// The tests on a line of time. Tests that pass too close to each other to be told apart share a
// mark; what failed is always seen.
std::string TimeLine(RunRecord const & run);

} // namespace HtmlPictures
