// Places from the environment, and the creation of folders and files with their rights.
#include "platform/linux/RegistryFile.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t OwnFolder = 0700;
constexpr mode_t OwnFile = 0600;
// What is created below belongs to the folder's group.
constexpr mode_t SharedFolder = 02770;
constexpr mode_t SharedFile = 0660;

constexpr char MachineFolder[] = "/var/lib/morvex";
constexpr char MachineFile[] = "/registry.db";
constexpr char UserFile[] = "/user.db";

std::string Environment(char const * name) {
    char const * const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string UserFolder() {
    std::string const configuration = Environment("XDG_CONFIG_HOME");
    if (configuration.starts_with('/')) return configuration + "/morvex";
    return Environment("HOME") + "/.config/morvex";
}

RegistryPlace OwnPlace(std::string const & folder, char const * file) {
    return {folder, folder + file, OwnFolder, OwnFile};
}

[[noreturn]] void Fail(int systemError) {
    throw RegistryError{RegistryCodeOf(systemError, ERROR_CANTOPEN)};
}

// What cannot be made shows when the folder is made.
void CreateParents(RegistryPlace const & place) {
    constexpr mode_t passable = 0755;
    mode_t const mode = place.folderMode == OwnFolder ? OwnFolder : passable;
    std::filesystem::path parent;
    for (auto const & name : std::filesystem::path(place.folder).parent_path()) {
        parent /= name;
        mkdir(parent.c_str(), mode);
    }
}

// The mode goes around the process's mask.
void CreateFolder(RegistryPlace const & place) {
    CreateParents(place);
    if (mkdir(place.folder.c_str(), OwnFolder) == 0) {
        if (chmod(place.folder.c_str(), place.folderMode) != 0) Fail(errno);
    } else if (errno != EEXIST) {
        Fail(errno);
    }
}

void CreateFile(RegistryPlace const & place) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    int const file = open(place.file.c_str(), flags, place.fileMode);
    if (file < 0) {
        if (errno != EEXIST) Fail(errno);
        return;
    }
    int const result = fchmod(file, place.fileMode);
    int const error = errno;
    close(file);
    if (result != 0) Fail(error);
}

} // namespace

RegistryPlace MachinePlace() {
    std::string const own = Environment("QN_REGISTRY");
    if (!own.empty()) return OwnPlace(own, MachineFile);
    return {MachineFolder, std::string(MachineFolder) + MachineFile, SharedFolder, SharedFile};
}

RegistryPlace UserPlace() {
    std::string const own = Environment("QN_REGISTRY");
    return OwnPlace(own.empty() ? UserFolder() : own, UserFile);
}

bool RegistryFileExists(RegistryPlace const & place) {
    struct stat status;
    if (stat(place.file.c_str(), &status) == 0) return true;
    if (errno != ENOENT) Fail(errno);
    return false;
}

bool HasWriteAheadLog(RegistryPlace const & place) {
    int const file = open(place.file.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) Fail(errno);
    // The versions of the format that writers and readers must know; 2 is the write-ahead log.
    unsigned char versions[2] = {};
    ssize_t const size = pread(file, versions, sizeof versions, 18);
    close(file);
    return size == sizeof versions && versions[0] == 2 && versions[1] == 2;
}

void CreateRegistryFile(RegistryPlace const & place) {
    CreateFolder(place);
    CreateFile(place);
}

DWORD RegistryCodeOf(int systemError, DWORD otherwise) {
    switch (systemError) {
    case EACCES:
    case EPERM:
    case EROFS:
        return ERROR_ACCESS_DENIED;
    case ENOSPC:
    case EDQUOT:
        return ERROR_DISK_FULL;
    default:
        return otherwise;
    }
}
