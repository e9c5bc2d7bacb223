// The page's head, sections and end as texts.
//
// Pure.
#pragma once

#include <string>

#include "siblings/quillonlog/reports/ReportSink.h"

namespace HtmlParts {

std::string DocumentBegin(std::string const & suite);

// Of a page that is complete.
std::string Head(RunRecord const & run, std::size_t leftOut);
std::string SectionBegin(Section const & section);
std::string SectionEnd();
std::string DocumentEnd();

// Says how many entries are left out; empty for none.
std::string LeftOut(std::size_t count);

// Of a page that grows. The state says how many tests are over; it is shorter than 500 bytes.
std::string State(RunRecord const & run);
std::string GrowingHead(RunRecord const & run);
std::string GrowingSectionBegin(Section const & section);
std::string GrowingSectionEnd(Section const & section);

} // namespace HtmlParts
