// The operator's questions as dialogs: one at a time, run on the thread of the main window.
//
// Without an event a question waits for its end: TS_SUCCESS, TS_DIALOG_TIMED_OUT, or TS_DIALOG_BUSY
// when another dialog is active or another thread has ended this one. After a time-out the answer's
// variable holds what the dialog left in it. With an event it returns TS_SUCCESS as soon as the
// dialog exists; the caller waits on the event and then calls TerminateDialog. A time-out of 0
// waits without end. An abort of the operator leaves as CQNRunTimeException, where that is armed:
// call TerminateDialog afterwards.
//
// Ask on the thread that runs the test, never on the main window's, which has to show the dialog.
// TerminateDialog, IsDialogActive and Reset may be called from any other thread. What tells of a
// dialog is one for the process, not one for each object.
#pragma once

#include <atomic>
#include <memory>

#include "platform/Synchronization.h"
#include "prompts/CMXUserInput.h"
#include "siblings/Keelbase.h"

class MORVEX_API CMFCDialogMXUserInput : public CMXUserInput {
public:
    CMFCDialogMXUserInput();
    CMFCDialogMXUserInput(CMXLog * const log, std::wstring const & header);
    CMFCDialogMXUserInput(CMXLog * const log, std::string const & header);
    explicit CMFCDialogMXUserInput(CMXLog * const log);

    // Copy the members as they stand, the mutex's handle and the lock's bytes too: a copy is no
    // second working object and needs its original. What an assigned object had is given up.
    CMFCDialogMXUserInput(CMFCDialogMXUserInput const & other);
    CMFCDialogMXUserInput & operator=(CMFCDialogMXUserInput const & other);

    // Forgets the dialog that is up, if any. The claim to be the active one stays as it is, and a
    // new object inherits it.
    ~CMFCDialogMXUserInput() override;

    // The choosers look for an abort and then wait for the operator; they claim nothing. `message`
    // is shown first, with an "OK" to go on, unless it is null or empty.
    bool SelectSingleFile(
        CSafeString & file, wchar_t const * const first, wchar_t const * const second,
        bool flag) override;
    bool SelectMultipleFiles(
        std::vector<CSafeString> *& files, wchar_t const * const first,
        wchar_t const * const second, bool flag) override;
    bool SelectSingleVIF(
        CSafeString & file, wchar_t const * const message, wchar_t const * const third,
        bool fourth) override;
    bool SelectMultipleVIFs(
        std::vector<CSafeString> *& files, wchar_t const * const message,
        wchar_t const * const third, bool fourth) override;

    using CMXUserInput::GetSelectionFromList;
    TS_STATUS GetSelectionFromList(
        std::wstring * prompt, std::vector<std::wstring> * list, unsigned long * selection,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) override;

    using CMXUserInput::GetSelectionFromListAllowAbort;
    TS_STATUS GetSelectionFromListAllowAbort(
        std::wstring * first, std::wstring * second, std::wstring * third,
        std::vector<std::wstring> * list, unsigned long * selection, bool * aborted,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) override;

    // `*selections` is set to null first. A null `selections` gives TS_NULL_RESULT and shows
    // nothing, but stays the active dialog until TerminateDialog.
    using CMXUserInput::GetMultipleSelectionsFromList;
    TS_STATUS GetMultipleSelectionsFromList(
        std::wstring * prompt, std::vector<std::wstring> * list,
        std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
        WINDOW_ARGS * args) override;

    using CMXUserInput::DisplayInfoToUser;
    TS_STATUS DisplayInfoToUser(
        std::wstring * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
        std::wstring * button, WINDOW_ARGS * args) override;

    using CMXUserInput::GetBooleanDecision;
    TS_STATUS GetBooleanDecision(
        std::wstring * first, std::wstring * second, std::wstring * third, bool * answer,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) override;

    // A number of 32 bits. Bounds other than 0 and 0xFFFFFFFF are kept by asking again, without
    // end, if there is neither an event nor a time-out (0xFFFFFFFF). With a time-out an answer out
    // of bounds gives TS_INVALID_BOUNDS, and there must be a log; with an event nothing is checked.
    // TS_NULL_RESULT for a null value, TS_INVALID_BOUNDS for bounds that leave no number.
    using CMXUserInput::GetInteger;
    TS_STATUS GetInteger(
        std::wstring * title, std::wstring * prompt, unsigned long * value, bool hexadecimal,
        unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
        WINDOW_ARGS * args) override;

    TS_STATUS GetString(
        std::wstring * title, std::wstring * prompt, std::wstring * answer, unsigned long timeout,
        CMXGuiEvent * event, WINDOW_ARGS * args) override;

protected:
    // Shows the dialog of m_ActiveDialogState, whatever the argument.
    TS_STATUS CreateHelperDialog(CHelperDialogState * const state) override;

public:
    // Ends the dialog that is up, waits until it is gone, and frees the claim; without a dialog it
    // only frees the claim. Then it meets the operator's abort. Otherwise TS_SUCCESS.
    TS_STATUS TerminateDialog() override;

    // The claim to be the one active dialog: whether somebody holds it, taking it (false: taken),
    // giving it up (whether it was taken).
    bool IsDialogActive();
    bool AcquireActiveDialog();
    bool ReleaseActiveDialog();

    // Lets the dialog library forget what it knows; the claim and the dialog's state stay.
    static TS_STATUS Reset();

protected:
    // Serialises the end of a dialog. Taken before m_DialogLock.
    HANDLE m_DialogMutex = nullptr;
    // Guards m_DialogActive. Made and ended by hand, as copies have its bytes alone.
    union {
        CLockMgr m_DialogLock;
    };

    static CHelperDialogState * m_ActiveDialogState;
    static std::atomic<bool> m_DialogActive;
    static std::atomic<bool> m_CurrentlyTerminating;

private:
    // One GetInteger, with its numbers at the width that they have.
    struct IntegerQuestion;

    void Open();

    template <typename Init>
    TS_STATUS Ask(Init const & init);
    static void HoldState(CHelperDialogState * state);
    static void DeleteState();
    bool EnableState(CMXGuiEvent *& event);
    static bool ShowState(CMXGuiEvent * privateEvent, DWORD & timeout);
    TS_STATUS DialogEnded(std::unique_ptr<CMXGuiEvent> privateEvent);
    TS_STATUS EndedByAnother();

    bool EnterTermination();
    static void DestroyDialog();

    void ShowMessage(wchar_t const * message);

    bool HasUsableBounds(IntegerQuestion const & question);
    TS_STATUS AskForInteger(IntegerQuestion const & question);
    TS_STATUS AskOnceForInteger(IntegerQuestion const & question);
    TS_STATUS IntegerTimedOut(IntegerQuestion const & question);
    void WriteOutOfRange(IntegerQuestion const & question);
};
