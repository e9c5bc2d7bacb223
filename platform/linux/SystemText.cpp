// The English texts of the error codes that these parts of the platform answer with.
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
    {2, "The system cannot find the file specified."},
    {3, "The system cannot find the path specified."},
    {5, "Access is denied."},
    {6, "The handle is invalid."},
    {8, "Not enough memory resources are available to process this command."},
    {14, "Not enough memory resources are available to complete this operation."},
    {30, "The system cannot read from the specified device."},
    {87, "The parameter is incorrect."},
    {223, "The file size exceeds the limit allowed and cannot be saved."},
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
    if ((flags & ~FORMAT_MESSAGE_IGNORE_INSERTS) != needed) return Refuse(ERROR_INVALID_PARAMETER);
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
