// Files by POSIX.
#include "siblings/quillonlog/reports/RawFile.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[noreturn]] void Fail(int error) { throw std::system_error(error, std::generic_category()); }

int FlagsOf(RawFile::Open how) {
    switch (how) {
    case RawFile::Open::New:
        return O_CREAT | O_EXCL;
    case RawFile::Open::Empty:
        return O_CREAT | O_TRUNC;
    default:
        return 0;
    }
}

} // namespace

RawFile::RawFile(std::string const & name, Open how)
    : m_Handle(open(name.c_str(), O_RDWR | O_CLOEXEC | FlagsOf(how), 0666)) {
    if (m_Handle < 0) Fail(errno);
}

void RawFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const count = pwrite(
            static_cast<int>(m_Handle), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) Fail(errno);
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
}

std::size_t RawFile::ReadAt(std::uint64_t offset, char * bytes, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        ssize_t const count = pread(
            static_cast<int>(m_Handle), bytes + done, size - done,
            static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) Fail(errno);
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

void RawFile::Close() noexcept {
    if (m_Handle >= 0) close(static_cast<int>(m_Handle));
    m_Handle = -1;
}

void RenameFile(std::string const & from, std::string const & to) {
    if (rename(from.c_str(), to.c_str()) != 0) Fail(errno);
}

void RemoveFile(std::string const & name) noexcept { unlink(name.c_str()); }

bool LinkFile(std::string const & name, std::string const & target) {
    if (symlink(target.c_str(), name.c_str()) == 0) return true;
    if (errno == EPERM || errno == ENOSYS || errno == EOPNOTSUPP) return false;
    Fail(errno);
}

FileKind KindOfFile(std::string const & name) {
    struct stat about;
    if (lstat(name.c_str(), &about) != 0) return FileKind::None;
    if (S_ISLNK(about.st_mode)) return FileKind::Link;
    return S_ISDIR(about.st_mode) ? FileKind::Folder : FileKind::File;
}
