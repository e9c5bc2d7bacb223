// Ringing the host's window, and meeting the operator's abort there.
#include "output/CUIUpdate.h"

#include "app/CAppState.h"
#include "siblings/Keelbase.h"

constinit CUIUpdate * CUIUpdate::m_sTheUIUpdateObject = nullptr;
constinit std::atomic<std::uint64_t> CUIUpdate::m_dwLastMessageTime = 0;
constinit std::atomic<bool> CUIUpdate::m_VerboseDisplay = true;

CUIUpdate::CUIUpdate(HWND__ * const window) : CCustomMessageHandler(window) {}

CUIUpdate::CUIUpdate(CUIUpdate const &) = default;

CUIUpdate & CUIUpdate::operator=(CUIUpdate const &) = default;

CUIUpdate::~CUIUpdate() = default;

CUIUpdate * CUIUpdate::GetUIUpdate() {
    if (m_sTheUIUpdateObject == nullptr) m_sTheUIUpdateObject = new CUIUpdate(nullptr);
    return m_sTheUIUpdateObject;
}

CUIUpdate * CUIUpdate::GetUIUpdate(HWND__ * const window) {
    GetUIUpdate()->SetHWnd(window);
    return m_sTheUIUpdateObject;
}

void CUIUpdate::FreeUIUpdate() {
    delete m_sTheUIUpdateObject;
    m_sTheUIUpdateObject = nullptr;
}

void CUIUpdate::SendUpdate(bool force) {
    unsigned int const interval = CAppState::QNMinimumDisplayUpdateTime();
    if (interval == 0 || force) {
        // Deliberate: the interval is not restarted.
        // Pinned by CUIUpdateTest.AForcedUpdateDoesNotRestartTheInterval.
        GetUIUpdate()->CMHSendMessage(UpdateMessage, 0, 0);
        return;
    }
    std::uint64_t const now = GetTickCount64();
    if (now - m_dwLastMessageTime.load(std::memory_order_relaxed) <= interval) return;
    GetUIUpdate()->CMHPostMessage(UpdateMessage, 0, 0);
    m_dwLastMessageTime.store(now, std::memory_order_relaxed);
}

TS_STATUS CUIUpdate::UpdateUI(bool force) {
    SendUpdate(force);
    if (!m_AbortFunction) return TS_SUCCESS;
    CheckAbort();
    return TS_ABORTED;
}

void CUIUpdate::CheckAbort() {
    if (!m_AbortFunction || !m_ThrowExceptionOnAbort || m_AbortThrown) return;
    m_AbortThrown = true;
    ThrowQNRunTime("Test Aborted by user.");
}

void CUIUpdate::DoAbort(bool force) {
    SendUpdate(force);
    ThrowQNRunTime("Test aborted by Quillon.");
}

void CUIUpdate::SetCursor(wchar_t const * name) {
    m_SetCursor = true;
    m_NewCursor = name;
    SendUpdate(true);
    CheckAbort();
}

void CUIUpdate::ResetCursor() {
    if (!m_SetCursor) return;
    m_SetCursor = false;
    SendUpdate(true);
    CheckAbort();
}
