// The calling thread's buffer for formatted texts as it stands, for the formatter to write in.
#pragma once

#include <cstddef>

namespace keelbase {

struct FormatBuffer {
    void * data; // null, with a size of 0, until the thread first asks for a buffer
    std::size_t size;
};

FormatBuffer CurrentFormatBuffer();

} // namespace keelbase
