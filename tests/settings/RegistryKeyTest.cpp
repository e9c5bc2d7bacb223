// The TS_ family on keys: all texts of one, creation, deletion, the product's names, and wide
// forms.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "settings/Registry.h"
#include "settings/TsFixture.h"
#include "siblings/Keelbase.h"

namespace {

using RegistryKeyTest = TsFixture;

TEST_F(RegistryKeyTest, AllTextsOfAKeyLeaveOutOtherTypes) {
    EXPECT_TRUE(Set("A", "one"));
    EXPECT_TRUE(TS_SetRegistryDword(Root, Path, "B", 0x00414141));
    EXPECT_TRUE(Set("C", "two"));
    EXPECT_TRUE(SetBytes("D", "bytes"));
    EXPECT_TRUE(Set("E", ""));
    EXPECT_EQ(AllTexts(), (Texts{"one", "two", ""}));
    ExpectNoError();
}

TEST_F(RegistryKeyTest, ReadingAllTextsNeverSaysOk) {
    EXPECT_TRUE(Set("A", "one"));
    bool ok = true;
    EXPECT_EQ(TS_GetAllStringValuesOfKey(Root, Path, ok)->size(), 1u);
    EXPECT_FALSE(ok);
}

TEST_F(RegistryKeyTest, AllTextsOfAMissingKeyAreNoneWithTheCodeZero) {
    EXPECT_EQ(AllTexts("Software\\None"), Texts{});
    ExpectError(0);
}

TEST_F(RegistryKeyTest, AllTextsOfAnEmptyKeyAreNone) {
    EXPECT_TRUE(Set("A", "one"));
    EXPECT_TRUE(TS_DeleteRegistryVal(Root, Path, "A"));
    EXPECT_EQ(AllTexts(), Texts{});
    ExpectNoError();
}

TEST_F(RegistryKeyTest, ATextOfAllTextsHasUpTo255Bytes) {
    EXPECT_TRUE(Set("A", std::string(255, 'x')));
    EXPECT_EQ(AllTexts(), Texts{std::string(255, 'x')});
}

// What the system leaves in the buffer for a text that does not fit is nothing.
TEST_F(RegistryKeyTest, ATextThatIsTooLongIsAppendedAsTheSystemLeavesIt) {
    EXPECT_TRUE(Set("A", "one"));
    EXPECT_TRUE(Set("B", std::string(257, 'x')));
    EXPECT_TRUE(Set("C", "two"));
    EXPECT_EQ(AllTexts(), (Texts{"one", "", "two"}));
    ExpectNoError();
}

TEST_F(RegistryKeyTest, AValueWithAVeryLongNameIsAppendedToo) {
    EXPECT_TRUE(Set(std::string(254, 'a').c_str(), "fits"));
    EXPECT_TRUE(Set(std::string(255, 'b').c_str(), "does not"));
    EXPECT_TRUE(Set(std::string(5000, 'c').c_str(), "does not at all"));
    EXPECT_EQ(AllTexts(), (Texts{"fits", "does not", "does not at all"}));
}

TEST_F(RegistryKeyTest, AllTextsCutAtTheFirstNul) {
    EXPECT_TRUE(Set("A", "x"));
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(Root, Path, 0, KEY_WRITE, &key), 0);
    ASSERT_EQ(RegSetValueExA(key, "A", 0, REG_SZ, reinterpret_cast<BYTE const *>("ab\0cd"), 6), 0);
    RegCloseKey(key);
    EXPECT_EQ(AllTexts(), Texts{"ab"});
    EXPECT_EQ(Text("A"), "ab");
}

TEST_F(RegistryKeyTest, ACreatedKeyIsHandedOutWithWhetherItIsNew) {
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

TEST_F(RegistryKeyTest, TheHandleOfACreatedKeyHasNoRights) {
    HKEY key = nullptr;
    unsigned long disposition = 0;
    ASSERT_TRUE(TS_CreateRegistryKey(Root, Path, key, disposition));
    BYTE const byte = 1;
    EXPECT_EQ(RegSetValueExA(key, "Value", 0, REG_BINARY, &byte, 1), 5);
    EXPECT_EQ(RegQueryValueExA(key, "Value", nullptr, nullptr, nullptr, nullptr), 5);
    RegCloseKey(key);
}

TEST_F(RegistryKeyTest, AFailedCreationLeavesItsOutputs) {
    int something = 0;
    HKEY const preset = reinterpret_cast<HKEY>(&something);
    HKEY key = preset;
    unsigned long disposition = 77;
    EXPECT_FALSE(TS_CreateRegistryKey(Root, "\\Bad path", key, disposition));
    ExpectError(161);
    EXPECT_EQ(key, preset);
    EXPECT_EQ(disposition, 77u);
}

TEST_F(RegistryKeyTest, AKeyIsDeletedWithItsValues) {
    EXPECT_TRUE(Set("Value", "text"));
    EXPECT_TRUE(TS_DeleteRegistryKey(Root, Path));
    ExpectNoError();
    EXPECT_EQ(Stored("Value"), "no key");
}

TEST_F(RegistryKeyTest, DeletingAMissingKeySucceedsWithTheCodeTwo) {
    EXPECT_TRUE(TS_DeleteRegistryKey(Root, "Software\\None"));
    ExpectError(2);
}

TEST_F(RegistryKeyTest, AKeyWithSubkeysIsNotDeleted) {
    EXPECT_TRUE(Set("Value", "text"));
    EXPECT_FALSE(TS_DeleteRegistryKey(Root, "Software\\Velmora"));
    ExpectError(5);
    EXPECT_EQ(Text("Value"), "text");
}

TEST_F(RegistryKeyTest, ACodeIsKeptWithTheSystemsText) {
    for (long const code : {0L, 1L, 2L, 5L, 6L, 18L, 87L, 234L, 259L}) {
        SetRegistryErrMsgString(code);
        ExpectError(code);
    }
}

TEST_F(RegistryKeyTest, ACodeWithoutATextHasAnEmptyOne) {
    SetRegistryErrMsgString(99999);
    EXPECT_EQ(GetLastRegErrCode(), 99999);
    EXPECT_EQ(GetLastRegErrMsg(), "");
}

TEST_F(RegistryKeyTest, ACodeIsASigned32BitNumber) {
    SetRegistryErrMsgString(static_cast<long>(0x80070005));
    EXPECT_EQ(GetLastRegErrCode(), static_cast<long>(static_cast<std::int32_t>(0x80070005)));
}

TEST_F(RegistryKeyTest, TheProductsKeyReplacesWhatWasThere) {
    std::string key = "before";
    GetQNKey(key);
    EXPECT_EQ(key, "Software\\Velmora\\Quillon");
    std::wstring wide = L"before";
    GetQNKey(wide);
    EXPECT_EQ(wide, L"Software\\Velmora\\Quillon");
    ExpectError(87);
}

TEST_F(RegistryKeyTest, AnotherProductsKeyStandsBesideIt) {
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

TEST_F(RegistryKeyTest, WideTextIsStoredAsUtf8) {
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

TEST_F(RegistryKeyTest, WideNumbersBytesAndDeletionsActOnTheNarrowNames) {
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

TEST_F(RegistryKeyTest, WideFailuresLeaveTheOutputAndSetThePair) {
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

TEST_F(RegistryKeyTest, ANullNameIsTheUnnamedValue) {
    char const * const none = nullptr;
    EXPECT_TRUE(TS_SetRegistryString(Root, Path, none, "unnamed"));
    EXPECT_EQ(Text(""), "unnamed");
    wchar_t const * const wideNone = nullptr;
    std::wstring text;
    EXPECT_TRUE(TS_GetRegistryString(Root, WidePath, wideNone, text));
    EXPECT_EQ(text, L"unnamed");
}

} // namespace
