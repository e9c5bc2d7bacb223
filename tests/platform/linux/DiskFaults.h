// A disk that fails: the calls on files by which SQLite reads and writes give an error for a while.
//
// The program's own definitions stand in front of the C library's for every shared library in it.
// For one thread.
#pragma once

#include <cstddef>

enum class DiskCall { Read, Write, Sync, Truncate };

// From the call after `granted` good ones on, all of this kind fail until the scope ends.
class DiskFault {
public:
    DiskFault(DiskCall call, int systemError, std::size_t granted);
    DiskFault(DiskFault const &) = delete;
    DiskFault & operator=(DiskFault const &) = delete;
    ~DiskFault();

    // Whether a call has failed by now.
    bool WasMet() const;
};
