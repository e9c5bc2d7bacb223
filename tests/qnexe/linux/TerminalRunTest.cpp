// The whole program at a terminal: looks, progress, and Ctrl-C as a person presses it.
#include <string>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "qnexe/ChildHost.h"
#include "qnexe/linux/Pty.h"

namespace {

class TerminalRunTest : public ChildHost {
protected:
    Pty At(std::string const & suite, Pty::Variables const & variables = {}) {
        return Pty(
            (ProgramFolder() / ProgramFileName("QNExe")).string(), {"--suite", Suite(suite)},
            variables);
    }

    // Without the lines of progress, whose number depends on the machine.
    static std::string WithoutProgress(std::string text) {
        for (std::size_t erase; (erase = text.find("\r\x1b[K")) != text.npos;) {
            std::size_t const line = text.rfind('\n', erase);
            std::size_t const from = line == text.npos ? 0 : line + 1;
            text.erase(from, erase + 4 - from);
        }
        return text;
    }

    static std::string In(std::string const & codes, std::string const & text) {
        return "\x1b[" + codes + "m" + text + "\x1b[0m\n";
    }

    static std::string ShownStart(std::string const & test) {
        return "\n" + In(Start, "===============") + "\n" + In(Start, "Now Starting Test: " + test)
               + In(Start, "Start time: <time>");
    }

    static std::string ShownStop(std::string const & test, std::string const & counts) {
        return "\n" + In(Stop, "Stop time: <time>") + In(Stop, "Duration:  <seconds>.")
               + In(Stop, "Stopping Test [ " + test + ":")
               + In(Stop, "     Number of: " + counts + " ]") + "\n";
    }

    static std::string ShownSummary(std::string const & counts, std::string const & results) {
        return In(Sum, "TEST SUITE SUMMARY:") + In(Sum, "    [ " + counts + " ]")
               + In(Sum, "TEST RESULTS:") + In(Sum, "    [ " + results + " ]");
    }

    // The dark blue of the library, made readable on black; its green is so already.
    static constexpr char Start[] = "1;3;38;2;76;76;195";
    static constexpr char Stop[] = "1;38;2;0;127;0";
    static constexpr char Sum[] = "1;3;38;2;0;127;0";
    static constexpr char Red[] = "38;2;255;0;0";
};

TEST_F(TerminalRunTest, APassingRunIsShownInItsLooks) {
    Pty terminal = At("passing");
    EXPECT_EQ(terminal.Finish(), 0);
    std::string const counts = "Fails (0); Aborts (0); Warnings (1)";
    EXPECT_EQ(
        Normalized(WithoutProgress(terminal.Shown())),
        ShownStart("T1") + ShownStop("T1", "Fails (0); Aborts (0); Warnings (0)") + "\n"
            + ShownStart("T2").substr(1) + "port 2 answers\n" + In(Red, "port 2 is slow")
            + ShownStop("T2", counts) + ShownSummary(counts, "Passed (2); Failed (0)"));
}

TEST_F(TerminalRunTest, ProgressIsShownBeneathTheLogAndGoneAtTheEnd) {
    Pty terminal = At("passing");
    EXPECT_EQ(terminal.Finish(), 0);
    std::string const shown = terminal.Shown();
    EXPECT_NE(shown.find("/2  T"), shown.npos);
    EXPECT_EQ(shown.substr(shown.size() - 4), "\r\x1b[K");
}

TEST_F(TerminalRunTest, CtrlCEndsTheRunInOrder) {
    Pty terminal = At("endless");
    ASSERT_TRUE(terminal.WaitFor("Start time"));
    terminal.Type("\x03");
    EXPECT_EQ(terminal.Finish(), 3);
    std::string const shown = terminal.Shown();
    EXPECT_NE(shown.find("Test aborted by user."), shown.npos);
    EXPECT_NE(shown.find("*** TEST SUITE WAS ABORTED BY USER ***"), shown.npos);
    EXPECT_NE(shown.find("TEST SUITE SUMMARY:"), shown.npos);
}

TEST_F(TerminalRunTest, NoColorShowsTextAlone) {
    Pty terminal = At("passing", {{"NO_COLOR", "1"}});
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_EQ(WithoutProgress(terminal.Shown()).find('\x1b'), std::string::npos);
}

TEST_F(TerminalRunTest, ADumbTerminalGetsNoControlSequence) {
    Pty terminal = At("passing", {{"TERM", "dumb"}});
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_EQ(terminal.Shown().find('\x1b'), std::string::npos);
}

} // namespace
