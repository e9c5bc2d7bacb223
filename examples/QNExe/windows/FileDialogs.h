// The system's dialogs for files and folders. Names are UTF-8.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <windows.h>

struct FileKind {
    wchar_t const * title;
    // Pairs of a description and its patterns, each ended by a NUL.
    wchar_t const * filter;
};

// Files that exist; empty when the operator has cancelled.
std::vector<std::string> AskForFiles(HWND owner, FileKind const & kind, bool several);

struct SaveChoice {
    std::string file;
    // Which pair of the filter, counted from 0.
    unsigned kind;
};

// Asks before an existing file is chosen. `extension` is added to a name that has none.
std::optional<SaveChoice>
AskForNewFile(HWND owner, FileKind const & kind, wchar_t const * extension);

std::optional<std::string> AskForFolder(HWND owner, wchar_t const * title);
