// The system's English texts of its error codes, as Windows words them.
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "platform/Registry.h"

namespace {

struct ErrorText {
    DWORD code;
    std::string_view text;
};

constexpr ErrorText texts[] = {
    {0, "The operation completed successfully.\r\n"},
    {1, "Incorrect function.\r\n"},
    {2, "The system cannot find the file specified.\r\n"},
    {3, "The system cannot find the path specified.\r\n"},
    {4, "The system cannot open the file.\r\n"},
    {5, "Access is denied.\r\n"},
    {6, "The handle is invalid.\r\n"},
    {8, "Not enough memory resources are available to process this command.\r\n"},
    {13, "The data is invalid.\r\n"},
    {14, "Not enough memory resources are available to complete this operation.\r\n"},
    {18, "There are no more files.\r\n"},
    {50, "The request is not supported.\r\n"},
    {87, "The parameter is incorrect.\r\n"},
    {112, "There is not enough space on the disk.\r\n"},
    {120, "This function is not supported on this system.\r\n"},
    {122, "The data area passed to a system call is too small.\r\n"},
    {123, "The filename, directory name, or volume label syntax is incorrect.\r\n"},
    {126, "The specified module could not be found.\r\n"},
    {127, "The specified procedure could not be found.\r\n"},
    {161, "The specified path is invalid.\r\n"},
    {170, "The requested resource is in use.\r\n"},
    {183, "Cannot create a file when that file already exists.\r\n"},
    {234, "More data is available.\r\n"},
    {258, "The wait operation timed out.\r\n"},
    {259, "No more data is available.\r\n"},
    {998, "Invalid access to memory location.\r\n"},
    {1009, "The configuration registry database is corrupt.\r\n"},
    {1010, "The configuration registry key is invalid.\r\n"},
    {1011, "The configuration registry key could not be opened.\r\n"},
    {1012, "The configuration registry key could not be read.\r\n"},
    {1013, "The configuration registry key could not be written.\r\n"},
    {1014,
     "One of the files in the registry database had to be recovered by use of a log or alternate "
     "copy. The recovery was successful.\r\n"},
    {1015,
     "The registry is corrupted. The structure of one of the files containing registry data is "
     "corrupted, or the system's memory image of the file is corrupted, or the file could not be "
     "recovered because the alternate copy or log was absent or corrupted.\r\n"},
    {1016,
     "An I/O operation initiated by the registry failed unrecoverably. The registry could not read "
     "in, or write out, or flush, one of the files that contain the system's image of the "
     "registry.\r\n"},
    {1017,
     "The system has attempted to load or restore a file into the registry, but the specified file "
     "is not in a registry file format.\r\n"},
    {1018, "Illegal operation attempted on a registry key that has been marked for deletion.\r\n"},
    {1019, "System could not allocate the required space in a registry log.\r\n"},
    {1400, "Invalid window handle.\r\n"},
    {1407, "Cannot find window class.\r\n"},
    {1410, "Class already exists.\r\n"},
    {1411, "Class does not exist.\r\n"},
    {1412, "Class still has open windows.\r\n"},
    {1812, "The specified image file did not contain a resource section.\r\n"},
    {1816, "Not enough quota is available to process this command.\r\n"},
};

std::string_view TextOf(DWORD code) {
    for (auto const & [known, text] : texts)
        if (known == code) return text;
    return {};
}

DWORD Refuse(DWORD error) {
    SetLastError(error);
    return 0;
}

char * Copy(std::string_view text) {
    auto * const copy = static_cast<char *>(std::calloc(text.size() + 1, 1));
    if (copy == nullptr) throw std::bad_alloc();
    std::memcpy(copy, text.data(), text.size());
    return copy;
}

} // namespace

DWORD FormatMessageA(
    DWORD flags, void const *, DWORD code, DWORD, char * buffer, DWORD, va_list *) {
    constexpr DWORD supported = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;
    if (flags != supported || buffer == nullptr) return Refuse(ERROR_INVALID_PARAMETER);
    std::string_view const text = TextOf(code);
    if (text.empty()) return Refuse(ERROR_MR_MID_NOT_FOUND);
    // As published: with this flag the buffer's place takes the text's address.
    char * const copy = Copy(text);
    std::memcpy(buffer, &copy, sizeof copy);
    return static_cast<DWORD>(text.size());
}

void * LocalFree(void * memory) {
    std::free(memory);
    return nullptr;
}
