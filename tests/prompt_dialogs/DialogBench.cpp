// The bench, and the operations that its tests divert.
#include "prompt_dialogs/DialogBench.h"

MORVEX_WRAP_API(
    LRESULT, SendMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))
MORVEX_WRAP_API(
    BOOL, PostMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))
MORVEX_WRAP_API(ULONGLONG, GetTickCount64, (), ())
MORVEX_WRAP_API(
    HANDLE, CreateMutexA, (_SECURITY_ATTRIBUTES * attributes, BOOL owned, char const * name),
    (attributes, owned, name))
MORVEX_WRAP_API(DWORD, WaitForSingleObject, (HANDLE object, DWORD timeout), (object, timeout))
MORVEX_WRAP_API(BOOL, ReleaseMutex, (HANDLE object), (object))
MORVEX_WRAP_API(BOOL, CloseHandle, (HANDLE object), (object))

namespace {

std::string StatusWord(TEST_STATUS status) {
    if (status == TEST_STATUS_ABORT) return "ABORT";
    return status == TEST_STATUS_WARNING ? "WARNING" : std::to_string(status);
}

} // namespace

TS_STATUS
LineLog::InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) {
    FakePromptline::Get().Add("log " + StatusWord(status) + " " + text);
    m_Look = format != nullptr ? std::optional(*format) : std::nullopt;
    return TS_SUCCESS;
}

DialogBench::DialogBench() {
    CAppState::QNLogVerbosityLevel(Diagnostic);
    CUIUpdate::GetUIUpdate(reinterpret_cast<HWND>(0x77));
    m_Log.emplace();
    m_Input.emplace(&*m_Log, std::wstring(L"H"));
    Dialogs().Clear();
}

DialogBench::~DialogBench() {
    DialogInput::m_DialogActive = false;
    m_Input.reset();
    m_Log.reset();
    Dialogs().Clear();
}

void DialogBench::Abort() {
    CUIUpdate::GetUIUpdate()->AbortFunction(true);
    CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(true);
}
