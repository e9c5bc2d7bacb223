// Two programs at once, and what a log begins with.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "qnexe/ChildHost.h"

namespace {

class SecondHostTest : public ChildHost {
protected:
    std::string FirstLog() const { return File("first.log"); }

    // A program that runs until it is killed.
    std::unique_ptr<ChildProcess> StartFirst() {
        auto const folder = std::filesystem::path(File("first"));
        std::filesystem::create_directories(folder);
        auto first = std::make_unique<ChildProcess>(
            ProgramFolder() / ProgramFileName("QNExe"),
            std::vector<std::string>{"--suite", Suite("endless"), "--log", FirstLog()}, folder);
        EXPECT_TRUE(first->WaitForOutput(std::string("waiting").size()));
        return first;
    }

    // The lines between the opening ones and the first test's.
    std::string LinesBeforeTheTests(Result const & result) {
        std::string const & log = result.error;
        EXPECT_EQ(log.substr(0, Opened().size()), Opened());
        return log.substr(Opened().size(), log.find(Started()) - Opened().size());
    }

    static constexpr char Warning[] =
        "WARNING Another QNExe is running. Results count only if it leaves this device alone.\n";
};

TEST_F(SecondHostTest, TheSecondProgramWarnsInItsLogAndRunsToItsEnd) {
    auto const first = StartFirst();
    Result const second = RunSuite("passing");
    EXPECT_EQ(second.code, 0);
    EXPECT_EQ(LinesBeforeTheTests(second), Warning);
    EXPECT_TRUE(first->IsRunning());
    EXPECT_EQ(Normalized(Contents(FirstLog())), Opened() + Started());
}

TEST_F(SecondHostTest, TheWarningIsInAQuietLogToo) {
    auto const first = StartFirst();
    std::string const log =
        Run({"--suite", Suite("passing"), "--verbosity", "quiet", "--only-failures"}).error;
    EXPECT_NE(log.find(Warning), log.npos);
}

TEST_F(SecondHostTest, RightAfterTheFirstWasKilledThereIsNone) {
    for (int round = 0; round != 3; ++round) {
        auto const first = StartFirst();
        first->Kill();
        ASSERT_TRUE(first->Wait());
        EXPECT_EQ(LinesBeforeTheTests(RunSuite("passing")), "");
    }
}

TEST_F(SecondHostTest, AProgramThatHasEndedIsNotSeen) {
    RunSuite("passing");
    EXPECT_EQ(LinesBeforeTheTests(RunSuite("passing")), "");
}

TEST_F(SecondHostTest, VersionsOnRequestAreTheSystemsAndThoseOfTheProgramFiles) {
    Result const result = Run({"--suite", Suite("passing"), "--versions"});
    EXPECT_EQ(result.code, 0);
    std::string const lines = LinesBeforeTheTests(result);
    std::string expected;
    for (char const * const file :
         {"QNExe.exe", "Keelbase.dll", "QuillonLog.dll", "Promptline.dll", "Morvex.dll"})
        expected += std::string("INFO    ") + file + " ver " PROJECT_VERSION ".0\n";
    for (char const * const file : {"Runcore.dll", "Portsheet.dll"})
        expected += std::string("WARNING Could not get version information for ") + file + "\n\n";
    ASSERT_GE(lines.size(), expected.size());
    EXPECT_EQ(lines.substr(lines.size() - expected.size()), expected);
    std::string const system = lines.substr(0, lines.size() - expected.size());
    EXPECT_EQ(system.find("Quillon is not supported"), system.npos);
    EXPECT_NE(system.find(" (Build "), system.npos) << system;
}

} // namespace
