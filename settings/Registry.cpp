// The TS_ operations: open, act, close, and the last-error pair that tells of a failure.
#include "settings/Registry.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "settings/LastRegistryError.h"
#include "siblings/Keelbase.h"

namespace {

constexpr char ProductsKey[] = "Software\\Velmora";
constexpr char QuillonKey[] = "\\Quillon";

std::string g_LastText;
std::int32_t g_LastCode = 0;

bool Succeeded(LSTATUS result) {
    if (result == static_cast<LSTATUS>(ERROR_SUCCESS)) return true;
    SetRegistryErrMsgString(result);
    return false;
}

// Deliberate: the binary operations report the code 1, whatever the registry said.
// Pinned by RegistryTest.BinaryOperationsReportTheFixedCodeOne.
bool BinarySucceeded(LSTATUS result) {
    if (result == static_cast<LSTATUS>(ERROR_SUCCESS)) return true;
    SetRegistryErrMsgString(ERROR_INVALID_FUNCTION);
    return false;
}

LSTATUS Open(HKEY key, char const * subkey, REGSAM access, HKEY & opened) {
    return RegOpenKeyExA(key, subkey, 0, access, &opened);
}

LSTATUS Create(HKEY key, char const * subkey, REGSAM access, HKEY & opened, DWORD & disposition) {
    return RegCreateKeyExA(
        key, subkey, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, &opened, &disposition);
}

// Deliberate: when memory runs out in `act` the key stays open.
// Pinned by RegistryFailureTest.RunningOutOfMemoryLeavesTheKeyOpen.
template <typename Act>
bool ThenClose(HKEY opened, Act const & act) {
    bool const done = act(opened);
    RegCloseKey(opened);
    return done;
}

template <typename Act>
bool InOpenedKey(HKEY key, char const * subkey, REGSAM access, Act const & act) {
    ClearLastRegistryError();
    HKEY opened = nullptr;
    return Succeeded(Open(key, subkey, access, opened)) && ThenClose(opened, act);
}

LSTATUS
WriteInto(HKEY opened, char const * value, DWORD type, void const * data, std::size_t size) {
    return RegSetValueExA(
        opened, value, 0, type, static_cast<BYTE const *>(data), static_cast<DWORD>(size));
}

bool Write(
    HKEY key, char const * subkey, char const * value, DWORD type, void const * data,
    std::size_t size, bool (*succeeded)(LSTATUS)) {
    HKEY opened = nullptr;
    DWORD disposition = 0;
    return succeeded(Create(key, subkey, KEY_WRITE, opened, disposition))
           && ThenClose(opened, [&](HKEY created) {
                  return succeeded(WriteInto(created, value, type, data, size));
              });
}

// The value's bytes. An empty value is read like any other, for it may have grown meanwhile.
bool ReadBytes(HKEY opened, char const * value, bool (*succeeded)(LSTATUS), std::string & bytes) {
    DWORD size = 0;
    if (!succeeded(RegQueryValueExA(opened, value, nullptr, nullptr, nullptr, &size))) return false;
    bytes.resize(size);
    auto * const data = reinterpret_cast<BYTE *>(bytes.data());
    if (!succeeded(RegQueryValueExA(opened, value, nullptr, nullptr, data, &size))) return false;
    bytes.resize(size);
    return true;
}

// One entry of an enumeration, in buffers of a fixed size.
struct Entry {
    char name[256];
    // A text that fills its room has no NUL of its own.
    char data[256 + 1];
    DWORD type;
};

LSTATUS Enumerate(HKEY opened, DWORD index, Entry & entry) {
    entry = {};
    DWORD nameSize = sizeof entry.name - 1;
    DWORD size = sizeof entry.data - 1;
    auto * const data = reinterpret_cast<BYTE *>(entry.data);
    return RegEnumValueA(opened, index, entry.name, &nameSize, nullptr, &entry.type, data, &size);
}

void AppendTexts(HKEY opened, std::vector<CSafeString> & texts) {
    Entry entry;
    auto result = static_cast<LSTATUS>(ERROR_SUCCESS);
    for (DWORD index = 0; result != static_cast<LSTATUS>(ERROR_NO_MORE_ITEMS); ++index) {
        result = Enumerate(opened, index, entry);
        if (result != static_cast<LSTATUS>(ERROR_NO_MORE_FILES) && entry.type == REG_SZ)
            texts.push_back(entry.data);
    }
}

// A wide argument as the narrow form takes it; a null text stays null.
class Narrow {
public:
    explicit Narrow(wchar_t const * text) : m_Text(Utf16ToUtf8(text)) {}

    operator char const *() const { return m_Text != nullptr ? m_Text->c_str() : nullptr; }

private:
    NarrowText const m_Text;
};

} // namespace

bool TS_GetRegistryDword(HKEY key, char const * subkey, char const * value, unsigned long * out) {
    return InOpenedKey(key, subkey, KEY_READ, [&](HKEY opened) {
        DWORD number = 0;
        DWORD size = sizeof number;
        auto * const data = reinterpret_cast<BYTE *>(&number);
        if (!Succeeded(RegQueryValueExA(opened, value, nullptr, nullptr, data, &size)))
            return false;
        *out = number;
        return true;
    });
}

bool TS_SetRegistryDword(HKEY key, char const * subkey, char const * value, unsigned long data) {
    ClearLastRegistryError();
    auto const number = static_cast<DWORD>(data);
    return Write(key, subkey, value, REG_DWORD, &number, sizeof number, Succeeded);
}

bool TS_DeleteRegistryVal(HKEY key, char const * subkey, char const * value) {
    return InOpenedKey(key, subkey, KEY_WRITE, [&](HKEY opened) {
        return Succeeded(RegDeleteValueA(opened, value));
    });
}

bool TS_GetRegistryString(HKEY key, char const * subkey, char const * value, std::string & out) {
    return InOpenedKey(key, subkey, KEY_READ, [&](HKEY opened) {
        std::string bytes;
        if (!ReadBytes(opened, value, Succeeded, bytes)) return false;
        out = bytes.c_str();
        return true;
    });
}

bool TS_SetRegistryString(
    HKEY key, char const * subkey, char const * value, std::string const & data) {
    return TS_SetRegistryString(key, subkey, value, data.c_str());
}

bool TS_SetRegistryString(HKEY key, char const * subkey, char const * value, char const * data) {
    ClearLastRegistryError();
    std::size_t const size = data != nullptr ? std::char_traits<char>::length(data) : 0;
    return Write(key, subkey, value, REG_SZ, data, size, Succeeded);
}

bool TS_GetRegistryBinary(
    HKEY key, char const * subkey, char const * value, unsigned int size, unsigned char * out) {
    ClearLastRegistryError();
    if (out == nullptr) return false;
    HKEY opened = nullptr;
    return BinarySucceeded(Open(key, subkey, KEY_READ, opened)) && ThenClose(opened, [&](HKEY) {
               std::string bytes;
               if (!ReadBytes(opened, value, BinarySucceeded, bytes)) return false;
               std::copy_n(bytes.data(), std::min<std::size_t>(bytes.size(), size), out);
               return true;
           });
}

bool TS_SetRegistryBinary(
    HKEY key, char const * subkey, char const * value, unsigned char * data, unsigned long size) {
    ClearLastRegistryError();
    if (data == nullptr || size == 0) return false;
    return Write(key, subkey, value, REG_BINARY, data, size, BinarySucceeded);
}

StringValues TS_GetAllStringValuesOfKey(HKEY key, char const * subkey, bool & ok) {
    ClearLastRegistryError();
    // Deliberate: nothing sets it to true. Pinned by RegistryKeyTest.ReadingAllTextsNeverSaysOk.
    ok = false;
    StringValues texts(new std::vector<CSafeString>, [](auto * owned) { delete owned; });
    HKEY opened = nullptr;
    if (Open(key, subkey, KEY_READ, opened) != static_cast<LSTATUS>(ERROR_SUCCESS)) {
        // Deliberate: the code 0 instead of the registry's own.
        // Pinned by RegistryKeyTest.AllTextsOfAMissingKeyAreNoneWithTheCodeZero.
        SetRegistryErrMsgString(ok);
        return texts;
    }
    AppendTexts(opened, *texts);
    RegCloseKey(opened);
    return texts;
}

bool TS_CreateRegistryKey(HKEY key, char const * subkey, HKEY & out, unsigned long & disposition) {
    ClearLastRegistryError();
    HKEY opened = nullptr;
    DWORD created = 0;
    // Deliberate: a handle without any right.
    // Pinned by RegistryKeyTest.TheHandleOfACreatedKeyHasNoRights.
    if (!Succeeded(Create(key, subkey, 0, opened, created))) return false;
    out = opened;
    disposition = created;
    return true;
}

bool TS_DeleteRegistryKey(HKEY key, char const * subkey) {
    ClearLastRegistryError();
    LSTATUS const result = RegDeleteKeyA(key, subkey);
    // Deliberate: a key that was not there counts as deleted, and still leaves its code.
    // Pinned by RegistryKeyTest.DeletingAMissingKeySucceedsWithTheCodeTwo.
    return Succeeded(result) || result == static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND);
}

void ClearLastRegistryError() {
    g_LastText.clear();
    g_LastCode = 0;
}

void SetRegistryErrMsgString(long code) {
    constexpr DWORD userDefaultLanguage = 1024;
    g_LastCode = static_cast<std::int32_t>(code);
    char * text = nullptr;
    FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
        static_cast<DWORD>(code), userDefaultLanguage, reinterpret_cast<char *>(&text), 0, nullptr);
    std::unique_ptr<char, decltype(&LocalFree)> const owned(text, &LocalFree);
    g_LastText = text != nullptr ? text : "";
}

std::string const & GetLastRegErrMsg() { return g_LastText; }

long GetLastRegErrCode() { return g_LastCode; }

void GetQNKey(std::string & out) { out = std::string(ProductsKey) + QuillonKey; }

void GetProductKey(std::string & out, std::string const & product) {
    out = std::string(ProductsKey) + '\\' + product;
}

bool TS_GetRegistryDword(
    HKEY key, wchar_t const * subkey, wchar_t const * value, unsigned long * out) {
    return TS_GetRegistryDword(key, Narrow(subkey), Narrow(value), out);
}

bool TS_SetRegistryDword(
    HKEY key, wchar_t const * subkey, wchar_t const * value, unsigned long data) {
    return TS_SetRegistryDword(key, Narrow(subkey), Narrow(value), data);
}

bool TS_DeleteRegistryVal(HKEY key, wchar_t const * subkey, wchar_t const * value) {
    return TS_DeleteRegistryVal(key, Narrow(subkey), Narrow(value));
}

bool TS_GetRegistryString(
    HKEY key, wchar_t const * subkey, wchar_t const * value, std::wstring & out) {
    std::string text;
    if (!TS_GetRegistryString(key, Narrow(subkey), Narrow(value), text)) return false;
    out = *Utf8ToUtf16(text);
    return true;
}

bool TS_SetRegistryString(
    HKEY key, wchar_t const * subkey, wchar_t const * value, std::wstring const & data) {
    return TS_SetRegistryString(key, Narrow(subkey), Narrow(value), *Utf16ToUtf8(data));
}

bool TS_SetRegistryString(
    HKEY key, wchar_t const * subkey, wchar_t const * value, wchar_t const * data) {
    return TS_SetRegistryString(
        key, Narrow(subkey), Narrow(value), static_cast<char const *>(Narrow(data)));
}

bool TS_GetRegistryBinary(
    HKEY key, wchar_t const * subkey, wchar_t const * value, unsigned int size,
    unsigned char * out) {
    return TS_GetRegistryBinary(key, Narrow(subkey), Narrow(value), size, out);
}

bool TS_SetRegistryBinary(
    HKEY key, wchar_t const * subkey, wchar_t const * value, unsigned char * data,
    unsigned long size) {
    return TS_SetRegistryBinary(key, Narrow(subkey), Narrow(value), data, size);
}

void GetQNKey(std::wstring & out) {
    std::string key;
    GetQNKey(key);
    out = *Utf8ToUtf16(key);
}

void GetProductKey(std::wstring & out, std::wstring const & product) {
    std::string key;
    GetProductKey(key, *Utf16ToUtf8(product));
    out = *Utf8ToUtf16(key);
}
