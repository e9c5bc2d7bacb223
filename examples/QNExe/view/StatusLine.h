// The line of progress under the log: how many tests are done, and which one runs.
//
// Pure.
#pragma once

#include <cstddef>
#include <string>

struct Progress {
    int position = 0;
    // How many positions there are; 0 or less: unknown, and no line is shown.
    int range = 0;
    // UTF-8.
    std::string label;

    bool operator==(Progress const &) const = default;
};

// "[#####---------------]  3/12  label", cut to what takes at most `columns` columns of a terminal,
// where a wide character takes two; empty without a range. What would move the cursor or is not
// printable is left out of the label.
std::string StatusLine(Progress const & progress, std::size_t columns);
