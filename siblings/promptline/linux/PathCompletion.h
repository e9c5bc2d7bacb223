// Paths as a person types them at a terminal.
#pragma once

#include <string>
#include <vector>

struct PathCompletion {
    // What can be added to the typed text without a doubt.
    std::wstring added;
    // The names that the text may become, sorted; folders end in a slash.
    std::vector<std::wstring> names;
};

// What is in the file system decides; hidden names only behind a dot.
PathCompletion CompletePath(std::wstring const & typed);

// The path with the home folder in the place of a leading "~/".
std::wstring ExpandedPath(std::wstring const & typed);

bool IsFile(std::wstring const & path);
