// The log sink that appends each entry to a text file, as it stands.
//
// The sink owns its stream and the name; like every log it belongs to the thread that runs the
// test. An entry is with the operating system, in one write, before the call returns.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

#include "app/Export.h"
#include "log/CMXLog.h"

class MORVEX_API CRawTextMXLog : public CMXLog {
public:
    // Opens `name` for appending; an old log is kept and grows. When that fails the log exists all
    // the same, without a file. A null name means no file: such a log shows nothing.
    explicit CRawTextMXLog(char const * name);
    ~CRawTextMXLog() override;

    // Empties the file. TS_NO_STREAM without a file; TS_FILE_REOPEN_FAILED when it cannot be
    // opened again, after which the log has no file any more.
    TS_STATUS Clear() override;

    // The name of the file, "stdout" for a log without a name, empty when no file could be opened.
    std::string GetLogName();

protected:
    // TS_NO_STREAM without a file, TS_WRITE_FAILED when the file did not take the whole entry; the
    // next entry tries again.
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) override;

    // Writes `size` bytes that end in a line feed, with InternalWrite's results.
    TS_STATUS WriteLine(char const * line, std::size_t size);

private:
    // Whether entries have a file to go to; otherwise `answer` is what InternalWrite returns.
    bool HasFile(TS_STATUS & answer) const;

    char * m_LogName = nullptr;
    std::FILE * m_LogFile = nullptr;
};
