// Entries for two readers: the rich-edit control of the host, and the report made later.
#include "log/CHTMLMXLog.h"

#include <string>
#include <string_view>

#include "log/CurrentTest.h"
#include "log/RecordedEntry.h"
#include "output/CFormatInfo.h"
#include "output/COutputBuffer.h"
#include "siblings/Keelbase.h"

namespace {

// Each line ends in "\r\n", the last one too; a lone "\r" is left alone.
std::string DisplayText(std::string_view text) {
    std::string display;
    display.reserve(text.size() + 8);
    for (char const character : text) {
        if (character == '\n' && !display.ends_with('\r')) display += '\r';
        display += character;
    }
    if (!display.ends_with('\n')) display += "\r\n";
    return display;
}

void WriteRecord(TEST_STATUS status, char const * text, char const * style) {
    CurrentTest::With([&](CTestLog & record) { record.Write(status, text, style); });
}

} // namespace

CHTMLMXLog::CHTMLMXLog(COutputBuffer * const buffer) : m_OutputBuffer(buffer) {
    if (buffer == nullptr) ThrowQNRunTime("INTERNAL ERROR: NULL output buffer.");
    buffer->Clear();
}

CHTMLMXLog::~CHTMLMXLog() {
    if (!SummaryDumped()) DumpSummaryCounts();
}

TS_STATUS
CHTMLMXLog::InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) {
    std::string_view const entry(text != nullptr ? text : "");
    std::string const recordText = RecordedEntry::Text(entry);
    if (m_OutputBuffer == nullptr)
        WriteRecord(TEST_STATUS_ABORT, "Shouldn't be here\r\n", nullptr);
    else
        Show(status, DisplayText(entry), format);
    std::string const style = RecordedEntry::Style(format);
    WriteRecord(status, recordText.c_str(), style.empty() ? nullptr : style.c_str());
    return TS_SUCCESS;
}

void CHTMLMXLog::Show(TEST_STATUS status, std::string const & display, CFormatInfo const * format) {
    // Plain information runs in the display's current format.
    bool const plain = status == TEST_STATUS_INFO && format == nullptr;
    if (!plain) {
        CFormatInfo look(format != nullptr ? *format : GetDefaultFormat(status, nullptr));
        look.autoRange = true;
        m_OutputBuffer->AddFormat(look);
    }
    m_OutputBuffer->AddItem(display, nullptr);
    if (!plain) m_OutputBuffer->RemoveFormat(1);
}
