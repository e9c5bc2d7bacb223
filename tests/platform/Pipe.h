// A pipe with a stream at its writing end.
//
// Reading takes what has come, without the stream's own memory, and never waits; one thread may
// write while another reads. Write no more than a pipe holds (4096 bytes) between two readings.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

class Pipe {
public:
    Pipe() { Open(); }
    Pipe(Pipe const &) = delete;
    Pipe & operator=(Pipe const &) = delete;

#if defined(_WIN32)
    ~Pipe() {
        std::fclose(m_Stream);
        _close(m_Reading);
    }

    // What was written since the last call.
    std::string Taken() {
        std::string text;
        char bytes[4096];
        while (Waits()) {
            int const count = _read(m_Reading, bytes, sizeof bytes);
            if (count <= 0) break;
            text.append(bytes, static_cast<std::size_t>(count));
        }
        return text;
    }
#else
    ~Pipe() {
        std::fclose(m_Stream);
        close(m_Reading);
    }

    std::string Taken() {
        std::string text;
        char bytes[4096];
        for (ssize_t count; (count = read(m_Reading, bytes, sizeof bytes)) > 0;)
            text.append(bytes, static_cast<std::size_t>(count));
        return text;
    }
#endif

    std::FILE * Stream() const { return m_Stream; }

private:
#if defined(_WIN32)
    void Open() {
        int ends[2] = {-1, -1};
        if (_pipe(ends, 65536, _O_BINARY) != 0) std::abort();
        m_Reading = ends[0];
        m_Stream = _fdopen(ends[1], "wb");
    }

    bool Waits() const {
        DWORD count = 0;
        HANDLE const pipe = reinterpret_cast<HANDLE>(_get_osfhandle(m_Reading));
        return PeekNamedPipe(pipe, nullptr, 0, nullptr, &count, nullptr) != 0 && count > 0;
    }
#else
    void Open() {
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) std::abort();
        m_Reading = ends[0];
        m_Stream = fdopen(ends[1], "wb");
    }
#endif

    int m_Reading = -1;
    std::FILE * m_Stream = nullptr;
};
