// A registry of the test's own with one open key, and the registry's operations in short words.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Registry.h"
#include "platform/RegistryScope.h"

inline constexpr REGSAM Everything = KEY_READ | KEY_WRITE;
inline constexpr LSTATUS Ok = 0;
inline constexpr LSTATUS NotFound = 2;
inline constexpr LSTATUS Denied = 5;
inline constexpr LSTATUS InvalidHandle = 6;
inline constexpr LSTATUS InvalidParameter = 87;
inline constexpr LSTATUS BadPath = 161;
inline constexpr LSTATUS MoreData = 234;
inline constexpr LSTATUS NoMoreItems = 259;
inline constexpr LSTATUS KeyDeleted = 1018;

using Bytes = std::string;

struct Stored {
    DWORD type;
    Bytes data;

    bool operator==(Stored const &) const = default;
};

class RegistryFixture : public testing::Test {
protected:
    RegistryFixture() { m_Key = Create("Software\\Contract"); }
    ~RegistryFixture() override {
        for (HKEY const key : m_Keys)
            RegCloseKey(key);
    }

    HKEY Keep(HKEY key) {
        m_Keys.push_back(key);
        return key;
    }

    HKEY Create(std::string const & path, REGSAM access = Everything) {
        HKEY key = nullptr;
        EXPECT_EQ(
            RegCreateKeyExA(
                HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, access, nullptr, &key, nullptr),
            Ok)
            << path;
        return Keep(key);
    }

    HKEY Open(std::string const & path, REGSAM access) {
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, access, &key), Ok) << path;
        return Keep(key);
    }

    // What an attempt to open answers; a handle that came of it is closed.
    static LSTATUS Opening(HKEY base, char const * path, REGSAM access = KEY_READ) {
        HKEY key = nullptr;
        LSTATUS const result = RegOpenKeyExA(base, path, 0, access, &key);
        if (result == Ok) RegCloseKey(key);
        return result;
    }

    static LSTATUS Opening(std::string const & path) {
        return Opening(HKEY_LOCAL_MACHINE, path.c_str());
    }

    // The result, and the disposition on success.
    static std::pair<LSTATUS, DWORD> Creating(HKEY base, std::string const & path) {
        HKEY key = nullptr;
        DWORD disposition = 0;
        LSTATUS const result = RegCreateKeyExA(
            base, path.c_str(), 0, nullptr, 0, KEY_READ, nullptr, &key, &disposition);
        if (result == Ok) RegCloseKey(key);
        return {result, disposition};
    }

    static LSTATUS SetIn(HKEY key, std::string const & name, DWORD type, Bytes const & data) {
        auto const * const bytes = reinterpret_cast<BYTE const *>(data.data());
        return RegSetValueExA(key, name.c_str(), 0, type, bytes, static_cast<DWORD>(data.size()));
    }

    LSTATUS Set(std::string const & name, Bytes const & data, DWORD type = REG_BINARY) {
        return SetIn(m_Key, name, type, data);
    }

    static std::optional<Stored> QueryIn(HKEY key, char const * name) {
        Stored stored{0, Bytes(70000, '#')};
        auto size = static_cast<DWORD>(stored.data.size());
        auto * const data = reinterpret_cast<BYTE *>(stored.data.data());
        if (RegQueryValueExA(key, name, nullptr, &stored.type, data, &size) != Ok)
            return std::nullopt;
        stored.data.resize(size);
        return stored;
    }

    std::optional<Stored> Query(std::string const & name) { return QueryIn(m_Key, name.c_str()); }

    // Names, types and texts in the order of the enumeration.
    static std::vector<std::string> Names(HKEY key) {
        std::vector<std::string> names;
        char name[300];
        DWORD size = sizeof name;
        for (DWORD index = 0;
             RegEnumValueA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr) == Ok;
             ++index) {
            names.emplace_back(name, size);
            size = sizeof name;
        }
        return names;
    }

    static std::vector<std::string> SortedNames(HKEY key) {
        auto names = Names(key);
        std::sort(names.begin(), names.end());
        return names;
    }

    RegistryScope m_Scope;
    HKEY m_Key = nullptr;
    std::vector<HKEY> m_Keys;
};

// Result and disposition of a creation.
using Creation = std::pair<LSTATUS, DWORD>;

// One step of a walk, with rooms of these sizes filled with '#'.
struct Step {
    Step(HKEY key, DWORD index, DWORD nameRoom, DWORD dataRoom)
        : nameSize(nameRoom), size(dataRoom) {
        auto * const bytes = reinterpret_cast<BYTE *>(data.data());
        result = RegEnumValueA(key, index, name.data(), &nameSize, nullptr, &type, bytes, &size);
    }

    std::string name = std::string(300, '#');
    std::string data = std::string(300, '#');
    DWORD nameSize;
    DWORD size;
    DWORD type = 99;
    LSTATUS result;
};
