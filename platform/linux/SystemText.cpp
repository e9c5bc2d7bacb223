// The system's English texts of its error codes, as Windows words them.
#include "platform/SystemText.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace {

struct Text {
    DWORD code;
    char const * text;
};

// Sorted by code. An HRESULT of the form 0x8007xxxx stands here under its low half.
constexpr Text Texts[] = {
    {0, "The operation completed successfully."},
    {1, "Incorrect function."},
    {2, "The system cannot find the file specified."},
    {3, "The system cannot find the path specified."},
    {4, "The system cannot open the file."},
    {5, "Access is denied."},
    {6, "The handle is invalid."},
    {8, "Not enough memory resources are available to process this command."},
    {13, "The data is invalid."},
    {14, "Not enough memory resources are available to complete this operation."},
    {18, "There are no more files."},
    {30, "The system cannot read from the specified device."},
    {50, "The request is not supported."},
    {87, "The parameter is incorrect."},
    {112, "There is not enough space on the disk."},
    {120, "This function is not supported on this system."},
    {122, "The data area passed to a system call is too small."},
    {123, "The filename, directory name, or volume label syntax is incorrect."},
    {126, "The specified module could not be found."},
    {127, "The specified procedure could not be found."},
    {161, "The specified path is invalid."},
    {170, "The requested resource is in use."},
    {183, "Cannot create a file when that file already exists."},
    {223, "The file size exceeds the limit allowed and cannot be saved."},
    {234, "More data is available."},
    {258, "The wait operation timed out."},
    {259, "No more data is available."},
    {998, "Invalid access to memory location."},
    {1009, "The configuration registry database is corrupt."},
    {1010, "The configuration registry key is invalid."},
    {1011, "The configuration registry key could not be opened."},
    {1012, "The configuration registry key could not be read."},
    {1013, "The configuration registry key could not be written."},
    {1014, "One of the files in the registry database had to be recovered by use of a log or "
           "alternate copy. The recovery was successful."},
    {1015, "The registry is corrupted. The structure of one of the files containing registry data "
           "is corrupted, or the system's memory image of the file is corrupted, or the file could "
           "not be recovered because the alternate copy or log was absent or corrupted."},
    {1016, "An I/O operation initiated by the registry failed unrecoverably. The registry could "
           "not read in, or write out, or flush, one of the files that contain the system's image "
           "of the registry."},
    {1017, "The system has attempted to load or restore a file into the registry, but the "
           "specified file is not in a registry file format."},
    {1018, "Illegal operation attempted on a registry key that has been marked for deletion."},
    {1019, "System could not allocate the required space in a registry log."},
    {1400, "Invalid window handle."},
    {1407, "Cannot find window class."},
    {1410, "Class already exists."},
    {1411, "Class does not exist."},
    {1412, "Class still has open windows."},
    {1812, "The specified image file did not contain a resource section."},
    {1816, "Not enough quota is available to process this command."},
    {0x80004001, "Not implemented"},
    {0x80004002, "No such interface supported"},
    {0x80004003, "Invalid pointer"},
    {0x80004005, "Unspecified error"},
    {0x80010106, "Cannot change thread mode after it is set."},
    {0x80040110, "Class does not support aggregation (or class object is remote)"},
    {0x80040154, "Class not registered"},
    {0x800401F0, "CoInitialize has not been called."},
    {0x8007000E, "Not enough memory resources are available to complete this operation."},
};

constexpr DWORD FromCode = 0x80070000;

DWORD Plain(DWORD code) { return (code & 0xFFFF0000) == FromCode ? code & 0xFFFF : code; }

char const * FindText(DWORD code) {
    auto const found = std::ranges::lower_bound(Texts, code, {}, &Text::code);
    return found != std::end(Texts) && found->code == code ? found->text : nullptr;
}

DWORD Refuse(DWORD error) {
    SetLastError(error);
    return 0;
}

} // namespace

DWORD FormatMessageA(
    DWORD flags, void const *, DWORD code, DWORD, char * buffer, DWORD, __builtin_va_list *) {
    constexpr DWORD needed = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;
    if ((flags & ~FORMAT_MESSAGE_IGNORE_INSERTS) != needed || buffer == nullptr)
        return Refuse(ERROR_INVALID_PARAMETER);
    char const * const text = FindText(Plain(code));
    if (text == nullptr) return Refuse(ERROR_MR_MID_NOT_FOUND);
    std::size_t const length = std::strlen(text);
    char * const copy = static_cast<char *>(LocalAlloc(LMEM_FIXED, length + 3));
    if (copy == nullptr) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    std::memcpy(copy, text, length);
    std::memcpy(copy + length, "\r\n", 3);
    std::memcpy(buffer, &copy, sizeof copy);
    return static_cast<DWORD>(length + 2);
}

HLOCAL LocalAlloc(UINT, std::size_t bytes) { return std::malloc(bytes); }

HLOCAL LocalFree(HLOCAL memory) {
    std::free(memory);
    return nullptr;
}
