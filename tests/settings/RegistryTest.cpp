// The TS_ family on a real registry: what is stored, what comes back, and the last-error pair.
#include "settings/Registry.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Host.h"
#include "platform/RegistryScope.h"
#include "siblings/Keelbase.h"

namespace {

constexpr char Path[] = "Software\\Velmora\\Tests";
constexpr wchar_t WidePath[] = L"Software\\Velmora\\Tests";
HKEY const Root = HKEY_LOCAL_MACHINE;

using Texts = std::vector<std::string>;

// The system's text for a code, line end included.
std::string SystemText(DWORD code) {
    char * text = nullptr;
    FormatMessageA(0x1100, nullptr, code, 1024, reinterpret_cast<char *>(&text), 0, nullptr);
    std::string const copy(text != nullptr ? text : "no text");
    LocalFree(text);
    return copy;
}

class RegistryTest : public testing::Test {
protected:
    // The pair as after a failure of long ago.
    RegistryTest() { SetRegistryErrMsgString(87); }

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

TEST_F(RegistryTest, ANumberIsStoredInFourBytes) {
    EXPECT_TRUE(TS_SetRegistryDword(Root, Path, "Number", 0x12345678));
    ExpectNoError();
    EXPECT_EQ(Stored("Number"), "4:\x78\x56\x34\x12");
    SetRegistryErrMsgString(87);
    EXPECT_EQ(Number("Number"), 0x12345678u);
    ExpectNoError();
}

TEST_F(RegistryTest, ANumberIsCutToItsLow32Bits) {
    EXPECT_TRUE(TS_SetRegistryDword(Root, Path, "Number", static_cast<unsigned long>(-2)));
    EXPECT_EQ(Number("Number"), 0xFFFFFFFEu);
}

TEST_F(RegistryTest, ANumberReadsAnyTypeOfUpToFourBytes) {
    EXPECT_TRUE(SetBytes("Bytes", "\x01\x02\x03\x04"));
    EXPECT_EQ(Number("Bytes"), 0x04030201u);
    EXPECT_TRUE(SetBytes("Short", "\x01\x02"));
    EXPECT_EQ(Number("Short"), 0x0201u);
    EXPECT_TRUE(Set("Empty", ""));
    EXPECT_EQ(Number("Empty"), 0u);
    ExpectNoError();
}

TEST_F(RegistryTest, ALongerValueThanANumberIsCode234) {
    EXPECT_TRUE(SetBytes("Bytes", "12345"));
    EXPECT_EQ(Number("Bytes"), std::nullopt);
    ExpectError(234);
}

TEST_F(RegistryTest, AMissingValueOrKeyIsCodeTwo) {
    EXPECT_EQ(Number("None"), std::nullopt);
    ExpectError(2);
    EXPECT_EQ(Text("None"), std::nullopt);
    ExpectError(2);
    EXPECT_TRUE(Set("Other", "text"));
    EXPECT_EQ(Number("None"), std::nullopt);
    ExpectError(2);
    EXPECT_EQ(Text("None"), std::nullopt);
    ExpectError(2);
    EXPECT_FALSE(TS_DeleteRegistryVal(Root, Path, "None"));
    ExpectError(2);
    EXPECT_FALSE(TS_DeleteRegistryVal(Root, "Software\\None", "None"));
    ExpectError(2);
}

TEST_F(RegistryTest, OnlyTheLastOperationCounts) {
    EXPECT_EQ(Text("None"), std::nullopt);
    ExpectError(2);
    EXPECT_TRUE(Set("Value", "text"));
    ExpectNoError();
    EXPECT_EQ(Text("None"), std::nullopt);
    EXPECT_EQ(Text("Value"), "text");
    ExpectNoError();
}

TEST_F(RegistryTest, ReadingThePairClearsNothing) {
    EXPECT_EQ(Text("None"), std::nullopt);
    ExpectError(2);
    ExpectError(2);
}

TEST_F(RegistryTest, AMissingKeyIsCreatedByEverySetter) {
    EXPECT_TRUE(TS_SetRegistryDword(Root, "Software\\A\\B", "V", 1));
    EXPECT_TRUE(TS_SetRegistryString(Root, "Software\\C\\D", "V", "text"));
    unsigned char byte = 7;
    EXPECT_TRUE(TS_SetRegistryBinary(Root, "Software\\E\\F", "V", &byte, 1));
    EXPECT_EQ(Stored("V", "Software\\A\\B"), std::string("4:\x01\0\0\0", 6));
    EXPECT_EQ(Stored("V", "Software\\C\\D"), StoredText("text"));
    EXPECT_EQ(Stored("V", "Software\\E\\F"), "3:\x07");
}

TEST_F(RegistryTest, ATextIsStoredAndReadBack) {
    EXPECT_TRUE(Set("Text", "some text"));
    ExpectNoError();
    EXPECT_EQ(Stored("Text"), StoredText("some text"));
    EXPECT_EQ(Text("Text"), "some text");
    EXPECT_TRUE(TS_SetRegistryString(Root, Path, "Text", "shorter"));
    EXPECT_EQ(Text("Text"), "shorter");
}

TEST_F(RegistryTest, AnEmptyTextIsAValueOfSizeZero) {
    EXPECT_TRUE(Set("Text", ""));
    EXPECT_EQ(Stored("Text"), "1:");
    EXPECT_EQ(Text("Text"), "");
    EXPECT_TRUE(Set("Text", "more"));
    EXPECT_TRUE(TS_SetRegistryString(Root, Path, "Text", static_cast<char const *>(nullptr)));
    EXPECT_EQ(Stored("Text"), "1:");
    ExpectNoError();
}

TEST_F(RegistryTest, ATextEndsAtItsFirstNul) {
    EXPECT_TRUE(Set("Text", std::string("ab\0cd", 5)));
    EXPECT_EQ(Stored("Text"), StoredText("ab"));
    EXPECT_TRUE(SetBytes("Bytes", std::string("ab\0cd", 5)));
    EXPECT_EQ(Text("Bytes"), "ab");
    EXPECT_TRUE(SetBytes("Bytes", std::string("\0cd", 3)));
    EXPECT_EQ(Text("Bytes"), "");
}

TEST_F(RegistryTest, ATextReadsAnyType) {
    EXPECT_TRUE(TS_SetRegistryDword(Root, Path, "Number", 0x00434241));
    EXPECT_EQ(Text("Number"), "ABC");
    EXPECT_TRUE(SetBytes("Bytes", "without an end"));
    EXPECT_EQ(Text("Bytes"), "without an end");
}

TEST_F(RegistryTest, ATextHasNoLimit) {
    std::string const text(60000, 'x');
    EXPECT_TRUE(Set("Text", text));
    EXPECT_EQ(Text("Text"), text);
}

TEST_F(RegistryTest, TextOutsideAsciiKeepsItsBytes) {
    std::string const text = "Gr\xC3\xB6\xC3\x9F"
                             "e \xE2\x82\xAC \xF0\x9F\x98\x80";
    std::string const name = "Wert \xC3\xA4";
    EXPECT_TRUE(Set(name.c_str(), text));
    EXPECT_EQ(Text(name.c_str()), text);
    EXPECT_EQ(Stored(name), StoredText(text));
}

TEST_F(RegistryTest, NamesOfAnyLengthUpToTheLimitAreStored) {
    for (std::size_t const size : {0u, 1u, 255u, 16383u}) {
        std::string const name(size, 'n');
        SCOPED_TRACE(size);
        EXPECT_TRUE(Set(name.c_str(), "text"));
        EXPECT_EQ(Text(name.c_str()), "text");
        EXPECT_TRUE(TS_DeleteRegistryVal(Root, Path, name.c_str()));
        EXPECT_EQ(Text(name.c_str()), std::nullopt);
        ExpectError(2);
    }
    EXPECT_FALSE(Set(std::string(16384, 'n').c_str(), "text"));
    ExpectError(87);
}

// Wine takes no path of more than 260 characters: the path begins at an open key.
TEST_F(RegistryTest, AKeyOf255CharactersIsStored) {
    EXPECT_TRUE(Set("Value", "text"));
    HKEY base = nullptr;
    ASSERT_EQ(RegOpenKeyExA(Root, Path, 0, KEY_READ, &base), 0);
    std::string const key(255, 'k');
    EXPECT_TRUE(TS_SetRegistryString(base, key.c_str(), "Value", "below"));
    std::string text;
    EXPECT_TRUE(TS_GetRegistryString(base, key.c_str(), "Value", text));
    EXPECT_EQ(text, "below");
    EXPECT_FALSE(TS_SetRegistryString(base, (key + std::string(100, 'k')).c_str(), "Value", ""));
    EXPECT_NE(GetLastRegErrCode(), 0);
    RegCloseKey(base);
}

TEST_F(RegistryTest, AnEmptyOrMissingPathIsTheRootItself) {
    EXPECT_TRUE(TS_SetRegistryString(Root, "", "Morvex value", "text"));
    std::string text;
    EXPECT_TRUE(
        TS_GetRegistryString(Root, static_cast<char const *>(nullptr), "Morvex value", text));
    EXPECT_EQ(text, "text");
    EXPECT_TRUE(TS_DeleteRegistryVal(Root, "", "Morvex value"));
}

TEST_F(RegistryTest, BinaryReadsCutAndDoNotPad) {
    EXPECT_TRUE(SetBytes("Bytes", "abc"));
    ExpectNoError();
    EXPECT_EQ(Stored("Bytes"), "3:abc");
    EXPECT_EQ(Bytes("Bytes", 4), "abc#");
    EXPECT_EQ(Bytes("Bytes", 3), "abc#");
    EXPECT_EQ(Bytes("Bytes", 2), "ab##");
    EXPECT_EQ(Bytes("Bytes", 0), "####");
    ExpectNoError();
}

TEST_F(RegistryTest, BinaryReadsTakeAnyTypeAndKeepNuls) {
    EXPECT_TRUE(TS_SetRegistryDword(Root, Path, "Number", 0x00430041));
    EXPECT_EQ(Bytes("Number", 4), std::string("A\0C\0", 4));
    EXPECT_TRUE(Set("Empty", ""));
    EXPECT_EQ(Bytes("Empty", 4), "####");
    ExpectNoError();
}

TEST_F(RegistryTest, BinaryOperationsReportTheFixedCodeOne) {
    EXPECT_EQ(Bytes("None", 4), std::nullopt);
    ExpectError(1);
    EXPECT_TRUE(SetBytes("Other", "x"));
    EXPECT_EQ(Bytes("None", 4), std::nullopt);
    ExpectError(1);
    EXPECT_FALSE(SetBytes(std::string(16384, 'n').c_str(), "x"));
    ExpectError(1);
    unsigned char byte = 1;
    EXPECT_FALSE(TS_SetRegistryBinary(Root, "\\Bad path", "Value", &byte, 1));
    ExpectError(1);
}

TEST_F(RegistryTest, RefusedBinaryArgumentsReadAsNoError) {
    EXPECT_FALSE(SetBytes("Bytes", ""));
    ExpectNoError();
    SetRegistryErrMsgString(87);
    EXPECT_FALSE(TS_SetRegistryBinary(Root, Path, "Bytes", nullptr, 4));
    ExpectNoError();
    SetRegistryErrMsgString(87);
    EXPECT_FALSE(TS_GetRegistryBinary(Root, Path, "Bytes", 4, nullptr));
    ExpectNoError();
    EXPECT_EQ(Stored("Bytes"), "no key");
}

TEST_F(RegistryTest, ADeletedValueIsGoneAndItsKeyStays) {
    EXPECT_TRUE(Set("Value", "text"));
    EXPECT_TRUE(TS_DeleteRegistryVal(Root, Path, "vALUE"));
    ExpectNoError();
    EXPECT_EQ(Stored("Value"), "no value");
}

TEST_F(RegistryTest, AllTextsOfAKeyLeaveOutOtherTypes) {
    EXPECT_TRUE(Set("A", "one"));
    EXPECT_TRUE(TS_SetRegistryDword(Root, Path, "B", 0x00414141));
    EXPECT_TRUE(Set("C", "two"));
    EXPECT_TRUE(SetBytes("D", "bytes"));
    EXPECT_TRUE(Set("E", ""));
    EXPECT_EQ(AllTexts(), (Texts{"one", "two", ""}));
    ExpectNoError();
}

TEST_F(RegistryTest, ReadingAllTextsNeverSaysOk) {
    EXPECT_TRUE(Set("A", "one"));
    bool ok = true;
    EXPECT_EQ(TS_GetAllStringValuesOfKey(Root, Path, ok)->size(), 1u);
    EXPECT_FALSE(ok);
}

TEST_F(RegistryTest, AllTextsOfAMissingKeyAreNoneWithTheCodeZero) {
    EXPECT_EQ(AllTexts("Software\\None"), Texts{});
    ExpectError(0);
}

TEST_F(RegistryTest, AllTextsOfAnEmptyKeyAreNone) {
    EXPECT_TRUE(Set("A", "one"));
    EXPECT_TRUE(TS_DeleteRegistryVal(Root, Path, "A"));
    EXPECT_EQ(AllTexts(), Texts{});
    ExpectNoError();
}

TEST_F(RegistryTest, ATextOfAllTextsHasUpTo255Bytes) {
    EXPECT_TRUE(Set("A", std::string(255, 'x')));
    EXPECT_EQ(AllTexts(), Texts{std::string(255, 'x')});
}

// What the system leaves in the buffer for a text that does not fit is nothing.
TEST_F(RegistryTest, ATextThatIsTooLongIsAppendedAsTheSystemLeavesIt) {
    EXPECT_TRUE(Set("A", "one"));
    EXPECT_TRUE(Set("B", std::string(257, 'x')));
    EXPECT_TRUE(Set("C", "two"));
    EXPECT_EQ(AllTexts(), (Texts{"one", "", "two"}));
    ExpectNoError();
}

TEST_F(RegistryTest, AValueWithAVeryLongNameIsAppendedToo) {
    EXPECT_TRUE(Set(std::string(254, 'a').c_str(), "fits"));
    EXPECT_TRUE(Set(std::string(255, 'b').c_str(), "does not"));
    EXPECT_TRUE(Set(std::string(5000, 'c').c_str(), "does not at all"));
    EXPECT_EQ(AllTexts(), (Texts{"fits", "does not", "does not at all"}));
}

TEST_F(RegistryTest, AllTextsCutAtTheFirstNul) {
    EXPECT_TRUE(Set("A", "x"));
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(Root, Path, 0, KEY_WRITE, &key), 0);
    ASSERT_EQ(RegSetValueExA(key, "A", 0, REG_SZ, reinterpret_cast<BYTE const *>("ab\0cd"), 6), 0);
    RegCloseKey(key);
    EXPECT_EQ(AllTexts(), Texts{"ab"});
    EXPECT_EQ(Text("A"), "ab");
}

TEST_F(RegistryTest, ACreatedKeyIsHandedOutWithWhetherItIsNew) {
    HKEY key = nullptr;
    unsigned long disposition = 0;
    EXPECT_TRUE(TS_CreateRegistryKey(Root, Path, key, disposition));
    ExpectNoError();
    EXPECT_EQ(disposition, 1u);
    EXPECT_EQ(RegCloseKey(key), 0);
    EXPECT_TRUE(TS_CreateRegistryKey(Root, Path, key, disposition));
    EXPECT_EQ(disposition, 2u);
    EXPECT_EQ(RegCloseKey(key), 0);
}

TEST_F(RegistryTest, TheHandleOfACreatedKeyHasNoRights) {
    HKEY key = nullptr;
    unsigned long disposition = 0;
    ASSERT_TRUE(TS_CreateRegistryKey(Root, Path, key, disposition));
    BYTE const byte = 1;
    EXPECT_EQ(RegSetValueExA(key, "Value", 0, REG_BINARY, &byte, 1), 5);
    EXPECT_EQ(RegQueryValueExA(key, "Value", nullptr, nullptr, nullptr, nullptr), 5);
    RegCloseKey(key);
}

TEST_F(RegistryTest, AFailedCreationLeavesItsOutputs) {
    int something = 0;
    HKEY const preset = reinterpret_cast<HKEY>(&something);
    HKEY key = preset;
    unsigned long disposition = 77;
    EXPECT_FALSE(TS_CreateRegistryKey(Root, "\\Bad path", key, disposition));
    ExpectError(161);
    EXPECT_EQ(key, preset);
    EXPECT_EQ(disposition, 77u);
}

TEST_F(RegistryTest, AKeyIsDeletedWithItsValues) {
    EXPECT_TRUE(Set("Value", "text"));
    EXPECT_TRUE(TS_DeleteRegistryKey(Root, Path));
    ExpectNoError();
    EXPECT_EQ(Stored("Value"), "no key");
}

TEST_F(RegistryTest, DeletingAMissingKeySucceedsWithTheCodeTwo) {
    EXPECT_TRUE(TS_DeleteRegistryKey(Root, "Software\\None"));
    ExpectError(2);
}

TEST_F(RegistryTest, AKeyWithSubkeysIsNotDeleted) {
    EXPECT_TRUE(Set("Value", "text"));
    EXPECT_FALSE(TS_DeleteRegistryKey(Root, "Software\\Velmora"));
    ExpectError(5);
    EXPECT_EQ(Text("Value"), "text");
}

TEST_F(RegistryTest, ACodeIsKeptWithTheSystemsText) {
    for (long const code : {0L, 1L, 2L, 5L, 6L, 18L, 87L, 234L, 259L}) {
        SetRegistryErrMsgString(code);
        ExpectError(code);
    }
}

TEST_F(RegistryTest, ACodeWithoutATextHasAnEmptyOne) {
    SetRegistryErrMsgString(99999);
    EXPECT_EQ(GetLastRegErrCode(), 99999);
    EXPECT_EQ(GetLastRegErrMsg(), "");
}

TEST_F(RegistryTest, ACodeIsASigned32BitNumber) {
    SetRegistryErrMsgString(static_cast<long>(0x80070005));
    EXPECT_EQ(GetLastRegErrCode(), static_cast<long>(static_cast<std::int32_t>(0x80070005)));
}

TEST_F(RegistryTest, TheProductsKeyReplacesWhatWasThere) {
    std::string key = "before";
    GetQNKey(key);
    EXPECT_EQ(key, "Software\\Velmora\\Quillon");
    std::wstring wide = L"before";
    GetQNKey(wide);
    EXPECT_EQ(wide, L"Software\\Velmora\\Quillon");
    ExpectError(87);
}

TEST_F(RegistryTest, AnotherProductsKeyStandsBesideIt) {
    std::string key = "before";
    GetProductKey(key, "Tool");
    EXPECT_EQ(key, "Software\\Velmora\\Tool");
    GetProductKey(key, "");
    EXPECT_EQ(key, "Software\\Velmora\\");
    GetProductKey(key, key);
    EXPECT_EQ(key, "Software\\Velmora\\Software\\Velmora\\");
    std::wstring wide = L"before";
    GetProductKey(wide, L"T\u00e4st");
    EXPECT_EQ(wide, L"Software\\Velmora\\T\u00e4st");
    GetProductKey(wide, L"");
    EXPECT_EQ(wide, L"Software\\Velmora\\");
}

TEST_F(RegistryTest, WideTextIsStoredAsUtf8) {
    EXPECT_TRUE(TS_SetRegistryString(Root, WidePath, L"W\u00e4rt", std::wstring(L"\u20ac 5")));
    EXPECT_EQ(Stored("W\xC3\xA4rt"), StoredText("\xE2\x82\xAC 5"));
    std::wstring text;
    EXPECT_TRUE(TS_GetRegistryString(Root, WidePath, L"w\u00e4RT", text));
    EXPECT_EQ(text, L"\u20ac 5");
    EXPECT_TRUE(TS_SetRegistryString(Root, WidePath, L"P", L"pointer"));
    EXPECT_EQ(Text("P"), "pointer");
    EXPECT_TRUE(TS_SetRegistryString(Root, WidePath, L"P", static_cast<wchar_t const *>(nullptr)));
    EXPECT_EQ(Stored("P"), "1:");
    EXPECT_TRUE(TS_SetRegistryString(Root, WidePath, L"P", std::wstring(L"a\0b", 3)));
    EXPECT_EQ(Text("P"), "a");
}

TEST_F(RegistryTest, WideNumbersBytesAndDeletionsActOnTheNarrowNames) {
    EXPECT_TRUE(TS_SetRegistryDword(Root, WidePath, L"\u00e9", 77));
    EXPECT_EQ(Number("\xC3\xA9"), 77u);
    unsigned long number = 0;
    EXPECT_TRUE(TS_GetRegistryDword(Root, WidePath, L"\u00e9", &number));
    EXPECT_EQ(number, 77u);
    unsigned char bytes[4] = {1, 2, 3, 4};
    EXPECT_TRUE(TS_SetRegistryBinary(Root, WidePath, L"\u00e9", bytes, 3));
    unsigned char read[4] = {};
    EXPECT_TRUE(TS_GetRegistryBinary(Root, WidePath, L"\u00e9", 4, read));
    EXPECT_EQ(std::string(read, read + 4), std::string("\1\2\3\0", 4));
    EXPECT_TRUE(TS_DeleteRegistryVal(Root, WidePath, L"\u00e9"));
    EXPECT_EQ(Stored("\xC3\xA9"), "no value");
    ExpectNoError();
}

TEST_F(RegistryTest, WideFailuresLeaveTheOutputAndSetThePair) {
    std::wstring text = L"preset";
    EXPECT_FALSE(TS_GetRegistryString(Root, WidePath, L"None", text));
    EXPECT_EQ(text, L"preset");
    ExpectError(2);
    unsigned long number = 5;
    EXPECT_FALSE(TS_GetRegistryDword(Root, WidePath, L"None", &number));
    EXPECT_EQ(number, 5u);
    ExpectError(2);
    EXPECT_FALSE(TS_DeleteRegistryVal(Root, WidePath, L"None"));
    ExpectError(2);
    unsigned char bytes[1] = {9};
    EXPECT_FALSE(TS_GetRegistryBinary(Root, WidePath, L"None", 1, bytes));
    EXPECT_EQ(bytes[0], 9);
    ExpectError(1);
    EXPECT_FALSE(TS_SetRegistryBinary(Root, WidePath, L"None", bytes, 0));
    ExpectNoError();
}

TEST_F(RegistryTest, ANullNameIsTheUnnamedValue) {
    char const * const none = nullptr;
    EXPECT_TRUE(TS_SetRegistryString(Root, Path, none, "unnamed"));
    EXPECT_EQ(Text(""), "unnamed");
    wchar_t const * const wideNone = nullptr;
    std::wstring text;
    EXPECT_TRUE(TS_GetRegistryString(Root, WidePath, wideNone, text));
    EXPECT_EQ(text, L"unnamed");
}

} // namespace
