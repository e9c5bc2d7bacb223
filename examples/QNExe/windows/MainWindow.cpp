// The operator's window.
#include "examples/QNExe/windows/MainWindow.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <commctrl.h>

#include "examples/QNExe/windows/Controls.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "examples/QNExe/windows/WindowPlace.h"
#include "siblings/Keelbase.h"

namespace {

// Pixels at 96 dots an inch.
constexpr int Gap = 7;
constexpr int SmallestWidth = 760;
constexpr int SmallestHeight = 260;

// What the log shows without scrolling.
constexpr int Columns = 104;
constexpr int Lines = 32;

constexpr wchar_t Title[] = L"QNExe";

struct Button {
    int command;
    wchar_t const * label;
};
constexpr Button Buttons[] = {
    {ID_RUN_START, L"&Start"}, {ID_RUN_ABORT, L"&Abort"}, {ID_LOG_SAVE, L"Save &log..."}};

[[noreturn]] void Fail() {
    throw std::runtime_error(
        "the window cannot be made (error " + std::to_string(GetLastError())
        + "). Start the program in a session that may have windows, or without --window.");
}

HMENU Menu() { return LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_MAIN_MENU)); }

RECT WorkArea(HWND window) {
    MONITORINFO info = {};
    info.cbSize = sizeof info;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &info);
    return info.rcWork;
}

} // namespace

MainWindow::Class::Class() {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = Receive;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hIcon = LoadIconW(nullptr, MAKEINTRESOURCEW(32512));
    description.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = ClassName;
    if (RegisterClassExW(&description) == 0) Fail();
}

MainWindow::Class::~Class() { UnregisterClassW(ClassName, GetModuleHandleW(nullptr)); }

MainWindow::MainWindow(Commands commands) : m_Commands(std::move(commands)) {
    INITCOMMONCONTROLSEX const controls{
        sizeof controls, ICC_BAR_CLASSES | ICC_PROGRESS_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    m_Handle = CreateWindowExW(
        WS_EX_CONTROLPARENT, ClassName, Title, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, Menu(), GetModuleHandleW(nullptr),
        this);
    if (m_Handle == nullptr) Fail();
    Create();
}

MainWindow::~MainWindow() {
    StoreWindowPlace(m_Handle);
    m_Log.reset();
    SetWindowLongPtrW(m_Handle, GWLP_USERDATA, 0);
    DestroyWindow(m_Handle);
}

// The order of the controls is the order of the Tab key.
void MainWindow::Create() {
    m_Keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_MAIN_KEYS));
    m_Dpi = GetDpiForWindow(m_Handle);
    m_Font.emplace(m_Dpi);
    for (auto const & [command, label] : Buttons)
        MakeControl(m_Handle, L"BUTTON", label, BS_PUSHBUTTON | WS_TABSTOP, command);
    MakeControl(
        m_Handle, L"STATIC", L"", SS_LEFT | SS_NOPREFIX | SS_CENTERIMAGE | SS_PATHELLIPSIS,
        ID_SUITE_NAME);
    m_Log.emplace(m_Handle);
    m_Log->SetDpi(m_Dpi);
    m_Progress.emplace(m_Handle);
    m_Counts.emplace(m_Handle);
    m_Counts->Show({});
}

void MainWindow::Show() {
    Layout();
    if (!RestoreWindowPlace(m_Handle)) {
        RECT const work = WorkArea(m_Handle);
        SIZE const size = ContentSize();
        SetWindowPos(
            m_Handle, nullptr, 0, 0, std::min(size.cx, work.right - work.left),
            std::min(size.cy, work.bottom - work.top), SWP_NOMOVE | SWP_NOZORDER);
        ShowWindow(m_Handle, SW_SHOWNORMAL);
    }
    SetFocus(GetDlgItem(m_Handle, ID_RUN_START));
    UpdateWindow(m_Handle);
}

void MainWindow::Enable(int command, bool on) {
    EnableMenuItem(
        GetMenu(m_Handle), static_cast<UINT>(command), on ? MF_ENABLED : UINT{MF_GRAYED});
    HWND const button = GetDlgItem(m_Handle, command);
    if (button == nullptr) return;
    // The keyboard does not stay on a button that takes nothing any more.
    if (!on && GetFocus() == button) SetFocus(m_Log->Handle());
    EnableWindow(button, on);
}

void MainWindow::ShowSuite(std::string const & name) {
    ControlText(m_Handle, ID_SUITE_NAME, name.empty() ? "No suite chosen" : name);
}

bool MainWindow::TakesMessage(MSG & message) {
    if (message.hwnd != m_Handle && IsChild(m_Handle, message.hwnd) == 0) return false;
    if (TranslateAcceleratorW(m_Handle, m_Keys, &message) != 0) return true;
    if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN && PressFocused()) return true;
    // The log would keep the key.
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB) {
        bool const back = GetKeyState(VK_SHIFT) < 0;
        SetFocus(GetNextDlgTabItem(m_Handle, GetFocus(), back));
        return true;
    }
    return IsDialogMessageW(m_Handle, &message) != 0;
}

// A window that is no dialog has no default button that the Enter key could press.
bool MainWindow::PressFocused() const {
    HWND const focused = GetFocus();
    for (auto const & button : Buttons) {
        if (GetDlgCtrlID(focused) != button.command) continue;
        SendMessageW(focused, BM_CLICK, 0, 0);
        return true;
    }
    return false;
}

LRESULT CALLBACK MainWindow::Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto const & given = *reinterpret_cast<CREATESTRUCTW const *>(lParam);
        auto * const made = static_cast<MainWindow *>(given.lpCreateParams);
        made->m_Handle = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
    }
    auto * const self = reinterpret_cast<MainWindow *>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr && self->m_Counts)
        if (auto const answer = self->Handle(message, wParam, lParam)) return *answer;
    return DefWindowProcW(window, message, wParam, lParam);
}

std::optional<LRESULT> MainWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND:
        // Controls tell of more than clicks.
        if (lParam == 0 || HIWORD(wParam) == BN_CLICKED) m_Commands(LOWORD(wParam));
        return 0;
    case WM_CLOSE:
        m_Commands(ID_WINDOW_CLOSE);
        return 0;
    case WM_SIZE:
        Layout();
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO *>(lParam)->ptMinTrackSize = {
            Scaled(SmallestWidth), Scaled(SmallestHeight)};
        return 0;
    case WM_DPICHANGED:
        OnDpiChanged(HIWORD(wParam), *reinterpret_cast<RECT const *>(lParam));
        return 0;
    case WM_SETCURSOR:
        if (m_Cursor == nullptr) return std::nullopt;
        ::SetCursor(m_Cursor);
        return TRUE;
    default:
        return std::nullopt;
    }
}

void MainWindow::OnDpiChanged(UINT dpi, RECT const & wanted) {
    m_Dpi = dpi;
    m_Font.emplace(dpi);
    m_Log->SetDpi(dpi);
    SetWindowPos(
        m_Handle, nullptr, wanted.left, wanted.top, wanted.right - wanted.left,
        wanted.bottom - wanted.top, SWP_NOZORDER | SWP_NOACTIVATE);
    Layout();
}

// From top to bottom: buttons and suite, log, progress, status bar.
void MainWindow::Layout() {
    int const gap = Scaled(Gap);
    int const row = RowHeight();
    m_Counts->Place(m_Font->Handle(), CountWidth());
    RECT area = {};
    GetClientRect(m_Handle, &area);
    area.bottom -= m_Counts->Height();
    PlaceButtons({area.left + gap, area.top + gap, area.right - gap, area.top + gap + row});
    int const progress = area.bottom - gap - row * 3 / 4;
    PlaceControl(
        m_Log->Handle(),
        {area.left + gap, area.top + 2 * gap + row, area.right - gap, progress - gap}, nullptr);
    m_Progress->Place(
        {area.left + gap, progress, area.right - gap, area.bottom - gap}, m_Font->Handle(), gap);
}

void MainWindow::PlaceButtons(RECT const & area) {
    int const width = ButtonWidth();
    LONG left = area.left;
    for (auto const & [command, label] : Buttons) {
        PlaceControl(
            GetDlgItem(m_Handle, command), {left, area.top, left + width, area.bottom},
            m_Font->Handle());
        left += width + Scaled(Gap);
    }
    PlaceControl(
        GetDlgItem(m_Handle, ID_SUITE_NAME),
        {left + Scaled(Gap), area.top, area.right, area.bottom}, m_Font->Handle());
}

int MainWindow::Scaled(int pixels) const {
    return MulDiv(pixels, static_cast<int>(m_Dpi), USER_DEFAULT_SCREEN_DPI);
}

int MainWindow::RowHeight() const { return m_Font->SizeOf(L"Save").cy + Scaled(2 * Gap); }

// Wide enough for the longest text of a button, and of a count.
int MainWindow::ButtonWidth() const { return m_Font->SizeOf(L"Save log...").cx + Scaled(4 * Gap); }

int MainWindow::CountWidth() const {
    return m_Font->SizeOf(L"Tests passed: 00000").cx + Scaled(Gap);
}

SIZE MainWindow::ContentSize() const {
    SIZE const log = m_Log->SizeOf(Columns, Lines);
    int const gap = Scaled(Gap);
    RECT area{0, 0, log.cx + 4 * gap + GetSystemMetrics(SM_CXVSCROLL), 0};
    area.bottom = log.cy + 6 * gap + 2 * RowHeight() + m_Counts->Height();
    AdjustWindowRectExForDpi(&area, WS_OVERLAPPEDWINDOW, TRUE, WS_EX_CONTROLPARENT, m_Dpi);
    return {area.right - area.left, area.bottom - area.top};
}
