// Making and placing the controls of a window.
#include "examples/QNExe/windows/Controls.h"

#include <cstddef>
#include <stdexcept>

#include "siblings/Keelbase.h"

HWND MakeControl(
    HWND parent, wchar_t const * windowClass, wchar_t const * text, DWORD style, int number) {
    HWND const control = CreateWindowExW(
        0, windowClass, text, style | WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, parent,
        reinterpret_cast<HMENU>(INT_PTR{number}), nullptr, nullptr);
    if (control == nullptr) throw std::runtime_error("a control of the window cannot be made.");
    return control;
}

void PlaceControl(HWND control, RECT const & area, HFONT font) {
    if (font != nullptr) SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    SetWindowPos(
        control, nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
        SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(control, nullptr, TRUE);
}

std::string ControlText(HWND window, int number) {
    HWND const control = GetDlgItem(window, number);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
    return *Utf16ToUtf8(text);
}

void ControlText(HWND window, int number, std::string const & text) {
    SetDlgItemTextW(window, number, Utf8ToUtf16(text)->c_str());
}
