// The registry: keys that hold named values and further keys, kept for all processes and beyond
// their end, and the texts of the system's error codes.
//
// On Windows it is the system's own. Elsewhere it is a store in a file: below HKEY_LOCAL_MACHINE
// the machine's, below HKEY_CURRENT_USER the user's, or both in the folder that QN_REGISTRY names.
// Names match in any case of A to Z and are shown as they were first written. A handle is owned by
// whoever opened it and given to RegCloseKey; the predefined ones need no closing. Every operation
// may be called from any thread, and answers with an error code of the system instead of setting
// the last error.
#pragma once

#include "platform/BaseTypes.h"
#include "platform/SystemText.h"

#if !defined(_WIN32)

#include <cstdarg>

using HKEY = struct HKEY__ *;
using LSTATUS = LONG;
using REGSAM = DWORD;

struct _SECURITY_ATTRIBUTES;

inline HKEY const HKEY_CURRENT_USER = reinterpret_cast<HKEY>(0xFFFFFFFF80000001);
inline HKEY const HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(0xFFFFFFFF80000002);

inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_MULTI_SZ = 7;

inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_QUERY_VALUE = 1;
inline constexpr REGSAM KEY_SET_VALUE = 2;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 4;

inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

inline constexpr DWORD ERROR_INVALID_FUNCTION = 1;
inline constexpr DWORD ERROR_NO_MORE_FILES = 18;
inline constexpr DWORD ERROR_DISK_FULL = 112;
inline constexpr DWORD ERROR_BAD_PATHNAME = 161;
inline constexpr DWORD ERROR_BUSY = 170;
inline constexpr DWORD ERROR_MORE_DATA = 234;
inline constexpr DWORD ERROR_NOACCESS = 998;
inline constexpr DWORD ERROR_CANTOPEN = 1011;
inline constexpr DWORD ERROR_REGISTRY_CORRUPT = 1015;
inline constexpr DWORD ERROR_REGISTRY_IO_FAILED = 1016;
inline constexpr DWORD ERROR_NOT_REGISTRY_FILE = 1017;
inline constexpr DWORD ERROR_KEY_DELETED = 1018;

// `subkey` is a path of names of at most 255 bytes with backslashes between them; null or empty
// stands for the key itself. `options` is 0. ERROR_FILE_NOT_FOUND: there is no such key.
// ERROR_ACCESS_DENIED: `access` asks for writing where nothing may be written.
// ERROR_KEY_DELETED: the key behind the handle is gone. `result` is untouched on failure.
MORVEX_PLATFORM_API LSTATUS
RegOpenKeyExA(HKEY key, char const * subkey, DWORD options, REGSAM access, HKEY * result);

// Opens the key, or creates it with all that is missing on its path, and says which in
// `disposition` (may be null). `reserved` and `options` are 0; class and attributes have no effect.
// The outputs are untouched on failure, and then nothing was created.
MORVEX_PLATFORM_API LSTATUS RegCreateKeyExA(
    HKEY key, char const * subkey, DWORD reserved, char * keyClass, DWORD options, REGSAM access,
    _SECURITY_ATTRIBUTES const * attributes, HKEY * result, DWORD * disposition);

// Type, data and size in bytes of a value; any of the three may be null, but not `size` beside
// `data`. `size` holds the room in `data` and receives the stored size. ERROR_MORE_DATA: the room
// is too small, `data` is untouched, type and size are given. ERROR_ACCESS_DENIED: the handle was
// not opened for this, here and below. ERROR_FILE_NOT_FOUND: no such value,
// nothing is written. A text whose last byte is not NUL gets one when there is room; it does not
// count. A null name is an empty one.
MORVEX_PLATFORM_API LSTATUS RegQueryValueExA(
    HKEY key, char const * name, DWORD * reserved, DWORD * type, BYTE * data, DWORD * size);

// Writes a value, which is on disk and visible to every process when the call returns. A name has
// at most 16,383 bytes. `data` may be null when `size` is 0.
MORVEX_PLATFORM_API LSTATUS RegSetValueExA(
    HKEY key, char const * name, DWORD reserved, DWORD type, BYTE const * data, DWORD size);

MORVEX_PLATFORM_API LSTATUS RegDeleteValueA(HKEY key, char const * name);

// ERROR_ACCESS_DENIED: the key holds further keys. Its values go with it.
MORVEX_PLATFORM_API LSTATUS RegDeleteKeyA(HKEY key, char const * subkey);

// The value with this number, in the order of first writing: name, type, data. `nameSize` holds the
// room and receives the length without the NUL; type, data and size are as in RegQueryValueExA.
// ERROR_NO_MORE_ITEMS: there is none. ERROR_MORE_DATA: a room is too small; `name` is
// untouched, and `data` when it is the one. After any other failure the numbers above 0 give
// ERROR_NO_MORE_ITEMS until number 0 is asked for again, so that a walk which passes over failures
// ends.
MORVEX_PLATFORM_API LSTATUS RegEnumValueA(
    HKEY key, DWORD index, char * name, DWORD * nameSize, DWORD * reserved, DWORD * type,
    BYTE * data, DWORD * size);

// ERROR_INVALID_HANDLE: closed already, or never given out.
MORVEX_PLATFORM_API LSTATUS RegCloseKey(HKEY key);

#endif
