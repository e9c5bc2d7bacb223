// The logs of a run whose entries go to more than one place.
//
// Each writes the lines of the console's log, to the byte, wherever it writes lines. Both belong to
// the thread that runs the tests and write the suite's summary when they end.
#pragma once

#include <string>

#include "examples/QNExe/view/LogFile.h"
#include "log/CHTMLMXLog.h"
#include "log/CMXLog.h"
#include "output/COutputBuffer.h"

// To a graphical view, and so to the record, and to a file.
class FiledLog : public CHTMLMXLog {
public:
    // Both stay the caller's; `file` may be null.
    FiledLog(COutputBuffer & output, LogFile * file) : CHTMLMXLog(&output), m_File(file) {}
    ~FiledLog() override;

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) override;

private:
    LogFile * m_File;
};

// To standard error, to a file and to the record, of which reports are made.
class RecordedLog : public CMXLog {
public:
    // Both stay the caller's. `file` may be null; `display` takes what standard error gets if it is
    // null.
    explicit RecordedLog(LogFile * file, COutputBuffer * display = nullptr)
        : m_File(file), m_Display(display) {}
    ~RecordedLog() override;

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) override;

private:
    void Show(std::string const & line);

    LogFile * m_File;
    COutputBuffer * m_Display;
};
