// The table of formatted text, the formats in force, and the gate of verbose messages.
#include "output/COutputBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

#include "app/TraceProvider.h"

namespace {

constexpr std::uint16_t kWideTrace = 10;
constexpr std::uint16_t kNarrowTrace = 11;

// Where a new table starts: about what comes in between two updates of the display.
constexpr std::size_t kFirstEntries = 64;

// Lines shorter than this many bytes are put together on the stack.
constexpr std::size_t kOrdinaryLine = 1024;

// A text as the table holds it: up to its first NUL or, without one, with a blank behind it.
// Deliberate: text that is cut at a NUL has no blank.
// Pinned by COutputBufferTest.TextEndsAtItsFirstNulAndHasNoBlankThen.
template <typename Character>
std::basic_string<Character> ItemText(std::basic_string<Character> const & text) {
    std::basic_string<Character> item;
    auto const length = text.find(Character{});
    if (length != text.npos) return item.assign(text, 0, length);
    item.reserve(text.size() + 1);
    item = text;
    item.push_back(Character{' '});
    return item;
}

std::unique_ptr<std::wstring> NewItem(std::wstring const & text) {
    return std::make_unique<std::wstring>(ItemText(text));
}

std::unique_ptr<std::wstring> NewItem(std::string const & text) {
    auto const own = [](WideText wide) { return std::make_unique<std::wstring>(std::move(*wide)); };
    if (text.size() >= kOrdinaryLine) return own(Utf8ToUtf16(ItemText(text)));
    char line[kOrdinaryLine + 1];
    std::size_t length = text.copy(line, kOrdinaryLine);
    if (text.find('\0') == text.npos) line[length++] = ' ';
    line[length] = '\0';
    return own(Utf8ToUtf16(line));
}

void DeleteTexts(COutputBuffer::DataTable const & table) {
    for (auto const & entry : table)
        delete entry.first;
}

} // namespace

// In this order: the stack goes before the lock that guards it.
CLockMgr COutputBuffer::m_TheOBLock;
std::stack<CHARFORMAT2A, std::deque<CHARFORMAT2A>> COutputBuffer::m_FormatStack;
constinit std::atomic<bool> COutputBuffer::m_sVerboseDisplay = false;
constinit std::atomic<unsigned int> COutputBuffer::m_sVerbosityLevel = 0;

COutputBuffer::COutputBuffer() {
    CLockScope const lock(m_TheOBLock);
    m_DataTable = new DataTable;
    ReadVerbosity();
}

COutputBuffer::~COutputBuffer() {
    CLockScope const lock(m_TheOBLock);
    Clear();
    DeleteDataTable(m_DataTable);
    m_DataTable = nullptr;
}

COutputBuffer::DataTable * COutputBuffer::GetText() {
    CLockScope const lock(m_TheOBLock);
    if (m_DataTable->empty()) return nullptr;
    return std::exchange(m_DataTable, new DataTable);
}

// Here and in Clear the texts are freed when the lock is given back: no producer waits for that.
void COutputBuffer::DeleteDataTable(DataTable * table) {
    if (table == nullptr) return;
    DataTable doomed;
    {
        CLockScope const lock(m_TheOBLock);
        doomed.swap(*table);
        delete table;
    }
    DeleteTexts(doomed);
}

void COutputBuffer::Clear() {
    DataTable doomed;
    {
        CLockScope const lock(m_TheOBLock);
        doomed.swap(*m_DataTable);
        EmptyStack();
    }
    DeleteTexts(doomed);
}

void COutputBuffer::AddItem(std::wstring const & text, CFormatInfo const * format) {
    if (!text.empty() || format != nullptr) AddOwned(NewItem(text), format);
}

void COutputBuffer::AddItem(std::string const & text, CFormatInfo const * format) {
    if (!text.empty() || format != nullptr) AddOwned(NewItem(text), format);
}

void COutputBuffer::AddVerbose(
    CBasicFormattedString<wchar_t> const & text, unsigned int level, CFormatInfo const & format) {
    if (IsDisplayed(level)) AddAlone(std::wstring(text), format);
    if (TraceProvider::IsOn(TraceFlag::Output))
        TraceProvider::Send(TraceFlag::Output, kWideTrace, Utf16ToUtf8(text)->c_str());
}

void COutputBuffer::AddVerbose(
    CBasicFormattedString<char> const & text, unsigned int level, CFormatInfo const & format) {
    if (IsDisplayed(level)) AddAlone(std::string(text), format);
    TraceProvider::Send(TraceFlag::Output, kNarrowTrace, text);
}

// Deliberate: what is not displayed is not traced either, here and below.
// Pinned by VerboseTextTest.AGatedVerboseTextWithAColourIsNotTraced.
void COutputBuffer::AddVerbose(
    CBasicFormattedString<wchar_t> const & text, unsigned int level, unsigned long color) {
    if (IsDisplayed(level)) AddVerbose(text, level, CFormatInfo(color));
}

void COutputBuffer::AddVerbose(
    CBasicFormattedString<char> const & text, unsigned int level, unsigned long color) {
    if (IsDisplayed(level)) AddVerbose(text, level, CFormatInfo(color));
}

void COutputBuffer::AddFormat(CFormatInfo const & format) { PushAndAppend(nullptr, format); }

void COutputBuffer::AddFormat(CFormatInfo * const format) {
    if (format != nullptr) AddFormat(*format);
}

void COutputBuffer::RemoveFormat(unsigned long long count) {
    CLockScope const lock(m_TheOBLock);
    for (; count > 0 && !m_FormatStack.empty(); --count)
        PopFormat();
}

void COutputBuffer::GetCurrentFormat(CFormatInfo & out, unsigned long long count) {
    CLockScope const lock(m_TheOBLock);
    RemoveFormat(count);
    out.setStyle(m_FormatStack.empty() ? &GetDefaultFormat() : &m_FormatStack.top());
}

void COutputBuffer::SetDefaultFormatInfo(_charrange const & range) {
    CLockScope const lock(m_TheOBLock);
    EnsureRoom();
    EmptyStack();
    AppendRecord(GetDefaultFormat()).range = range;
}

void COutputBuffer::SetDefaultFormatInfo() {
    static constexpr _charrange end{-1, -1};
    SetDefaultFormatInfo(end);
}

void COutputBuffer::InitializeDefaultFormatInfo(CHARFORMAT2A const & record) {
    CLockScope const lock(m_TheOBLock);
    CFormatInfo::InitializeDefaultFormat(record);
}

void COutputBuffer::DoAddFormattedText(DataEntry const & entry, bool addFormat) {
    std::unique_ptr<std::wstring> text(entry.first);
    if (addFormat)
        PushAndAppend(std::move(text), entry.second);
    else if (text != nullptr)
        JoinOrAppend(std::move(text));
}

bool COutputBuffer::IsDisplayed(unsigned int level) {
    return (level == 0 || m_sVerboseDisplay) && level <= m_sVerbosityLevel;
}

void COutputBuffer::ReadVerbosity() {
    char const * const setting = std::getenv("QN_VERBOSITY_LEVEL");
    if (setting == nullptr || *setting == '\0') return;
    m_sVerboseDisplay = true;
    char * end = nullptr;
    auto const level = std::strtoull(setting, &end, 10);
    if (end != setting) m_sVerbosityLevel = static_cast<unsigned int>(level);
}

void COutputBuffer::AddOwned(std::unique_ptr<std::wstring> text, CFormatInfo const * format) {
    if (format == nullptr) return JoinOrAppend(std::move(text));
    CFormatInfo look(*format);
    if (look.autoRange) look.range = {0, static_cast<LONG>(text->size())};
    PushAndAppend(std::move(text), look);
}

void COutputBuffer::PushAndAppend(std::unique_ptr<std::wstring> text, CFormatInfo const & format) {
    CLockScope const lock(m_TheOBLock);
    EnsureRoom();
    // Deliberate: the stack sees the merged format, the table the caller's.
    // Pinned by OutputFormatsTest.AFormatChangeCarriesTheCallersFormatUnmerged.
    PushFormat(format);
    m_DataTable->emplace_back(text.release(), format);
}

void COutputBuffer::JoinOrAppend(std::unique_ptr<std::wstring> text) {
    CLockScope const lock(m_TheOBLock);
    if (m_DataTable->empty() || m_DataTable->back().first == nullptr) {
        EnsureRoom();
        m_DataTable->emplace_back(
            std::piecewise_construct, std::forward_as_tuple(text.release()), std::tuple<>());
        return;
    }
    // Deliberate: the entry keeps its range, which no longer reaches the end of its text.
    // Pinned by COutputBufferTest.AJoinLeavesTheRangeOfTheFirstText.
    std::wstring & last = *m_DataTable->back().first;
    last.replace(last.empty() ? 0 : last.size() - 1, last.npos, *text);
}

void COutputBuffer::PushFormat(CFormatInfo const & format) {
    if (m_FormatStack.empty())
        m_FormatStack.push(format.format);
    else
        m_FormatStack.push(CFormatInfo(format).MergeFormat(m_FormatStack.top()));
}

void COutputBuffer::PopFormat() {
    EnsureRoom();
    // Deliberate: what the merged record claims, not what the popped format itself specified.
    // Pinned by OutputFormatsTest.ARestoreRespecifiesWhatTheMergedFormatHadTouched.
    DWORD const touched = m_FormatStack.top().dwMask;
    m_FormatStack.pop();
    if (m_FormatStack.empty())
        AppendRecord(GetDefaultFormat());
    else
        AppendRecord(m_FormatStack.top()).format.dwMask = touched;
}

void COutputBuffer::EmptyStack() {
    while (!m_FormatStack.empty())
        m_FormatStack.pop();
}

void COutputBuffer::EnsureRoom() {
    auto & table = *m_DataTable;
    if (table.size() == table.capacity()) table.reserve(std::max(kFirstEntries, 2 * table.size()));
}

CFormatInfo & COutputBuffer::AppendRecord(CHARFORMAT2A const & record) {
    return m_DataTable->emplace_back(nullptr, record).second;
}
