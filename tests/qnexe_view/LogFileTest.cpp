// Tests of the file beside a formatted log: what each entry becomes, and when it is there.
#include "examples/QNExe/view/LogFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace {

class LogFileTest : public testing::Test {
protected:
    LogFileTest() {
        std::random_device seed;
        auto const name = "log-file-test-" + std::to_string(seed()) + '-' + std::to_string(seed());
        m_Name = std::filesystem::temp_directory_path() / name;
    }
    ~LogFileTest() override {
        std::error_code ignored;
        std::filesystem::remove(m_Name, ignored);
    }

    std::string Contents() const {
        std::ifstream stream(m_Name);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static void Enter(LogFile & log, TEST_STATUS status, char const * text) {
        log.EntryWritten(CTestLog(true), {status, text, "color:#FF0000", {}});
    }

    std::filesystem::path m_Name;
};

TEST_F(LogFileTest, EveryStatusHasItsWord) {
    LogFile log(m_Name.string());
    Enter(log, TEST_STATUS_INFO, "i");
    Enter(log, TEST_STATUS_WARNING, "w");
    Enter(log, TEST_STATUS_FAIL, "f");
    Enter(log, TEST_STATUS_ABORT, "a");
    Enter(log, TEST_STATUS_ERROR, "e");
    Enter(log, TEST_STATUS_SUCCESS, "none");
    EXPECT_EQ(Contents(), "INFO    i\nWARNING w\nFAIL    f\nABORT   a\nERROR   e\nnone\n");
}

TEST_F(LogFileTest, AnEntryIsInTheFileWhenItsCallReturns) {
    LogFile log(m_Name.string());
    Enter(log, TEST_STATUS_INFO, "one");
    EXPECT_EQ(Contents(), "INFO    one\n");
    Enter(log, TEST_STATUS_INFO, "two");
    EXPECT_EQ(Contents(), "INFO    one\nINFO    two\n");
}

TEST_F(LogFileTest, AFileThatIsThereGrows) {
    std::ofstream(m_Name) << "before\n";
    LogFile log(m_Name.string());
    Enter(log, TEST_STATUS_INFO, "one");
    EXPECT_EQ(Contents(), "before\nINFO    one\n");
}

TEST_F(LogFileTest, AFileThatCannotBeOpenedIsRefused) {
    std::string const name = (m_Name / "run.log").string();
    try {
        LogFile const log(name);
        FAIL() << "it was opened";
    } catch (std::runtime_error const & refusal) {
        EXPECT_EQ(
            std::string(refusal.what()),
            "the log file \"" + name
                + "\" cannot be opened. Give --log a file in a folder that exists and may be "
                  "written to.");
    }
}

} // namespace
