// The TS_ family on a real registry: what is stored, what comes back, and the last-error pair.
#include "settings/Registry.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "settings/TsFixture.h"

namespace {

using RegistryTest = TsFixture;

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

} // namespace
