// A file's version as a block of values that are asked for by path.
#include <cstring>
#include <string>

#include <strings.h>

#include "platform/Version.h"
#include "platform/linux/VersionNotes.h"

namespace {

// American English in UTF-16, as the version resources on Windows say.
constexpr WORD Translation[] = {0x0409, 0x04B0};

constexpr char TranslationPath[] = "\\VarFileInfo\\Translation";
constexpr char FileVersionPath[] = "\\StringFileInfo\\040904B0\\FileVersion";

// In front of the text, which is filled up with zeros.
struct BlockHead {
    DWORD textLength;
    WORD translation[2];
};

// Empty, with the last error, when there is none.
std::string VersionOf(char const * file) {
    auto const version = FindVersion(file != nullptr ? file : "");
    if (!version)
        SetLastError(ERROR_FILE_NOT_FOUND);
    else if (version->empty())
        SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
    return version.value_or("");
}

DWORD SizeOf(std::string const & version) {
    return static_cast<DWORD>(sizeof(BlockHead) + version.size() + 1);
}

void Give(LPVOID * value, UINT * length, void const * found, std::size_t size) {
    *value = const_cast<void *>(found);
    *length = static_cast<UINT>(size);
}

} // namespace

DWORD GetFileVersionInfoSizeA(char const * file, DWORD * handle) {
    if (handle != nullptr) *handle = 0;
    std::string const version = VersionOf(file);
    return version.empty() ? 0 : SizeOf(version);
}

BOOL GetFileVersionInfoA(char const * file, DWORD, DWORD size, void * data) {
    std::string const version = VersionOf(file);
    if (version.empty()) return FALSE;
    if (size < SizeOf(version)) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    BlockHead head = {static_cast<DWORD>(version.size() + 1), {Translation[0], Translation[1]}};
    std::memcpy(data, &head, sizeof head);
    std::memcpy(static_cast<char *>(data) + sizeof head, version.c_str(), head.textLength);
    return TRUE;
}

BOOL VerQueryValueA(void const * block, char const * path, LPVOID * value, UINT * length) {
    auto const * const bytes = static_cast<char const *>(block);
    BlockHead head;
    std::memcpy(&head, bytes, sizeof head);
    if (strcasecmp(path, TranslationPath) == 0)
        Give(value, length, bytes + offsetof(BlockHead, translation), sizeof head.translation);
    else if (strcasecmp(path, FileVersionPath) == 0)
        Give(value, length, bytes + sizeof head, head.textLength);
    else {
        SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
        return FALSE;
    }
    return TRUE;
}
