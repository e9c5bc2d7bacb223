// The logs of a run whose entries go to more than one place.
#include "examples/QNExe/view/RunLogs.h"

#include <cstdio>
#include <string>

#include "app/CAppState.h"
#include "log/RecordedEntry.h"
#include "siblings/QuillonLog.h"

FiledLog::~FiledLog() {
    if (!SummaryDumped()) DumpSummaryCounts();
}

TS_STATUS
FiledLog::InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) {
    if (m_File != nullptr) m_File->Append(LogLine(status, text));
    return CHTMLMXLog::InternalWrite(status, text, format);
}

RecordedLog::~RecordedLog() {
    if (!SummaryDumped()) DumpSummaryCounts();
}

void RecordedLog::Show(std::string const & line) {
    if (m_Display != nullptr)
        m_Display->AddText(line);
    else
        std::fwrite(line.data(), 1, line.size(), stderr);
}

TS_STATUS RecordedLog::InternalWrite(
    TEST_STATUS status, char const * const text, CFormatInfo const * format) {
    std::string const line = LogLine(status, text);
    Show(line);
    if (m_File != nullptr) m_File->Append(line);
    CTestLog * const record = CAppState::CurrentTestLog();
    if (record == nullptr) return TS_SUCCESS;
    std::string const style = RecordedEntry::Style(format);
    record->Write(
        status, RecordedEntry::Text(text).c_str(), style.empty() ? nullptr : style.c_str());
    return TS_SUCCESS;
}
