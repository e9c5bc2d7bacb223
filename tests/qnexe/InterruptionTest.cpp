// The operator's Ctrl-C on the whole program, and what a killed program leaves behind.
#include <chrono>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/Host.h"
#include "qnexe/ChildHost.h"

namespace {

using namespace std::chrono_literals;

std::string AbortedLog() {
    std::string const counts = "Fails (1); Aborts (1); Warnings (0)";
    return Opened() + Started()
           + "ABORT   Test aborted by user.\nFAIL    Test did not execute all required steps.\n"
           + Stopped("T1", counts)
           + "ABORT   \n*** TEST SUITE WAS ABORTED BY USER ***\n"
             "FAIL    One or more functions called in this Test Suite failed to perform required "
             "tasks.\n"
           + Summary("Fails (2); Aborts (2); Warnings (0)", 0, 1);
}

class InterruptionTest : public ChildHost {
protected:
    InterruptionTest() { PrepareInterruptions(); }

    // Starts a suite and waits until its test has told so.
    ChildProcess & StartAndWaitFor(std::string const & suite, std::string const & told) {
        ChildProcess & child = Start({"--suite", Suite(suite)});
        EXPECT_TRUE(child.WaitForOutput(told.size()));
        EXPECT_EQ(child.Output(), told);
        return child;
    }
};

TEST_F(InterruptionTest, CtrlCClosesTheTestLeavesTheRestAndEndsWith3) {
    StartAndWaitFor("endless", "waiting").Interrupt();
    EXPECT_EQ(Finish(), (Result{3, "waiting", AbortedLog()}));
}

TEST_F(InterruptionTest, SecondCtrlCEndsTheProcessInTheSystemsWay) {
    ChildProcess & child = StartAndWaitFor("stuck", "stuck");
    child.Interrupt();
    ASSERT_TRUE(child.WaitForOutput(std::string("stuck, asked").size()));
    child.Interrupt();
    auto const end = child.Wait();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->interrupted);
    EXPECT_EQ(end->code, std::nullopt);
    EXPECT_EQ(Normalized(child.Error()), Opened() + Started());
}

class KilledRunTest : public ChildHost {
protected:
    // A process takes long to start under Wine.
    static constexpr int Rounds = ON_WINDOWS ? 10 : 50;

    // The last number that the suite has told of completely.
    static unsigned LastTold(std::string const & output) {
        auto const end = output.rfind('\n');
        if (end == output.npos) return 0;
        auto const begin = output.rfind('\n', end - 1);
        return static_cast<unsigned>(
            std::strtoul(output.c_str() + (begin == output.npos ? 0 : begin + 1), nullptr, 10));
    }

    static std::string EntriesUpTo(unsigned last) {
        std::string entries = Opened() + Started();
        for (unsigned number = 1; number <= last; ++number)
            entries += "INFO    entry " + std::to_string(number) + '\n';
        return entries;
    }

    // Kills a run after that many bytes of its counting, and compares.
    void KillAfter(std::size_t bytes, std::string const & log) {
        ChildProcess & child = Start({"--suite", Suite("counting"), "--log", log});
        ASSERT_TRUE(child.WaitForOutput(bytes));
        child.Kill();
        auto const end = child.Wait();
        ASSERT_TRUE(end && end->killed);
        std::string const told = EntriesUpTo(LastTold(TextOfBytes(child.Output())));
        EXPECT_EQ(Normalized(Contents(log)).substr(0, told.size()), told);
    }
};

TEST_F(KilledRunTest, EveryEntryThatWasWrittenIsInTheFile) {
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<std::size_t> bytes(2, 4000);
    for (int round = 1; round <= Rounds; ++round) {
        std::size_t const moment = bytes(random);
        SCOPED_TRACE("round " + std::to_string(round) + ", after bytes " + std::to_string(moment));
        KillAfter(moment, File(std::to_string(round) + ".log"));
        if (HasFatalFailure()) return;
    }
}

} // namespace
