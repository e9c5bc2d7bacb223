// Lets streams of the C library fail, whichever function writes to them.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <utility>

#include "platform/Wrap.h"

MORVEX_WRAPPED(fopen)
MORVEX_WRAPPED(fclose)
MORVEX_WRAPPED(fflush)
MORVEX_WRAPPED(fputc)
MORVEX_WRAPPED(fputs)
MORVEX_WRAPPED(fwrite)

// Which writing function fails.
enum class Fault { Put, PutCharacter, Write, Flush, All };

// Fails for the streams that `hits` picks; counts how often it did.
class StreamFault {
public:
    using Filter = std::function<bool(std::FILE *)>;

    explicit StreamFault(
        Fault fault, Filter hits = [](std::FILE *) { return true; })
        : m_Fault(fault), m_Hits(std::move(hits)) {}
    StreamFault(StreamFault const &) = delete;
    StreamFault & operator=(StreamFault const &) = delete;

    int Count() const { return m_Count; }

private:
    bool Fails(Fault function, std::FILE * stream) {
        if (m_Fault != Fault::All && m_Fault != function) return false;
        if (!m_Hits(stream)) return false;
        ++m_Count;
        return true;
    }

    Fault const m_Fault;
    Filter const m_Hits;
    int m_Count = 0;

    Diversion<int(char const *, std::FILE *)> const m_Put{
        wrapped_fputs, [this](char const * text, std::FILE * stream) {
            return Fails(Fault::Put, stream) ? EOF : wrapped_fputs.Real(text, stream);
        }};
    Diversion<int(int, std::FILE *)> const m_PutCharacter{
        wrapped_fputc, [this](int character, std::FILE * stream) {
            return Fails(Fault::PutCharacter, stream) ? EOF : wrapped_fputc.Real(character, stream);
        }};
    Diversion<std::size_t(void const *, std::size_t, std::size_t, std::FILE *)> const m_Write{
        wrapped_fwrite,
        [this](void const * data, std::size_t size, std::size_t count, std::FILE * stream) {
            return Fails(Fault::Write, stream) ? 0 : wrapped_fwrite.Real(data, size, count, stream);
        }};
    Diversion<int(std::FILE *)> const m_Flush{wrapped_fflush, [this](std::FILE * stream) {
                                                  return Fails(Fault::Flush, stream)
                                                             ? EOF
                                                             : wrapped_fflush.Real(stream);
                                              }};
};

// Keeps how files are opened and closed: "open <name> <mode>", "close". Opening can be made to
// fail.
class FileCalls {
public:
    FileCalls() = default;
    FileCalls(FileCalls const &) = delete;
    FileCalls & operator=(FileCalls const &) = delete;

    bool m_OpenFails = false;

    std::string Take() { return std::exchange(m_Calls, {}); }

private:
    std::string m_Calls;

    Diversion<std::FILE *(char const *, char const *)> const m_Open{
        wrapped_fopen, [this](char const * name, char const * mode) -> std::FILE * {
            m_Calls += std::string("open ") + name + ' ' + mode + ';';
            return m_OpenFails ? nullptr : wrapped_fopen.Real(name, mode);
        }};
    Diversion<int(std::FILE *)> const m_Close{wrapped_fclose, [this](std::FILE * stream) {
                                                  m_Calls += "close;";
                                                  return wrapped_fclose.Real(stream);
                                              }};
};
