// The operator's questions, as test code asks them: the abstract prompt object.
//
// Every question answers in TS_STATUS and leaves the answer where the caller's pointer says. The
// narrow forms take UTF-8 and work through the wide ones; a null text or list stays null. Texts,
// lists, events and window arguments are borrowed for the call, or, with an event, until the
// dialog has ended. Time-outs are milliseconds, 0 and 0xFFFFFFFF mean without end.
//
// One object belongs to the thread that runs the test, and must be gone before
// CAppState::CleanupAppState.
#pragma once

#include <string>
#include <vector>

#include "app/Export.h"
#include "log/TestStatus.h"
#include "siblings/Promptline.h"

class CMXLog;
class CSafeString;

class MORVEX_API CMXUserInput {
public:
    CMXUserInput();
    // The log gets prompt failures; it may be null and stays the caller's. The header stands over
    // every dialog.
    CMXUserInput(CMXLog * const log, std::wstring const & header);
    CMXUserInput(CMXLog * const log, std::string const & header);
    explicit CMXUserInput(CMXLog * const log);
    CMXUserInput(CMXUserInput const &);
    CMXUserInput & operator=(CMXUserInput const &);

    // Withdraws the object from CAppState, if it is the one in force there.
    virtual ~CMXUserInput();

    // The choice of files. False: nothing was chosen. The vector of a choice of several is made
    // with new and is the caller's.
    virtual bool SelectSingleFile(
        CSafeString & file, wchar_t const * const first, wchar_t const * const second,
        bool flag) = 0;
    virtual bool SelectMultipleFiles(
        std::vector<CSafeString> *& files, wchar_t const * const first,
        wchar_t const * const second, bool flag) = 0;
    virtual bool SelectSingleVIF(
        CSafeString & file, wchar_t const * const first, wchar_t const * const second,
        bool flag) = 0;
    virtual bool SelectMultipleVIFs(
        std::vector<CSafeString> *& files, wchar_t const * const first,
        wchar_t const * const second, bool flag) = 0;

    virtual TS_STATUS GetSelectionFromList(
        std::wstring * prompt, std::vector<std::wstring> * list, unsigned long * selection,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) = 0;
    virtual TS_STATUS GetSelectionFromList(
        std::string * prompt, std::vector<std::string> * list, unsigned long * selection,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);

    virtual TS_STATUS GetSelectionFromListAllowAbort(
        std::wstring * first, std::wstring * second, std::wstring * third,
        std::vector<std::wstring> * list, unsigned long * selection, bool * aborted,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) = 0;
    virtual TS_STATUS GetSelectionFromListAllowAbort(
        std::string * first, std::string * second, std::string * third,
        std::vector<std::string> * list, unsigned long * selection, bool * aborted,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);

    virtual TS_STATUS GetMultipleSelectionsFromList(
        std::wstring * prompt, std::vector<std::wstring> * list,
        std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
        WINDOW_ARGS * args) = 0;
    virtual TS_STATUS GetMultipleSelectionsFromList(
        std::string * prompt, std::vector<std::string> * list,
        std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
        WINDOW_ARGS * args);

    virtual TS_STATUS DisplayInfoToUser(
        std::wstring * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
        std::wstring * button, WINDOW_ARGS * args) = 0;
    virtual TS_STATUS DisplayInfoToUser(
        std::string * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
        std::string * button, WINDOW_ARGS * args);

    virtual TS_STATUS GetBooleanDecision(
        std::wstring * first, std::wstring * second, std::wstring * third, bool * answer,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) = 0;
    virtual TS_STATUS GetBooleanDecision(
        std::string * first, std::string * second, std::string * third, bool * answer,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);

    virtual TS_STATUS GetInteger(
        std::wstring * title, std::wstring * prompt, unsigned long * value, bool hexadecimal,
        unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
        WINDOW_ARGS * args) = 0;
    virtual TS_STATUS GetInteger(
        std::string * title, std::string * prompt, unsigned long * value, bool hexadecimal,
        unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
        WINDOW_ARGS * args);

    virtual TS_STATUS GetString(
        std::wstring * title, std::wstring * prompt, std::wstring * answer, unsigned long timeout,
        CMXGuiEvent * event, WINDOW_ARGS * args) = 0;

protected:
    virtual TS_STATUS CreateHelperDialog(CHelperDialogState * const state) = 0;

public:
    // Ends the dialog that is up.
    virtual TS_STATUS TerminateDialog() = 0;

    void SetLog(CMXLog * const log) { m_Log = log; }

    // Whether the dialogs take input. Both return TS_SUCCESS.
    TS_STATUS DisableInput();
    TS_STATUS EnableInput();
    bool IsInputEnabled() { return m_InputEnabled; }

    // Null clears the header. Always TS_SUCCESS.
    TS_STATUS SetDialogHeader(std::wstring * header);
    TS_STATUS SetDialogHeader(std::string * header);

    // The questions of a debug run (RunTypeDebug). In any other run nothing is asked and the
    // caller's preset stands as the answer: TS_SUCCESS.
    TS_STATUS DebugGetSelectionFromList(
        std::wstring * prompt, std::vector<std::wstring> * list, unsigned long * selection,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);
    TS_STATUS DebugGetSelectionFromList(
        std::string * prompt, std::vector<std::string> * list, unsigned long * selection,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);
    TS_STATUS DebugGetMultipleSelectionsFromList(
        std::wstring * prompt, std::vector<std::wstring> * list,
        std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
        WINDOW_ARGS * args);
    TS_STATUS DebugGetMultipleSelectionsFromList(
        std::string * prompt, std::vector<std::string> * list,
        std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
        WINDOW_ARGS * args);
    TS_STATUS DebugDisplayInfoToUser(
        std::wstring * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
        std::wstring * button, WINDOW_ARGS * args);
    TS_STATUS DebugDisplayInfoToUser(
        std::string * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
        std::string * button, WINDOW_ARGS * args);
    TS_STATUS DebugGetBooleanDecision(
        std::wstring * first, std::wstring * second, std::wstring * third, bool * answer,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);
    TS_STATUS DebugGetBooleanDecision(
        std::string * first, std::string * second, std::string * third, bool * answer,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);

    // Outside a debug run the preset is checked: TS_NULL_RESULT for null, and a value out of
    // bounds is set to the nearer bound before CQNRunTimeException is thrown.
    TS_STATUS DebugGetInteger(
        std::wstring * title, std::wstring * prompt, unsigned long * value, bool hexadecimal,
        unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
        WINDOW_ARGS * args);
    TS_STATUS DebugGetInteger(
        std::string * title, std::string * prompt, unsigned long * value, bool hexadecimal,
        unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
        WINDOW_ARGS * args);

    // These three never return in a debug run.
    TS_STATUS DebugGetSelectionFromListAllowAbort(
        std::wstring * first, std::wstring * second, std::wstring * third,
        std::vector<std::wstring> * list, unsigned long * selection, bool * aborted,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);
    TS_STATUS DebugGetSelectionFromListAllowAbort(
        std::string * first, std::string * second, std::string * third,
        std::vector<std::string> * list, unsigned long * selection, bool * aborted,
        unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args);
    TS_STATUS DebugGetString(
        std::wstring * title, std::wstring * prompt, std::wstring * answer, unsigned long timeout,
        CMXGuiEvent * event, WINDOW_ARGS * args);

protected:
    bool m_InputEnabled = true;
    std::wstring m_DialogHeader;
    // Not owned, may be null.
    CMXLog * m_Log = nullptr;
};
