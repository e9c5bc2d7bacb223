// Where the window stood when it was closed, kept in the user's part of the registry.
#pragma once

#include <windows.h>

// What cannot be kept is forgotten: the window then starts as at first.
void StoreWindowPlace(HWND window);

// Shows the window where it was. False, and nothing is done, when nothing is kept or no screen
// shows that place any more.
bool RestoreWindowPlace(HWND window);
