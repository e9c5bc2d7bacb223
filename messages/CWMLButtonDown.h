// A click of the left button: which keys were down, and where.
//
// One owner at a time, no lock, as CWindowsMessage.
#pragma once

#include "app/Export.h"
#include "messages/CWindowsMessage.h"

class MORVEX_API CWMLButtonDown : public CWindowsMessage {
public:
    // The code is taken as given; the name is "WM_LBUTTONDOWN".
    CWMLButtonDown(
        HWND const window, unsigned int message, unsigned long long wParam, long long lParam);
    CWMLButtonDown(CWMLButtonDown const &) = default;

    // The MK_ names of the flags that are set, and the position, in two lines without a final line
    // feed. Both coordinates are unsigned: left of the window's origin is a large number.
    CSafeString GetDetailsStr() const override;
};
