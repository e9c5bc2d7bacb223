// Versions of program files and of the system, and the cursor on show.
//
// Every operation may be called from any thread.
#pragma once

#include "platform/BaseTypes.h"

#if defined(_WIN32)

// The version operations are no part of <windows.h> as it is set up here.
#include <winver.h>

#else

using LANGID = WORD;
using LPVOID = void *;
using HICON = struct HICON__ *;
using HCURSOR = HICON;

struct OSVERSIONINFOEXA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    char szCSDVersion[128];
    WORD wServicePackMajor;
    WORD wServicePackMinor;
    WORD wSuiteMask;
    BYTE wProductType;
    BYTE wReserved;
};
static_assert(sizeof(OSVERSIONINFOEXA) == 156);

struct OSVERSIONINFOA;

inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;
inline constexpr BYTE VER_NT_WORKSTATION = 1;

// Bytes that GetFileVersionInfoA wants, or 0 with ERROR_FILE_NOT_FOUND, or with
// ERROR_RESOURCE_DATA_NOT_FOUND for a file without a version. `handle` (may be null) becomes 0.
// A name without a folder is looked for among the loaded files, in the program's folder, and where
// the loader looks; "Name.dll" and "Name.exe" there stand for libname.so and Name.
MORVEX_PLATFORM_API DWORD GetFileVersionInfoSizeA(char const * file, DWORD * handle);

// Fills `data`. Zero with the errors above, or with ERROR_INSUFFICIENT_BUFFER.
MORVEX_PLATFORM_API BOOL
GetFileVersionInfoA(char const * file, DWORD handle, DWORD size, void * data);

// Finds a value in `block`, in any case of letters: "\VarFileInfo\Translation", a DWORD, or
// "\StringFileInfo\<language><code page>\FileVersion", a text, whose length counts its NUL. The
// value lies in the block. Zero with ERROR_RESOURCE_TYPE_NOT_FOUND for any other, outputs
// untouched.
MORVEX_PLATFORM_API BOOL
VerQueryValueA(void const * block, char const * path, LPVOID * value, UINT * length);

// The system's version, which tells that its name stands in the registry. Zero with
// ERROR_INSUFFICIENT_BUFFER when dwOSVersionInfoSize is not the extended record's.
MORVEX_PLATFORM_API BOOL GetVersionExA(OSVERSIONINFOA * version);

// The user's language by its Windows number; American English when the locale names none known.
MORVEX_PLATFORM_API LANGID GetUserDefaultLangID();

// The names of the system's cursors are numbers in the place of an address.
inline char const * const IDC_ARROW = reinterpret_cast<char const *>(32512ULL);
inline char const * const IDC_WAIT = reinterpret_cast<char const *>(32514ULL);

// One of the system's cursors; nobody frees it. Null with ERROR_RESOURCE_NAME_NOT_FOUND for
// another, with ERROR_RESOURCE_DATA_NOT_FOUND for an instance.
MORVEX_PLATFORM_API HCURSOR LoadCursorA(HINSTANCE instance, char const * name);

// Shows a cursor, null for none, and returns the one that it replaced. There is one for the
// process: what one thread sets, another reads.
MORVEX_PLATFORM_API HCURSOR SetCursor(HCURSOR cursor);

// The cursor on show, null for none, as at first.
MORVEX_PLATFORM_API HCURSOR GetCursor();

#endif
