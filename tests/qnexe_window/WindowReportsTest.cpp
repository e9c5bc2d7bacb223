// The reports of runs that an operator starts at the window, and what he is told of them.
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Environment.h"
#include "qnexe_window/WindowChild.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class WindowReportsTest : public WindowChild {
protected:
    ~WindowReportsTest() override { ClearEnvironment("QN_REPORT"); }

    std::string AllReports() const {
        return "html:" + File("run.html") + ",junit:" + File("run.xml")
               + ",json:" + File("run.jsonl");
    }

    std::string Told() const {
        return "Report: " + File("run.html") + "\nReport: " + File("run.xml")
               + "\nReport: " + File("run.jsonl") + '\n';
    }

    std::string Shown() const { return Narrow(Log().RichText()); }

    // What is told stands out, however the run has ended.
    void ExpectProblem(std::wstring const & text) {
        CHARFORMAT2W const look = Log().LookOf(text);
        EXPECT_NE(look.dwEffects & CFE_BOLD, 0u);
        EXPECT_EQ(look.dwEffects & CFE_AUTOCOLOR, 0u);
    }
};

TEST_F(WindowReportsTest, ReportsOfARunAreWrittenAndNamedBehindItsLog) {
    Open({"--suite", Suite("failing"), "--report", AllReports()});
    RunToState(L"Failed");
    EXPECT_THAT(Shown(), EndsWith('\n' + Told()));
    EXPECT_THAT(Contents(File("run.html")), HasSubstr("no answer from port 1"));
    EXPECT_THAT(Contents(File("run.xml")), HasSubstr("tests=\"2\" failures=\"1\" errors=\"0\""));
    EXPECT_THAT(Contents(File("run.jsonl")), HasSubstr("\"verdict\":\"failed\""));
    PostMessageW(Window().Handle(), WM_CLOSE, 0, 0);
    Result const result = Finish();
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output, Told());
}

TEST_F(WindowReportsTest, EachRunHasReportsOfItsOwn) {
    Open({"--suite", Suite("passing"), "--report", "junit:" + File("run.xml")});
    RunToState(L"Passed");
    RunToState(L"Passed");
    EXPECT_THAT(Shown(), EndsWith("\nReport: " + File("run-2.xml") + '\n'));
    EXPECT_TRUE(std::filesystem::exists(File("run.xml")));
    EXPECT_TRUE(std::filesystem::exists(File("run-2.xml")));
    EXPECT_EQ(Close(), 0);
}

TEST_F(WindowReportsTest, VariableAsksForReportsToo) {
    SetEnvironment("QN_REPORT", ("junit:" + File("variable.xml")).c_str());
    OpenWithSuite("passing");
    RunToState(L"Passed");
    EXPECT_THAT(Shown(), EndsWith("\nReport: " + File("variable.xml") + '\n'));
    EXPECT_TRUE(std::filesystem::exists(File("variable.xml")));
    EXPECT_EQ(Close(), 0);
}

TEST_F(WindowReportsTest, ReportThatCannotBeBegunKeepsTheRunFromStarting) {
    Open({"--suite", Suite("passing"), "--report", "html:" + File("none/run.html")});
    RunToState(L"Could not run");
    EXPECT_THAT(Shown(), HasSubstr("the report \"" + File("none/run.html") + "\" cannot be"));
    EXPECT_THAT(Shown(), Not(HasSubstr("Start time")));
    ExpectProblem(L"cannot be");
    EXPECT_EQ(Close(), 4);
}

TEST_F(WindowReportsTest, ReportThatCannotBeFinishedIsToldAndEndsWith4) {
    std::filesystem::create_directories(File("run.html.part/full"));
    Open({"--suite", Suite("passing"), "--report", AllReports()});
    RunToState(L"Could not run");
    EXPECT_THAT(Shown(), HasSubstr("the report \"" + File("run.html") + "\" cannot be written"));
    EXPECT_THAT(Shown(), HasSubstr("Passed (2); Failed (0)"));
    ExpectProblem(L"cannot be written");
    PostMessageW(Window().Handle(), WM_CLOSE, 0, 0);
    Result const result = Finish();
    EXPECT_EQ(result.code, 4);
    EXPECT_THAT(result.error, HasSubstr("QNExe: the report \"" + File("run.html") + "\" cannot"));
}

TEST_F(WindowReportsTest, WrongWordsOfTheVariableAreAProblemOfTheRun) {
    SetEnvironment("QN_REPORT", "xml:a");
    OpenWithSuite("passing");
    RunToState(L"Could not run");
    EXPECT_THAT(Shown(), HasSubstr("\"xml:a\" asks for no reports"));
    EXPECT_EQ(Close(), 4);
}

} // namespace
