// The version of a program file: how it is asked for, read, shown and filed.
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "app/Common.h"
#include "app/CommonBench.h"

namespace {

constexpr char VersionLook[] = " | mask=40000000 effects=04000000 color=5F0000 @0,0";

class CommonFileVersionTest : public CommonBench {
protected:
    static constexpr char AmericanPath[] = "\\StringFileInfo\\040904B0\\FileVersion";

    // As the platform answers: every file has the one block, whose values are these.
    std::optional<std::vector<std::uint8_t>> m_Translation{{0x09, 0x04, 0xB0, 0x04}};
    std::map<std::string, std::string> m_Versions{{AmericanPath, "1.2.3.4"}};
    DWORD m_Size = 64;
    BOOL m_Filled = TRUE;
    LANGID m_Language = 0x0407;

    Lines m_Asked;

    Lines Show(std::string const & file) {
        m_Asked.clear();
        LineLog log;
        m_Bell.Take();
        Common_DisplayFileVersion(file, &log);
        return log.Take();
    }

    // What is shown for a version text.
    std::string Shown(std::string const & version) {
        m_Versions[AmericanPath] = version;
        Lines const lines = Show("F");
        return lines.size() == 1 ? lines[0] : "not one line";
    }

    static std::string VersionLine(std::string const & text) {
        return "INFO " + text + VersionLook;
    }

    static std::string Missing(std::string const & file) {
        return "WARNING Could not get version information for " + file + "\n";
    }

private:
    template <typename Bytes>
    static BOOL Give(Bytes & bytes, std::size_t size, LPVOID * value, UINT * length) {
        *value = bytes.data();
        *length = static_cast<UINT>(size);
        return TRUE;
    }

    BOOL Query(std::string const & path, LPVOID * value, UINT * length) {
        m_Asked.push_back(path);
        if (path == "\\VarFileInfo\\Translation") {
            if (!m_Translation) return FALSE;
            return Give(*m_Translation, m_Translation->size(), value, length);
        }
        auto const found = m_Versions.find(path);
        if (found == m_Versions.end()) return FALSE;
        return Give(found->second, found->second.size() + 1, value, length);
    }

    Diversion<DWORD(char const *, DWORD *)> const m_SizeOf{
        wrapped_GetFileVersionInfoSizeA, [this](char const * file, DWORD *) {
            m_Asked.push_back(std::string("size of ") + file);
            return m_Size;
        }};
    Diversion<BOOL(char const *, DWORD, DWORD, void *)> const m_Fill{
        wrapped_GetFileVersionInfoA, [this](char const * file, DWORD, DWORD size, void * data) {
            m_Asked.push_back(std::string("block of ") + file);
            std::memset(data, 0, size);
            return m_Filled;
        }};
    Diversion<BOOL(void const *, char const *, LPVOID *, UINT *)> const m_Query{
        wrapped_VerQueryValueA,
        [this](void const *, char const * path, LPVOID * value, UINT * length) {
            return Query(path, value, length);
        }};
    Diversion<LANGID()> const m_LanguageOf{
        wrapped_GetUserDefaultLangID, [this] { return m_Language; }};
};

TEST_F(CommonFileVersionTest, TheVersionIsAskedForInTheBlocksOwnLanguageShownAndFiled) {
    EXPECT_EQ(Show("Some.dll"), Lines{VersionLine("Some.dll ver 1.2.3.4")});
    EXPECT_EQ(
        m_Asked,
        (Lines{
            "size of Some.dll", "block of Some.dll", "\\VarFileInfo\\Translation", AmericanPath}));
    EXPECT_EQ(m_Bench.m_Suite.Meta(), (Pairs{{"Test-Version", "Some.dll ver 1.2.3.4"}}));
    EXPECT_EQ(m_Bench.m_Suite.Summary(), (Pairs{{"TestVersion", "Some.dll ver 1.2.3.4"}}));
}

TEST_F(CommonFileVersionTest, ThePathIsMadeOfTheFourBytesOfTheTranslation) {
    m_Translation = {0x1F, 0xA2, 0x0B, 0xC3};
    m_Versions["\\StringFileInfo\\A21FC30B\\FileVersion"] = "5.6.7.8";
    EXPECT_EQ(Show("F"), Lines{VersionLine("F ver 5.6.7.8")});
}

TEST_F(CommonFileVersionTest, WithoutOneTranslationItIsAskedForInTheUsersLanguage) {
    m_Versions = {{"\\StringFileInfo\\040704B0\\FileVersion", "5.6.7.8"}};
    for (auto const & translation :
         {decltype(m_Translation)(),
          {std::vector<std::uint8_t>(8)},
          {std::vector<std::uint8_t>(2)}}) {
        m_Translation = translation;
        EXPECT_EQ(Show("F"), Lines{VersionLine("F ver 5.6.7.8")});
    }
    m_Versions = {{"\\StringFileInfo\\000904B0\\FileVersion", "6.6.7.8"}};
    m_Language = 9;
    EXPECT_EQ(Show("F"), Lines{VersionLine("F ver 6.6.7.8")});
}

TEST_F(CommonFileVersionTest, NumbersMayBePartedByCommasOrPointsAndAreAlwaysFour) {
    using Case = std::pair<char const *, char const *>;
    for (auto const & [text, shown] :
         {Case{"10,0,2,1", "10.0.2.1"},
          {"10, 0, 2, 1", "10.0.2.1"},
          {"10.0.19041.1", "10.0.19041.1"},
          {"7", "7.0.0.0"},
          {"7 beta", "7.0.0.0"},
          {"1,2", "1.2.0.0"},
          {"1.2", "1.2.0.0"},
          {"1,2.3", "1.2.0.0"},
          {"1.2,3", "1.2.0.0"},
          {"1.2.3.4.5", "1.2.3.4"},
          {"1.2.3.4 (build)", "1.2.3.4"},
          {"-1.2", "-1.2.0.0"},
          {" 8.1", "8.1.0.0"}}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Shown(text), VersionLine(std::string("F ver ") + shown));
    }
}

TEST_F(CommonFileVersionTest, ATextThatDoesNotStartWithANumberIsNoVersion) {
    for (char const * const text : {"v1.2", "beta 7", "", ".5", ",5"})
        EXPECT_EQ(Shown(text), Missing("F")) << text;
}

TEST_F(CommonFileVersionTest, WhateverIsMissingYieldsTheFailureLineAndNothingInTheRecord) {
    auto const expectMissing = [this](Lines const & asked) {
        EXPECT_EQ(Show("F"), Lines{Missing("F")});
        EXPECT_EQ(m_Asked, asked);
    };
    m_Versions.clear();
    expectMissing({"size of F", "block of F", "\\VarFileInfo\\Translation", AmericanPath});
    m_Filled = FALSE;
    expectMissing({"size of F", "block of F"});
    m_Size = 0;
    expectMissing({"size of F"});
    EXPECT_TRUE(m_Bench.m_Suite.Meta().empty());
    EXPECT_TRUE(m_Bench.m_Suite.Summary().empty());
}

TEST_F(CommonFileVersionTest, APercentSignInANameIsReadAsADirective) {
    EXPECT_EQ(Show("50%%.dll"), Lines{VersionLine("50%.dll ver 1.2.3.4")});
    EXPECT_EQ(m_Bench.m_Suite.Meta(), (Pairs{{"Test-Version", "50%%.dll ver 1.2.3.4"}}));
}

TEST_F(CommonFileVersionTest, TheLinesAreShownInAQuietRun) {
    CAppState::QNLogVerbosityLevel(Quiet);
    EXPECT_EQ(Show("F").size(), 1u);
    m_Size = 0;
    EXPECT_EQ(Show("F").size(), 1u);
}

TEST_F(CommonFileVersionTest, TheHostIsRungAfterALineAndAfterAFailure) {
    m_Bell.m_Now = 1'000;
    Show("F");
    EXPECT_EQ(Rings(), Lines{"post 7 0x8014 0 0"});
    m_Bell.m_Now = 2'000;
    m_Size = 0;
    Show("F");
    EXPECT_EQ(Rings(), Lines{"post 7 0x8014 0 0"});
}

TEST_F(CommonFileVersionTest, AnArmedAbortLeavesAfterALineAndAfterAFailure) {
    for (DWORD const size : {64, 0}) {
        m_Size = size;
        LineLog log;
        CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(false);
        Abort();
        EXPECT_THROW(Common_DisplayFileVersion("F", &log), CQNRunTimeException);
        EXPECT_EQ(log.Take().size(), 1u);
        // What the line tells is filed before it is shown.
        EXPECT_EQ(m_Bench.m_Suite.Meta().size(), 1u);
        EXPECT_EQ(m_Bench.m_Suite.Summary().size(), 1u);
    }
}

TEST_F(CommonFileVersionTest, AnAbortThatIsNotArmedChangesNothing) {
    CUIUpdate::GetUIUpdate()->AbortFunction(true);
    EXPECT_EQ(Show("F").size(), 1u);
    m_Size = 0;
    EXPECT_EQ(Show("F").size(), 1u);
}

TEST_F(CommonFileVersionTest, TheProgramFilesFollowALineEndInTheBufferInTheirOrder) {
    LineLog log;
    Take(m_Bench.m_Buffer);
    Common_DisplayEngineFileVersions(&log);
    Lines expected;
    for (char const * const file :
         {"QNExe.exe", "Keelbase.dll", "QuillonLog.dll", "Promptline.dll", "Morvex.dll",
          "Runcore.dll", "Portsheet.dll"})
        expected.push_back(VersionLine(std::string(file) + " ver 1.2.3.4"));
    EXPECT_EQ(log.Take(), expected);
    Lines const buffer = Take(m_Bench.m_Buffer);
    ASSERT_EQ(buffer.size(), 1u);
    EXPECT_EQ(buffer[0].substr(0, 6), "\"\\a \" ") << buffer[0];
    EXPECT_EQ(m_Bench.m_Suite.Meta().size(), 7u);
    EXPECT_EQ(m_Bench.m_Suite.Summary().size(), 7u);
}

} // namespace
