// The whole program with its log in the formatted view, where there is no terminal.
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Environment.h"
#include "qnexe/ChildHost.h"

namespace {

class FormattedRunTest : public ChildHost {
protected:
    std::vector<std::string> Arguments(std::string const & suite) const {
        return {"--suite", Suite(suite), "--view", "formatted", "--log", File("run.log")};
    }
};

TEST_F(FormattedRunTest, AFileOnStandardErrorNeverGetsColors) {
    SetEnvironment("CLICOLOR_FORCE", "1");
    Result const result = Run(Arguments("looking"));
    ClearEnvironment("CLICOLOR_FORCE");
    EXPECT_EQ(
        result, (Result{
                    0, "",
                    "Test log initialized.\nLog Level: Normal\nUser Input module initialized\n"
                    "\n===============\n\nNow Starting Test: T1\nStart time: <time>\n"
                    "plain\nmarked\nplain again\n\nStop time: <time>\nDuration:  <seconds>.\n"
                    "Stopping Test [ T1:\n     Number of: Fails (0); Aborts (0); Warnings (0) ]\n\n"
                    "TEST SUITE SUMMARY:\n    [ Fails (0); Aborts (0); Warnings (0) ]\n"
                    "TEST RESULTS:\n    [ Passed (1); Failed (0) ]\n"}));
}

TEST_F(FormattedRunTest, FileHasTheBytesOfTheConsolesLog) {
    for (std::string const suite : {"failing", "looking", "throwing"}) {
        SCOPED_TRACE(suite);
        std::filesystem::remove(File("run.log"));
        Run(Arguments(suite));
        EXPECT_EQ(Normalized(Contents(File("run.log"))), RunSuite(suite).error);
    }
}

TEST_F(FormattedRunTest, WhatIsRecordedBehindTheLogIsNotFiled) {
    EXPECT_EQ(Run(Arguments("late")).code, 0);
    constexpr char counts[] = "Fails (0); Aborts (0); Warnings (0)";
    EXPECT_EQ(
        Normalized(Contents(File("run.log"))),
        Opened() + Started() + Stopped("T1", counts) + Summary(counts, 1, 0));
}

TEST_F(FormattedRunTest, EveryEntryThatWasWrittenIsInTheFileOfAKilledRun) {
    ChildProcess & child = Start(Arguments("counting"));
    ASSERT_TRUE(child.WaitForOutput(1000));
    child.Kill();
    auto const end = child.Wait();
    ASSERT_TRUE(end && end->killed);
    std::string const told = TextOfBytes(child.Output());
    std::string entries = Opened() + Started();
    for (std::size_t from = 0, to; (to = told.find('\n', from)) != told.npos; from = to + 1)
        entries += "INFO    entry " + told.substr(from, to - from) + '\n';
    EXPECT_EQ(Normalized(Contents(File("run.log"))).substr(0, entries.size()), entries);
}

} // namespace
