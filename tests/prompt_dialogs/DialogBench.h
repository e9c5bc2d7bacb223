// A dialog object on a bench: its calls of the dialog library, of the mutex, of the host's window
// and of the log as lines, in the order in which they happened.
//
// Besides the lines of FakePromptline.h:
//   update, update posted        the message to the host's window
//   mutex, take, release, close  the object's mutex
//   log <status> <level?> <text> an entry
#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "log/CMXLog.h"
#include "log/LogBench.h"
#include "platform/Messaging.h"
#include "platform/Wrap.h"
#include "prompt_dialogs/FakePromptline.h"
#include "prompts/CMFCDialogMXUserInput.h"

MORVEX_WRAPPED(SendMessageA)
MORVEX_WRAPPED(PostMessageA)
MORVEX_WRAPPED(GetTickCount64)
MORVEX_WRAPPED(CreateMutexA)
MORVEX_WRAPPED(WaitForSingleObject)
MORVEX_WRAPPED(ReleaseMutex)
MORVEX_WRAPPED(CloseHandle)

// Opens what a derived class sees.
class DialogInput : public CMFCDialogMXUserInput {
public:
    using CMFCDialogMXUserInput::CMFCDialogMXUserInput;
    using CMFCDialogMXUserInput::CreateHelperDialog;
    using CMFCDialogMXUserInput::m_ActiveDialogState;
    using CMFCDialogMXUserInput::m_CurrentlyTerminating;
    using CMFCDialogMXUserInput::m_DialogActive;
    using CMFCDialogMXUserInput::m_DialogHeader;
    using CMFCDialogMXUserInput::m_DialogLock;
    using CMFCDialogMXUserInput::m_DialogMutex;
    using CMFCDialogMXUserInput::m_Log;
};

// Keeps its entries as lines, with the look if it is not the default one.
class LineLog : public CMXLog {
public:
    // The look of the last entry.
    std::optional<CFormatInfo> m_Look;

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) override;
};

using Lines = std::vector<std::string>;

class DialogBench : public testing::Test {
protected:
    DialogBench();
    ~DialogBench() override;

    static FakePromptline & Dialogs() { return FakePromptline::Get(); }
    static Lines Calls() { return Dialogs().Take(); }
    static bool IsIdle() {
        return !DialogInput::m_DialogActive && DialogInput::m_ActiveDialogState == nullptr;
    }

    // The operator has asked for an abort, and it is armed.
    static void Abort();

    LogBench m_Bench;
    std::optional<LineLog> m_Log;
    std::optional<DialogInput> m_Input;

private:
    // Goes on from test to test: the library remembers when it posted last.
    inline static std::atomic<ULONGLONG> m_Now = 0;
    Diversion<LRESULT(HWND, UINT, WPARAM, LPARAM)> const m_Send{
        wrapped_SendMessageA, [](HWND, UINT, WPARAM, LPARAM) {
            Dialogs().Add("update");
            return LRESULT{};
        }};
    Diversion<BOOL(HWND, UINT, WPARAM, LPARAM)> const m_Post{
        wrapped_PostMessageA, [](HWND, UINT, WPARAM, LPARAM) {
            Dialogs().Add("update posted");
            return BOOL{TRUE};
        }};
    // Never too early for a posted update.
    Diversion<ULONGLONG()> const m_Clock{
        wrapped_GetTickCount64, [] { return m_Now.fetch_add(1000) + 1000; }};
    Diversion<HANDLE(_SECURITY_ATTRIBUTES *, BOOL, char const *)> const m_Create{
        wrapped_CreateMutexA, [](_SECURITY_ATTRIBUTES * attributes, BOOL owned, char const * name) {
            bool const plain = attributes == nullptr && owned == FALSE && name == nullptr;
            Dialogs().Add(plain ? "mutex" : "another mutex");
            return wrapped_CreateMutexA.Real(attributes, owned, name);
        }};
    Diversion<DWORD(HANDLE, DWORD)> const m_Wait{
        wrapped_WaitForSingleObject, [](HANDLE object, DWORD timeout) {
            Dialogs().Add(timeout == INFINITE ? "take" : "take for a time");
            return wrapped_WaitForSingleObject.Real(object, timeout);
        }};
    Diversion<BOOL(HANDLE)> const m_Release{wrapped_ReleaseMutex, [](HANDLE object) {
                                                Dialogs().Add("release");
                                                return wrapped_ReleaseMutex.Real(object);
                                            }};
    Diversion<BOOL(HANDLE)> const m_Close{wrapped_CloseHandle, [](HANDLE object) {
                                              Dialogs().Add("close");
                                              return wrapped_CloseHandle.Real(object);
                                          }};
};
