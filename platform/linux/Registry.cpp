// The registry's operations: what the caller hands in is checked and brought into form here.
#include "platform/Registry.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Synchronization.h"
#include "platform/linux/Handles.h"
#include "platform/linux/RegistryKey.h"

namespace {

constexpr std::size_t LongestKeyName = 255;
constexpr std::size_t LongestValueName = 16383;

LSTATUS Result(DWORD code) { return static_cast<LSTATUS>(code); }

// Null: neither predefined nor open.
std::shared_ptr<RegistryKey> KeyOf(HKEY key) {
    if (auto predefined = PredefinedKey(key)) return predefined;
    return FindHandleAs<RegistryKey>(key);
}

// A path with single backslashes between its names and none at its end.
DWORD ReadPath(char const * subkey, std::string & path) {
    std::string_view rest = subkey != nullptr ? subkey : "";
    if (rest.starts_with('\\')) return ERROR_BAD_PATHNAME;
    while (!rest.empty()) {
        std::string_view const name = rest.substr(0, rest.find('\\'));
        if (name.size() > LongestKeyName) return ERROR_INVALID_PARAMETER;
        path.append(path.empty() ? "" : "\\").append(name);
        rest.remove_prefix(name.size());
        rest.remove_prefix(std::min(rest.find_first_not_of('\\'), rest.size()));
    }
    return ERROR_SUCCESS;
}

// The key that an operation names by handle and path.
struct Target {
    std::shared_ptr<RegistryKey> base;
    std::string path;
};

DWORD ReadTarget(HKEY key, char const * subkey, Target & target) {
    target.base = KeyOf(key);
    return target.base != nullptr ? ReadPath(subkey, target.path) : ERROR_INVALID_HANDLE;
}

std::string NameOf(char const * name) { return name != nullptr ? name : ""; }

// A text without a NUL at its end gets one where there is room.
void CopyData(RegistryValue const & value, BYTE * data, std::size_t room) {
    std::memcpy(data, value.data.data(), value.data.size());
    if (value.type == REG_SZ && room > value.data.size() && !value.data.ends_with('\0'))
        data[value.data.size()] = 0;
}

// Outputs may be null, but not `size` beside `data`.
DWORD Deliver(RegistryValue const & value, DWORD * type, BYTE * data, DWORD * size) {
    if (type != nullptr) *type = value.type;
    if (size == nullptr) return ERROR_SUCCESS;
    DWORD const room = *size;
    *size = static_cast<DWORD>(value.data.size());
    if (data == nullptr) return ERROR_SUCCESS;
    if (*size > room) return ERROR_MORE_DATA;
    CopyData(value, data, room);
    return ERROR_SUCCESS;
}

DWORD DeliverName(std::string const & text, char * name, DWORD * size) {
    if (text.size() >= *size) return ERROR_MORE_DATA;
    std::memcpy(name, text.c_str(), text.size() + 1);
    *size = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

} // namespace

LSTATUS RegOpenKeyExA(HKEY key, char const * subkey, DWORD, REGSAM access, HKEY * result) {
    if (result == nullptr) return Result(ERROR_INVALID_PARAMETER);
    Target target;
    std::shared_ptr<RegistryKey> opened;
    DWORD code = ReadTarget(key, subkey, target);
    if (code == ERROR_SUCCESS) code = target.base->Open(target.path, access, opened);
    if (code == ERROR_SUCCESS) *result = static_cast<HKEY>(AddHandle(std::move(opened)));
    return Result(code);
}

LSTATUS RegCreateKeyExA(
    HKEY key, char const * subkey, DWORD reserved, char *, DWORD options, REGSAM access,
    _SECURITY_ATTRIBUTES const *, HKEY * result, DWORD * disposition) {
    if (result == nullptr || reserved != 0 || options != REG_OPTION_NON_VOLATILE)
        return Result(ERROR_INVALID_PARAMETER);
    Target target;
    std::shared_ptr<RegistryKey> opened;
    bool created = false;
    DWORD code = ReadTarget(key, subkey, target);
    if (code == ERROR_SUCCESS) code = target.base->Create(target.path, access, opened, created);
    if (code != ERROR_SUCCESS) return Result(code);
    *result = static_cast<HKEY>(AddHandle(std::move(opened)));
    if (disposition != nullptr)
        *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    return Result(ERROR_SUCCESS);
}

LSTATUS RegQueryValueExA(
    HKEY key, char const * name, DWORD * reserved, DWORD * type, BYTE * data, DWORD * size) {
    if (reserved != nullptr || (data != nullptr && size == nullptr))
        return Result(ERROR_INVALID_PARAMETER);
    auto const opened = KeyOf(key);
    if (opened == nullptr) return Result(ERROR_INVALID_HANDLE);
    RegistryKey::Value value;
    DWORD const code = opened->Find(NameOf(name), value);
    return Result(code == ERROR_SUCCESS ? Deliver(*value, type, data, size) : code);
}

LSTATUS
RegSetValueExA(HKEY key, char const * name, DWORD, DWORD type, BYTE const * data, DWORD size) {
    if (data == nullptr && size != 0) return Result(ERROR_NOACCESS);
    auto const opened = KeyOf(key);
    if (opened == nullptr) return Result(ERROR_INVALID_HANDLE);
    RegistryValue value{NameOf(name), type, {}};
    if (value.name.size() > LongestValueName) return Result(ERROR_INVALID_PARAMETER);
    if (size != 0) value.data.assign(reinterpret_cast<char const *>(data), size);
    return Result(opened->Write(value));
}

LSTATUS RegDeleteValueA(HKEY key, char const * name) {
    auto const opened = KeyOf(key);
    return Result(opened != nullptr ? opened->RemoveValue(NameOf(name)) : ERROR_INVALID_HANDLE);
}

LSTATUS RegDeleteKeyA(HKEY key, char const * subkey) {
    if (subkey == nullptr) return Result(ERROR_INVALID_PARAMETER);
    Target target;
    DWORD const code = ReadTarget(key, subkey, target);
    return Result(code == ERROR_SUCCESS ? target.base->Remove(target.path) : code);
}

LSTATUS RegEnumValueA(
    HKEY key, DWORD index, char * name, DWORD * nameSize, DWORD * reserved, DWORD * type,
    BYTE * data, DWORD * size) {
    if (name == nullptr || nameSize == nullptr || reserved != nullptr)
        return Result(ERROR_INVALID_PARAMETER);
    if (data != nullptr && size == nullptr) return Result(ERROR_INVALID_PARAMETER);
    auto const opened = KeyOf(key);
    if (opened == nullptr) return Result(ERROR_INVALID_HANDLE);
    RegistryKey::Value value;
    DWORD code = opened->At(index, value);
    if (code == ERROR_SUCCESS) code = Deliver(*value, type, data, size);
    return Result(code == ERROR_SUCCESS ? DeliverName(value->name, name, nameSize) : code);
}

LSTATUS RegCloseKey(HKEY key) {
    if (key == HKEY_LOCAL_MACHINE || key == HKEY_CURRENT_USER) return Result(ERROR_SUCCESS);
    if (FindHandleAs<RegistryKey>(key) == nullptr) return Result(ERROR_INVALID_HANDLE);
    return Result(CloseHandle(key) != FALSE ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
}
