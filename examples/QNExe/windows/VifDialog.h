// The dialog in which the VIF files are chosen: one of the upstream-facing port, any number of
// downstream-facing ones.
#pragma once

#include <windows.h>

// Returns when the operator has saved or cancelled. Not while a run goes on.
void ShowVifDialog(HWND owner);
