// A file by the system's own calls: at any place, and with names that are UTF-8.
//
// Each write is one call of the system. Failures throw std::system_error. For one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class RawFile {
public:
    enum class Open {
        // std::errc::file_exists when there is a file of the name.
        New,
        // Empty, whether it was there or not.
        Empty,
        // As it is.
        Existing,
    };

    RawFile(std::string const & name, Open how);
    RawFile(RawFile const &) = delete;
    RawFile & operator=(RawFile const &) = delete;
    ~RawFile() { Close(); }

    void WriteAt(std::uint64_t offset, std::string_view bytes);

    // How many bytes were read: fewer than asked for only at the end of the file.
    std::size_t ReadAt(std::uint64_t offset, char * bytes, std::size_t size);

    // Nothing may be done with the file any more.
    void Close() noexcept;

private:
    std::intptr_t m_Handle;
};

// Gives a file another name in the same folder, in place of a file that bears it.
void RenameFile(std::string const & from, std::string const & to);

void RemoveFile(std::string const & name) noexcept;

// Makes `name` a link to its neighbour `target`. False: the system does not let us make links.
bool LinkFile(std::string const & name, std::string const & target);

// What bears a name.
enum class FileKind { None, Link, File, Folder };
FileKind KindOfFile(std::string const & name);
