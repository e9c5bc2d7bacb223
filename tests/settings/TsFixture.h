// A registry of the test's own, the TS_ family in short words, and the last-error pair.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/Host.h"
#include "platform/RegistryScope.h"
#include "settings/Registry.h"
#include "siblings/Keelbase.h"

inline constexpr char Path[] = "Software\\Velmora\\Tests";
inline constexpr wchar_t WidePath[] = L"Software\\Velmora\\Tests";
inline HKEY const Root = HKEY_LOCAL_MACHINE;

using Texts = std::vector<std::string>;

// The system's text for a code, line end included.
inline std::string SystemText(DWORD code) {
    char * text = nullptr;
    FormatMessageA(0x1100, nullptr, code, 1024, reinterpret_cast<char *>(&text), 0, nullptr);
    std::string const copy(text != nullptr ? text : "no text");
    LocalFree(text);
    return copy;
}

class TsFixture : public testing::Test {
protected:
    // The pair as after a failure of long ago.
    TsFixture() { SetRegistryErrMsgString(87); }

    static void ExpectNoError() {
        EXPECT_EQ(GetLastRegErrCode(), 0);
        EXPECT_EQ(GetLastRegErrMsg(), "");
    }

    static void ExpectError(long code) {
        EXPECT_EQ(GetLastRegErrCode(), code);
        EXPECT_EQ(GetLastRegErrMsg(), SystemText(static_cast<DWORD>(code)));
    }

    static bool Set(char const * value, std::string const & text) {
        return TS_SetRegistryString(Root, Path, value, text);
    }

    static std::optional<std::string> Text(char const * value) {
        std::string out = "preset";
        bool const read = TS_GetRegistryString(Root, Path, value, out);
        if (!read) {
            EXPECT_EQ(out, "preset");
        }
        return read ? std::optional(out) : std::nullopt;
    }

    static std::optional<unsigned long> Number(char const * value) {
        auto const preset = static_cast<unsigned long>(-77);
        unsigned long out = preset;
        bool const read = TS_GetRegistryDword(Root, Path, value, &out);
        if (!read) {
            EXPECT_EQ(out, preset);
        }
        return read ? std::optional(out) : std::nullopt;
    }

    // Four bytes of '#' after a read of at most `size` bytes; nothing when it fails.
    static std::optional<std::string> Bytes(char const * value, unsigned int size) {
        std::string out = "####";
        bool const read = TS_GetRegistryBinary(
            Root, Path, value, size, reinterpret_cast<unsigned char *>(out.data()));
        if (!read) {
            EXPECT_EQ(out, "####");
        }
        return read ? std::optional(out) : std::nullopt;
    }

    static bool SetBytes(char const * value, std::string bytes) {
        auto * const data = reinterpret_cast<unsigned char *>(bytes.data());
        return TS_SetRegistryBinary(
            Root, Path, value, data, static_cast<unsigned long>(bytes.size()));
    }

    // What is stored, as the platform gives it: type, a colon, the bytes.
    static std::string Stored(std::string const & value, char const * path = Path) {
        HKEY key = nullptr;
        if (RegOpenKeyExA(Root, path, 0, KEY_READ, &key) != 0) return "no key";
        std::string data(70000, '#');
        auto size = static_cast<DWORD>(data.size());
        DWORD type = 0;
        auto * const bytes = reinterpret_cast<BYTE *>(data.data());
        auto const result = RegQueryValueExA(key, value.c_str(), nullptr, &type, bytes, &size);
        RegCloseKey(key);
        return result == 0 ? std::to_string(type) + ':' + data.substr(0, size) : "no value";
    }

    // The stored form of a text. Windows keeps the NUL that follows the text; elsewhere a text is
    // kept as it was given.
    static std::string StoredText(std::string const & text) {
        return "1:" + text + std::string(ON_WINDOWS && !text.empty() ? 1 : 0, '\0');
    }

    static Texts AllTexts(char const * path = Path) {
        bool ok = true;
        auto const texts = TS_GetAllStringValuesOfKey(Root, path, ok);
        EXPECT_FALSE(ok);
        Texts copy;
        for (CSafeString const & text : *texts)
            copy.emplace_back(text.get());
        return copy;
    }

    RegistryScope m_Scope;
};
