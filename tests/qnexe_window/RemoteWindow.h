// A window of another process, or of this one, driven and read by messages.
//
// Messages that take a record get one in the memory of the window's process. Waiting ends when the
// fact is there; a fact that never comes fails the test.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>

#include <richedit.h>

// True as soon as `fact` holds; false when it does not for a minute.
bool WaitFor(std::function<bool()> const & fact);

// UTF-8.
std::string Narrow(std::wstring const & text);

class RemoteWindow {
public:
    explicit RemoteWindow(HWND window = nullptr) : m_Window(window) {}

    HWND Handle() const { return m_Window; }
    explicit operator bool() const { return m_Window != nullptr; }

    RemoteWindow Child(int number) const { return RemoteWindow(GetDlgItem(m_Window, number)); }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageW(m_Window, message, wParam, lParam);
    }

    // As a menu item or a button does; returns at once.
    void Command(int number) const { PostMessageW(m_Window, WM_COMMAND, WPARAM(number), 0); }

    std::wstring Text() const;
    void Text(std::wstring const & text) const;
    bool IsEnabled() const { return IsWindowEnabled(m_Window) != 0; }

    // A message whose lParam is a record, which comes back as the window has left it.
    template <typename Record>
    Record Ask(UINT message, WPARAM wParam, Record record) const {
        AskBytes(message, wParam, &record, sizeof record);
        return record;
    }

    // A part of a status bar.
    std::wstring Part(int part) const;

    // Of a rich-edit control: how the characters look, and the text in which ends of lines are one
    // character each, as the control counts them.
    CHARFORMAT2W LookOf(LONG first, LONG last) const;
    CHARFORMAT2W LookOf(std::wstring const & text) const;
    std::wstring RichText() const;

    // The dialog that this window has put up; waits for it.
    RemoteWindow Dialog() const;

    // Of a dialog: closes it by this command, and waits until it is gone.
    void End(int command) const;

    // Of the system's dialog for files: takes this file.
    void TakeFile(std::string const & name) const;

private:
    void AskBytes(UINT message, WPARAM wParam, void * bytes, std::size_t size) const;

    HWND m_Window;
};
