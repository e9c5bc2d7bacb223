// Values in the registry, and files beside it, in short words.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/Registry.h"

namespace fs = std::filesystem;

inline constexpr char Path[] = "Software\\Store";

// An open key; what could not be opened tells its code.
struct Key {
    Key(HKEY root, char const * path, REGSAM access = KEY_READ)
        : result(RegOpenKeyExA(root, path, 0, access, &key)) {}
    Key(Key const &) = delete;
    Key & operator=(Key const &) = delete;
    ~Key() {
        if (key != nullptr) RegCloseKey(key);
    }

    HKEY key = nullptr;
    LSTATUS result;
};

inline LSTATUS Write(HKEY root, char const * path, char const * name, std::string const & text) {
    HKEY key = nullptr;
    LSTATUS result = RegCreateKeyExA(root, path, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    if (result != 0) return result;
    auto const * const data = reinterpret_cast<BYTE const *>(text.data());
    result = RegSetValueExA(key, name, 0, REG_SZ, data, static_cast<DWORD>(text.size()));
    RegCloseKey(key);
    return result;
}

inline LSTATUS Write(std::string const & text) {
    return Write(HKEY_LOCAL_MACHINE, Path, "Value", text);
}

inline LSTATUS Query(HKEY key, char const * name, std::string & text) {
    text.assign(1000, '\0');
    auto size = static_cast<DWORD>(text.size());
    auto * const data = reinterpret_cast<BYTE *>(text.data());
    LSTATUS const result = RegQueryValueExA(key, name, nullptr, nullptr, data, &size);
    text.resize(result == 0 ? size : 0);
    return result;
}

// The text, or the code of a failure in angle brackets.
inline std::string Read(HKEY root = HKEY_LOCAL_MACHINE, char const * path = Path) {
    Key const key(root, path);
    std::string text;
    LSTATUS const result = key.result != 0 ? key.result : Query(key.key, "Value", text);
    return result == 0 ? text : '<' + std::to_string(result) + '>';
}

inline std::string Contents(fs::path const & file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void PutContents(fs::path const & file, std::string const & bytes) {
    std::ofstream(file, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}
