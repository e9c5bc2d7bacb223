// Saving the log as the window shows it, where the operator wants it.
#pragma once

#include <string>

#include <windows.h>

class LogPane;

// Asks for a file and writes it: as UTF-8 text, or with its looks as RTF. What went wrong, and what
// to do about it; empty when the log was saved or the operator has cancelled.
std::string AskAndSaveLog(HWND owner, LogPane const & log);
