// The whole program with an operator at its terminal.
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <signal.h>
#include <termios.h>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "qnexe/ChildHost.h"
#include "qnexe/linux/Pty.h"

namespace {

class OperatorRunTest : public ChildHost {
protected:
    static std::string Program() { return (ProgramFolder() / "QNExe").string(); }

    static Pty At(std::string const & suite) {
        return Pty(Program(), {"--suite", Suite(suite)}, {});
    }

    // The sample suite over one recording.
    Pty Sample() {
        std::string const suite = (ProgramFolder() / "usb_descriptors.so").string();
        std::filesystem::copy_file(
            std::filesystem::path(RECORDINGS) / "good" / "low_speed_mouse.bin", File("mouse.bin"));
        return Pty(Program(), {"--suite", suite, "--recordings", File(""), "--interactive"}, {});
    }

    static bool Has(Pty const & terminal, std::string const & part) {
        return terminal.Shown().find(part) != std::string::npos;
    }

    // The question may show a moment before the terminal is the editor's again.
    static bool ComesToBeEdited(Pty const & terminal) {
        for (int i = 0; i < 500; ++i) {
            if ((terminal.Modes().c_lflag & (ICANON | ECHO)) == 0) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    static constexpr char CtrlC[] = "\x03";
    static constexpr char CtrlD[] = "\x04";
};

TEST_F(OperatorRunTest, TheSampleSuiteAsksOneQuestionOfEachKind) {
    Pty terminal = Sample();
    ASSERT_TRUE(terminal.WaitFor("Press Enter: It is connected> "));
    terminal.Type("\r");
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Type("maybe\r");
    ASSERT_TRUE(terminal.WaitFor("Type 1 for Yes or 2 for No."));
    terminal.Type("y\r");
    ASSERT_TRUE(terminal.WaitFor("Number [4]> "));
    terminal.Type("99\r");
    ASSERT_TRUE(terminal.WaitFor("Number [99]> "));
    terminal.Type("7\r");
    ASSERT_TRUE(terminal.WaitFor("Text> "));
    terminal.Type("\xC2\xB5x\x7fz\r");
    // Nobody answers the list, and its countdown is seen, also behind half a key.
    ASSERT_TRUE(terminal.WaitFor("Number 1-3 [3] (5 s)> "));
    terminal.Type("\x1b");
    ASSERT_TRUE(terminal.WaitFor("Number 1-3 [3] (3 s)> "));
    ASSERT_TRUE(terminal.WaitFor("Number 0-3 [1]> "));
    terminal.Type("0\r");
    ASSERT_TRUE(terminal.WaitFor("Numbers 1-3, or nothing> "));
    terminal.Type("3 1\r");
    ASSERT_TRUE(terminal.WaitFor("File, or nothing> "));
    terminal.Type(File("mou") + "\t\r");
    EXPECT_EQ(terminal.Finish(), 0);
    for (std::string const & entry :
         {std::string("The operator has connected the device"), std::string("The light is on"),
          std::string("The hub has 7 ports"), std::string("The label says \"\xC2\xB5z\""),
          std::string("No answer in time"), std::string("Next: none"),
          std::string("It has low speed\nIt has high speed"), "Chosen: " + File("mouse.bin")})
        EXPECT_TRUE(Has(terminal, entry)) << entry;
    EXPECT_TRUE(Has(terminal, "  1  low speed\n  2  full speed\n  3  high speed\n  0  None\n"));
}

TEST_F(OperatorRunTest, CtrlCAtAQuestionIsTheOperatorsAbort) {
    Pty terminal = Sample();
    ASSERT_TRUE(terminal.WaitFor("Press Enter: It is connected> "));
    terminal.Type("\r");
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Type(CtrlC);
    EXPECT_EQ(terminal.Finish(), 3);
    EXPECT_TRUE(Has(terminal, "*** TEST SUITE WAS ABORTED BY USER ***"));
    EXPECT_FALSE(Has(terminal, "The light is"));
    EXPECT_FALSE(Has(terminal, "was not answered"));
    EXPECT_FALSE(Has(terminal, "Number [4]"));
}

TEST_F(OperatorRunTest, TheEndOfInputIsNoAnswerAndAborts) {
    Pty terminal = At("asking");
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Type(CtrlD);
    EXPECT_EQ(terminal.Finish(), 3);
    EXPECT_TRUE(
        Has(terminal, "The question \"Is the light on?\" was not answered: the input has ended."));
}

TEST_F(OperatorRunTest, AnEntryStandsAboveTheQuestionThatWaits) {
    Pty terminal = At("asking");
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Type("2\r");
    ASSERT_TRUE(terminal.WaitFor("an entry meanwhile\r\nText> "));
    terminal.Type("N\r");
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_TRUE(Has(terminal, "Text> \r\x1b[Jan entry meanwhile\nText> "));
    EXPECT_TRUE(Has(terminal, "the name is \"N\""));
}

TEST_F(OperatorRunTest, AKeyThatLeavesTheLineEmptyIsNotTheEndOfInput) {
    for (std::string const key :
         {"\x1b[A", "\x7f", "\x15", "x\x7f", "\x16", "\x12", "\x13", "\xff\x15"}) {
        SCOPED_TRACE(testing::PrintToString(key));
        Pty terminal = At("asking");
        ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
        termios modes = terminal.Modes();
        modes.c_iflag &= ~static_cast<tcflag_t>(IXON); // the terminal itself would take Ctrl-S
        terminal.SetModes(modes);
        terminal.Type(key);
        terminal.Type("1\r");
        ASSERT_TRUE(terminal.WaitFor("Text> "));
        terminal.Type("N\r");
        EXPECT_EQ(terminal.Finish(), 0);
        EXPECT_FALSE(Has(terminal, "was not answered"));
    }
}

TEST_F(OperatorRunTest, WhatIsTypedBeforeTheFirstQuestionIsNoAnswerToIt) {
    Pty terminal(
        "/bin/sh", {"-c", "read go; exec \"$0\" --suite \"$1\"", Program(), Suite("asking")}, {});
    terminal.Type("go\n1\n");
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Type("2\r");
    ASSERT_TRUE(terminal.WaitFor("Text> "));
    terminal.Type("N\r");
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_TRUE(Has(terminal, "status 0x0, answer 0"));
}

TEST_F(OperatorRunTest, WhatIsTypedBeforeAQuestionIsNoAnswerToIt) {
    Pty terminal = At("asking");
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Type("1\rtoo early\r");
    ASSERT_TRUE(terminal.WaitFor("Text> "));
    terminal.Type("N\r");
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_TRUE(Has(terminal, "the name is \"N\""));
}

TEST_F(OperatorRunTest, TheTerminalIsGivenBackAsItWas) {
    Pty terminal(
        "/bin/sh", {"-c", "\"$0\" --suite \"$1\"; stty -a", Program(), Suite("asking")}, {});
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Type("1\r");
    ASSERT_TRUE(terminal.WaitFor("Text> "));
    terminal.Type("N\r");
    ASSERT_TRUE(terminal.WaitFor("speed"));
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_TRUE(Has(terminal, " icanon"));
    EXPECT_FALSE(Has(terminal, "-icanon"));
    EXPECT_FALSE(Has(terminal, "-echo "));
}

// Modes that no program would set by itself.
termios Unusual(termios modes) {
    modes.c_iflag |= IXANY | ISTRIP;
    modes.c_lflag |= TOSTOP | NOFLSH;
    modes.c_lflag &= ~static_cast<tcflag_t>(ECHOCTL | ECHOE);
    modes.c_cc[VERASE] = '\b';
    return modes;
}

auto Content(termios const & modes) {
    return std::tuple(
        modes.c_iflag, modes.c_oflag, modes.c_cflag, modes.c_lflag,
        std::vector<cc_t>(modes.c_cc, modes.c_cc + NCCS));
}

TEST_F(OperatorRunTest, WithoutAQuestionTheTerminalKeepsItsModes) {
    Pty terminal(
        "/bin/sh", {"-c", "read go; exec \"$0\" --suite \"$1\"", Program(), Suite("endless")}, {});
    termios const before = Unusual(terminal.Modes());
    terminal.SetModes(before);
    terminal.Type("go\n");
    ASSERT_TRUE(terminal.WaitFor("Start time"));
    EXPECT_EQ(Content(terminal.Modes()), Content(before));
}

TEST_F(OperatorRunTest, ASignalThatEndsTheProgramAtAQuestionGivesTheTerminalBack) {
    for (int const signal : {SIGABRT, SIGHUP, SIGQUIT}) {
        SCOPED_TRACE(signal);
        Pty terminal(
            "/bin/sh", {"-c", "read go; exec \"$0\" --suite \"$1\"", Program(), Suite("asking")},
            {});
        termios const before = Unusual(terminal.Modes());
        terminal.SetModes(before);
        terminal.Type("go\n");
        ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
        EXPECT_NE(Content(terminal.Modes()), Content(before));
        terminal.Signal(signal);
        EXPECT_EQ(terminal.FinishBySignal(), signal);
        EXPECT_EQ(Content(terminal.Modes()), Content(before));
    }
}

TEST_F(OperatorRunTest, TerminationAtAQuestionEndsTheRunInOrder) {
    Pty terminal = At("asking");
    termios const before = terminal.Modes();
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Signal(SIGTERM);
    EXPECT_EQ(terminal.Finish(), 3);
    EXPECT_NE(terminal.Shown().find("TEST SUITE WAS ABORTED BY USER"), std::string::npos);
    EXPECT_EQ(Content(terminal.Modes()), Content(before));
}

TEST_F(OperatorRunTest, TerminationOfARunningTestEndsTheRunInOrder) {
    Pty terminal = At("endless");
    ASSERT_TRUE(terminal.WaitFor("waiting"));
    terminal.Signal(SIGTERM);
    EXPECT_EQ(terminal.Finish(), 3);
    EXPECT_NE(terminal.Shown().find("Test aborted by user."), std::string::npos);
}

TEST_F(OperatorRunTest, TheSecondInterruptAtAQuestionGivesTheTerminalBackToo) {
    Pty terminal = At("asking");
    termios const before = terminal.Modes();
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Signal(SIGINT);
    terminal.Signal(SIGINT);
    // The first one may have ended the run in order before the second was there.
    terminal.Finish();
    EXPECT_EQ(Content(terminal.Modes()), Content(before));
}

TEST_F(OperatorRunTest, AProgramThatWasStoppedAtAQuestionAsksItAgain) {
    Pty terminal(
        "/bin/sh",
        {"-c", "set -m; \"$0\" --suite \"$1\"; stty -a; fg >/dev/null", Program(), Suite("asking")},
        {});
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> "));
    terminal.Type("\x1a");
    ASSERT_TRUE(terminal.WaitFor("speed"));
    ASSERT_TRUE(terminal.WaitFor("1 Yes, 2 No> ", 2));
    EXPECT_TRUE(Has(terminal, " icanon"));
    EXPECT_TRUE(ComesToBeEdited(terminal));
    terminal.Type("1\r");
    ASSERT_TRUE(terminal.WaitFor("Text> "));
    terminal.Type("N\r");
    EXPECT_EQ(terminal.Finish(), 0);
}

} // namespace
