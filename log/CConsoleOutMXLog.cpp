// The log sink of a run without a graphical host.
#include "log/CConsoleOutMXLog.h"

#include <cstring>
#include <memory>
#include <string_view>

#include "log/StatusWord.h"

namespace {

// A word, a line feed and a terminator.
constexpr std::size_t kBesidesText = 10;

} // namespace

CConsoleOutMXLog::CConsoleOutMXLog(char const * name)
    : CRawTextMXLog(name), m_ConsoleStream(stderr) {}

CConsoleOutMXLog::~CConsoleOutMXLog() {
    // Deliberate: whether or not there was a summary already. Pinned by
    // CConsoleOutMXLogTest.TheEndOfTheLogWritesASecondSummary.
    DumpSummaryCounts();
    m_ConsoleStream = nullptr;
}

TS_STATUS CConsoleOutMXLog::Clear() { return TS_SUCCESS; }

TS_STATUS
CConsoleOutMXLog::InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const *) {
    if (m_ConsoleStream == nullptr) return TS_NO_STREAM;
    std::string_view const word = StatusWord(status);
    std::size_t const length = std::strlen(text);
    auto const line = std::make_unique<char[]>(length + kBesidesText);
    std::memcpy(line.get(), word.data(), word.size());
    std::memcpy(line.get() + word.size(), text, length);
    std::size_t const size = word.size() + length + 1;
    line[size - 1] = '\n';

    std::fwrite(line.get(), 1, size, m_ConsoleStream);
    WriteLine(line.get(), size);
    return TS_SUCCESS;
}
