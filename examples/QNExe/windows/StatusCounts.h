// The status bar: how the run stands, and its counts.
//
// For the window thread.
#pragma once

#include <string>

#include <windows.h>

#include "examples/QNExe/view/VerdictCounts.h"

class StatusCounts {
public:
    // What stands in which part of the bar.
    enum Part { State, Passed, Failed, Failures, Aborts, Warnings, Count };

    // The bar becomes a child of `parent` and goes with it.
    explicit StatusCounts(HWND parent);

    void ShowState(std::wstring const & text);
    void Show(VerdictCounts const & counts);

    // Lays the bar along the lower edge of its parent.
    void Place(HFONT font, int partWidth);
    int Height() const;

private:
    void Set(Part part, wchar_t const * name, unsigned long count);

    HWND m_Bar;
};
