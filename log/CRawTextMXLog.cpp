// The log sink that appends each entry to a text file.
#include "log/CRawTextMXLog.h"

#include <cstring>
#include <memory>

namespace {

// Lines up to this many bytes are put together on the stack.
constexpr std::size_t kOrdinaryLine = 2048;

// A stream that keeps nothing back, so that one fwrite is one write, there is nothing to flush, and
// a failed one leaves nothing behind for the next.
std::FILE * OpenUnbuffered(char const * name, char const * mode) {
    std::FILE * const file = std::fopen(name, mode);
    if (file != nullptr) std::setvbuf(file, nullptr, _IONBF, 0);
    return file;
}

std::unique_ptr<char[]> CopyOf(char const * text) {
    std::size_t const size = std::strlen(text) + 1;
    auto copy = std::make_unique<char[]>(size);
    std::memcpy(copy.get(), text, size);
    return copy;
}

void PutLine(char * line, char const * text, std::size_t length) {
    std::memcpy(line, text, length);
    line[length] = '\n';
}

} // namespace

CRawTextMXLog::CRawTextMXLog(char const * name) {
    auto copy = CopyOf(name != nullptr ? name : "stdout");
    m_LogFile = name != nullptr ? OpenUnbuffered(copy.get(), "at+") : stdout;
    if (m_LogFile != nullptr) m_LogName = copy.release();
}

CRawTextMXLog::~CRawTextMXLog() {
    if (m_LogFile != nullptr && m_LogFile != stdout) std::fclose(m_LogFile);
    delete[] m_LogName;
}

std::string CRawTextMXLog::GetLogName() { return m_LogName != nullptr ? m_LogName : ""; }

bool CRawTextMXLog::HasFile(TS_STATUS & answer) const {
    // Deliberate: a log without a name shows nothing at all. Pinned by
    // CRawTextMXLogTest.ALogWithoutANameShowsNothing.
    answer = m_LogFile == stdout ? TS_SUCCESS : TS_NO_STREAM;
    return m_LogFile != nullptr && m_LogFile != stdout;
}

// Deliberate: the close of each test calls this, so the file holds what came since then. Pinned by
// CRawTextMXLogTest.TheStopOfATestEmptiesTheFile.
TS_STATUS CRawTextMXLog::Clear() {
    TS_STATUS answer;
    if (!HasFile(answer)) return answer;
    std::fclose(m_LogFile);
    m_LogFile = OpenUnbuffered(m_LogName, "wt");
    if (m_LogFile != nullptr) return TS_SUCCESS;
    delete[] m_LogName;
    m_LogName = nullptr;
    return TS_FILE_REOPEN_FAILED;
}

TS_STATUS CRawTextMXLog::InternalWrite(TEST_STATUS, char const * const text, CFormatInfo const *) {
    std::size_t const length = std::strlen(text);
    if (length < kOrdinaryLine) {
        char line[kOrdinaryLine];
        PutLine(line, text, length);
        return WriteLine(line, length + 1);
    }
    auto const line = std::make_unique_for_overwrite<char[]>(length + 1);
    PutLine(line.get(), text, length);
    return WriteLine(line.get(), length + 1);
}

TS_STATUS CRawTextMXLog::WriteLine(char const * line, std::size_t size) {
    TS_STATUS answer;
    if (!HasFile(answer)) return answer;
    if (std::fwrite(line, 1, size, m_LogFile) == size) return TS_SUCCESS;
    std::clearerr(m_LogFile);
    return TS_WRITE_FAILED;
}
