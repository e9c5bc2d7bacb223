// A log on a bench: what it writes, and everything that it does around that, as lines of text.
//
// The lines, in the order in which things happened:
//   write <status> <look> "<text>"    InternalWrite; the look is "none" for a null format
//   clear                             the virtual Clear
//   trace <number> "<text>"           a record of the trace, while TraceOn() is in force
//   buffer <look> "<text>"            a text in the output buffer
//   buffer <look>                     a change of the look there
//   update                            the forced message to the host's window
//   sleep <milliseconds>
//   terminate dialog
//   prompt "<text>" <timeout> ...     the operator's prompt
//   <fact> <value>                    a fact of the log or of its record that has changed: word,
//                                     active, started, stopped, record name, failures, aborts,
//                                     warnings, infos, unknowns, start time, stop time, result
//   meta <key> = <value>
// A change shows before the next line that is not a change, so it happened between the two.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "log/CMXLog.h"
#include "log/LogBench.h"
#include "log/TestClock.h"
#include "log/TraceTap.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "platform/Wrap.h"
#include "prompts/CMXUserInput.h"

MORVEX_WRAPPED(SendMessageA)
MORVEX_WRAPPED(PostMessageA)
MORVEX_WRAPPED(Sleep)
MORVEX_WRAPPED(EnterCriticalSection)
MORVEX_WRAPPED(LeaveCriticalSection)

// The text in quotes, with line breaks and other bytes that do not print written out.
std::string Quoted(std::string_view text);

// "FAIL" for TEST_STATUS_FAIL; the digits for a word that is not one entry element.
std::string StatusName(TEST_STATUS status);

// The name of one of the log's looks, or all its fields if it is none of them.
std::string LookName(CHARFORMAT2A const & record);
std::string LookName(CFormatInfo const * look);

std::string Hex(std::uint32_t word);

// Keeps the lines.
class Journal {
public:
    explicit Journal(LogBench & bench) : m_Bench(bench) {}
    Journal(Journal const &) = delete;
    Journal & operator=(Journal const &) = delete;

    // Forgets what was kept. A null log: the facts of the record alone.
    void Watch(CMXLog const * log);

    // What came since Watch or the last call.
    Lines Take();

    void Add(std::string const & line);
    void TraceOn();

    // Lets updates of the display pass.
    std::function<void()> m_OnUpdate;

private:
    using Fact = std::pair<char const *, std::string>;

    std::vector<Fact> Facts() const;
    void Note();
    void NoteFacts();
    void NoteMeta();
    void NoteBuffer();
    void OnLock();
    void OnUpdate(char const * line, UINT message, WPARAM wParam, LPARAM lParam);

    LogBench & m_Bench;
    CMXLog const * m_Log = nullptr;
    bool m_Watching = false;
    bool m_Noting = false;
    int m_LockDepth = 0;
    std::vector<Fact> m_Facts;
    std::size_t m_MetaSeen = 0;
    Lines m_Lines;
    std::optional<TraceTap> m_Tap;

    Diversion<LRESULT(HWND, UINT, WPARAM, LPARAM)> const m_Send{
        wrapped_SendMessageA, [this](HWND, UINT message, WPARAM wParam, LPARAM lParam) {
            OnUpdate("update", message, wParam, lParam);
            return LRESULT{};
        }};
    Diversion<BOOL(HWND, UINT, WPARAM, LPARAM)> const m_Post{
        wrapped_PostMessageA, [this](HWND, UINT message, WPARAM wParam, LPARAM lParam) {
            OnUpdate("posted update", message, wParam, lParam);
            return BOOL{TRUE};
        }};
    // A wait of 0 is none.
    Diversion<void(DWORD)> const m_Sleep{wrapped_Sleep, [this](DWORD milliseconds) {
                                             if (milliseconds != 0)
                                                 Add("sleep " + std::to_string(milliseconds));
                                         }};
    // The buffer is entered under its lock: what has changed before that shows before it.
    Diversion<void(CRITICAL_SECTION *)> const m_Enter{
        wrapped_EnterCriticalSection, [this](CRITICAL_SECTION * section) {
            OnLock();
            wrapped_EnterCriticalSection.Real(section);
        }};
    Diversion<void(CRITICAL_SECTION *)> const m_Leave{
        wrapped_LeaveCriticalSection, [this](CRITICAL_SECTION * section) {
            wrapped_LeaveCriticalSection.Real(section);
            --m_LockDepth;
        }};
};

// The sink: keeps each entry, and lets the test reach what a derived class reaches.
class RecordingSink : public CMXLog {
public:
    explicit RecordingSink(Journal & journal) : m_Journal(journal) {}

    using CMXLog::DoStopTest;
    using CMXLog::DoWrite;
    using CMXLog::GetDefaultLogVerbosity;
    using CMXLog::IncrementTestLog;
    using CMXLog::MakeStartTimeString;
    using CMXLog::MakeStopTimeString;
    using CMXLog::SimulateLog;
    using CMXLog::SummaryDumped;
    using CMXLog::UpdateTestStatus;

    TS_STATUS Clear() override;

    // What InternalWrite and Clear answer.
    TS_STATUS m_Answer = TS_SUCCESS;

    // Called with each text before InternalWrite returns.
    std::function<void(std::string const & text)> m_OnWrite;

    // The entries alone, without the word "write".
    Lines m_Entries;

    // The last entry's format, which is gone by now unless the log keeps it.
    CFormatInfo const * m_LastFormat = nullptr;

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) override;

private:
    Journal & m_Journal;
};

// The operator's prompt; only those that the log and the helper use answer.
class FakePrompt : public CMXUserInput {
public:
    explicit FakePrompt(Journal & journal) : m_Journal(journal) {}

    TS_STATUS m_Answer = TS_SUCCESS;

    // Called before the prompt answers.
    std::function<void()> m_OnPrompt;

    bool SelectSingleFile(CSafeString &, wchar_t const *, wchar_t const *, bool) override {
        return false;
    }
    bool SelectMultipleFiles(
        std::vector<CSafeString> *&, wchar_t const *, wchar_t const *, bool) override {
        return false;
    }
    bool SelectSingleVIF(CSafeString &, wchar_t const *, wchar_t const *, bool) override {
        return false;
    }
    bool SelectMultipleVIFs(
        std::vector<CSafeString> *&, wchar_t const *, wchar_t const *, bool) override {
        return false;
    }
    TS_STATUS GetSelectionFromList(
        std::wstring *, std::vector<std::wstring> *, unsigned long *, unsigned long, CMXGuiEvent *,
        WINDOW_ARGS *) override {
        return Unexpected();
    }
    TS_STATUS GetSelectionFromListAllowAbort(
        std::wstring *, std::wstring *, std::wstring *, std::vector<std::wstring> *,
        unsigned long *, bool *, unsigned long, CMXGuiEvent *, WINDOW_ARGS *) override {
        return Unexpected();
    }
    TS_STATUS GetMultipleSelectionsFromList(
        std::wstring *, std::vector<std::wstring> *, std::vector<unsigned long> **, unsigned long,
        CMXGuiEvent *, WINDOW_ARGS *) override {
        return Unexpected();
    }
    TS_STATUS DisplayInfoToUser(
        std::wstring *, unsigned long, bool, CMXGuiEvent *, std::wstring *,
        WINDOW_ARGS *) override {
        return Unexpected();
    }
    TS_STATUS DisplayInfoToUser(
        std::string * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
        std::string * button, WINDOW_ARGS * args) override;
    TS_STATUS GetBooleanDecision(
        std::wstring *, std::wstring *, std::wstring *, bool *, unsigned long, CMXGuiEvent *,
        WINDOW_ARGS *) override {
        return Unexpected();
    }
    TS_STATUS GetInteger(
        std::wstring *, std::wstring *, unsigned long *, bool, unsigned long, CMXGuiEvent *,
        unsigned long, unsigned long, WINDOW_ARGS *) override {
        return Unexpected();
    }
    TS_STATUS GetString(
        std::wstring *, std::wstring *, std::wstring *, unsigned long, CMXGuiEvent *,
        WINDOW_ARGS *) override {
        return Unexpected();
    }
    TS_STATUS TerminateDialog() override;

    using CMXUserInput::GetBooleanDecision;
    using CMXUserInput::GetInteger;
    using CMXUserInput::GetMultipleSelectionsFromList;
    using CMXUserInput::GetSelectionFromList;
    using CMXUserInput::GetSelectionFromListAllowAbort;
    using CMXUserInput::m_Log;

protected:
    TS_STATUS CreateHelperDialog(CHelperDialogState * const) override { return Unexpected(); }

private:
    TS_STATUS Unexpected() {
        m_Journal.Add("another prompt");
        return TS_FAILED;
    }

    Journal & m_Journal;
};

// Indents formatted text for a scope.
class Indent {
public:
    explicit Indent(std::uint32_t level) { m_IndentLevel = level; }
    ~Indent() { m_IndentLevel = 0; }
    Indent(Indent const &) = delete;
    Indent & operator=(Indent const &) = delete;
};

// A log in a true test that has not been started. A global log exists.
class LogTest : public testing::Test {
protected:
    LogTest() {
        m_Bench.m_Suite.OpenTest(true);
        m_Log = std::make_unique<RecordingSink>(m_Journal);
        m_Log->GlobalLogExists(true);
    }

    RecordingSink & Log() { return *m_Log; }
    CTestSuiteLog & Suite() { return m_Bench.m_Suite; }
    CTestLog & TestRecord() { return *Suite().CurrentTestLog(); }
    CUIUpdate & Host() { return *CUIUpdate::GetUIUpdate(); }

    static void Level(eQNLogVerbosity level) { CAppState::QNLogVerbosityLevel(level); }
    static void Level(int level) { Level(static_cast<eQNLogVerbosity>(level)); }

    // The engine's next test, opened on the same log.
    void OpenTrueTest() { Open(true); }
    void OpenOtherRun() { Open(false); }

    TEST_STATUS Start(char const * name = "T1", unsigned long delay = 0) {
        return Log().StartTest(name, delay);
    }
    TEST_STATUS Enter(TEST_STATUS status, eQNLogVerbosity level, char const * text) {
        return Log().DoWrite(status, level, nullptr, text);
    }
    TEST_STATUS Enter(TEST_STATUS status, char const * text = "text") {
        return Enter(status, Quiet, text);
    }
    TEST_STATUS Stop(TEST_STATUS status = TEST_STATUS_SUCCESS) { return Log().StopTest(status); }

    // The operator asks for the end of the run; what answers is an exception if `throws`.
    void AskForAbort(bool throws) {
        Host().AbortFunction(true);
        Host().ThrowExceptionOnAbort(throws);
    }

    // From here on, everything; Seen() is what happened.
    void Watch() { m_Journal.Watch(m_Log.get()); }
    Lines Seen() { return m_Journal.Take(); }
    void TraceOn() { m_Journal.TraceOn(); }

    // The entries of the sink since the last call.
    Lines Written() { return std::exchange(Log().m_Entries, {}); }

    std::string Counts() { return CountsOf(TestRecord()); }
    static std::string CountsOf(CTestLog const & record);

    // The message of the exception that leaves `action`.
    template <typename Action>
    static std::string Thrown(Action action) {
        try {
            action();
        } catch (CQNRunTimeException const & exception) {
            return exception.what();
        }
        return "(nothing was thrown)";
    }

    LogBench m_Bench;
    TestClock m_Clock;
    Journal m_Journal{m_Bench};
    std::unique_ptr<RecordingSink> m_Log;

private:
    void Open(bool actualTest) {
        Suite().OpenTest(actualTest);
        Log().InitTest();
        Log().ClearTestStatus();
    }
};
