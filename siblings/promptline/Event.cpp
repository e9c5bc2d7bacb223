// The event of a dialog. Dialogs hold its core, so that one may outlive the event that it signals.
#include "siblings/promptline/EventCore.h"

CMXGuiEvent::Core::Core(bool signalled)
    : m_Handle(CreateEventA(nullptr, TRUE, signalled ? TRUE : FALSE, nullptr)) {}

CMXGuiEvent::Core::~Core() {
    if (m_Handle != nullptr) CloseHandle(m_Handle);
}

TS_STATUS CMXGuiEvent::Core::Clear() { return ResetEvent(m_Handle) ? TS_SUCCESS : TS_FAILED; }
TS_STATUS CMXGuiEvent::Core::Signal() { return SetEvent(m_Handle) ? TS_SUCCESS : TS_FAILED; }

TS_STATUS CMXGuiEvent::Core::Wait(std::uint32_t milliseconds) {
    DWORD const result = WaitForSingleObject(m_Handle, milliseconds);
    if (result == WAIT_OBJECT_0) return TS_SUCCESS;
    return result == WAIT_TIMEOUT ? TS_DIALOG_TIMED_OUT : TS_FAILED;
}

CMXGuiEvent::CMXGuiEvent(int signalled) : m_Core(std::make_shared<Core>(signalled != 0)) {}
CMXGuiEvent::~CMXGuiEvent() = default;
TS_STATUS CMXGuiEvent::ClearEvent() { return m_Core->Clear(); }
TS_STATUS CMXGuiEvent::SignalEvent() { return m_Core->Signal(); }
TS_STATUS CMXGuiEvent::WaitOnEvent(unsigned long milliseconds) {
    return m_Core->Wait(static_cast<std::uint32_t>(milliseconds));
}
