// Suites in shared libraries: where they are looked for and what they make.
#include "examples/QNExe/SuiteLibrary.h"

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"

namespace {

std::filesystem::path Folder() { return ProgramFolder() / "test-suites"; }

TEST(SuiteLibraryTest, MakesTheSuiteThatTheLibraryNames) {
    SuiteLibrary const library((Folder() / ("passing" SUITE_SUFFIX)).string());
    auto const suite = library.MakeSuite();
    ASSERT_NE(suite, nullptr);
    EXPECT_EQ(suite->Name(), "passing");
    auto const tests = suite->Tests();
    ASSERT_EQ(tests.size(), 2u);
    EXPECT_EQ(tests[1].name, "T2");
}

TEST(SuiteLibraryTest, EachSuiteIsMadeAnew) {
    SuiteLibrary const library((Folder() / ("passing" SUITE_SUFFIX)).string());
    EXPECT_NE(library.MakeSuite().get(), nullptr);
    auto const one = library.MakeSuite();
    auto const other = library.MakeSuite();
    EXPECT_NE(one.get(), other.get());
}

TEST(SuiteLibraryTest, NameWithoutAFolderIsOneInTheCurrentFolder) {
    std::filesystem::current_path(Folder());
    SuiteLibrary const library("failing" SUITE_SUFFIX);
    EXPECT_EQ(library.MakeSuite()->Name(), "failing");
}

TEST(SuiteLibraryTest, NameWithoutAFolderIsNotLookedForElsewhere) {
    std::filesystem::current_path(Folder().root_path());
    EXPECT_THROW(SuiteLibrary("failing" SUITE_SUFFIX), std::runtime_error);
}

} // namespace
