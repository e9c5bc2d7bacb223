// Loading and unloading the shared library: its trace provider comes after the statics and goes
// before them, and a listener sees it come and go.
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"

namespace {

class LoadedLibraryTest : public testing::Test {
protected:
    LoadedLibraryTest()
        : m_Folder(
            std::filesystem::temp_directory_path()
            / ("loaded-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(m_Folder);
    }
    ~LoadedLibraryTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }

    // The steps of a process that loads the library; LibraryLoader.cpp tells what they are.
    std::string Steps(std::vector<std::string> const & words) {
        ChildProcess child(ProgramFolder() / "LibraryLoader.exe", words, m_Folder);
        auto const end = child.Wait();
        if (!end || end->code != 0) return "failed: " + child.Output();
        return child.Output();
    }

    std::filesystem::path const m_Folder;
};

TEST_F(LoadedLibraryTest, TheProviderStandsInsideTheStatics) {
    EXPECT_EQ(Steps({"unload"}), "iiiRUddd.");
}

TEST_F(LoadedLibraryTest, TheProviderStandsInsideTheStaticsWhenTheProcessEnds) {
    EXPECT_EQ(Steps({}), "iiiRUddd");
}

TEST_F(LoadedLibraryTest, AListenerSeesTheLibraryComeAndGo) {
    EXPECT_EQ(Steps({"listen", "unload"}), "iiiRADUddd.");
}

TEST_F(LoadedLibraryTest, AListenerSeesTheLibraryGoWithTheProcess) {
    EXPECT_EQ(Steps({"listen"}), "iiiRADUddd");
}

} // namespace
