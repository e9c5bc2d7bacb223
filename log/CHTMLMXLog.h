// The sink of a run with a graphical host: each entry goes to the host's display, in colour, and
// to the test's record, as clean text with a style for the reports.
//
// The buffer is the host's and outlives the log. A log belongs to one thread; another that writes
// to the same buffer in between shows in this entry's format. Lack of memory leaves as
// std::bad_alloc; nothing else is reported.
#pragma once

#include <string>

#include "app/Export.h"
#include "log/CMXLog.h"

class COutputBuffer;

class MORVEX_API CHTMLMXLog : public CMXLog {
public:
    // Empties the buffer. Throws CQNRunTimeException for a null one.
    explicit CHTMLMXLog(COutputBuffer * const buffer);

    // Writes the suite's summary unless that was done before.
    ~CHTMLMXLog() override;

protected:
    // The display gets whole lines with "\r\n", in `format` or, without one, in the look of the
    // status; information without a format runs in whatever is in force. The record gets the text
    // less one final line end and the style of `format`. Always TS_SUCCESS.
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) override;

private:
    void Show(TEST_STATUS status, std::string const & display, CFormatInfo const * format);

    COutputBuffer * m_OutputBuffer;
};
