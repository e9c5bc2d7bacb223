// The operator's window: log, progress, buttons, counts, menu and keys.
//
// It shows and lays out; what a command does is its owner's. One a process, for the thread that
// made it.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <windows.h>

#include "examples/QNExe/windows/Fonts.h"
#include "examples/QNExe/windows/LogPane.h"
#include "examples/QNExe/windows/ProgressPane.h"
#include "examples/QNExe/windows/StatusCounts.h"

class MainWindow {
public:
    // What whoever drives the window finds it by.
    static constexpr wchar_t ClassName[] = L"QNExe.MainWindow";

    // Called with each command's number, and with ID_WINDOW_CLOSE when the window is to close.
    using Commands = std::function<void(int command)>;

    // Throws std::runtime_error when the system has no window to give. It is not shown yet.
    explicit MainWindow(Commands commands);
    MainWindow(MainWindow const &) = delete;
    MainWindow & operator=(MainWindow const &) = delete;
    ~MainWindow();

    HWND Handle() const { return m_Handle; }
    LogPane & Log() { return *m_Log; }
    ProgressPane & Progress() { return *m_Progress; }
    StatusCounts & Counts() { return *m_Counts; }

    // At the place where it was closed last, or as large as its content wants.
    void Show();

    // Switches menu item and button.
    void Enable(int command, bool on);
    void ShowSuite(std::string const & name);
    // The test's wish; null for the usual one.
    void SetCursor(HCURSOR cursor) { m_Cursor = cursor; }

    // Whether the message is one of the window's keys, which then has been done.
    bool TakesMessage(MSG & message);

private:
    struct Class {
        Class();
        Class(Class const &) = delete;
        Class & operator=(Class const &) = delete;
        ~Class();
    };

    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Create();
    bool PressFocused() const;
    void OnDpiChanged(UINT dpi, RECT const & wanted);
    void Layout();
    void PlaceButtons(RECT const & area);
    int Scaled(int pixels) const;
    int RowHeight() const;
    int ButtonWidth() const;
    int CountWidth() const;
    SIZE ContentSize() const;

    Class m_Class;
    Commands m_Commands;
    HWND m_Handle = nullptr;
    HACCEL m_Keys = nullptr;
    HCURSOR m_Cursor = nullptr;
    UINT m_Dpi = USER_DEFAULT_SCREEN_DPI;
    std::optional<Font> m_Font;
    std::optional<LogPane> m_Log;
    std::optional<ProgressPane> m_Progress;
    std::optional<StatusCounts> m_Counts;
};
