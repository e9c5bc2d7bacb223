// Probes out of the notes of an ELF file.
#include "tests/platform/linux/TraceProbes.h"

#include <cstddef>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <vector>

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <unistd.h>

namespace {

struct Module {
    std::string path;
    std::uintptr_t base = 0;
};

Module PlatformLibrary() {
    Module found;
    dl_iterate_phdr(
        [](dl_phdr_info * info, std::size_t, void * out) {
            if (std::strstr(info->dlpi_name, "libmorvex-platform") != nullptr) {
                *static_cast<Module *>(out) = {info->dlpi_name, info->dlpi_addr};
            }
            return 0;
        },
        &found);
    return found;
}

class File {
public:
    explicit File(std::string const & path) {
        std::ifstream in(path, std::ios::binary | std::ios::ate);
        m_Bytes.resize(static_cast<std::size_t>(in.tellg()));
        in.seekg(0).read(m_Bytes.data(), static_cast<std::streamsize>(m_Bytes.size()));
    }

    template <typename T>
    T At(std::size_t offset) const {
        T value{};
        if (offset + sizeof(T) <= m_Bytes.size()) {
            std::memcpy(&value, m_Bytes.data() + offset, sizeof(T));
        }
        return value;
    }

    std::string TextAt(std::size_t offset) const { return m_Bytes.data() + offset; }

    // The section of that name; all zero when there is none.
    Elf64_Shdr Section(std::string const & name) const {
        auto const header = At<Elf64_Ehdr>(0);
        auto const sectionAt = [&](std::size_t index) {
            return At<Elf64_Shdr>(header.e_shoff + index * sizeof(Elf64_Shdr));
        };
        auto const names = sectionAt(header.e_shstrndx).sh_offset;
        for (std::size_t i = 0; i < header.e_shnum; ++i) {
            if (TextAt(names + sectionAt(i).sh_name) == name) {
                return sectionAt(i);
            }
        }
        return {};
    }

private:
    std::vector<char> m_Bytes;
};

// What a note says: three addresses, then provider, name and arguments as texts.
struct Content {
    std::uint64_t location;
    std::uint64_t base;
    std::uint64_t semaphore;
};

std::size_t Padded(std::size_t size) { return (size + 3) / 4 * 4; }

void AddProbe(
    std::map<std::string, Probe> & probes, File const & file, std::size_t offset,
    std::uintptr_t base) {
    auto const content = file.At<Content>(offset);
    auto const texts = offset + sizeof(Content);
    auto const provider = file.TextAt(texts);
    auto const name = file.TextAt(texts + provider.size() + 1);
    auto const arguments = file.TextAt(texts + provider.size() + 1 + name.size() + 1);
    probes[provider + ":" + name] = {base + content.location, base + content.semaphore, arguments};
}

std::map<std::string, Probe> ProbesIn(Module const & library) {
    File const file(library.path);
    auto const notes = file.Section(".note.stapsdt");
    std::map<std::string, Probe> probes;
    std::size_t note = notes.sh_offset;
    while (note < notes.sh_offset + notes.sh_size) {
        auto const header = file.At<Elf64_Nhdr>(note);
        auto const content = note + sizeof(header) + Padded(header.n_namesz);
        AddProbe(probes, file, content, library.base);
        note = content + Padded(header.n_descsz);
    }
    return probes;
}

class OwnMemory {
public:
    OwnMemory() : descriptor(open("/proc/self/mem", O_RDWR | O_CLOEXEC)) {}
    OwnMemory(OwnMemory const &) = delete;
    OwnMemory & operator=(OwnMemory const &) = delete;
    ~OwnMemory() { close(descriptor); }

    int const descriptor;
};

void Demand(bool isDone) {
    if (!isDone) {
        throw std::runtime_error("The process cannot reach its own memory.");
    }
}

} // namespace

std::map<std::string, Probe> const & PlatformProbes() {
    static auto const probes = ProbesIn(PlatformLibrary());
    return probes;
}

void PeekMemory(std::uintptr_t address, void * bytes, std::size_t size) {
    auto const count = pread(OwnMemory().descriptor, bytes, size, static_cast<off_t>(address));
    Demand(count == static_cast<ssize_t>(size));
}

void PokeMemory(std::uintptr_t address, void const * bytes, std::size_t size) {
    auto const count = pwrite(OwnMemory().descriptor, bytes, size, static_cast<off_t>(address));
    Demand(count == static_cast<ssize_t>(size));
}

Listener::Listener(std::string const & probe) : m_Semaphore(PlatformProbes().at(probe).semaphore) {
    Add(1);
}

Listener::~Listener() { Add(-1); }

void Listener::Add(int step) const {
    std::uint16_t count = 0;
    PeekMemory(m_Semaphore, &count, sizeof(count));
    count = static_cast<std::uint16_t>(count + step);
    PokeMemory(m_Semaphore, &count, sizeof(count));
}
