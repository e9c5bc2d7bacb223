// The mailbox between threads that produce formatted text and the host's window that shows it.
//
// Any thread may add; the host's window thread takes the whole table out, reads it at leisure and
// gives it back for deletion. One re-entrant lock guards every table, the stack of formats and the
// default format; each call takes it for itself. The stack is the process's: a format pushed by
// one thread applies to text that another adds, and is popped by whoever removes a format next. A
// caller that wants several calls kept together puts them between Lock and Unlock.
//
// Nothing is reported but lack of memory, which leaves as std::bad_alloc with the lock released.
#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>
#include <stack>
#include <string>
#include <utility>
#include <vector>

#include "app/Export.h"
#include "output/CFormatInfo.h"
#include "siblings/Keelbase.h"

class MORVEX_API COutputBuffer {
public:
    // A text and its look, or, without a text, a change of the look of what follows. The reader:
    // - walks the entries in order;
    // - sets `cbSize` of a record before it passes it on: it may be 0;
    // - takes the record of an entry without a text as the look of what follows;
    // - appends a text and, when its record's `dwMask` is not 0, gives that look to `range`,
    //   counted from the start of the text; a joined text may be longer than its range;
    // - takes the range -1, -1 as the end of what is shown;
    // - passes the table to DeleteDataTable.
    using DataEntry = std::pair<std::wstring *, CFormatInfo>;
    using DataTable = std::vector<DataEntry>;

    // Reads QN_VERBOSITY_LEVEL each time: a value that is not empty switches verbose display on,
    // and the unsigned number that it begins with becomes the level. White space and a sign may
    // stand in front. Of a number beyond 32 bits the low 32 count, of one beyond 64 all are set.
    // Without a number the level stays.
    COutputBuffer();

    // Copies share one table, which the first of them to go deletes: not to be copied in earnest.
    COutputBuffer(COutputBuffer const &) = default;
    COutputBuffer & operator=(COutputBuffer const &) = default;

    // Deletes the table and empties the stack for every buffer.
    virtual ~COutputBuffer();

    // Hands the table to the caller, who gives it to DeleteDataTable, and starts a new one. Null
    // when nothing has come in. The stack stays. The cost does not grow with the table.
    DataTable * GetText();

    // Deletes a table with its texts; null does nothing.
    static void DeleteDataTable(DataTable * table);

    // Deletes what has come in, and empties the stack.
    void Clear();

    void Lock() { m_TheOBLock.Lock(); }
    void Unlock() { m_TheOBLock.Unlock(); }

    // Adds the text, up to its first NUL, and a blank behind it. A format is pushed and stays in
    // force until it is removed; its range becomes the whole text if `autoRange` says so. Without a
    // format the text joins the last entry, if that has a text. Empty without a format: nothing.
    //
    // Deliberate: text with a NUL gets no blank, so a text that joins it takes its last character.
    void AddItem(std::wstring const & text, CFormatInfo const * format);
    void AddItem(std::string const & text, CFormatInfo const * format);
    void AddItem(std::wstring const & text, CFormatInfo const & format) { AddItem(text, &format); }
    void AddItem(std::string const & text, CFormatInfo const & format) { AddItem(text, &format); }
    void AddText(std::wstring const & text) { AddItem(text, nullptr); }
    void AddText(std::string const & text) { AddItem(text, nullptr); }

    // Adds the text in this format alone when `level` is not above VerbosityLevel(), and, for
    // levels above 0, verbose display is on. The form with a format also sends every text, shown
    // or not, to the trace; the form with a colour only those that are shown.
    void AddVerbose(
        CBasicFormattedString<wchar_t> const & text, unsigned int level,
        CFormatInfo const & format);
    void AddVerbose(
        CBasicFormattedString<char> const & text, unsigned int level, CFormatInfo const & format);
    void AddVerbose(
        CBasicFormattedString<wchar_t> const & text, unsigned int level, unsigned long color);
    void
    AddVerbose(CBasicFormattedString<char> const & text, unsigned int level, unsigned long color);

    // Pushes the format, merged with those in force, and adds it to the table as it was passed.
    // Null is ignored.
    void AddFormat(CFormatInfo const & format);
    void AddFormat(CFormatInfo * const format);

    // Pops up to `count` formats and adds an entry for each, which restores what the popped format
    // (as it was merged) had touched, or the whole default format when the stack is empty.
    void RemoveFormat(unsigned long long count);

    // Not a pure query: first removes `count` formats. `out` gets the record in force or the
    // default; its range and flag stay.
    void GetCurrentFormat(CFormatInfo & out, unsigned long long count);

    // Takes no lock: the answer holds only while no other thread pushes or pops.
    unsigned long long FormatDepth() const { return m_FormatStack.size(); }

    // Empties the stack and adds an entry with the default format, for the end of the text unless
    // a range is given.
    void SetDefaultFormatInfo(_charrange const & range);
    void SetDefaultFormatInfo();

    // The host's call before the first text; only the first counts.
    static void InitializeDefaultFormatInfo(CHARFORMAT2A const & record);

    // Not to be called before InitializeDefaultFormatInfo.
    static CHARFORMAT2A const & GetDefaultFormat() { return CFormatInfo::GetDefaultFormat(); }

    static unsigned int VerbosityLevel() {
        return m_sVerbosityLevel.load(std::memory_order_relaxed);
    }

protected:
    // Adds an entry and takes its text over. With `addFormat` the format is pushed; without it the
    // format is disregarded, and an entry that has no text either does nothing.
    void DoAddFormattedText(DataEntry const & entry, bool addFormat);

private:
    static bool IsDisplayed(unsigned int level);
    static void ReadVerbosity();
    static void PushFormat(CFormatInfo const & format);
    static void EmptyStack();

    void AddOwned(std::unique_ptr<std::wstring> text, CFormatInfo const * format);
    void PushAndAppend(std::unique_ptr<std::wstring> text, CFormatInfo const & format);
    void JoinOrAppend(std::unique_ptr<std::wstring> text);
    void PopFormat();

    // Before anything is changed, so that a lack of memory leaves table and stack as they were.
    void EnsureRoom();
    CFormatInfo & AppendRecord(CHARFORMAT2A const & record);

    template <typename Text>
    void AddAlone(Text const & text, CFormatInfo const & format) {
        AddItem(text, &format);
        RemoveFormat(1);
    }

    static CLockMgr m_TheOBLock;
    // Formats in force, innermost on top, each merged with those beneath it.
    static std::stack<CHARFORMAT2A, std::deque<CHARFORMAT2A>> m_FormatStack;
    static std::atomic<bool> m_sVerboseDisplay;
    static std::atomic<unsigned int> m_sVerbosityLevel;

    DataTable * m_DataTable;
};
