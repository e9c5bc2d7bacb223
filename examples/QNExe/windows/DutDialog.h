// The dialog of the device under test: the four texts of its record, loaded, saved and cleared.
#pragma once

#include <windows.h>

// Returns when the operator has closed it. Not while a run goes on: the record is the run's then.
void ShowDutDialog(HWND owner);
