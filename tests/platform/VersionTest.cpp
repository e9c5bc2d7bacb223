// Versions of our own program files, found by the names that they bear on Windows, and the
// system's.
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "platform/Version.h"

namespace {

constexpr char OurVersion[] = PROJECT_VERSION ".0";

using Block = std::vector<std::byte>;

Block BlockOf(std::string const & file) {
    DWORD handle = 1;
    Block block(GetFileVersionInfoSizeA(file.c_str(), &handle));
    EXPECT_EQ(handle, DWORD{0});
    if (block.empty()) return block;
    DWORD const size = static_cast<DWORD>(block.size());
    EXPECT_TRUE(GetFileVersionInfoA(file.c_str(), handle, size, block.data()));
    return block;
}

std::optional<std::string> TextIn(Block const & block, char const * path) {
    void * value = nullptr;
    UINT length = 0;
    if (!VerQueryValueA(block.data(), path, &value, &length)) return std::nullopt;
    std::string const text = static_cast<char const *>(value);
    EXPECT_EQ(length, text.size() + 1);
    EXPECT_GE(static_cast<std::byte const *>(value), block.data());
    EXPECT_LE(static_cast<std::byte const *>(value) + length, block.data() + block.size());
    return text;
}

DWORD ErrorOfSize(std::string const & file) {
    SetLastError(0);
    EXPECT_EQ(GetFileVersionInfoSizeA(file.c_str(), nullptr), DWORD{0});
    return GetLastError();
}

TEST(VersionTest, EachOfOurProgramFilesTellsItsVersionByItsBareName) {
    for (char const * const file :
         {"QNExe.exe", "Keelbase.dll", "QuillonLog.dll", "Promptline.dll", "Morvex.dll"}) {
        SCOPED_TRACE(file);
        Block const block = BlockOf(file);
        ASSERT_FALSE(block.empty());
        EXPECT_EQ(TextIn(block, "\\StringFileInfo\\040904B0\\FileVersion"), OurVersion);
    }
}

TEST(VersionTest, ASuiteTellsItsVersionByItsPath) {
    std::string const file = (ProgramFolder() / ("usb_descriptors" SUITE_SUFFIX)).string();
    Block const block = BlockOf(file);
    ASSERT_FALSE(block.empty());
    EXPECT_EQ(TextIn(block, "\\StringFileInfo\\040904b0\\FILEVERSION"), OurVersion);
}

TEST(VersionTest, TheTranslationIsOneAndIsThatOfTheTexts) {
    Block const block = BlockOf("Morvex.dll");
    ASSERT_FALSE(block.empty());
    void * value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\VarFileInfo\\Translation", &value, &length));
    ASSERT_EQ(length, 4u);
    WORD translation[2];
    std::memcpy(translation, value, sizeof translation);
    EXPECT_EQ(translation[0], 0x0409);
    EXPECT_EQ(translation[1], 0x04B0);
}

TEST(VersionTest, WhatIsNotInABlockIsNotFound) {
    Block const block = BlockOf("Morvex.dll");
    ASSERT_FALSE(block.empty());
    EXPECT_EQ(TextIn(block, "\\StringFileInfo\\040704B0\\FileVersion"), std::nullopt);
    EXPECT_EQ(TextIn(block, "\\StringFileInfo\\040904B0\\NoSuchValue"), std::nullopt);
}

TEST(VersionTest, AFileThatIsNotThereAndOneWithoutAVersionAreTold) {
    EXPECT_EQ(ErrorOfSize("NoSuchFile.dll"), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(ErrorOfSize("Runcore.dll"), DWORD{ERROR_FILE_NOT_FOUND});
    std::string const own = (ProgramFolder() / ProgramFileName("NameHolder")).string();
    EXPECT_EQ(ErrorOfSize(own), DWORD{ERROR_RESOURCE_DATA_NOT_FOUND});
    std::byte none[4] = {};
    EXPECT_FALSE(GetFileVersionInfoA("NoSuchFile.dll", 0, sizeof none, none));
}

TEST(VersionTest, TheSystemIsASupportedOneOfTheNtFamily) {
    OSVERSIONINFOEXA version;
    std::memset(&version, 0xFF, sizeof version);
    version.dwOSVersionInfoSize = sizeof version;
    ASSERT_TRUE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA *>(&version)));
    EXPECT_EQ(version.dwOSVersionInfoSize, DWORD{156});
    EXPECT_EQ(version.dwPlatformId, DWORD{VER_PLATFORM_WIN32_NT});
    EXPECT_EQ(version.dwMajorVersion, DWORD{6});
    EXPECT_GE(version.dwMinorVersion, DWORD{1});
    EXPECT_EQ(version.wProductType, VER_NT_WORKSTATION);
}

TEST(VersionTest, ARecordOfAnotherSizeIsRefused) {
    OSVERSIONINFOEXA version = {};
    version.dwOSVersionInfoSize = sizeof version + 1;
    SetLastError(0);
    EXPECT_FALSE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA *>(&version)));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(version.dwMajorVersion, DWORD{0});
}

TEST(VersionTest, TheUsersLanguageHasANumber) { EXPECT_NE(GetUserDefaultLangID(), 0); }

} // namespace
