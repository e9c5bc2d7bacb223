// Mutexes with a name: a file for each name that was ever used, and locks on two of its bytes.
//
// A holder keeps a shared lock on one byte; who comes asks whether anybody has one, and takes its
// own, under an exclusive lock on the other. The locks belong to the open file, so that two holders
// in one process see each other, and the kernel takes them away with the process, however it ends.
// The files stay: one that was removed under a holder would hide it from whoever comes next.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Synchronization.h"
#include "platform/linux/Handles.h"

namespace {

constexpr off_t GuardByte = 0;
constexpr off_t HolderByte = 1;

// Nobody holds the guard for longer than a few system calls, unless it was stopped there.
constexpr int GuardPatience = 1000;

constexpr char MachinesFolder[] = "/run/lock";
constexpr std::size_t LongestFileName = 255;

class File {
public:
    explicit File(int descriptor = -1) : m_Descriptor(descriptor) {}
    File(File && other) noexcept : m_Descriptor(std::exchange(other.m_Descriptor, -1)) {}
    File & operator=(File &&) = delete;
    ~File() {
        if (m_Descriptor >= 0) close(m_Descriptor);
    }

    bool IsOpen() const { return m_Descriptor >= 0; }
    int Descriptor() const { return m_Descriptor; }

    bool Lock(short kind, off_t byte) const { return Ask(F_OFD_SETLK, kind, byte) == kind; }

    // Whether another has any lock on the byte.
    bool IsLockedByAnother(off_t byte) const { return Ask(F_OFD_GETLK, F_WRLCK, byte) != F_UNLCK; }

private:
    // The kind of lock that the system left in the record; -1 when it refused.
    short Ask(int command, short kind, off_t byte) const {
        struct flock lock = {};
        lock.l_type = kind;
        lock.l_whence = SEEK_SET;
        lock.l_start = byte;
        lock.l_len = 1;
        return fcntl(m_Descriptor, command, &lock) == 0 ? lock.l_type : short{-1};
    }

    int m_Descriptor;
};

// Seen as long as the object lives. It is never waited for.
class NamedMutex : public HandleObject {
public:
    explicit NamedMutex(File file) : m_File(std::move(file)) {}

    DWORD Wait(DWORD) override {
        SetLastError(ERROR_INVALID_HANDLE);
        return WAIT_FAILED;
    }

private:
    File const m_File;
};

struct Place {
    std::string path;
    mode_t mode;
};

bool IsFolder(std::string const & path) {
    struct stat about;
    return stat(path.c_str(), &about) == 0 && S_ISDIR(about.st_mode);
}

// Where the user's own names are; without a session's folder, marked as the user's, among the
// machine's. All programs of a user come to the same answer, whatever started them.
std::string UsersPlace() {
    char const * const session = std::getenv("XDG_RUNTIME_DIR");
    if (session != nullptr && session[0] == '/') return std::string(session) + "/morvex.";
    // A conversion of the C++ library shares its digits with other libraries, which then cannot be
    // unloaded.
    char user[16];
    std::snprintf(user, sizeof user, "%u", static_cast<unsigned>(geteuid()));
    std::string const usual = std::string("/run/user/") + user;
    if (IsFolder(usual)) return usual + "/morvex.";
    return std::string(MachinesFolder) + "/morvex-" + user + '.';
}

// Names are told apart by every character, and a file's name has no '/'.
void AppendByte(std::string & text, unsigned char byte) {
    constexpr char digits[] = "0123456789ABCDEF";
    if (byte != '/' && byte != '%' && byte >= 0x20) {
        text += static_cast<char>(byte);
        return;
    }
    text += {'%', digits[byte >> 4], digits[byte & 15]};
}

// As UTF-8 would, a lone surrogate too.
void AppendCharacter(std::string & text, std::uint32_t character) {
    auto const tail = [&](int shift) {
        AppendByte(text, static_cast<unsigned char>(0x80 | (character >> shift & 0x3F)));
    };
    auto const head = [&](std::uint32_t mark, int shift) {
        AppendByte(text, static_cast<unsigned char>(mark | character >> shift));
    };
    if (character < 0x80) return head(0, 0);
    if (character < 0x800) return head(0xC0, 6), tail(0);
    if (character < 0x10000) return head(0xE0, 12), tail(6), tail(0);
    head(0xF0, 18), tail(12), tail(6), tail(0);
}

bool TakePrefix(std::wstring_view & name, std::wstring_view prefix) {
    if (!name.starts_with(prefix)) return false;
    name.remove_prefix(prefix.size());
    return true;
}

std::optional<Place> PlaceOf(std::wstring_view name) {
    bool const isMachines = TakePrefix(name, L"Global\\");
    if (!isMachines) TakePrefix(name, L"Local\\");
    if (name.find(L'\\') != name.npos) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return std::nullopt;
    }
    std::string path = isMachines ? std::string(MachinesFolder) + "/morvex." : UsersPlace();
    for (wchar_t const character : name)
        AppendCharacter(path, static_cast<std::uint32_t>(character));
    path += ".lock";
    if (path.size() - path.rfind('/') - 1 > LongestFileName) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return std::nullopt;
    }
    return Place{std::move(path), isMachines ? mode_t{0666} : mode_t{0600}};
}

DWORD ErrorOf(int number) {
    switch (number) {
    case EMFILE:
    case ENFILE:
        return ERROR_TOO_MANY_OPEN_FILES;
    case ENOENT:
    case ENOTDIR:
        return ERROR_PATH_NOT_FOUND;
    default:
        return ERROR_ACCESS_DENIED;
    }
}

constexpr int HowToOpen = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;

// The sticky bit keeps those who tidy a session's folder from removing the file.
int CreateFile(Place const & place) {
    int const file = open(place.path.c_str(), HowToOpen | O_CREAT | O_EXCL, place.mode);
    if (file >= 0) fchmod(file, place.mode | S_ISVTX);
    return file;
}

// Opens first, and then creates: in a folder that is open to all, the system may refuse to create
// what another user has created already. Whoever loses that race opens.
File OpenFile(Place const & place) {
    int file = open(place.path.c_str(), HowToOpen);
    if (file < 0 && errno == ENOENT) file = CreateFile(place);
    if (file < 0 && errno == EEXIST) file = open(place.path.c_str(), HowToOpen);
    if (file < 0) SetLastError(ErrorOf(errno));
    return File(file);
}

bool TakeGuard(File const & file) {
    for (int milliseconds = 0; milliseconds < GuardPatience; ++milliseconds) {
        if (file.Lock(F_WRLCK, GuardByte)) return true;
        Sleep(1);
    }
    SetLastError(ERROR_LOCK_VIOLATION);
    return false;
}

// Becomes a holder. Whether there was one already.
std::optional<bool> Join(File const & file) {
    if (!TakeGuard(file)) return std::nullopt;
    bool const existed = file.IsLockedByAnother(HolderByte);
    bool const joined = file.Lock(F_RDLCK, HolderByte);
    file.Lock(F_UNLCK, GuardByte);
    if (joined) return existed;
    SetLastError(ERROR_LOCK_VIOLATION);
    return std::nullopt;
}

HANDLE CreateNamed(wchar_t const * name) {
    auto const place = PlaceOf(name);
    if (!place) return nullptr;
    File file = OpenFile(*place);
    if (!file.IsOpen()) return nullptr;
    auto const existed = Join(file);
    if (!existed) return nullptr;
    HANDLE const handle = AddHandle(std::make_shared<NamedMutex>(std::move(file)));
    SetLastError(*existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return handle;
}

} // namespace

HANDLE CreateMutexW(_SECURITY_ATTRIBUTES * attributes, BOOL initiallyOwned, wchar_t const * name) {
    if (name != nullptr && name[0] != L'\0') {
        if (initiallyOwned == FALSE) return CreateNamed(name);
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    HANDLE const handle = CreateMutexA(attributes, initiallyOwned, nullptr);
    if (handle != nullptr) SetLastError(ERROR_SUCCESS);
    return handle;
}
