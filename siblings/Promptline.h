// What the library requires of Promptline: the helper dialogs behind the operator's questions.
//
// A dialog runs on the thread of the application's main window. The thread that asks makes a
// state, posts a request to create the dialog, waits until it exists, waits on the dialog's event,
// and posts a request to destroy it; it must not be the main window's thread. Any thread may post.
//
// A dialog ends by its answer, by its time-out, or because nobody can answer it; it then signals
// its event. Only an answer is ever written into the caller's variable.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "log/TestStatus.h"
#include "platform/BaseTypes.h"

#if defined(PROMPTLINE_BUILD)
#define PROMPTLINE_API MORVEX_SYMBOL_EXPORT
#else
#define PROMPTLINE_API MORVEX_SYMBOL_IMPORT
#endif

class CSafeString;
class CWnd;

// Where a dialog stands, in pixels of the screen; a width or height of 0 leaves the size to the
// dialog. Dialogs at a terminal have no use for it.
struct WINDOW_ARGS {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

// Signalled when a dialog ends; stays so until it is cleared. May be used from any thread.
class PROMPTLINE_API CMXGuiEvent {
public:
    // Not zero: signalled from the start.
    explicit CMXGuiEvent(int signalled);
    CMXGuiEvent(CMXGuiEvent const &) = delete;
    CMXGuiEvent & operator=(CMXGuiEvent const &) = delete;
    // A dialog that is still up may outlive its event.
    ~CMXGuiEvent();

    // TS_FAILED when the system has no event to give.
    TS_STATUS ClearEvent();
    TS_STATUS SignalEvent();

    // Waits up to so many milliseconds, 0xFFFFFFFF without end: TS_SUCCESS, TS_DIALOG_TIMED_OUT or
    // TS_FAILED.
    TS_STATUS WaitOnEvent(unsigned long milliseconds);

    class Core;
    std::shared_ptr<Core> const & GetCore() const { return m_Core; }

private:
    std::shared_ptr<Core> const m_Core;
};

// One question, from an Init... function until whoever asked deletes it, which also takes a dialog
// away that is still up. Texts and lists were copied; the answer's variable is the caller's and is
// written until then.
class PROMPTLINE_API CHelperDialogState {
public:
    virtual ~CHelperDialogState();

    // False: the dialog is shown, but takes no input.
    bool inputEnabled = true;
    // Signalled at the dialog's end; the caller's.
    CMXGuiEvent * event = nullptr;
    // Milliseconds, 0xFFFFFFFF without end.
    std::uint32_t timeout = 0xFFFFFFFF;

protected:
    CHelperDialogState();
};

// The application's main window, on whose thread dialogs run; null until the host has named it.
PROMPTLINE_API CWnd * AppMainWnd();

// Ask the window's thread to create the dialog of a state, which is handed over as a number, and
// to destroy the one that was created last. Zero: there is no such thread; a question then ends as
// one that nobody can answer.
PROMPTLINE_API int PostHelperDialogCreateMessage(CWnd * window, long long state);
PROMPTLINE_API int PostHelperDialogDestroyMessage(CWnd * window);

// Wait until what was posted last has been done. TS_FAILED: nobody is there to do it.
PROMPTLINE_API TS_STATUS WaitForHelperDialogCreationToComplete();
PROMPTLINE_API TS_STATUS WaitForHelperDialogDestructionToComplete();

// Forgets the last verdict and the requests under way.
PROMPTLINE_API void ResetHelperDialogs();

// Whether the dialog that ended last ended by its time-out, or without an answer because nobody
// could give one. Asked when the time of a dialog is up that has not ended, it ends that dialog.
PROMPTLINE_API bool DialogTimedOut();

// Each makes a state, to be deleted by the caller. Null texts count as empty, null labels get the
// dialog's own. The answer's variable may be null, and its value at this moment is the preset that
// the dialog offers, where it has one.

// `closable`: the operator ends the dialog with its button. Otherwise it is a notice that ends by
// its time-out or by being destroyed.
PROMPTLINE_API CHelperDialogState * InitDisplayInfoToUserDialog(
    std::wstring const & header, std::wstring * text, bool closable, unsigned long timeout,
    std::wstring * button, CMXGuiEvent * event, WINDOW_ARGS * args);

// `*answer` is true for the first label, false for the second. There is no preset.
PROMPTLINE_API CHelperDialogState * InitGetUserBooleanChoiceDialog(
    std::wstring const & header, std::wstring * text, std::wstring * first, std::wstring * second,
    bool * answer, unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);

// A number of 32 bits, which the dialog reads as hexadecimal or as decimal, or a text.
PROMPTLINE_API CHelperDialogState * InitGetUserItemDialog(
    std::wstring const & header, std::wstring * title, std::wstring * prompt, bool numeric,
    bool hexadecimal, unsigned long timeout, unsigned long * value, std::wstring * string,
    CMXGuiEvent * event, WINDOW_ARGS * args);

// `*selection` counts from 0.
PROMPTLINE_API CHelperDialogState * InitGetUserListSingleSelectionDialog(
    std::wstring const & header, std::wstring * text, std::vector<std::wstring> * list,
    unsigned long timeout, unsigned long * selection, CMXGuiEvent * event, WINDOW_ARGS * args);

// `first` labels the choice, `second` the way out, which sets `*aborted` and leaves the selection.
// A choice clears `*aborted`.
PROMPTLINE_API CHelperDialogState * InitGetUserListSingleSelectionAllowAbortDialog(
    std::wstring const & header, std::wstring * text, std::wstring * first, std::wstring * second,
    std::vector<std::wstring> * list, unsigned long timeout, unsigned long * selection,
    bool * aborted, CMXGuiEvent * event, WINDOW_ARGS * args);

// The vector is made with new at the answer, in ascending order, and is the caller's to delete.
PROMPTLINE_API CHelperDialogState * InitGetUserListSelectionsDialog(
    std::wstring const & header, std::wstring * text, std::vector<std::wstring> * list,
    unsigned long timeout, std::vector<unsigned long> ** selections, CMXGuiEvent * event,
    WINDOW_ARGS * args);

// The choosers wait until the operator has chosen; false: nothing was chosen, outputs untouched.
// Paths are UTF-8. `filter` holds pairs of a description and its patterns, each ended by a bar:
// "Recordings|*.bin|All files|*.*|"; null for all files. `mustExist`: only files that exist. The
// vector is made with new and is the caller's to delete.
PROMPTLINE_API bool SelectSingleFile(
    CSafeString & file, wchar_t const * const title, wchar_t const * const filter, bool mustExist);
PROMPTLINE_API bool SelectMultipleFiles(
    std::vector<CSafeString> *& files, wchar_t const * const title, wchar_t const * const filter,
    bool mustExist);
PROMPTLINE_API bool
SelectSingleVIF(CSafeString & file, wchar_t const * const title, bool mustExist);
PROMPTLINE_API bool
SelectMultipleVIFs(std::vector<CSafeString> *& files, wchar_t const * const title, bool mustExist);

// The host's side.

// What became of one question, in UTF-8.
struct CPromptRecord {
    std::string question;
    // What was chosen or entered; empty without an answer.
    std::string answer;
    // "operator", "file", or "none" without an answer.
    std::string source;
    // Why there is no answer.
    std::string reason;
    double seconds = 0;
    // Nobody can answer it, and it has no time-out: the run is to be aborted.
    bool wantsAbort = false;
};

// Told on the main window's thread, inside its message loop. Must not throw.
class PROMPTLINE_API CPromptListener {
public:
    virtual ~CPromptListener();

    // The face is about to write at the terminal, and has left it again.
    virtual void PromptShown() = 0;
    virtual void PromptGone() = 0;

    virtual void PromptEnded(CPromptRecord const & record) = 0;
};

// Serves the dialogs of the application's main window, on the thread that makes it, for as long as
// it lives and the thread takes messages. One a process. For that thread alone.
//
// Answers come from the file that the environment variable QN_PROMPTS names, or else from the
// operator: in dialogs on Windows, elsewhere at the terminal of standard input and error, if both
// are one. Otherwise no question is answered. One without an answer times out at once if it has a
// time-out, and else wants an abort.
class PROMPTLINE_API CPromptService {
public:
    // `listener` may be null; it stays the caller's. Throws std::runtime_error, whose text says
    // what to do, when the file of answers cannot be used or the system has no window to give.
    CPromptService(HWND mainWindow, CPromptListener * listener);
    CPromptService(CPromptService const &) = delete;
    CPromptService & operator=(CPromptService const &) = delete;
    // Dialogs that are up end without an answer.
    ~CPromptService();

    // The operator's abort: every dialog that is up ends without an answer.
    void Abort();

    // Off Windows: readable while Serve has something to do, for the loop of the thread; -1 on
    // Windows, where messages do it all.
    int Descriptor() const;
    void Serve();

    // On Windows: whether the message is for a dialog, which then has had it. `message` is a MSG.
    bool TakesMessage(void * message);

    // Around anything else that is written at the terminal.
    void BeforeOutput();
    void AfterOutput();

private:
    struct Parts;
    std::unique_ptr<Parts> m_Parts;
};
