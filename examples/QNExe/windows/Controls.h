// Making and placing the controls of a window, and the texts in them.
#pragma once

#include <string>

#include <windows.h>

// A visible child under its number. Throws std::runtime_error when the system has none to give.
HWND MakeControl(
    HWND parent, wchar_t const * windowClass, wchar_t const * text, DWORD style, int number);

// An area in pixels of the parent; a null font leaves the control its own.
void PlaceControl(HWND control, RECT const & area, HFONT font);

// A child's text, UTF-8.
std::string ControlText(HWND window, int number);
void ControlText(HWND window, int number, std::string const & text);
