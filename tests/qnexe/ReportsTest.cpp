// The reports of the whole program: at the end of a run, after a kill, and when they cannot be
// written.
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Environment.h"
#include "platform/Host.h"
#include "platform/ProgramRegistry.h"
#include "qnexe/ChildHost.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class ReportsTest : public ChildHost {
protected:
    std::string AllReports() const {
        return "html:" + File("run.html") + ",junit:" + File("run.xml")
               + ",json:" + File("run.jsonl");
    }

    std::string Told() const {
        return "Report: " + File("run.html") + "\nReport: " + File("run.xml")
               + "\nReport: " + File("run.jsonl") + '\n';
    }

    Result RunReporting(std::string const & suite) {
        return Run({"--suite", Suite(suite), "--report", AllReports()});
    }

    // From the page's visible part.
    std::string Body() const {
        std::string const page = Contents(File("run.html"));
        auto const at = page.find("<body>");
        return at != page.npos ? page.substr(at) : page;
    }
    std::string JUnit() const { return Contents(File("run.xml")); }
    std::string Journal() const { return Contents(File("run.jsonl")); }

    std::string LastEvent() const {
        std::string const journal = Journal();
        auto const at = journal.rfind('\n', journal.size() - 2);
        return journal.substr(at + 1);
    }
};

TEST_F(ReportsTest, FailureIsInEveryReportAndTheExitCodeStays) {
    Result const result = RunReporting("failing");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output, Told());
    EXPECT_THAT(Body(), HasSubstr("<h1>failing</h1>"));
    EXPECT_THAT(Body(), HasSubstr("no answer from port 1"));
    EXPECT_THAT(JUnit(), HasSubstr("tests=\"2\" failures=\"1\" errors=\"0\""));
    EXPECT_THAT(JUnit(), HasSubstr("<failure message=\"no answer from port 1\">"));
    EXPECT_THAT(Journal(), HasSubstr("\"status\":\"fail\",\"text\":\"no answer from port 1\""));
    EXPECT_THAT(LastEvent(), HasSubstr("\"event\":\"run-stop\""));
    EXPECT_THAT(LastEvent(), HasSubstr("\"verdict\":\"failed\""));
}

TEST_F(ReportsTest, ConsoleAndLogFileHaveTheBytesOfARunWithoutReports) {
    for (std::string const suite : {"failing", "looking", "empty", "throwing"}) {
        SCOPED_TRACE(suite);
        std::string const log = File(suite + ".log");
        Result const bare = RunSuite(suite);
        Result const reported =
            Run({"--suite", Suite(suite), "--report", AllReports() + ",overwrite", "--log", log});
        EXPECT_EQ(reported.error, bare.error);
        EXPECT_EQ(reported.code, bare.code);
        EXPECT_EQ(Normalized(Contents(log)), bare.error);
    }
}

TEST_F(ReportsTest, HeldBackEntriesComeAsInARunWithoutReports) {
    std::vector<std::string> arguments = {"--suite", Suite("failing"), "--only-failures"};
    Result const bare = Run(arguments);
    arguments.insert(arguments.end(), {"--report", AllReports()});
    EXPECT_EQ(Run(arguments).error, bare.error);
}

TEST_F(ReportsTest, SummaryOfTheSuiteIsInTheJournal) {
    RunReporting("failing");
    EXPECT_THAT(
        Journal(), HasSubstr("\"text\":\"TEST RESULTS:\\n    [ Passed (1); Failed (1) ]\""));
}

TEST_F(ReportsTest, FormattedLogHasReportsToo) {
    Result const result =
        Run({"--suite", Suite("failing"), "--report", AllReports(), "--view", "formatted"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output, Told());
    EXPECT_THAT(JUnit(), HasSubstr("failures=\"1\""));
}

TEST_F(ReportsTest, VariableAsksForReportsUnlessTheOptionDoes) {
    SetEnvironment("QN_REPORT", ("junit:" + File("variable.xml")).c_str());
    EXPECT_EQ(RunSuite("passing").output, "Report: " + File("variable.xml") + '\n');
    Result const result =
        Run({"--suite", Suite("passing"), "--report", "junit:" + File("option.xml")});
    SetEnvironment("QN_REPORT", "xml:a");
    Result const wrong = RunSuite("passing");
    ClearEnvironment("QN_REPORT");
    EXPECT_EQ(result.output, "Report: " + File("option.xml") + '\n');
    EXPECT_FALSE(std::filesystem::exists(File("variable-2.xml")));
    EXPECT_EQ(wrong.code, 4);
    EXPECT_THAT(wrong.error, HasSubstr("QNExe: QN_REPORT: \"xml:a\" asks for no reports"));
}

TEST_F(ReportsTest, FactsOfTheRunStandInThem) {
    if (ON_WINDOWS && !UnderWine()) GTEST_SKIP() << "the machine's own settings stay";
    ProgramRegistry const machine;
    std::ofstream(File("abc.bin"), std::ios::binary) << "abc";
    Run(
        {"--suite", Suite("passing"), "--report", AllReports(), "--recordings", File("abc.bin"),
         "--dut", "tid=4711,room=R<2>"});
    constexpr char digest[] = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
    EXPECT_THAT(Body(), HasSubstr(std::string("SHA-256 ") + digest));
    EXPECT_THAT(Body(), HasSubstr("dut.tid</th><td>4711  (--dut)"));
    EXPECT_THAT(Body(), HasSubstr("R&lt;2&gt;"));
    EXPECT_THAT(Body(), HasSubstr("QNExe</th><td>" PROJECT_VERSION));
    EXPECT_THAT(JUnit(), HasSubstr("<property name=\"Device under test: dut.tid\""));
    EXPECT_THAT(Journal(), HasSubstr(digest));
}

TEST_F(ReportsTest, FilesThatARunReadsStandInThemAlsoWhenTheyAreMissing) {
    std::ofstream(File("run.ini")) << "[Suite]\nTests=1\n";
    std::ofstream(File("answers.json")) << "{\"answers\": []}";
    SetEnvironment("QN_PROMPTS", File("answers.json").c_str());
    Result const result = Run(
        {"--suite", Suite("passing"), "--report", AllReports(), "--settings", File("run.ini"),
         "--recordings", File("none.bin")});
    ClearEnvironment("QN_PROMPTS");
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_THAT(Body(), HasSubstr(File("run.ini") + "</th><td>SHA-256 "));
    EXPECT_THAT(Body(), HasSubstr(File("answers.json") + "</th><td>SHA-256 "));
    EXPECT_THAT(Body(), HasSubstr(File("none.bin") + "</th><td>cannot be read"));
}

TEST_F(ReportsTest, SuiteThatCannotListItsTestsFailsInThem) {
    Result const result = RunReporting("refusing");
    EXPECT_EQ(result.code, 4);
    EXPECT_THAT(Body(), HasSubstr("Could not run</span> <span>the suite cannot list its tests"));
    EXPECT_THAT(JUnit(), Not(HasSubstr("failures=\"0\" errors=\"0\"")));
    EXPECT_THAT(LastEvent(), HasSubstr("\"verdict\":\"could-not-run\""));
}

TEST_F(ReportsTest, SuiteWithoutTestsFailsInThem) {
    EXPECT_EQ(RunReporting("empty").code, 2);
    EXPECT_THAT(Body(), HasSubstr("No test ran"));
    EXPECT_THAT(JUnit(), Not(HasSubstr("failures=\"0\" errors=\"0\"")));
}

TEST_F(ReportsTest, ReportThatCannotBeBegunEndsWith4) {
    Result const result =
        Run({"--suite", Suite("passing"), "--report", "html:" + File("none/run.html")});
    EXPECT_EQ(result.code, 4);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(
        result.error, HasSubstr("QNExe: the report \"" + File("none/run.html") + "\" cannot be"));
    EXPECT_THAT(result.error, Not(HasSubstr("Start time")));
}

TEST_F(ReportsTest, ReportThatCannotBeFinishedEndsWith4) {
    std::filesystem::create_directories(File("run.html.part/full"));
    Result const result = RunReporting("passing");
    EXPECT_EQ(result.code, 4);
    EXPECT_THAT(
        result.error,
        HasSubstr("QNExe: the report \"" + File("run.html") + "\" cannot be written"));
    EXPECT_THAT(JUnit(), HasSubstr("tests=\"2\" failures=\"0\""));
}

TEST_F(ReportsTest, WrongWordsAreAUsageError) {
    for (std::string const words : {"pdf:a", "html:a,html:b"}) {
        Result const result = Run({"--suite", Suite("passing"), "--report", words});
        EXPECT_EQ(result.code, 4);
        EXPECT_THAT(result.error, HasSubstr("asks for no reports"));
    }
    EXPECT_EQ(
        Run({"--suite", Suite("passing"), "--report", "html:" + File("a"), "--report",
             "html:" + File("b")})
            .code,
        4);
}

TEST_F(ReportsTest, SomebodyElsesLatestIsToldAndIsNoFailure) {
    std::ofstream(File("latest.html")) << "mine";
    Result const result = RunReporting("passing");
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.error, HasSubstr("QNExe: \"" + File("latest.html") + "\" is left alone"));
    EXPECT_EQ(Contents(File("latest.html")), "mine");
}

TEST_F(ReportsTest, SecondRunKeepsTheFirst) {
    RunReporting("failing");
    std::string const first = JUnit();
    EXPECT_THAT(RunReporting("passing").output, HasSubstr("run-2.xml"));
    EXPECT_EQ(JUnit(), first);
    EXPECT_THAT(
        Run({"--suite", Suite("passing"), "--report", AllReports() + ",overwrite"}).output, Told());
    EXPECT_NE(JUnit(), first);
}

// The test goes on for ever, and the program is killed in it.
TEST_F(ReportsTest, KilledRunNamesTheOpenTestAsFailed) {
    ChildProcess & child = Start({"--suite", Suite("counting"), "--report", AllReports()});
    ASSERT_TRUE(child.WaitForOutput(200));
    child.Kill();
    ASSERT_TRUE(child.Wait());
    // The reports are long by then: nobody wants to read them here.
    auto const says = [](std::string const & report, char const * part) {
        return report.find(part) != report.npos;
    };
    EXPECT_TRUE(says(JUnit(), "tests=\"1\" failures=\"0\" errors=\"1\""));
    EXPECT_TRUE(says(
        JUnit(), "<testcase name=\"T1\" classname=\"counting\" time=\"0.000\">"
                 "<error message=\"The test was not finished.\">"));
    EXPECT_TRUE(says(JUnit(), "</testsuites>\n"));
    EXPECT_TRUE(says(Body(), "Not finished</span><h3>T1</h3>"));
    EXPECT_TRUE(says(Body(), "<span>entry 10</span>"));
    EXPECT_TRUE(says(Journal(), "\"kind\":\"test\",\"name\":\"T1\"}"));
    EXPECT_TRUE(says(Journal(), "\"text\":\"entry 10\""));
    EXPECT_FALSE(says(Journal(), "\"name\":\"T1\",\"verdict\""));
    EXPECT_FALSE(says(Journal(), "run-stop"));
}

} // namespace
