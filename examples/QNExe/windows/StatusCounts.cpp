// The status bar.
#include "examples/QNExe/windows/StatusCounts.h"

#include <array>

#include <commctrl.h>

#include "examples/QNExe/windows/Controls.h"
#include "examples/QNExe/windows/ResourceIds.h"

StatusCounts::StatusCounts(HWND parent)
    : m_Bar(MakeControl(parent, STATUSCLASSNAMEW, L"", SBARS_SIZEGRIP, ID_STATUS_BAR)) {
    // A part takes a text only once it is there.
    std::array<int, Count> ends = {};
    SendMessageW(m_Bar, SB_SETPARTS, Count, reinterpret_cast<LPARAM>(ends.data()));
}

void StatusCounts::ShowState(std::wstring const & text) {
    SendMessageW(m_Bar, SB_SETTEXTW, State, reinterpret_cast<LPARAM>(text.c_str()));
}

void StatusCounts::Show(VerdictCounts const & counts) {
    Set(Passed, L"Tests passed", static_cast<unsigned long>(counts.passed));
    Set(Failed, L"Tests failed", static_cast<unsigned long>(counts.failed));
    Set(Failures, L"Failures", counts.failures);
    Set(Aborts, L"Aborts", counts.aborts);
    Set(Warnings, L"Warnings", counts.warnings);
}

void StatusCounts::Set(Part part, wchar_t const * name, unsigned long count) {
    std::wstring const text = std::wstring(name) + L": " + std::to_wstring(count);
    wchar_t shown[64] = {};
    SendMessageW(m_Bar, SB_GETTEXTW, part, reinterpret_cast<LPARAM>(shown));
    // Setting a text paints the part anew.
    if (text != shown)
        SendMessageW(m_Bar, SB_SETTEXTW, part, reinterpret_cast<LPARAM>(text.c_str()));
}

void StatusCounts::Place(HFONT font, int partWidth) {
    SendMessageW(m_Bar, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    SendMessageW(m_Bar, WM_SIZE, 0, 0);
    RECT area = {};
    GetClientRect(m_Bar, &area);
    std::array<int, Count> ends = {};
    int end = area.right - GetSystemMetrics(SM_CXVSCROLL);
    for (int part = Count - 1; part >= 0; --part, end -= partWidth)
        ends[static_cast<std::size_t>(part)] = end;
    SendMessageW(m_Bar, SB_SETPARTS, Count, reinterpret_cast<LPARAM>(ends.data()));
}

int StatusCounts::Height() const {
    RECT area = {};
    GetWindowRect(m_Bar, &area);
    return area.bottom - area.top;
}
