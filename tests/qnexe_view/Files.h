// Streams into files that go with them.
#pragma once

#include <cstdio>
#include <memory>

struct CloseFile {
    void operator()(std::FILE * file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

inline File TemporaryFile() { return File(std::tmpfile()); }
