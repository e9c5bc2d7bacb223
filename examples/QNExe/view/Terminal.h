// What the system says of the stream that the log is shown on.
//
// One implementation a platform. May be called from any thread.
#pragma once

#include <cstddef>
#include <cstdio>

#include "examples/QNExe/view/ColorChoice.h"

StreamKind KindOf(std::FILE * stream);

// The terminal's width in columns; 80 for what is no terminal.
std::size_t ColumnsOf(std::FILE * stream);

// Makes a terminal understand control sequences and UTF-8. False: it cannot.
bool EnableControlSequences(std::FILE * stream);
