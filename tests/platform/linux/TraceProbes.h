// The trace probes of the platform library as a tracer finds them, and one that only listens.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

// Addresses in this process.
struct Probe {
    std::uintptr_t location = 0;
    std::uintptr_t semaphore = 0;
    // Where the arguments are when the probe fires, as the compiler has written it down.
    std::string arguments;
};

// By provider and name, as "morvex:log".
std::map<std::string, Probe> const & PlatformProbes();

// Reads or writes memory of this process whatever its protection, as a tracer does from outside.
void PeekMemory(std::uintptr_t address, void * bytes, std::size_t size);
void PokeMemory(std::uintptr_t address, void const * bytes, std::size_t size);

// Counts the probe's semaphore up, and down again at the end.
class Listener {
public:
    explicit Listener(std::string const & probe);
    Listener(Listener const &) = delete;
    Listener & operator=(Listener const &) = delete;
    ~Listener();

private:
    void Add(int step) const;

    std::uintptr_t m_Semaphore;
};
