// What the processes of the registry's stress tests write, and how it is read back.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "platform/Registry.h"

inline std::string ValueName(std::string const & writer, long number) {
    return writer + '_' + std::to_string(number);
}

// Differs from every other value's in text and length: what is torn is seen.
inline std::string ValueText(std::string const & name) {
    std::string text;
    std::size_t const repeats = 1 + std::hash<std::string>{}(name) % 40;
    for (std::size_t i = 0; i != repeats; ++i)
        text += name + '/' + std::to_string(i) + ';';
    return text;
}

inline std::optional<std::string>
ReadStoredValue(std::string const & path, std::string const & name) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != 0) return std::nullopt;
    std::string text(4096, '\0');
    auto size = static_cast<DWORD>(text.size());
    auto * const data = reinterpret_cast<BYTE *>(text.data());
    LSTATUS const result = RegQueryValueExA(key, name.c_str(), nullptr, nullptr, data, &size);
    RegCloseKey(key);
    if (result != 0) return std::nullopt;
    text.resize(size);
    return text;
}
