// The log of a run in a rich-edit control: text in its looks, growing at its end.
//
// Text waits in a queue and enters the control in small batches on a timer, so that the window
// answers meanwhile, however much came at once. For the window thread.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include <windows.h>

#include "examples/QNExe/view/TextLook.h"

class LogPane {
public:
    // The control becomes a child of `parent` and goes with it. Throws std::runtime_error when the
    // system has none to give.
    explicit LogPane(HWND parent);
    LogPane(LogPane const &) = delete;
    LogPane & operator=(LogPane const &) = delete;
    ~LogPane();

    HWND Handle() const { return m_Handle; }

    // What to call once all that was added is shown.
    void WhenShown(std::function<void()> call) { m_WhenShown = std::move(call); }

    void Add(std::vector<StyledText> const & pieces);
    void Clear();
    bool IsWaiting() const { return !m_Waiting.empty(); }

    // Scales the text from the system's resolution to the window's.
    void SetDpi(UINT dpi);

    // The width of so many characters and the height of so many lines, without scroll bars.
    SIZE SizeOf(int columns, int lines) const;

    // Text with line feeds, UTF-8; the whole with its looks as RTF.
    std::string Text() const;
    std::string RichText() const;

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR timer, DWORD);

    void ShowBatch();
    void Append(StyledText const & piece);
    bool IsAtEnd() const;

    HMODULE m_Library;
    HWND m_Handle = nullptr;
    std::deque<StyledText> m_Waiting;
    std::function<void()> m_WhenShown = [] {};
};
