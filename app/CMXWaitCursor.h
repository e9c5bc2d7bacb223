// Shows the wait cursor for a scope.
//
// The cursor to go back to is one for the process, in a place that each change swaps with the
// cursor on show: a second restore brings the wait cursor back, and nested objects restore in
// whatever order they end. For one thread at a time.
#pragma once

#include "app/Export.h"
#include "platform/Version.h"

class MORVEX_API CMXWaitCursor {
public:
    CMXWaitCursor();
    ~CMXWaitCursor();

    // Shows the cursor to go back to. Returns the one that it replaced, as SetCursor does.
    HICON__ * RestoreCursor();

    HICON__ * SetCursor(HICON__ * cursor);

private:
    static HICON__ * m_sPrev;
};
