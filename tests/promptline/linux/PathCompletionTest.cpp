// Paths as a person types them at a terminal.
#include "siblings/promptline/linux/PathCompletion.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

class PathCompletionTest : public testing::Test {
protected:
    PathCompletionTest() {
        std::filesystem::create_directories(m_Folder / "folder");
        for (char const * name : {"alpha.bin", "alpine.bin", "beta.bin", ".hidden", "\xC2\xB5.bin"})
            std::ofstream(m_Folder / name) << "x";
    }
    ~PathCompletionTest() override { std::filesystem::remove_all(m_Folder); }

    std::wstring Typed(std::wstring const & name) {
        std::string const folder = m_Folder.string();
        return std::wstring(folder.begin(), folder.end()) + L"/" + name;
    }

    std::filesystem::path m_Folder =
        std::filesystem::temp_directory_path() / ("completion-" + std::to_string(getpid()));
};

TEST_F(PathCompletionTest, WhatIsCertainIsAdded) {
    EXPECT_EQ(CompletePath(Typed(L"b")).added, L"eta.bin");
    EXPECT_EQ(CompletePath(Typed(L"\u00b5")).added, L".bin");
    EXPECT_EQ(CompletePath(Typed(L"fo")).added, L"lder/");
    EXPECT_EQ(CompletePath(Typed(L"a")).added, L"lp");
    auto const nothing = CompletePath(Typed(L"x"));
    EXPECT_EQ(nothing.added, L"");
    EXPECT_TRUE(nothing.names.empty());
    EXPECT_TRUE(CompletePath(L"/no/such/folder/x").names.empty());
}

TEST_F(PathCompletionTest, WhatIsNotCertainIsListed) {
    auto const several = CompletePath(Typed(L"alp"));
    EXPECT_EQ(several.added, L"");
    EXPECT_EQ(several.names, (std::vector<std::wstring>{L"alpha.bin", L"alpine.bin"}));
    EXPECT_EQ(CompletePath(Typed(L"")).names.size(), 5u);
    EXPECT_EQ(CompletePath(Typed(L".")).names, std::vector<std::wstring>{L".hidden"});
}

TEST_F(PathCompletionTest, ATildeIsTheHomeFolder) {
    setenv("HOME", m_Folder.c_str(), 1);
    EXPECT_EQ(ExpandedPath(L"~/beta.bin"), Typed(L"beta.bin"));
    EXPECT_EQ(ExpandedPath(L"~beta"), L"~beta");
    EXPECT_EQ(CompletePath(L"~/be").added, L"ta.bin");
    EXPECT_TRUE(IsFile(ExpandedPath(L"~/beta.bin")));
    EXPECT_FALSE(IsFile(ExpandedPath(L"~/folder")));
}

} // namespace
