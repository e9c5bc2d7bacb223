// The system's English texts of its error codes, and the memory that they come in.
//
// A text belongs to the caller, who gives it to LocalFree. Every operation may be called from any
// thread.
#pragma once

#include "platform/BaseTypes.h"

#if !defined(_WIN32)

#include <cstddef>

using HLOCAL = void *;

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

inline constexpr UINT LMEM_FIXED = 0;

// The text of an error code or of an HRESULT, its line end included. `flags` hold the first and the
// last of the three above: `buffer` takes the address of a new text. Returns its length in bytes;
// 0, with `buffer` untouched and ERROR_MR_MID_NOT_FOUND when the code has no text, with
// ERROR_INVALID_PARAMETER for other flags. The language has no effect.
MORVEX_PLATFORM_API DWORD FormatMessageA(
    DWORD flags, void const * source, DWORD code, DWORD language, char * buffer, DWORD size,
    __builtin_va_list * arguments);

// Null: there is not so much memory.
MORVEX_PLATFORM_API HLOCAL LocalAlloc(UINT flags, std::size_t bytes);

// Null: freed. A null pointer is left alone.
MORVEX_PLATFORM_API HLOCAL LocalFree(HLOCAL memory);

#endif
