// The plain types and values that every family of platform operations speaks in.
//
// On Windows they are the system's own. Elsewhere they are declared here with the published
// widths: DWORD, LONG and COLORREF have 32 bits everywhere, whatever `long` has.
#pragma once

#if defined(_WIN32)

#include <windows.h>

#define MORVEX_SYMBOL_EXPORT __declspec(dllexport)
#define MORVEX_SYMBOL_IMPORT __declspec(dllimport)

#else

#include <cstdint>

#define MORVEX_SYMBOL_EXPORT __attribute__((visibility("default")))
#define MORVEX_SYMBOL_IMPORT __attribute__((visibility("default")))

#if defined(MORVEX_PLATFORM_BUILD)
#define MORVEX_PLATFORM_API extern "C" MORVEX_SYMBOL_EXPORT
#else
#define MORVEX_PLATFORM_API extern "C" MORVEX_SYMBOL_IMPORT
#endif

#define WINAPI
#define CALLBACK

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using SHORT = std::int16_t;
using DWORD = std::uint32_t;
using ULONG = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using BOOL = int;
using COLORREF = DWORD;
using LCID = DWORD;
using HRESULT = LONG;
using ULONGLONG = unsigned long long;

using UINT_PTR = unsigned long long;
using ULONG64 = unsigned long long;
using WPARAM = unsigned long long;
using LPARAM = long long;
using LRESULT = long long;

using HANDLE = void *;
using HWND = struct HWND__ *;
using HINSTANCE = struct HINSTANCE__ *;

struct _GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using GUID = _GUID;

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
inline constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_LOCK_VIOLATION = 33;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_ALREADY_EXISTS = 183;
inline constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_NOT_OWNER = 288;
inline constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
inline constexpr DWORD ERROR_MESSAGE_SYNC_ONLY = 1159;
inline constexpr DWORD ERROR_INVALID_WINDOW_HANDLE = 1400;
inline constexpr DWORD ERROR_CANNOT_FIND_WND_CLASS = 1407;
inline constexpr DWORD ERROR_CLASS_ALREADY_EXISTS = 1410;
inline constexpr DWORD ERROR_CLASS_DOES_NOT_EXIST = 1411;
inline constexpr DWORD ERROR_CLASS_HAS_WINDOWS = 1412;
inline constexpr DWORD ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
inline constexpr DWORD ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
inline constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
inline constexpr DWORD ERROR_NOT_ENOUGH_QUOTA = 1816;

// The calling thread's last error, as the operation that failed last has left it.
MORVEX_PLATFORM_API DWORD GetLastError();
MORVEX_PLATFORM_API void SetLastError(DWORD code);

#endif
