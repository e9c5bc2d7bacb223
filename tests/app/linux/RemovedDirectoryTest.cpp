// A process that starts in a directory which is gone.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>

#include <unistd.h>

#include "app/CAppState.h"

namespace {

class RemovedDirectoryTest : public testing::Test {
protected:
    RemovedDirectoryTest() : m_Before(std::filesystem::current_path()) {
        std::string directory = (std::filesystem::temp_directory_path() / "goneXXXXXX").string();
        if (mkdtemp(directory.data()) == nullptr) throw std::runtime_error("no directory");
        std::filesystem::current_path(directory);
        std::filesystem::remove(directory);
    }
    ~RemovedDirectoryTest() override { std::filesystem::current_path(m_Before); }

    std::filesystem::path m_Before;
};

TEST_F(RemovedDirectoryTest, InitTellsThatTheDirectoryIsGoneAndMakesNoInstance) {
    try {
        CAppState::InitAppState(ApplicationFamilyDefault);
        FAIL() << "an instance was made";
    } catch (std::filesystem::filesystem_error const & error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_NE(
            std::string(error.what())
                .find("Could not get name of Current Working Directory.:  filesystem error: "),
            std::string::npos);
    }
    EXPECT_FALSE(CAppState::AppStateSet());
}

} // namespace
