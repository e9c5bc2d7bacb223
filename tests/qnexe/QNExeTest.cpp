// The whole program on small suites: what it shows, what it files, and the number it ends with.
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "platform/Host.h"
#include "qnexe/ChildHost.h"

namespace {

constexpr char Clean[] = "Fails (0); Aborts (0); Warnings (0)";
constexpr char OneFailure[] = "Fails (1); Aborts (0); Warnings (0)";
constexpr char OneAbort[] = "Fails (1); Aborts (1); Warnings (0)";

class QNExeTest : public ChildHost {
protected:
    // A refusal: nothing but one line, which begins and ends like this.
    void ExpectRefusal(Result const & result, std::string const & begin, std::string const & end) {
        EXPECT_EQ(result.code, 4);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.error.substr(0, begin.size()), begin);
        ASSERT_GE(result.error.size(), begin.size() + end.size());
        EXPECT_EQ(result.error.substr(result.error.size() - end.size()), end);
    }

    Result RunLogging(std::string const & suite, std::string const & log) {
        return Run({"--suite", Suite(suite), "--log", log});
    }

    static std::string Passed(std::string const & test) { return Started() + Stopped(test, Clean); }

    static std::string NoTests() {
        return "FAIL    No tests in this Test Suite were run.\n" + Summary(OneFailure, 0, 0);
    }

    static std::string FailingLog() {
        return Opened() + Started() + "FAIL    no answer from port 1\n" + Stopped("T1", OneFailure)
               + Passed("T2") + Summary(OneFailure, 1, 1);
    }
};

TEST_F(QNExeTest, TestsThatPassEndWith0) {
    EXPECT_EQ(
        RunSuite("passing"),
        (Result{
            0, "",
            Opened() + Passed("T1") + Started() + "INFO    port 2 answers\nWARNING port 2 is slow\n"
                + Stopped("T2", "Fails (0); Aborts (0); Warnings (1)")
                + Summary("Fails (0); Aborts (0); Warnings (1)", 2, 0)}));
}

TEST_F(QNExeTest, SettingsAreShownWithWhereTheyComeFrom) {
    std::ofstream(File("my.ini")) << "[Suite]\nPorts=4\nSpeed=5\n";
    std::string const file = File("my.ini");
    EXPECT_EQ(
        Run({"--show-settings", "--settings", file, "--set", "Suite.Speed=6"}),
        (Result{
            0,
            "--set=Suite.Speed=6  # command line\n--settings=" + file
                + "  # command line\n--show-settings=true  # command line\n"
                  "quillon.programname=QNExe  # built in\nsuite.ports=4  # "
                + file + "\nsuite.speed=6  # --set\n",
            ""}));
}

TEST_F(QNExeTest, ASettingsFileThatIsNotThereKeepsTheSuiteFromRunning) {
    ExpectRefusal(
        Run({"--suite", Suite("passing"), "--settings", File("none.ini")}),
        "QNExe: the settings file \"",
        "cannot be opened. Give --settings a file that may be read.\n");
}

TEST_F(QNExeTest, TestThatFailsEndsWith1AndDoesNotSpoilTheNext) {
    EXPECT_EQ(RunSuite("failing"), (Result{1, "", FailingLog()}));
}

TEST_F(QNExeTest, WarningHidesNoFailure) {
    std::string const counts = "Fails (1); Aborts (0); Warnings (1)";
    EXPECT_EQ(
        RunSuite("warned_failure"),
        (Result{
            1, "",
            Opened() + Started() + "WARNING port 1 is slow\nFAIL    no answer from port 1\n"
                + Stopped("T1", counts) + Summary(counts, 0, 1)}));
}

TEST_F(QNExeTest, TestThatGivesUpEndsWith1) {
    EXPECT_EQ(
        RunSuite("aborting"),
        (Result{
            1, "",
            Opened() + Started()
                + "ABORT   Test aborted.\nFAIL    Test did not execute all required steps.\n"
                + Stopped("T1", OneAbort)
                + "FAIL    One or more functions called in this Test Suite failed to perform "
                  "required tasks.\n"
                + Summary("Fails (2); Aborts (1); Warnings (0)", 0, 1)}));
}

TEST_F(QNExeTest, ExceptionsAreLoggedAndTheNextTestRuns) {
    std::string const aborted =
        "ABORT   Test aborted.\nFAIL    Test did not execute all required steps.\n";
    EXPECT_EQ(
        RunSuite("throwing"),
        (Result{
            1, "",
            Opened() + Started() + "ERROR   Exception thrown: only 50%s of the data came\n"
                + aborted + Stopped("T1", OneAbort) + Started()
                + "ERROR   Exception thrown: <unknown type: no message>\n" + aborted
                + Stopped("T2", OneAbort) + Passed("T3")
                + "FAIL    One or more functions called in this Test Suite failed to perform "
                  "required tasks.\n"
                + Summary("Fails (3); Aborts (2); Warnings (0)", 1, 2)}));
}

TEST_F(QNExeTest, SuiteWithoutTestsEndsWith2) {
    EXPECT_EQ(RunSuite("empty"), (Result{2, "", Opened() + NoTests()}));
}

TEST_F(QNExeTest, SuiteThatOnlySetsUpEndsWith2) {
    EXPECT_EQ(
        RunSuite("utility_only"),
        (Result{
            2, "",
            Opened() + "INFO    Start time: <time>\r\n\nINFO    port 1 is powered\n" + NoTests()}));
}

TEST_F(QNExeTest, SuiteSeesWhatTheHostHasSetUp) {
    Result const result = Run(
        {"--suite", Suite("reporting"), "--recordings", "some folder/100%s", "--verbosity",
         "quiet"});
    EXPECT_EQ(
        result, (Result{
                    0, "",
                    Opened("Quiet") + Started()
                        + "INFO    recordings: some folder/100%s\nINFO    application: QNExe\n"
                          "INFO    title: QNExe\nINFO    global log: yes\nINFO    window: yes\n"
                          "INFO    program name matches: yes\n"
                        + Stopped("Set-up", Clean) + Started() + "INFO    level 0\n"
                        + Stopped("Levels", Clean) + Summary(Clean, 2, 0)}));
}

TEST_F(QNExeTest, LogHasTheLevelThatWasAskedFor) {
    struct Case {
        char const * level;
        char const * entries;
    };
    std::string const head = "INFO    program name matches: yes\n" + Stopped("Set-up", Clean);
    for (auto const & [level, entries] :
         {Case{"Minimal", "INFO    level 0\nINFO    level 1\n"},
          {"3", "INFO    level 0\nINFO    level 1\nINFO    level 2\nINFO    level 3\n"}}) {
        SCOPED_TRACE(level);
        std::string const log = Run({"--suite", Suite("reporting"), "--verbosity", level}).error;
        auto const at = log.find(head);
        ASSERT_NE(at, log.npos);
        EXPECT_EQ(
            log.substr(at + head.size()),
            Started() + entries + Stopped("Levels", Clean) + Summary(Clean, 2, 0));
    }
}

TEST_F(QNExeTest, DefaultLevelIsNormalAndThereAreNoRecordings) {
    std::string const log = RunSuite("reporting").error;
    EXPECT_NE(log.find("INFO    recordings: none\n"), log.npos);
    EXPECT_NE(log.find("INFO    level 3\n" + Stopped("Levels", Clean)), log.npos);
}

TEST_F(QNExeTest, OnlyFailuresLeavesOutWhatPassed) {
    std::string const times = "INFO    \nStop time: <time>\nINFO    Duration:  <seconds>.\n\n";
    EXPECT_EQ(
        Run({"--suite", Suite("failing"), "--only-failures"}),
        (Result{
            1, "",
            Opened() + Started() + times
                + "INFO    \r\n===============\r\n\r\nNow Starting Test: T1\r\n"
                  "no answer from port 1Stopping Test [ T1:\n     Number of: "
                + OneFailure + " ]\r\n\r\n\n" + Started() + times + Summary(OneFailure, 1, 1)}));
}

TEST_F(QNExeTest, LogFileHasTheBytesOfTheConsole) {
    std::string const log = File("run.log");
    Result const result = RunLogging("failing", log);
    EXPECT_EQ(result, (Result{1, "", FailingLog()}));
    EXPECT_EQ(Normalized(Contents(log)), FailingLog());
}

TEST_F(QNExeTest, LogFileGrowsFromRunToRun) {
    std::string const log = File("run.log");
    std::ofstream(log, std::ios::binary) << "before\n";
    RunLogging("failing", log);
    RunLogging("empty", log);
    RunLogging("failing", log);
    std::string const added = Normalized(Contents(log));
    // The first line was written without text mode.
    EXPECT_EQ(added, "before\n" + FailingLog() + Opened() + NoTests() + FailingLog());
}

TEST_F(QNExeTest, LogFileThatCannotBeOpenedKeepsTheSuiteFromRunning) {
    std::string const log = File("missing/run.log");
    EXPECT_EQ(
        RunLogging("passing", log),
        (Result{
            4, "",
            "QNExe: the log file \"" + log
                + "\" cannot be opened. Give --log a file in a folder that exists and may be "
                  "written to.\n"}));
}

TEST_F(QNExeTest, MissingSuiteEndsWith4) {
    ExpectRefusal(
        RunSuite("missing"), "QNExe: the suite \"" + Suite("missing") + "\" cannot be loaded: ",
        ". Give --suite the file of a test suite.\n");
}

TEST_F(QNExeTest, LibraryThatIsNoSuiteEndsWith4) {
    EXPECT_EQ(
        RunSuite("no_suite"),
        (Result{
            4, "",
            "QNExe: the suite \"" + Suite("no_suite")
                + "\" is no test suite: it lacks what MORVEX_TEST_SUITE exports. Name the suite's "
                  "class with that macro and build it again.\n"}));
}

TEST_F(QNExeTest, SuiteOfAnotherContractEndsWith4) {
    EXPECT_EQ(
        RunSuite("other_contract"),
        (Result{
            4, "",
            "QNExe: the suite \"" + Suite("other_contract")
                + "\" was built for contract 7, this program has 1. Build the suite again with "
                  "this program's headers.\n"}));
}

TEST_F(QNExeTest, SuiteThatCannotListItsTestsEndsWith4AndItsText) {
    EXPECT_EQ(
        RunSuite("refusing"),
        (Result{
            4, "",
            Opened() + NoTests()
                + "QNExe: the suite cannot list its tests: no recordings in \"100%s\". Give "
                  "--recordings a folder.\n"}));
}

TEST_F(QNExeTest, SuiteThatCannotBeMadeEndsWith4) {
    EXPECT_EQ(
        RunSuite("unmakeable"),
        (Result{4, "", "QNExe: the suite cannot be made: <unknown type: no message>\n"}));
}

TEST_F(QNExeTest, UsageErrorGoesToStandardErrorAndEndsWith4) {
    EXPECT_EQ(
        Run({}), (Result{4, "", "QNExe: --suite is required.\nQNExe --help shows the options.\n"}));
}

TEST_F(QNExeTest, VersionGoesToStandardOutput) {
    EXPECT_EQ(Run({"--version"}), (Result{0, "QNExe " PROJECT_VERSION "\n", ""}));
}

TEST_F(QNExeTest, WhereThereIsNoWindowTheWishForOneEndsWith4) {
    if (ON_WINDOWS) GTEST_SKIP() << "there is a window";
    EXPECT_EQ(
        Run({"--window"}),
        (Result{
            4, "",
            "QNExe: there is a window on Windows only. Leave --window out: the terminal shows the "
            "log.\n"}));
}

TEST_F(QNExeTest, HelpGoesToStandardOutput) {
    Result const result = Run({"--help"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_NE(result.output.find("--recordings DIR"), result.output.npos);
}

TEST_F(QNExeTest, AFormattedLogWithoutATerminalIsPlainLines) {
    std::string const stop = "\nStop time: <time>\nDuration:  <seconds>.\nStopping Test [ ";
    std::string const heading = "\n===============\n\nNow Starting Test: ";
    EXPECT_EQ(
        Run({"--suite", Suite("passing"), "--view", "formatted"}),
        (Result{
            0, "",
            "Test log initialized.\nLog Level: Normal\nUser Input module initialized\n" + heading
                + "T1\nStart time: <time>\n" + stop + "T1:\n     Number of: " + Clean + " ]\n\n"
                + heading + "T2\nStart time: <time>\nport 2 answers\nport 2 is slow\n" + stop
                + "T2:\n     Number of: Fails (0); Aborts (0); Warnings (1) ]\n\n"
                  "TEST SUITE SUMMARY:\n    [ Fails (0); Aborts (0); Warnings (1) ]\n"
                  "TEST RESULTS:\n    [ Passed (2); Failed (0) ]\n"}));
}

TEST_F(QNExeTest, FileOfAFormattedLogHasTheBytesOfTheConsole) {
    std::string const log = File("run.log");
    Run({"--suite", Suite("failing"), "--view", "formatted", "--log", log});
    EXPECT_EQ(Normalized(Contents(log)), FailingLog());
}

TEST_F(QNExeTest, AFileThatAFormattedLogCannotOpenEndsWith4) {
    ExpectRefusal(
        Run({"--suite", Suite("passing"), "--view", "formatted", "--log", File("no/run.log")}),
        "QNExe: the log file \"",
        "Give --log a file in a folder that exists and may be written to.\n");
}

} // namespace
