// The program QNExe with its window, as a child of a test.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "qnexe/ChildHost.h"
#include "qnexe_window/RemoteWindow.h"

// The program's windows that are up.
std::vector<HWND> MainWindows();

// Waits for one that was not there before; none when `gone` comes first.
RemoteWindow NewWindow(std::vector<HWND> const & before, std::function<bool()> const & gone);

class WindowChild : public ChildHost {
protected:
    // No place is kept from a test before.
    WindowChild();
    ~WindowChild() override;

    // Starts the program with --window and these arguments, and waits for its window.
    void Open(std::vector<std::string> arguments = {});
    void OpenWithSuite(std::string const & name) { Open({"--suite", Suite(name)}); }

    RemoteWindow Window() const { return m_Window; }
    RemoteWindow Log() const;
    std::wstring State() const;
    std::wstring Part(int part) const;

    // Waits until the log is whole and the window takes the next command.
    void AwaitState(std::wstring const & state);

    // Runs the suite to its end.
    void RunToState(std::wstring const & state);

    // Closes the window and waits for the program's end.
    std::optional<int> Close();

private:
    RemoteWindow m_Window;
};
