// The log sink of a run without a graphical host: entries on standard error, and in a text file.
//
// Each entry begins with a word for its status. A file that fails does not disturb the console. The
// sink owns neither standard error nor anything beyond its base, and belongs to the thread that
// runs the test.
#pragma once

#include "app/Export.h"
#include "log/CRawTextMXLog.h"

class MORVEX_API CConsoleOutMXLog : public CRawTextMXLog {
public:
    // With a null `name` entries go to standard error alone.
    explicit CConsoleOutMXLog(char const * name);

    // Writes the suite's summary, a second one if there was one already.
    ~CConsoleOutMXLog() override;

    // Keeps the file as it is: the log of a run grows from test to test.
    TS_STATUS Clear() override;

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) override;

private:
    std::FILE * m_ConsoleStream;
};
