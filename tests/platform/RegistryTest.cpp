// The registry's contract: keys by path, values by name, sizes in bytes, and the codes of refusals.
#include "platform/Registry.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/Host.h"
#include "platform/RegistryFixture.h"

namespace {

using RegistryContractTest = RegistryFixture;

TEST_F(RegistryContractTest, AKeyIsCreatedWithItsPathAndThenOpened) {
    EXPECT_EQ(Creating(HKEY_LOCAL_MACHINE, "Software\\A\\B\\C"), Creation(Ok, REG_CREATED_NEW_KEY));
    EXPECT_EQ(
        Creating(HKEY_LOCAL_MACHINE, "Software\\A\\B\\C"), Creation(Ok, REG_OPENED_EXISTING_KEY));
    EXPECT_EQ(
        Creating(HKEY_LOCAL_MACHINE, "Software\\A\\B"), Creation(Ok, REG_OPENED_EXISTING_KEY));
    EXPECT_EQ(Opening("Software\\A"), Ok);
    EXPECT_EQ(Opening("Software\\A\\C"), NotFound);
}

TEST_F(RegistryContractTest, KeysMatchInAnyCase) {
    EXPECT_EQ(Opening("sOFTWARE\\CONTRACT"), Ok);
    EXPECT_EQ(Creating(m_Key, "Sub"), Creation(Ok, REG_CREATED_NEW_KEY));
    EXPECT_EQ(Creating(m_Key, "sUB"), Creation(Ok, REG_OPENED_EXISTING_KEY));
}

TEST_F(RegistryContractTest, APathBelowAHandleStartsThere) {
    EXPECT_EQ(Creating(m_Key, "One\\Two"), Creation(Ok, REG_CREATED_NEW_KEY));
    EXPECT_EQ(Opening("Software\\Contract\\One\\Two"), Ok);
    EXPECT_EQ(Opening(m_Key, "Two"), NotFound);
    EXPECT_EQ(Opening(m_Key, ""), Ok);
    EXPECT_EQ(Opening(m_Key, nullptr), Ok);
    EXPECT_EQ(Opening(HKEY_LOCAL_MACHINE, ""), Ok);
}

TEST_F(RegistryContractTest, BackslashesAtTheEndAndInARowCountOnce) {
    EXPECT_EQ(Opening("Software\\Contract\\"), Ok);
    EXPECT_EQ(Opening("Software\\\\Contract\\\\"), Ok);
    EXPECT_EQ(Creating(m_Key, "X\\\\Y\\"), Creation(Ok, REG_CREATED_NEW_KEY));
    EXPECT_EQ(Opening(m_Key, "X\\Y"), Ok);
}

TEST_F(RegistryContractTest, ABackslashInFrontIsABadPath) {
    EXPECT_EQ(Opening("\\Software"), BadPath);
    EXPECT_EQ(Creating(m_Key, "\\X").first, BadPath);
    EXPECT_EQ(RegDeleteKeyA(m_Key, "\\X"), BadPath);
}

TEST_F(RegistryContractTest, AKeyNameHasUpTo255Characters) {
    std::string const longest(255, 'k');
    EXPECT_EQ(Creating(m_Key, longest), Creation(Ok, REG_CREATED_NEW_KEY));
    EXPECT_EQ(Opening(m_Key, longest.c_str()), Ok);
    EXPECT_EQ(Opening(m_Key, (longest + "\\Sub").c_str()), NotFound);
    // Wine takes one more.
    if (!UnderWine()) {
        EXPECT_EQ(Creating(m_Key, longest + 'k').first, InvalidParameter);
    }
    EXPECT_NE(Creating(m_Key, std::string(300, 'k')).first, Ok);
}

TEST_F(RegistryContractTest, AFailedOpeningOrCreationLeavesItsOutputs) {
    int something = 0;
    HKEY const preset = reinterpret_cast<HKEY>(&something);
    HKEY key = preset;
    DWORD disposition = 77;
    // Windows sets the handle to null when it finds no key.
    if (!ON_WINDOWS) {
        EXPECT_EQ(RegOpenKeyExA(m_Key, "None", 0, KEY_READ, &key), NotFound);
        EXPECT_EQ(key, preset);
    }
    EXPECT_EQ(
        RegCreateKeyExA(m_Key, "\\", 0, nullptr, 0, KEY_READ, nullptr, &key, &disposition),
        BadPath);
    EXPECT_EQ(disposition, 77u);
    EXPECT_EQ(
        RegCreateKeyExA(m_Key, "X", 1, nullptr, 0, KEY_READ, nullptr, &key, &disposition),
        InvalidParameter);
    EXPECT_EQ(Opening(m_Key, "X"), NotFound);
}

TEST_F(RegistryContractTest, AValueComesBackWithTypeAndBytes) {
    Bytes const bytes("\0\1\2\xFF\0", 5);
    EXPECT_EQ(Set("Binary", bytes, REG_BINARY), Ok);
    EXPECT_EQ(Query("Binary"), (Stored{REG_BINARY, bytes}));
    EXPECT_EQ(Set("Number", Bytes("\x78\x56\x34\x12", 4), REG_DWORD), Ok);
    EXPECT_EQ(Query("Number"), (Stored{REG_DWORD, Bytes("\x78\x56\x34\x12", 4)}));
    EXPECT_EQ(Set("Text", Bytes("abc\0", 4), REG_SZ), Ok);
    EXPECT_EQ(Query("Text"), (Stored{REG_SZ, Bytes("abc\0", 4)}));
}

TEST_F(RegistryContractTest, ATextMayHoldNuls) {
    EXPECT_EQ(Set("Text", Bytes("a\0b\0", 4), REG_SZ), Ok);
    EXPECT_EQ(Query("Text"), (Stored{REG_SZ, Bytes("a\0b\0", 4)}));
}

TEST_F(RegistryContractTest, ATextWithoutItsNulGetsOneWhereThereIsRoom) {
    // Windows stores a NUL that follows the given bytes; here none does.
    EXPECT_EQ(
        RegSetValueExA(m_Key, "Text", 0, REG_SZ, reinterpret_cast<BYTE const *>("abcd"), 3), Ok);
    BYTE data[5] = {'#', '#', '#', '#', '#'};
    DWORD size = sizeof data;
    EXPECT_EQ(RegQueryValueExA(m_Key, "Text", nullptr, nullptr, data, &size), Ok);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(Bytes(data, data + 5), Bytes("abc\0#", 5));
    data[3] = '#';
    EXPECT_EQ(RegQueryValueExA(m_Key, "Text", nullptr, nullptr, data, &size), Ok);
    EXPECT_EQ(Bytes(data, data + 5), "abc##");
}

TEST_F(RegistryContractTest, AnEmptyValueHasTheSizeZero) {
    EXPECT_EQ(RegSetValueExA(m_Key, "Null", 0, REG_SZ, nullptr, 0), Ok);
    EXPECT_EQ(Query("Null"), (Stored{REG_SZ, ""}));
    EXPECT_EQ(Set("Empty", "", REG_SZ), Ok);
    DWORD size = 9;
    EXPECT_EQ(RegQueryValueExA(m_Key, "Empty", nullptr, nullptr, nullptr, &size), Ok);
    EXPECT_EQ(size, 0u);
}

TEST_F(RegistryContractTest, NoDataWithASizeIsRefused) {
    EXPECT_EQ(RegSetValueExA(m_Key, "X", 0, REG_BINARY, nullptr, 4), 998);
    EXPECT_EQ(Query("X"), std::nullopt);
}

TEST_F(RegistryContractTest, ATooSmallRoomGivesTypeAndSizeAndLeavesTheData) {
    EXPECT_EQ(Set("Binary", "12345678"), Ok);
    BYTE data[3] = {'#', '#', '#'};
    DWORD size = 2;
    DWORD type = 99;
    EXPECT_EQ(RegQueryValueExA(m_Key, "Binary", nullptr, &type, data, &size), MoreData);
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(Bytes(data, data + 3), "###");
}

TEST_F(RegistryContractTest, AMissingValueLeavesSizeAndData) {
    BYTE data[2] = {'#', '#'};
    DWORD size = 2;
    EXPECT_EQ(RegQueryValueExA(m_Key, "None", nullptr, nullptr, data, &size), NotFound);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(data[0], '#');
}

TEST_F(RegistryContractTest, AQueryMayAskForNothingButPresence) {
    EXPECT_EQ(Set("X", "1"), Ok);
    EXPECT_EQ(RegQueryValueExA(m_Key, "X", nullptr, nullptr, nullptr, nullptr), Ok);
    EXPECT_EQ(RegQueryValueExA(m_Key, "Y", nullptr, nullptr, nullptr, nullptr), NotFound);
}

TEST_F(RegistryContractTest, AQueryRefusesDataWithoutSizeAndReservedArguments) {
    BYTE data[4];
    DWORD reserved = 0;
    DWORD size = 4;
    EXPECT_EQ(RegQueryValueExA(m_Key, "X", nullptr, nullptr, data, nullptr), InvalidParameter);
    EXPECT_EQ(RegQueryValueExA(m_Key, "X", &reserved, nullptr, nullptr, &size), InvalidParameter);
}

TEST_F(RegistryContractTest, ANullNameIsAnEmptyOne) {
    EXPECT_EQ(QueryIn(m_Key, nullptr), std::nullopt);
    EXPECT_EQ(Set("", "default"), Ok);
    EXPECT_EQ(QueryIn(m_Key, nullptr), (Stored{REG_BINARY, "default"}));
    EXPECT_EQ(Names(m_Key), std::vector<std::string>{""});
    EXPECT_EQ(RegDeleteValueA(m_Key, nullptr), Ok);
    EXPECT_EQ(Query(""), std::nullopt);
}

TEST_F(RegistryContractTest, ValuesMatchInAnyCaseAndKeepTheirFirstSpelling) {
    EXPECT_EQ(Set("MixedCase", "first"), Ok);
    EXPECT_EQ(Set("mIXEDcASE", "second"), Ok);
    EXPECT_EQ(Query("MIXEDCASE"), (Stored{REG_BINARY, "second"}));
    EXPECT_EQ(Names(m_Key), std::vector<std::string>{"MixedCase"});
}

TEST_F(RegistryContractTest, NamesOutsideAsciiAreKeptByteForByte) {
    std::string const name = "Pr\xC3\xBC"
                             "fling \xE6\x97\xA5\xE6\x9C\xAC";
    EXPECT_EQ(Set(name, "x"), Ok);
    EXPECT_EQ(Names(m_Key), std::vector<std::string>{name});
    EXPECT_EQ(Creating(m_Key, name), Creation(Ok, REG_CREATED_NEW_KEY));
    EXPECT_EQ(Opening(m_Key, name.c_str()), Ok);
}

// The bytes of UTF-8 are single characters to the ANSI operations of Windows, and no pair of cases.
TEST_F(RegistryContractTest, LettersOutsideAsciiDoNotMatchInAnotherCase) {
    EXPECT_EQ(Set("\xC3\x84", "capital"), Ok);
    EXPECT_EQ(Query("\xC3\xA4"), std::nullopt);
    EXPECT_EQ(Set("\xC3\xA4", "small"), Ok);
    EXPECT_EQ(Query("\xC3\x84"), (Stored{REG_BINARY, "capital"}));
}

TEST_F(RegistryContractTest, AValueNameHasUpTo16383Characters) {
    std::string const longest(16383, 'v');
    EXPECT_EQ(Set(longest, "x"), Ok);
    EXPECT_EQ(Query(longest), (Stored{REG_BINARY, "x"}));
    EXPECT_EQ(Set(longest + 'v', "x"), InvalidParameter);
    EXPECT_EQ(Query(longest + 'v'), std::nullopt);
    EXPECT_EQ(RegDeleteValueA(m_Key, (longest + 'v').c_str()), NotFound);
    EXPECT_EQ(RegDeleteValueA(m_Key, longest.c_str()), Ok);
}

TEST_F(RegistryContractTest, ALargeValueIsKept) {
    Bytes large(60000, '\0');
    for (std::size_t i = 0; i != large.size(); ++i)
        large[i] = static_cast<char>(i * 7);
    EXPECT_EQ(Set("Large", large), Ok);
    EXPECT_EQ(Query("Large"), (Stored{REG_BINARY, large}));
}

TEST_F(RegistryContractTest, WritingAgainReplacesTypeAndData) {
    EXPECT_EQ(Set("X", "12345678", REG_BINARY), Ok);
    EXPECT_EQ(Set("X", Bytes("a\0", 2), REG_SZ), Ok);
    EXPECT_EQ(Query("X"), (Stored{REG_SZ, Bytes("a\0", 2)}));
}

TEST_F(RegistryContractTest, ADeletedValueIsGoneAndItsKeyStays) {
    EXPECT_EQ(Set("X", "1"), Ok);
    EXPECT_EQ(RegDeleteValueA(m_Key, "x"), Ok);
    EXPECT_EQ(RegDeleteValueA(m_Key, "X"), NotFound);
    EXPECT_EQ(Query("X"), std::nullopt);
    EXPECT_EQ(Opening("Software\\Contract"), Ok);
}

// The text, and the code of a refusal.
std::pair<std::string, DWORD> TextOf(DWORD code) {
    char * text = nullptr;
    SetLastError(0);
    DWORD const length = FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 1024,
        reinterpret_cast<char *>(&text), 0, nullptr);
    std::string const copy(text != nullptr ? text : "");
    EXPECT_EQ(copy.size(), length);
    EXPECT_EQ(LocalFree(text), nullptr);
    return {copy, length != 0 ? 0 : GetLastError()};
}

TEST(ErrorTextTest, EveryCodeOfTheRegistryHasATextWithALineEnd) {
    for (DWORD const code :
         {0, 1, 2, 5, 6, 8, 18, 87, 112, 161, 170, 234, 259, 998, 1011, 1015, 1016, 1017, 1018}) {
        SCOPED_TRACE(code);
        auto const [text, error] = TextOf(code);
        EXPECT_EQ(error, 0u);
        EXPECT_GT(text.size(), 3u);
        EXPECT_TRUE(text.ends_with("\r\n"));
    }
}

TEST(ErrorTextTest, ACodeWithoutATextGivesNone) {
    EXPECT_EQ(TextOf(99999), std::pair(std::string(), DWORD{317}));
}

TEST(ErrorTextTest, TheTextsAreThoseOfWindows) {
    if (UnderWine()) GTEST_SKIP() << "Wine words them in its own way";
    EXPECT_EQ(TextOf(0).first, "The operation completed successfully.\r\n");
    EXPECT_EQ(TextOf(1).first, "Incorrect function.\r\n");
    EXPECT_EQ(TextOf(2).first, "The system cannot find the file specified.\r\n");
    EXPECT_EQ(TextOf(5).first, "Access is denied.\r\n");
    EXPECT_EQ(TextOf(6).first, "The handle is invalid.\r\n");
    EXPECT_EQ(TextOf(18).first, "There are no more files.\r\n");
    EXPECT_EQ(
        TextOf(8).first, "Not enough memory resources are available to process this command.\r\n");
    EXPECT_EQ(TextOf(87).first, "The parameter is incorrect.\r\n");
    EXPECT_EQ(TextOf(112).first, "There is not enough space on the disk.\r\n");
    EXPECT_EQ(TextOf(161).first, "The specified path is invalid.\r\n");
    EXPECT_EQ(TextOf(170).first, "The requested resource is in use.\r\n");
    EXPECT_EQ(TextOf(234).first, "More data is available.\r\n");
    EXPECT_EQ(TextOf(259).first, "No more data is available.\r\n");
    EXPECT_EQ(TextOf(998).first, "Invalid access to memory location.\r\n");
    EXPECT_EQ(TextOf(1011).first, "The configuration registry key could not be opened.\r\n");
}

TEST(ErrorTextTest, TheLongTextsAreThoseOfWindows) {
    if (UnderWine()) GTEST_SKIP() << "Wine words them in its own way";
    EXPECT_EQ(
        TextOf(1015).first,
        "The registry is corrupted. The structure of one of the files containing registry data is "
        "corrupted, or the system's memory image of the file is corrupted, or the file could not "
        "be recovered because the alternate copy or log was absent or corrupted.\r\n");
    EXPECT_EQ(
        TextOf(1016).first,
        "An I/O operation initiated by the registry failed unrecoverably. The registry could not "
        "read in, or write out, or flush, one of the files that contain the system's image of the "
        "registry.\r\n");
    EXPECT_EQ(
        TextOf(1017).first,
        "The system has attempted to load or restore a file into the registry, but the specified "
        "file is not in a registry file format.\r\n");
    EXPECT_EQ(
        TextOf(1018).first,
        "Illegal operation attempted on a registry key that has been marked for deletion.\r\n");
}

} // namespace
