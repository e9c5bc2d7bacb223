// How far a run is: a bar, the label of what runs, the time that it has taken.
//
// For the window thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include <windows.h>

#include "examples/QNExe/view/StatusLine.h"

class ProgressPane {
public:
    // The controls become children of `parent` and go with it.
    explicit ProgressPane(HWND parent);

    void Show(Progress const & progress);

    // The clock counts from Start to Stop. A test that sets a progress time, in seconds, has that
    // shown in its place.
    void Start();
    void Stop() { m_Runs = false; }
    void ShowTime(unsigned int givenSeconds);

    void Place(RECT const & area, HFONT font, int gap);

private:
    using Clock = std::chrono::steady_clock;

    HWND m_Bar;
    HWND m_Label;
    HWND m_Time;
    Clock::time_point m_Start;
    bool m_Runs = false;
    std::optional<unsigned int> m_Shown;
};

// "0:07", "12:34", "1:02:03".
std::wstring TimeText(unsigned int seconds);
