// The swap of two cursors.
#include "app/CMXWaitCursor.h"

constinit HICON__ * CMXWaitCursor::m_sPrev = nullptr;

CMXWaitCursor::CMXWaitCursor() { SetCursor(LoadCursorA(nullptr, IDC_WAIT)); }

// Deliberate: after a restore of the caller's this brings the wait cursor back.
// Pinned by CMXWaitCursorTest.ASecondRestoreBringsTheWaitCursorBack.
CMXWaitCursor::~CMXWaitCursor() { RestoreCursor(); }

HICON__ * CMXWaitCursor::RestoreCursor() { return SetCursor(m_sPrev); }

HICON__ * CMXWaitCursor::SetCursor(HICON__ * cursor) { return m_sPrev = ::SetCursor(cursor); }
