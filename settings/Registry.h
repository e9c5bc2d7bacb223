// Settings in the registry: each operation opens a key, does one thing and closes it again.
//
// Nothing is thrown or printed: an operation answers false and leaves the reason in the last-error
// pair, which every narrow TS_ operation clears as it begins and every later failure replaces.
// Outputs are untouched on failure. Wide forms convert their texts and act through the narrow form,
// so text outside ASCII is stored as UTF-8. There is no lock, and the pair is one for the process:
// keep registry work on one thread and read the pair right after the operation.
// Running out of memory leaves as std::bad_alloc.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/Export.h"
#include "platform/Registry.h"

class CSafeString;

using StringValues =
    std::unique_ptr<std::vector<CSafeString>, std::function<void(std::vector<CSafeString> *)>>;

// Reads up to 4 bytes, of whatever type; code 234 for a longer value.
MORVEX_API bool
TS_GetRegistryDword(HKEY key, char const * subkey, char const * value, unsigned long * out);
MORVEX_API bool
TS_GetRegistryDword(HKEY key, wchar_t const * subkey, wchar_t const * value, unsigned long * out);

// Writes the low 32 bits. A missing key is created, here and in all that set something.
MORVEX_API bool
TS_SetRegistryDword(HKEY key, char const * subkey, char const * value, unsigned long data);
MORVEX_API bool
TS_SetRegistryDword(HKEY key, wchar_t const * subkey, wchar_t const * value, unsigned long data);

// The key stays.
MORVEX_API bool TS_DeleteRegistryVal(HKEY key, char const * subkey, char const * value);
MORVEX_API bool TS_DeleteRegistryVal(HKEY key, wchar_t const * subkey, wchar_t const * value);

// The stored bytes up to the first NUL, of whatever type and length.
MORVEX_API bool
TS_GetRegistryString(HKEY key, char const * subkey, char const * value, std::string & out);
MORVEX_API bool
TS_GetRegistryString(HKEY key, wchar_t const * subkey, wchar_t const * value, std::wstring & out);

// A text ends at its first NUL; null stores an empty value.
MORVEX_API bool
TS_SetRegistryString(HKEY key, char const * subkey, char const * value, std::string const & data);
MORVEX_API bool
TS_SetRegistryString(HKEY key, char const * subkey, char const * value, char const * data);
MORVEX_API bool TS_SetRegistryString(
    HKEY key, wchar_t const * subkey, wchar_t const * value, std::wstring const & data);
MORVEX_API bool
TS_SetRegistryString(HKEY key, wchar_t const * subkey, wchar_t const * value, wchar_t const * data);

// Copies the stored bytes, of whatever type: at most `size`, without a word about what was cut,
// and leaves the rest of `out` alone. Every failure gives the code 1; a null `out` gives none.
MORVEX_API bool TS_GetRegistryBinary(
    HKEY key, char const * subkey, char const * value, unsigned int size, unsigned char * out);
MORVEX_API bool TS_GetRegistryBinary(
    HKEY key, wchar_t const * subkey, wchar_t const * value, unsigned int size,
    unsigned char * out);

// False without a code, and nothing is touched, for null data or a size of 0. Every failure of the
// registry gives the code 1.
MORVEX_API bool TS_SetRegistryBinary(
    HKEY key, char const * subkey, char const * value, unsigned char * data, unsigned long size);
MORVEX_API bool TS_SetRegistryBinary(
    HKEY key, wchar_t const * subkey, wchar_t const * value, unsigned char * data,
    unsigned long size);

// The texts of a key's text values in the registry's order, each up to 255 bytes; of a longer value
// what the system gave. Never null. `ok` becomes false in every case: judge by the texts. A missing
// key gives no texts and the code 0.
MORVEX_API StringValues TS_GetAllStringValuesOfKey(HKEY key, char const * subkey, bool & ok);

// Opens or creates a key and hands out its handle, which has no right to anything: it proves the
// key and is given to RegCloseKey. `disposition`: 1 created, 2 opened.
MORVEX_API bool
TS_CreateRegistryKey(HKEY key, char const * subkey, HKEY & out, unsigned long & disposition);

// True also when there was no such key; the code is 2 then.
MORVEX_API bool TS_DeleteRegistryKey(HKEY key, char const * subkey);

// Sets the last-error pair: the code, and the system's text for it with its line end.
MORVEX_API void SetRegistryErrMsgString(long code);

// The pair of the last operation; 0 and an empty text when it went well. Reading clears nothing.
MORVEX_API std::string const & GetLastRegErrMsg();
MORVEX_API long GetLastRegErrCode();

// The product's own key.
MORVEX_API void GetQNKey(std::string & out);
MORVEX_API void GetQNKey(std::wstring & out);

// The key of another product of the house, beside the product's own and not below it.
MORVEX_API void GetProductKey(std::string & out, std::string const & product);
MORVEX_API void GetProductKey(std::wstring & out, std::wstring const & product);
