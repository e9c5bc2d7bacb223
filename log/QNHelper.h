// The base of objects that run tests for a suite: a log and a prompt object, and what they do
// together.
//
// Both are borrowed and may be null; they are used on the test's thread. The last helper that was
// made or given a log or a prompt object is the current one, which the host's
// CAppState::ExitQuillon reaches. Only becoming the current helper takes a lock, and that lock is
// held while CancelTestSuite runs. CAppState must stand whenever a helper becomes the current one.
#pragma once

#include <cstddef>
#include <string>

#include "app/Export.h"
#include "log/TestStatus.h"

class CMXLog;
class CMXUserInput;
class CQNRunTimeException;
struct _GUID;

class MORVEX_API QNHelper {
public:
    // Becomes the current helper, unless `keepGlobalHelper`.
    QNHelper(CMXLog * const log, CMXUserInput * const input, bool keepGlobalHelper);

    // A copy does not become the current helper.
    QNHelper(QNHelper const &) = default;
    QNHelper & operator=(QNHelper const &) = default;

    // Does not withdraw the object as the current helper: a derived class that ends before the run
    // calls CAppState::SetHelper itself.
    virtual ~QNHelper();

    // Ends a dialog that is up, disarms the exception of the operator's abort, and closes the test
    // with the log's virtual StopTest. Without a log: `status` with TEST_STATUS_ABORT, and nothing
    // is written.
    virtual TEST_STATUS CompleteTest(TEST_STATUS status) const;

    // Stores the prompt object, which must not be null, and gives it the log. Becomes the current
    // helper, except while Reinit runs or when made with `keepGlobalHelper`.
    virtual void SetUserInput(CMXUserInput * const input, CMXLog * const log);

    // Stores the log. Becomes the current helper on the same terms.
    virtual void SetLog(CMXLog * const log);

    // TEST_STATUS_SUCCESS with a log and a prompt object; otherwise TEST_STATUS_ABORT, with an
    // entry when it is the prompt object that is missing.
    virtual TEST_STATUS ValidatePointers() const;

    // Brings the text, or a standard one when it is null or empty, to whoever can be reached: the
    // log, where it acts as a format, the output buffer, the operator, or else a message box.
    virtual void LogValidatePointerFail(TEST_STATUS status, char const * text) const;

    // The host wants the run to end. Called on the host's thread with the lock held: it must not
    // wait for a thread that makes a helper or gives it a log or a prompt object. Here: nothing.
    virtual void CancelTestSuite();

    // Replaces both pointers through the virtual setters, and becomes the current helper once, at
    // the end. From then on the setters make it so too.
    void Reinit(CMXLog * const log, CMXUserInput * const input);

    CMXLog * Log() const { return m_Log; }

    // The helper's log, or the run's.
    CMXLog * GetLogger();

    CMXUserInput * UserInput() const { return m_UserInput; }

    // Starts a test after a pause of a second. There must be a log.
    TEST_STATUS StartTest(char const * name) const;
    TEST_STATUS StartTest(std::string const & name) const { return StartTest(name.c_str()); }

    // Closes the test through CompleteTest, with `status` or with TestStatus().
    TEST_STATUS StopTest(TEST_STATUS status) const { return CompleteTest(status); }
    TEST_STATUS StopTest() const { return CompleteTest(TestStatus()); }

    // The log's word; TEST_STATUS_ABORT without a log.
    TEST_STATUS TestStatus() const;

    // By the counts of the current record; true without a log.
    bool TestFailed() const;
    bool TestAborted() const;

    // Folds the result code of a library function into the log's word and returns the word. There
    // must be a log.
    TEST_STATUS TranslateTestStatus(TS_STATUS code);

    // LogValidatePointerFail with the standard text, then CompleteTest.
    TEST_STATUS ValidatePointerFail(TEST_STATUS status) const;

    // For the catch block around test steps: writes an entry that steps are skipped and one with
    // `status` and the exception's text, to the helper's log or the run's, and updates the display.
    // Without a log the text is lost. Throws CQNRunTimeException when the operator has aborted and
    // throwing is on.
    void HandleRunTimeException(CQNRunTimeException const & exception, TEST_STATUS status);

    // Zeroed memory for ReleaseMemory. Throws std::bad_alloc.
    static void * AllocateMemory(std::size_t size);
    static void ReleaseMemory(void * memory);

    // "01 ab": the general form with "%02x" and " ".
    static void BytesToString(std::string & out, void const * bytes, std::size_t size, bool append);

    // "0x01, 0xAB": the general form with "0x%02X" and ", ".
    static void BytesToCode(std::string & out, void const * bytes, std::size_t size, bool append);

    // Writes each byte in a format (null: "%02x") with a separator (null: " ") in front of it,
    // unless `out` is empty at that moment. Without `append` `out` is emptied first, also when
    // there are no bytes. Format and separator are one printf-style text and must not lie in `out`.
    static void BytesToString(
        std::string & out, void const * bytes, std::size_t size, char const * format,
        char const * separator, bool append);

    // "{A5DCBF10-6530-11D2-901F-00C04FB951ED}" into a buffer of at least 39 bytes.
    static void GetUUIDDisplayString(_GUID const & id, char * out);

protected:
    // The first part of CompleteTest, for derived classes that close a test otherwise.
    void StopTestInit() const;

private:
    void BecomeCurrent();

    CMXLog * m_Log;
    CMXUserInput * m_UserInput;
    bool m_KeepGlobalHelper;
};
