// The whole program at a terminal: looks, progress, and Ctrl-C as a person presses it.
#include <algorithm>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "qnexe/ChildHost.h"
#include "qnexe/linux/Pty.h"

namespace {

class TerminalRunTest : public ChildHost {
protected:
    static std::string Program() { return (ProgramFolder() / ProgramFileName("QNExe")).string(); }

    Pty
    At(std::string const & suite, Pty::Variables const & variables = {},
       unsigned short columns = 80) {
        return Pty(Program(), {"--suite", Suite(suite)}, variables, columns);
    }

    // The sample suite over those of the project's recordings.
    Pty AtSample(std::vector<std::string> const & names) {
        std::filesystem::path const folder = File("recordings");
        std::filesystem::create_directories(folder);
        for (std::string const & name : names) {
            auto const source = std::filesystem::path(RECORDINGS) / name;
            std::filesystem::copy(source, folder / source.filename());
        }
        return Pty(Program(), Sample(folder), {});
    }

    static std::vector<std::string> Sample(std::filesystem::path const & recordings) {
        auto const suite = ProgramFolder() / ("usb_descriptors" SUITE_SUFFIX);
        return {"--suite",           suite.string(), "--recordings",
                recordings.string(), "--view",       "formatted"};
    }

    // The lines of progress that were drawn, one behind another. Each is taken away in the end.
    static std::vector<std::string> Progress(std::string const & shown) {
        std::vector<std::string> lines;
        std::size_t from = 0;
        for (std::size_t to; (to = shown.find("\r\x1b[K", from)) != shown.npos; from = to + 4) {
            std::size_t const line = shown.rfind('\n', to);
            std::size_t const begin = line == shown.npos ? from : std::max(from, line + 1);
            lines.push_back(shown.substr(begin, to - begin));
        }
        return lines;
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

    // What a display shows of a test's begin stands in no console's log.
    static std::string WithoutHeadings(std::string const & text) {
        std::regex const heading("\n===============\n\nNow Starting Test: [^\n]*\n");
        return std::regex_replace(text, heading, "");
    }

    static std::vector<Pty::Variables> WithoutColors() {
        return {{{"NO_COLOR", "1"}}, {{"CLICOLOR", "0"}}};
    }

    static std::string In(std::string const & codes, std::string const & text) {
        return "\x1b[" + codes + "m" + text + "\x1b[0m\n";
    }

    static std::string ShownOpening() {
        return "Test log initialized.\nLog Level: Normal\nUser Input module initialized\n";
    }

    static std::string ShownStart(std::string const & test) {
        return "\n" + In(Start, "===============") + "\n" + In(Start, "Now Starting Test: " + test)
               + In(Start, "Start time: <time>");
    }

    static std::string ShownStop(
        std::string const & test, std::string const & counts, std::string const & look = Stop) {
        return "\n" + In(look, "Stop time: <time>") + In(look, "Duration:  <seconds>.")
               + In(look, "Stopping Test [ " + test + ":")
               + In(look, "     Number of: " + counts + " ]") + "\n";
    }

    static std::string ShownPass(std::string const & test) {
        return ShownStart(test) + ShownStop(test, Clean);
    }

    static std::string ShownSummary(
        std::string const & counts, std::string const & results, std::string const & look = Sum) {
        return In(look, "TEST SUITE SUMMARY:") + In(look, "    [ " + counts + " ]")
               + In(look, "TEST RESULTS:") + In(look, "    [ " + results + " ]");
    }

    // The dark blue of the library, made readable on black; its green is so already.
    static constexpr char Start[] = "1;3;38;2;76;76;195";
    static constexpr char Stop[] = "1;38;2;0;127;0";
    static constexpr char Sum[] = "1;3;38;2;0;127;0";
    static constexpr char Red[] = "38;2;255;0;0";
    static constexpr char BoldRed[] = "1;38;2;255;0;0";
    static constexpr char FailedSum[] = "1;3;38;2;191;0;0";
    static constexpr char FailedStop[] = "1;38;2;191;0;0";
    static constexpr char Clean[] = "Fails (0); Aborts (0); Warnings (0)";
    static constexpr char OneFailure[] = "Fails (1); Aborts (0); Warnings (0)";
};

TEST_F(TerminalRunTest, APassingRunIsShownInItsLooks) {
    Pty terminal = At("passing");
    EXPECT_EQ(terminal.Finish(), 0);
    std::string const counts = "Fails (0); Aborts (0); Warnings (1)";
    EXPECT_EQ(
        Normalized(WithoutProgress(terminal.Shown())),
        ShownOpening() + ShownStart("T1") + ShownStop("T1", "Fails (0); Aborts (0); Warnings (0)")
            + "\n" + ShownStart("T2").substr(1) + "port 2 answers\n" + In(Red, "port 2 is slow")
            + ShownStop("T2", counts) + ShownSummary(counts, "Passed (2); Failed (0)"));
}

TEST_F(TerminalRunTest, ProgressIsShownBeneathTheLogAndGoneAtTheEnd) {
    Pty terminal = At("passing");
    EXPECT_EQ(terminal.Finish(), 0);
    std::string const shown = terminal.Shown();
    EXPECT_NE(shown.find("/2  T"), shown.npos);
    EXPECT_EQ(shown.substr(shown.size() - 4), "\r\x1b[K");
}

TEST_F(TerminalRunTest, ProgressIsCutToTheTerminalsWidth) {
    Pty terminal = At("passing", {}, 28);
    EXPECT_EQ(terminal.Finish(), 0);
    auto const progress = Progress(terminal.Shown());
    ASSERT_FALSE(progress.empty());
    EXPECT_EQ(progress.back(), "[####################]  2/2");
    for (std::string const & line : progress)
        EXPECT_LE(line.size(), 27u) << line;
}

TEST_F(TerminalRunTest, AtTheEndEveryTestIsDone) {
    Pty terminal = At("passing");
    EXPECT_EQ(terminal.Finish(), 0);
    auto const progress = Progress(terminal.Shown());
    ASSERT_FALSE(progress.empty());
    EXPECT_EQ(progress.back(), "[####################]  2/2  T2");
}

TEST_F(TerminalRunTest, ALookEndsWithItsEntry) {
    Pty terminal = At("looking");
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_EQ(
        Normalized(WithoutProgress(terminal.Shown())),
        ShownOpening() + ShownStart("T1") + "plain\n"
            + In("1;3;4;38;2;0;0;0;48;2;255;255;0", "marked") + "plain again\n"
            + ShownStop("T1", Clean) + ShownSummary(Clean, "Passed (1); Failed (0)"));
}

TEST_F(TerminalRunTest, TheSampleSuiteIsShownInItsLooks) {
    Pty terminal = AtSample({"good/low_speed_mouse.bin", "faulty/power_above_limit.bin"});
    EXPECT_EQ(terminal.Finish(), 1);
    std::string expected = ShownOpening();
    for (char const * device : {"f1d0:0001 ", "f1d0:010e "}) {
        for (char const * part :
             {"Structure", "Device descriptor", "Configuration descriptors",
              "Interface descriptors", "Endpoint descriptors"}) {
            std::string const test = std::string(device) + part;
            expected +=
                test != "f1d0:010e Configuration descriptors"
                    ? ShownPass(test)
                    : ShownStart(test)
                          + In(
                              BoldRed, "USB 2.0 7.2.1 bMaxPower at offset 0x001A is 0xFB: 502 mA, "
                                       "a device draws at most 500 mA from the bus")
                          + ShownStop(test, OneFailure, FailedStop);
        }
    }
    EXPECT_EQ(
        Normalized(WithoutProgress(terminal.Shown())),
        expected + ShownSummary(OneFailure, "Passed (9); Failed (1)", FailedSum));
}

TEST_F(TerminalRunTest, TheTerminalShowsTheLinesOfAPlainRun) {
    Pty terminal(Program(), Sample(RECORDINGS), {});
    EXPECT_EQ(terminal.Finish(), 1);
    std::regex const looks("\x1b\\[[0-9;]*m");
    EXPECT_EQ(
        std::regex_replace(Normalized(WithoutProgress(terminal.Shown())), looks, ""),
        Run(Sample(RECORDINGS)).error);
}

TEST_F(TerminalRunTest, CtrlCEndsTheRunInOrder) {
    Pty terminal = At("endless");
    ASSERT_TRUE(terminal.WaitFor("Start time"));
    terminal.Type("\x03");
    EXPECT_EQ(terminal.Finish(), 3);
    std::string const counts = "Fails (1); Aborts (1); Warnings (0)";
    EXPECT_EQ(
        Normalized(WithoutProgress(terminal.Shown())),
        ShownOpening() + ShownStart("T1") + In(BoldRed, "Test aborted by user.")
            + In(BoldRed, "Test did not execute all required steps.")
            + ShownStop("T1", counts, FailedStop) + "\n"
            + In(BoldRed, "*** TEST SUITE WAS ABORTED BY USER ***")
            + In(
                BoldRed, "One or more functions called in this Test Suite failed to perform "
                         "required tasks.")
            + ShownSummary(
                "Fails (2); Aborts (2); Warnings (0)", "Passed (0); Failed (1)", FailedSum));
}

TEST_F(TerminalRunTest, ReportsTellThatTheOperatorEndedTheRun) {
    Pty terminal(
        Program(), {"--suite", Suite("endless"), "--report", "json:" + File("run.jsonl")}, {});
    ASSERT_TRUE(terminal.WaitFor("Start time"));
    terminal.Type("\x03");
    EXPECT_EQ(terminal.Finish(), 3);
    EXPECT_NE(
        Contents(File("run.jsonl")).find("\"verdict\":\"aborted-by-operator\""), std::string::npos);
}

TEST_F(TerminalRunTest, NoColorShowsTextAlone) {
    Pty terminal = At("passing", {{"NO_COLOR", "1"}});
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_EQ(WithoutProgress(terminal.Shown()).find('\x1b'), std::string::npos);
}

TEST_F(TerminalRunTest, WithoutColorsEveryEntryHasItsWord) {
    for (Pty::Variables const & variables : WithoutColors()) {
        Pty terminal = At("passing", variables);
        EXPECT_EQ(terminal.Finish(), 0);
        std::string const shown = Normalized(WithoutProgress(terminal.Shown()));
        EXPECT_NE(shown.find("Now Starting Test: T2\n"), std::string::npos);
        std::string console = RunSuite("passing").error;
        std::erase(console, '\r');
        EXPECT_EQ(WithoutHeadings(shown), console);
    }
}

TEST_F(TerminalRunTest, WithoutColorsProgressIsShownAndGoneAtTheEnd) {
    for (Pty::Variables const & variables : WithoutColors()) {
        Pty terminal = At("passing", variables);
        EXPECT_EQ(terminal.Finish(), 0);
        std::string const shown = terminal.Shown();
        auto const progress = Progress(shown);
        ASSERT_FALSE(progress.empty());
        EXPECT_EQ(progress.back(), "[####################]  2/2  T2");
        EXPECT_EQ(shown.substr(shown.size() - 4), "\r\x1b[K");
    }
}

TEST_F(TerminalRunTest, WithoutColorsALogFileAndReportsAreAsEver) {
    std::string const log = File("run.log");
    Pty terminal(
        Program(),
        {"--suite", Suite("failing"), "--log", log, "--report", "json:" + File("run.jsonl")},
        {{"NO_COLOR", "1"}});
    EXPECT_EQ(terminal.Finish(), 1);
    EXPECT_EQ(Normalized(Contents(log)), RunSuite("failing").error);
    EXPECT_NE(
        Contents(File("run.jsonl")).find("\"status\":\"fail\",\"text\":\"no answer from port 1\""),
        std::string::npos);
}

TEST_F(TerminalRunTest, ViewOfTheConsoleHasNoProgress) {
    Pty terminal(Program(), {"--suite", Suite("passing"), "--view", "console"}, {});
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_EQ(Normalized(terminal.Shown()), RunSuite("passing").error);
}

TEST_F(TerminalRunTest, CliColorZeroShowsTextAloneUnlessColorsAreForced) {
    Pty plain = At("passing", {{"CLICOLOR", "0"}});
    EXPECT_EQ(plain.Finish(), 0);
    EXPECT_EQ(WithoutProgress(plain.Shown()).find('\x1b'), std::string::npos);
    Pty forced = At("passing", {{"CLICOLOR", "0"}, {"CLICOLOR_FORCE", "1"}});
    EXPECT_EQ(forced.Finish(), 0);
    EXPECT_NE(forced.Shown().find(In(Red, "port 2 is slow")), std::string::npos);
}

TEST_F(TerminalRunTest, ADumbTerminalGetsNoControlSequence) {
    Pty terminal = At("passing", {{"TERM", "dumb"}});
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_EQ(Normalized(terminal.Shown()), RunSuite("passing").error);
}

} // namespace
