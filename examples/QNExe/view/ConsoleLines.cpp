// The entries of a run on standard error.
#include "examples/QNExe/view/ConsoleLines.h"

#include <cstdio>

#include "examples/QNExe/view/LogFile.h"

void ConsoleLines::EntryWritten(CTestLog const &, CTestLogEntry const & entry) {
    std::string const line = LineOf(entry);
    std::fwrite(line.data(), 1, line.size(), stderr);
}
