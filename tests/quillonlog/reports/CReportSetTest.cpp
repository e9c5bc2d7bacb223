// A set of reports as a whole: files that fail, threads, names.
#include "siblings/QuillonReports.h"

#include <filesystem>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quillonlog/reports/ReportRun.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CReportSetTest : public ReportRun {
protected:
    // What a report has to put into place when it is finished is in the way.
    void PutInTheWay(std::string const & name) {
        std::filesystem::create_directories(m_Folder.Path() / name / "full");
    }
};

TEST_F(CReportSetTest, FilesAreNamedInTheOrderOfTheRequest) {
    m_Folder.Write("run.xml", "old");
    Begin("junit:@/run.xml,html:@/run.html");
    EXPECT_THAT(
        m_Reports->Files(),
        ElementsAre(
            CReportRequest::File{EReportFormat::JUnit, m_Folder.File("run-2.xml")},
            CReportRequest::File{EReportFormat::Html, m_Folder.File("run.html")}));
    EXPECT_EQ(Contents("run.xml"), "old");
    EXPECT_TRUE(m_Folder.Has("latest.html"));
    EXPECT_TRUE(m_Folder.Has("latest.junit"));
}

TEST_F(CReportSetTest, ReportThatCannotBeBegunThrows) {
    EXPECT_THROW(Begin("html:@/none/run.html"), std::runtime_error);
}

TEST_F(CReportSetTest, WhereOneReportCannotBeBegunTheOthersAreNotLeftEmpty) {
    EXPECT_THROW(
        Begin("junit:@/run.xml,json:@/run.jsonl,html:@/none/run.html"), std::runtime_error);
    EXPECT_FALSE(m_Folder.Has("run.xml"));
    EXPECT_FALSE(m_Folder.Has("run.jsonl"));
    EXPECT_FALSE(m_Folder.Has("latest.junit"));
}

TEST_F(CReportSetTest, ReportThatCannotBeFinishedIsTold) {
    Begin("html:@/run.html,json:@/run.jsonl");
    PutInTheWay("run.html.part");
    Pass("T1");
    EXPECT_THAT(m_Reports->Problems(), IsEmpty());
    End();
    ASSERT_EQ(m_Reports->Problems().size(), 1u);
    EXPECT_THAT(
        m_Reports->Problems()[0],
        HasSubstr("the report \"" + m_Folder.File("run.html") + "\" cannot be written: "));
    EXPECT_THAT(Contents("run.jsonl"), HasSubstr("\"event\":\"run-stop\""));
    EXPECT_THAT(Contents("run.html"), HasSubstr("Not finished"));
}

TEST_F(CReportSetTest, ReportThatFailsInTheRunKeepsItsProblem) {
    Begin("junit:@/run.xml");
    PutInTheWay("run.xml.part");
    for (int i = 0; i < 100; ++i)
        Pass("a test whose case takes its room in the file");
    EXPECT_EQ(m_Reports->Problems().size(), 1u);
    End();
    EXPECT_EQ(m_Reports->Problems().size(), 1u);
}

// It may end in half a line, and what was told in between is missing.
TEST_F(CReportSetTest, ReportThatHasFailedStaysAsItIsAndNeverPasses) {
    Begin("junit:@/run.xml");
    PutInTheWay("run.xml.part");
    for (int i = 0; i < 100; ++i)
        Pass("a test whose case takes its room in the file");
    std::filesystem::remove_all(m_Folder.Path() / "run.xml.part");
    std::string const failed = Contents("run.xml");
    EXPECT_THAT(failed, HasSubstr(" was not finished."));
    EXPECT_THAT(failed, HasSubstr("errors=\"1\""));
    Pass("T");
    End();
    EXPECT_EQ(Contents("run.xml"), failed);
}

TEST_F(CReportSetTest, CloseOfAnEarlierTestLeavesTheOpenOneOpen) {
    Begin("json:@/run.jsonl");
    CTestLog const & first = Open("T1");
    Open("T2");
    m_Reports->TestClosed(first);
    EXPECT_THAT(Contents("run.jsonl"), Not(HasSubstr("\"name\":\"T2\",\"verdict\"")));
    Close(TEST_STATUS_SUCCESS);
    EXPECT_THAT(Contents("run.jsonl"), HasSubstr("\"name\":\"T2\",\"verdict\":\"passed\""));
}

TEST_F(CReportSetTest, SomebodyElsesLatestIsTold) {
    m_Folder.Write("latest.html", "mine");
    Begin("html:@/run.html");
    ASSERT_EQ(m_Reports->Notices().size(), 1u);
    EXPECT_THAT(m_Reports->Notices()[0], HasSubstr("is left alone"));
    EXPECT_THAT(m_Reports->Problems(), IsEmpty());
}

TEST_F(CReportSetTest, QuestionsMayComeFromAnotherThread) {
    Begin("html:@/run.html,junit:@/run.xml,json:@/run.jsonl");
    std::thread window([this] {
        for (int i = 0; i < 200; ++i) {
            m_Suite.AddPrompt({.question = "Q", .answer = "A", .source = "operator"});
            m_Suite.AddDeviceEvent({"arrived", "D"});
        }
    });
    for (int i = 0; i < 200; ++i)
        Fail("T", "no");
    window.join();
    End(ERunVerdict::Failed);
    std::string const journal = Contents("run.jsonl");
    auto const count = [&](char const * part) {
        std::size_t found = 0;
        for (auto at = journal.find(part); at != journal.npos; at = journal.find(part, at + 1))
            ++found;
        return found;
    };
    EXPECT_EQ(count("\"event\":\"prompt\""), 200u);
    EXPECT_EQ(count("\"event\":\"device\""), 200u);
    EXPECT_EQ(count("\"event\":\"entry\""), 200u);
    EXPECT_THAT(m_Reports->Problems(), IsEmpty());
}

} // namespace
