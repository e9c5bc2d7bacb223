// The text of a click.
#include "messages/CWMLButtonDown.h"

#include <string>

namespace {

struct Flag {
    std::uint64_t value;
    char const * name;
};

constexpr Flag Flags[] = {
    {0x01, "MK_LBUTTON"}, {0x02, "MK_RBUTTON"},  {0x04, "MK_SHIFT"},    {0x08, "MK_CONTROL"},
    {0x10, "MK_MBUTTON"}, {0x20, "MK_XBUTTON1"}, {0x40, "MK_XBUTTON2"},
};

std::string NamesOf(std::uint64_t flags) {
    std::string names;
    for (Flag const & flag : Flags) {
        if ((flags & flag.value) == 0) continue;
        if (!names.empty()) names += ',';
        names += flag.name;
    }
    return names;
}

} // namespace

CWMLButtonDown::CWMLButtonDown(
    HWND const window, unsigned int message, unsigned long long wParam, long long lParam)
    : CWindowsMessage(window, message, wParam, lParam, "WM_LBUTTONDOWN") {}

CSafeString CWMLButtonDown::GetDetailsStr() const {
    auto const position = static_cast<std::uint64_t>(m_LParam);
    // Deliberate: the coordinates are unsigned.
    // Pinned by CWMLButtonDownTest.PositionBeforeTheOriginIsALargeNumber.
    CBasicFormattedString<char> const text(
        "  [%s]\n  x=%u, y=%u", NamesOf(m_WParam), static_cast<std::uint16_t>(position),
        static_cast<std::uint16_t>(position >> 16));
    return CSafeString(text);
}
