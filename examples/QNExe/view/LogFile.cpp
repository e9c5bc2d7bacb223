// The entries of a run in a text file.
#include "examples/QNExe/view/LogFile.h"

#include <stdexcept>
#include <string_view>

#include "log/StatusWord.h"

void RefuseLogFile(std::string const & name) {
    throw std::runtime_error(
        "the log file \"" + name + "\" cannot be opened. Give --log a file in a folder that "
        + "exists and may be written to.");
}

std::string LineOf(CTestLogEntry const & entry) {
    std::string line(StatusWord(entry.status));
    line.append(entry.text).push_back('\n');
    return line;
}

LogFile::LogFile(std::string const & name) : m_File(std::fopen(name.c_str(), "at")) {
    if (!m_File) RefuseLogFile(name);
}

void LogFile::EntryWritten(CTestLog const &, CTestLogEntry const & entry) {
    std::string const line = LineOf(entry);
    std::fwrite(line.data(), 1, line.size(), m_File.get());
    std::fflush(m_File.get());
}
