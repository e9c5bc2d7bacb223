// Window messages as objects.
#include "messages/CWindowsMessage.h"

#include <string>

#include "messages/CWMDeviceChange.h"
#include "messages/CWMLButtonDown.h"
#include "platform/Messaging.h"

namespace {

CWindowsMessage *
Construct(HWND const window, unsigned int message, unsigned long long wParam, long long lParam) {
    switch (message) {
    case WM_LBUTTONDOWN:
        return new CWMLButtonDown(window, message, wParam, lParam);
    case WM_DEVICECHANGE:
        return new CWMDeviceChange(window, message, wParam, lParam);
    default:
        return new CWindowsMessage(
            window, message, wParam, lParam, CBasicFormattedString<char>("0x%04X", message));
    }
}

} // namespace

CWindowsMessage::CWindowsMessage(
    HWND const window, unsigned int message, unsigned long long wParam, long long lParam,
    char const * name)
    : m_hWnd(window), m_MessageCode(message), m_WParam(wParam), m_LParam(lParam), m_Name(name) {}

CWindowsMessage::CWindowsMessage(CWindowsMessage const & other) = default;
CWindowsMessage::~CWindowsMessage() = default;

CSafeString CWindowsMessage::GetDetailsStr() const { return CSafeString(""); }

CSafeString CWindowsMessage::GetDescriptionStr() const {
    std::string const suffix = m_Name.empty() ? "" : " (" + std::string(m_Name.get()) + ")";
    // Deliberate: a line feed in front, no blank behind the window, none at the end, and of each
    // number the low 32 bits. Pinned by CWindowsMessageTest.DescriptionIsOneLineBehindALineFeed and
    // CWindowsMessageTest.DescriptionShowsTheLow32BitsPaddedTo16Digits.
    CBasicFormattedString<char> const text(
        "\n0x%04X%s message received: hWnd=%u,WPARAM=%0*X, LPARAM=%0*X.", m_MessageCode, suffix,
        reinterpret_cast<std::uintptr_t>(m_hWnd), 16, m_WParam, 16, m_LParam);
    return CSafeString(text);
}

std::unique_ptr<CWindowsMessage, void (*)(CWindowsMessage *)> ConstructWindowsMessageOnHeap(
    HWND const window, unsigned int message, unsigned long long wParam, long long lParam) {
    return {Construct(window, message, wParam, lParam), DeleteWindowsMessageFromHeap};
}

void DeleteWindowsMessageFromHeap(CWindowsMessage * message) { delete message; }
