// The looks of log entries, for the library's own use.
//
// Everything here is constant after its first use and may be read from any thread.
#pragma once

#include "output/CFormatInfo.h"

namespace EntryFormats {

// Plain: whatever the display's default is.
CFormatInfo const & Info();
// Red.
CFormatInfo const & Warning();
// Bold red; of failures, aborts, errors and entries without a status.
CFormatInfo const & Fail();
// Bold italic red on yellow; of everything the log has to say about its callers.
CFormatInfo const & Diagnostic();

// Bold italic dark blue.
CFormatInfo Start();
// Bold, green or dark red.
CFormatInfo Stop(bool passed);
// Bold italic, green or dark red.
CFormatInfo Summary(bool passed);

} // namespace EntryFormats
