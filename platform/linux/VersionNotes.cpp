// Finding a binary by the name that it bears on Windows, and its version inside.
#include "platform/linux/VersionNotes.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <gelf.h>
#include <libelf.h>
#include <link.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// As cmake/VersionNote.cpp.in writes it, terminators included.
constexpr std::string_view NoteName("Morvex", 7);
constexpr ElfW(Word) NoteType = 1;

constexpr std::size_t Aligned(std::size_t size, std::size_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
}

// The version among the notes of one segment; empty when there is none.
std::string VersionAmong(std::string_view notes, std::size_t alignment) {
    if (alignment != 8) alignment = 4;
    ElfW(Nhdr) note;
    while (notes.size() >= sizeof note) {
        std::memcpy(&note, notes.data(), sizeof note);
        std::size_t const text = Aligned(sizeof note + note.n_namesz, alignment);
        std::size_t const end = Aligned(text + note.n_descsz, alignment);
        if (end > notes.size()) break;
        if (note.n_type == NoteType && notes.substr(sizeof note, note.n_namesz) == NoteName)
            return std::string(notes.data() + text, strnlen(notes.data() + text, note.n_descsz));
        notes.remove_prefix(end);
    }
    return {};
}

// What a file on Windows is called here: the program "Name", or the library "libname.so", behind
// which the loader's own numbers may stand.
class Wanted {
public:
    explicit Wanted(std::string const & name) : m_Name(name) {
        if (TakeSuffix(".dll"))
            m_Name = "lib" + Lowered(m_Name) + ".so";
        else
            TakeSuffix(".exe");
    }

    bool IsCalled(std::string_view file) const {
        if (!file.starts_with(m_Name)) return false;
        std::string_view const rest = file.substr(m_Name.size());
        return rest.empty() || (m_Name.ends_with(".so") && rest[0] == '.');
    }

private:
    static std::string Lowered(std::string text) {
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char letter) {
            return static_cast<char>(std::tolower(letter));
        });
        return text;
    }

    bool TakeSuffix(std::string_view suffix) {
        if (!Lowered(m_Name).ends_with(suffix)) return false;
        m_Name.resize(m_Name.size() - suffix.size());
        return true;
    }

    std::string m_Name;
};

fs::path ProgramFile() {
    std::error_code none;
    std::string const file = fs::read_symlink("/proc/self/exe", none).string();
    // A program that was replaced while it ran.
    constexpr std::string_view deleted = " (deleted)";
    return file.ends_with(deleted) ? file.substr(0, file.size() - deleted.size()) : file;
}

struct LoadedSearch {
    Wanted const & wanted;
    std::string program;
    std::optional<std::string> version;
};

std::string_view BaseName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::string VersionInMemory(dl_phdr_info const & module) {
    for (auto const * header = module.dlpi_phdr; header != module.dlpi_phdr + module.dlpi_phnum;
         ++header) {
        if (header->p_type != PT_NOTE) continue;
        auto const address = module.dlpi_addr + header->p_vaddr;
        std::string_view const notes(reinterpret_cast<char const *>(address), header->p_memsz);
        std::string version = VersionAmong(notes, header->p_align);
        if (!version.empty()) return version;
    }
    return {};
}

// Of the main program the loader gives no name.
int LookAtLoaded(dl_phdr_info * module, std::size_t, void * context) {
    auto & search = *static_cast<LoadedSearch *>(context);
    std::string_view const name = module->dlpi_name;
    std::string_view const path = name.empty() ? std::string_view(search.program) : name;
    if (!search.wanted.IsCalled(BaseName(path))) return 0;
    search.version = VersionInMemory(*module);
    return 1;
}

std::optional<std::string> VersionOfLoaded(Wanted const & wanted) {
    LoadedSearch search{wanted, ProgramFile().string(), std::nullopt};
    dl_iterate_phdr(LookAtLoaded, &search);
    return search.version;
}

// An ELF file that is open for reading, or nothing.
class ElfFile {
public:
    explicit ElfFile(fs::path const & file)
        : m_Descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        elf_version(EV_CURRENT);
        if (m_Descriptor >= 0) m_Elf = elf_begin(m_Descriptor, ELF_C_READ, nullptr);
    }
    ElfFile(ElfFile const &) = delete;
    ElfFile & operator=(ElfFile const &) = delete;
    ~ElfFile() {
        elf_end(m_Elf);
        if (m_Descriptor >= 0) close(m_Descriptor);
    }

    bool IsOpen() const { return m_Descriptor >= 0; }

    std::string Version() const {
        std::size_t count = 0;
        if (m_Elf == nullptr || elf_getphdrnum(m_Elf, &count) != 0) return {};
        for (std::size_t i = 0; i != count; ++i) {
            std::string version = VersionInSegment(static_cast<int>(i));
            if (!version.empty()) return version;
        }
        return {};
    }

private:
    std::string VersionInSegment(int index) const {
        GElf_Phdr header;
        if (gelf_getphdr(m_Elf, index, &header) == nullptr || header.p_type != PT_NOTE) return {};
        Elf_Data const * const data = elf_getdata_rawchunk(
            m_Elf, static_cast<std::int64_t>(header.p_offset), header.p_filesz, ELF_T_BYTE);
        if (data == nullptr || data->d_buf == nullptr) return {};
        return VersionAmong({static_cast<char const *>(data->d_buf), data->d_size}, header.p_align);
    }

    int m_Descriptor;
    Elf * m_Elf = nullptr;
};

std::optional<std::string> VersionOfFile(fs::path const & file) {
    std::error_code none;
    if (!fs::is_regular_file(file, none)) return std::nullopt;
    ElfFile const elf(file);
    if (!elf.IsOpen()) return std::nullopt;
    return elf.Version();
}

// The first by name of the files in a folder that are meant; empty when there is none.
fs::path FileInFolder(fs::path const & folder, Wanted const & wanted) {
    fs::path first;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (!wanted.IsCalled(entry->path().filename().string())) continue;
        if (first.empty() || entry->path() < first) first = entry->path();
    }
    return first;
}

fs::path FolderOfThisLibrary() {
    Dl_info about;
    if (dladdr(NoteName.data(), &about) == 0 || about.dli_fname == nullptr) return {};
    return fs::path(about.dli_fname).parent_path();
}

void AddLoadersFolders(std::vector<fs::path> & folders) {
    void * const program = dlopen(nullptr, RTLD_LAZY);
    if (program == nullptr) return;
    Dl_serinfo size;
    if (dlinfo(program, RTLD_DI_SERINFOSIZE, &size) == 0) {
        std::vector<std::max_align_t> room(size.dls_size / sizeof(std::max_align_t) + 1);
        auto * const list = reinterpret_cast<Dl_serinfo *>(room.data());
        *list = size;
        if (dlinfo(program, RTLD_DI_SERINFO, list) == 0)
            for (unsigned i = 0; i != list->dls_cnt; ++i)
                folders.emplace_back(list->dls_serpath[i].dls_name);
    }
    dlclose(program);
}

std::vector<fs::path> SearchedFolders() {
    std::vector<fs::path> folders{ProgramFile().parent_path(), FolderOfThisLibrary()};
    AddLoadersFolders(folders);
    return folders;
}

} // namespace

std::optional<std::string> FindVersion(std::string const & file) {
    if (file.find('/') != file.npos) return VersionOfFile(file);
    Wanted const wanted(file);
    if (auto version = VersionOfLoaded(wanted)) return version;
    for (fs::path const & folder : SearchedFolders()) {
        fs::path const found = FileInFolder(folder, wanted);
        if (!found.empty()) return VersionOfFile(found);
    }
    return std::nullopt;
}
