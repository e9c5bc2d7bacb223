// What stands behind the version operations off Windows: ELF notes, where they are looked for, and
// the language of the locale.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unicode/uloc.h>
#include <unistd.h>

#include "platform/ChildProcess.h"
#include "platform/Environment.h"
#include "platform/Version.h"

namespace {

namespace fs = std::filesystem;

// A folder of the test's own.
class VersionNoteTest : public testing::Test {
protected:
    VersionNoteTest()
        : m_Folder(fs::temp_directory_path() / ("notes-" + std::to_string(getpid()))) {
        fs::create_directories(m_Folder);
    }
    ~VersionNoteTest() override { fs::remove_all(m_Folder); }

    std::string Copy(char const * name, char const * as) {
        fs::copy_file(ProgramFolder() / name, m_Folder / as);
        return (m_Folder / as).string();
    }

    std::string File(std::string const & bytes) {
        std::ofstream(m_Folder / "file", std::ios::binary) << bytes;
        return (m_Folder / "file").string();
    }

    static std::string BytesOf(std::string const & file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static bool HasVersion(std::string const & file) {
        return GetFileVersionInfoSizeA(file.c_str(), nullptr) != 0;
    }

    fs::path const m_Folder;
};

TEST_F(VersionNoteTest, EveryBinaryOfOursHasThePackageNoteOfTheDistributions) {
    std::string const json =
        R"({"type":"generic","name":"morvex","version":")" PROJECT_VERSION "\"}";
    for (char const * const file :
         {"QNExe", "libkeelbase.so", "libquillonlog.so", "libpromptline.so", "libmorvex.so",
          "libmorvex-platform.so", "usb_descriptors.so"}) {
        SCOPED_TRACE(file);
        EXPECT_NE(BytesOf((ProgramFolder() / file).string()).find(json), std::string::npos);
    }
}

TEST_F(VersionNoteTest, AVersionNoteSurvivesStripping) {
    std::string const file = Copy("libkeelbase.so", "stripped.so");
    ASSERT_EQ(std::system(("strip " + file).c_str()), 0);
    EXPECT_TRUE(HasVersion(file));
}

TEST_F(VersionNoteTest, AFileThatIsTornOrNoBinaryHasNone) {
    std::string const whole = BytesOf((ProgramFolder() / "libkeelbase.so").string());
    for (std::size_t const size :
         {std::size_t{0}, std::size_t{3}, std::size_t{64}, std::size_t{500}, whole.size() / 2,
          whole.size() - 1})
        GetFileVersionInfoSizeA(File(whole.substr(0, size)).c_str(), nullptr);
    for (std::string const & bytes :
         {std::string(), std::string("#!/bin/sh\n"), whole.substr(0, 64)}) {
        std::string const file = File(bytes);
        SetLastError(0);
        EXPECT_FALSE(HasVersion(file));
        EXPECT_EQ(GetLastError(), ERROR_RESOURCE_DATA_NOT_FOUND);
    }
    EXPECT_FALSE(HasVersion(m_Folder.string()));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

// Each byte of the notes turned over: nothing is read beyond what is there.
TEST_F(VersionNoteTest, NotesThatLieAboutTheirSizesAreNotFollowed) {
    std::string const whole = BytesOf((ProgramFolder() / "libkeelbase.so").string());
    std::size_t const at = whole.find(std::string("Morvex\0", 7));
    ASSERT_NE(at, whole.npos);
    for (std::size_t i = at - 12; i != at + 16; ++i) {
        std::string changed = whole;
        changed[i] = static_cast<char>(~changed[i]);
        GetFileVersionInfoSizeA(File(changed).c_str(), nullptr);
    }
}

TEST_F(VersionNoteTest, ALoadedFileIsFoundWhereverItWasLoadedFrom) {
    std::string const file = Copy("libkeelbase.so", "libloadedfromelsewhere.so.7");
    EXPECT_FALSE(HasVersion("LoadedFromElsewhere.dll"));
    void * const loaded = dlopen(file.c_str(), RTLD_NOW);
    ASSERT_NE(loaded, nullptr) << dlerror();
    EXPECT_TRUE(HasVersion("LoadedFromElsewhere.dll"));
    EXPECT_TRUE(HasVersion("LOADEDFROMELSEWHERE.DLL"));
    EXPECT_FALSE(HasVersion("LoadedFrom.dll"));
    // What is told is what runs, not what stands in its place meanwhile.
    fs::remove(file);
    EXPECT_TRUE(HasVersion("LoadedFromElsewhere.dll"));
    dlclose(loaded);
    EXPECT_FALSE(HasVersion("LoadedFromElsewhere.dll"));
}

TEST_F(VersionNoteTest, ABlockThatIsTooSmallIsRefusedAndLeftAlone) {
    DWORD const size = GetFileVersionInfoSizeA("Keelbase.dll", nullptr);
    ASSERT_NE(size, 0u);
    std::string block(size, 'x');
    EXPECT_FALSE(GetFileVersionInfoA("Keelbase.dll", 0, size - 1, block.data()));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(block, std::string(size, 'x'));
}

class LanguageTest : public testing::Test {
protected:
    LanguageTest() { Clear(); }
    ~LanguageTest() override { Clear(); }

    static void Clear() {
        for (char const * const name : {"LC_ALL", "LC_MESSAGES", "LANG"})
            ClearEnvironment(name);
    }

    static LANGID Of(char const * locale) {
        SetEnvironment("LC_ALL", locale);
        return GetUserDefaultLangID();
    }
};

TEST_F(LanguageTest, LocalesHaveTheNumbersThatIcuGivesThem) {
    for (char const * const locale :
         {"ar_SA", "bg_BG", "ca_ES", "cs_CZ", "da_DK", "de_DE", "de_AT", "de_CH", "de_LI", "de_LU",
          "el_GR", "en_US", "en_AU", "en_CA", "en_GB", "en_IE", "en_IN", "en_NZ", "en_ZA", "es_ES",
          "es_AR", "es_CL", "es_CO", "es_MX", "et_EE", "fi_FI", "fr_FR", "fr_BE", "fr_CA", "fr_CH",
          "he_IL", "hi_IN", "hr_HR", "hu_HU", "id_ID", "is_IS", "it_IT", "it_CH", "ja_JP", "ko_KR",
          "lt_LT", "lv_LV", "nb_NO", "nl_NL", "nl_BE", "nn_NO", "pl_PL", "pt_BR", "pt_PT", "ro_RO",
          "ru_RU", "sk_SK", "sl_SI", "sq_AL", "sv_SE", "sv_FI", "th_TH", "tr_TR", "uk_UA", "vi_VN",
          "zh_CN", "zh_HK", "zh_SG", "zh_TW"})
        EXPECT_EQ(Of(locale), uloc_getLCID(locale)) << locale;
}

TEST_F(LanguageTest, EncodingAndModifierDoNotMatterAndAnUnknownTerritoryFallsBack) {
    EXPECT_EQ(Of("de_DE.UTF-8"), 0x0407);
    EXPECT_EQ(Of("de_DE@euro"), 0x0407);
    EXPECT_EQ(Of("de"), 0x0407);
    EXPECT_EQ(Of("de_NA.UTF-8"), 0x0407);
    EXPECT_EQ(Of("pt_AO"), 0x0416);
}

TEST_F(LanguageTest, WithoutAKnownLanguageItIsAmericanEnglish) {
    for (char const * const locale : {"C", "C.UTF-8", "POSIX", "xx_YY", "", "_DE", ".UTF-8"})
        EXPECT_EQ(Of(locale), 0x0409) << locale;
}

TEST_F(LanguageTest, TheVariablesCountInTheOrderOfTheCLibrary) {
    SetEnvironment("LANG", "it_IT");
    EXPECT_EQ(GetUserDefaultLangID(), 0x0410);
    SetEnvironment("LC_MESSAGES", "sv_SE");
    EXPECT_EQ(GetUserDefaultLangID(), 0x041D);
    EXPECT_EQ(Of("fr_FR"), 0x040C);
    EXPECT_EQ(Of(""), 0x041D);
}

} // namespace
