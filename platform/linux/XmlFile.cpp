// Opening and reading files of XML.
#include "platform/linux/XmlFile.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;

std::int64_t Nanoseconds(timespec const & time) {
    return time.tv_sec * NanosecondsPerSecond + time.tv_nsec;
}

XmlFileState StateFrom(struct stat const & status) {
    return {
        true,
        status.st_dev,
        status.st_ino,
        status.st_size,
        Nanoseconds(status.st_mtim),
        Nanoseconds(status.st_ctim)};
}

XmlFailure Refuse(std::string const & path, HRESULT code, char const * reason) {
    XmlFailure failure;
    failure.code = code;
    failure.reason = reason;
    failure.file = path;
    return failure;
}

XmlFailure RefuseByError(std::string const & path, int error) {
    if (error == ENOENT || error == ENOTDIR)
        return Refuse(path, xml_error::FileNotFound, "The file does not exist.");
    if (error == EACCES || error == EPERM)
        return Refuse(path, E_ACCESSDENIED, "The file may not be read.");
    return Refuse(path, xml_error::ReadFault, "The file cannot be opened.");
}

} // namespace

XmlFileState StateOf(std::string const & path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? StateFrom(status) : XmlFileState{};
}

std::string NativePath(std::string name) {
    std::ranges::replace(name, '\\', '/');
    return name;
}

XmlFile::~XmlFile() {
    if (m_Descriptor != -1) close(m_Descriptor);
}

XmlFailure XmlFile::Open(std::string const & path, std::int64_t limit) {
    m_Left = limit;
    // A pipe that nobody writes to would block here for ever.
    m_Descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (m_Descriptor == -1) return RefuseByError(path, errno);
    struct stat status;
    if (fstat(m_Descriptor, &status) != 0) return RefuseByError(path, errno);
    if (!S_ISREG(status.st_mode)) return Refuse(path, E_ACCESSDENIED, "It is not a file.");
    m_State = StateFrom(status);
    if (m_State.size > limit)
        return Refuse(path, xml_error::FileTooLarge, "The file is too large.");
    return {};
}

int XmlFile::Read(char * buffer, int size) {
    ssize_t count = 0;
    do {
        count = read(m_Descriptor, buffer, static_cast<std::size_t>(size));
    } while (count == -1 && errno == EINTR);
    if (count == -1) m_Failure = xml_error::ReadFault;
    m_Left -= std::max<ssize_t>(count, 0);
    // It may have grown since it was opened.
    if (m_Left < 0) m_Failure = xml_error::FileTooLarge;
    return m_Failure == S_OK ? static_cast<int>(count) : -1;
}
