// The entries of a run in a text file.
#include "examples/QNExe/view/LogFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "log/StatusWord.h"

namespace {

constexpr char SummaryBegin[] = "    [ Passed (";
constexpr char SummaryEnd[] = ") ]";
constexpr std::streamoff MoreThanTheSummary = 256;

std::streamoff SizeOf(std::string const & name) {
    std::ifstream stream(name, std::ios::binary | std::ios::ate);
    return std::max<std::streamoff>(stream.tellg(), 0);
}

// The last line that is not empty.
std::string LastLine(std::string const & name) {
    std::ifstream stream(name, std::ios::binary);
    stream.seekg(std::max<std::streamoff>(SizeOf(name) - MoreThanTheSummary, 0));
    std::string last;
    for (std::string line; std::getline(stream, line);) {
        std::erase(line, '\r');
        if (!line.empty()) last = line;
    }
    return last;
}

} // namespace

void RefuseLogFile(std::string const & name) {
    throw std::runtime_error(
        "the log file \"" + name + "\" cannot be opened. Give --log a file in a folder that "
        + "exists and may be written to.");
}

std::string LogLine(TEST_STATUS status, std::string_view text) {
    std::string line(StatusWord(status));
    line.append(text).push_back('\n');
    return line;
}

void RefuseGapsInLogFile(std::string const & name) {
    throw std::runtime_error(
        "the log file \"" + name + "\" lacks entries of this run, which could not be written. "
        + "Make room on its disk, or give --log a file on another one, and run again.");
}

LogFile::LogFile(std::string const & name) : m_Name(name), m_File(std::fopen(name.c_str(), "at")) {
    if (!m_File) RefuseLogFile(name);
}

void LogFile::Append(std::string const & line) {
    bool const written = std::fwrite(line.data(), 1, line.size(), m_File.get()) == line.size();
    if (std::fflush(m_File.get()) != 0 || !written) m_IsWhole = false;
}

void LogFile::CheckWhole() const {
    if (!m_IsWhole) RefuseGapsInLogFile(m_Name);
}

LogFileWatch::LogFileWatch(std::string const & name) : m_Name(name), m_SizeBefore(SizeOf(name)) {}

void LogFileWatch::CheckWhole() const {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(m_Name, ignored)) return;
    std::string const last = LastLine(m_Name);
    bool const isWhole = SizeOf(m_Name) > m_SizeBefore && last.starts_with(SummaryBegin)
                         && last.ends_with(SummaryEnd);
    if (!isWhole) RefuseGapsInLogFile(m_Name);
}
