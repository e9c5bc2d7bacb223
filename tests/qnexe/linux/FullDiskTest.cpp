// The whole program with a log file that takes no more.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "qnexe/ChildHost.h"

namespace {

// Files of this process and its children end here.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        m_Signal = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_Before);
        rlimit const limit = {bytes, m_Before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(FileSizeLimit const &) = delete;
    FileSizeLimit & operator=(FileSizeLimit const &) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_Before);
        std::signal(SIGXFSZ, m_Signal);
    }

private:
    rlimit m_Before = {};
    void (*m_Signal)(int) = nullptr;
};

class FullDiskTest : public ChildHost {
protected:
    static std::string Gaps(std::string const & file) {
        return "QNExe: the log file \"" + file
               + "\" lacks entries of this run, which could not be written. Make room on its disk, "
                 "or give --log a file on another one, and run again.\n";
    }

    // A run whose tests pass, but whose log file takes 100 bytes only.
    Result RunInto(std::string const & file, std::string const & view) {
        constexpr std::size_t full = 1 << 20;
        std::ofstream(file) << std::string(full - 1, '-') << '\n';
        FileSizeLimit const limit(full + 100);
        return Run({"--suite", Suite("passing"), "--view", view, "--log", file});
    }
};

TEST_F(FullDiskTest, APlainRunThatLosesEntriesEndsWith4AndItsVerdictOnTheScreen) {
    std::string const file = File("run.log");
    Result const result = RunInto(file, "console");
    EXPECT_EQ(result.code, 4);
    EXPECT_TRUE(result.error.ends_with("[ Passed (2); Failed (0) ]\n" + Gaps(file)))
        << result.error;
}

TEST_F(FullDiskTest, AFormattedRunThatLosesEntriesEndsWith4AndItsVerdictOnTheScreen) {
    std::string const file = File("run.log");
    Result const result = RunInto(file, "formatted");
    EXPECT_EQ(result.code, 4);
    EXPECT_TRUE(result.error.ends_with("[ Passed (2); Failed (0) ]\n" + Gaps(file)))
        << result.error;
}

TEST_F(FullDiskTest, ALogToADeviceIsNotMissed) {
    EXPECT_EQ(Run({"--suite", Suite("passing"), "--log", "/dev/null"}).code, 0);
}

} // namespace
