// The entries of a run in a text file.
#include "examples/QNExe/view/LogFile.h"

#include <stdexcept>

namespace {

char const * WordOf(TEST_STATUS status) {
    switch (status) {
    case TEST_STATUS_FAIL:
        return "FAIL    ";
    case TEST_STATUS_ABORT:
        return "ABORT   ";
    case TEST_STATUS_WARNING:
        return "WARNING ";
    case TEST_STATUS_INFO:
        return "INFO    ";
    case TEST_STATUS_ERROR:
        return "ERROR   ";
    default:
        return "";
    }
}

} // namespace

LogFile::LogFile(std::string const & name) : m_File(std::fopen(name.c_str(), "at")) {
    if (!m_File) {
        throw std::runtime_error(
            "the log file \"" + name + "\" cannot be opened. Give --log a file in a folder that "
            + "exists and may be written to.");
    }
}

void LogFile::EntryWritten(CTestLog const &, CTestLogEntry const & entry) {
    std::string const line = WordOf(entry.status) + entry.text + "\n";
    std::fwrite(line.data(), 1, line.size(), m_File.get());
    std::fflush(m_File.get());
}
