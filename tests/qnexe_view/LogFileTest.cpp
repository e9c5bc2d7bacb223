// Tests of the file beside a formatted log: what each entry becomes, and when it is there.
#include "examples/QNExe/view/LogFile.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "platform/Wrap.h"

MORVEX_WRAPPED(fwrite)

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
        log.Append(LogLine(status, text));
    }

    template <typename Log>
    static std::string Complaint(Log const & log) {
        try {
            log.CheckWhole();
        } catch (std::runtime_error const & complaint) {
            return complaint.what();
        }
        return "";
    }

    std::string Gaps() const {
        return "the log file \"" + m_Name.string()
               + "\" lacks entries of this run, which could not be written. Make room on its disk, "
                 "or give --log a file on another one, and run again.";
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

TEST_F(LogFileTest, AFileThatHasAllEntriesIsWhole) {
    LogFile log(m_Name.string());
    Enter(log, TEST_STATUS_INFO, "one");
    EXPECT_EQ(Complaint(log), "");
}

TEST_F(LogFileTest, AnEntryThatIsLostIsToldOfAtTheEnd) {
    LogFile log(m_Name.string());
    {
        Diversion const full(wrapped_fwrite, [](auto...) { return std::size_t{}; });
        Enter(log, TEST_STATUS_INFO, "one");
    }
    Enter(log, TEST_STATUS_INFO, "two");
    EXPECT_EQ(Contents(), "INFO    two\n");
    EXPECT_EQ(Complaint(log), Gaps());
}

class LogFileWatchTest : public LogFileTest {
protected:
    void Add(std::string const & text) const {
        std::ofstream(m_Name, std::ios::binary | std::ios::app) << text;
    }

    static constexpr char Summary[] =
        "INFO    TEST RESULTS:\r\n    [ Passed (2); Failed (1) ]\r\n\r\n";
};

TEST_F(LogFileWatchTest, AFileThatGrewAndEndsWithASummaryIsWhole) {
    Add(Summary);
    LogFileWatch const watch(m_Name.string());
    Add(std::string(1000, '-') + '\n' + Summary);
    EXPECT_EQ(Complaint(watch), "");
}

TEST_F(LogFileWatchTest, AFileThatDidNotGrowLacksEntries) {
    Add(Summary);
    EXPECT_EQ(Complaint(LogFileWatch(m_Name.string())), Gaps());
}

TEST_F(LogFileWatchTest, AFileThatEndsWithinTheSummaryOrInFrontOfItLacksEntries) {
    std::string const summary = Summary;
    std::size_t const whole = summary.rfind(']') + 1;
    LogFileWatch const watch(m_Name.string());
    for (std::size_t size = 0; size < whole; ++size) {
        SCOPED_TRACE(size);
        std::filesystem::remove(m_Name);
        Add(summary.substr(0, size));
        EXPECT_EQ(Complaint(watch), Gaps());
    }
}

TEST_F(LogFileWatchTest, WhatIsNoFileIsNotLookedAt) {
    EXPECT_EQ(Complaint(LogFileWatch(m_Name.parent_path().string())), "");
    EXPECT_EQ(Complaint(LogFileWatch(m_Name.string())), "");
}

} // namespace
