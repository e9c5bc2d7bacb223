// When an entry reaches the file of a growing page, by a clock of the test's own.
#include <chrono>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quillonlog/reports/Folder.h"
#include "siblings/quillonlog/reports/HtmlReport.h"

namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

class HtmlReportBurstTest : public testing::Test {
protected:
    HtmlReportBurstTest() {
        m_Section.number = 1;
        m_Section.name = "T1";
        m_Section.isTest = true;
        m_Section.start.steady = m_Now;
        m_Page.RunStarted(m_Run);
        m_Page.SectionOpened(m_Run, m_Section);
        Write("the first");
    }

    void Write(std::string const & text, EntryKind kind = EntryKind::Info) {
        m_Page.EntryWritten(m_Section, {kind, text, "", {{}, m_Now}});
    }

    std::string File() const { return m_Folder.Contents("page.html"); }

    Folder m_Folder;
    RunRecord m_Run;
    Section m_Section;
    std::chrono::steady_clock::time_point m_Now{1h};
    HtmlReport m_Page{std::make_unique<ReportFile>(m_Folder.File("page.html"), RawFile::Open::New)};
};

TEST_F(HtmlReportBurstTest, FirstEntryOfATestIsThereAtOnce) {
    EXPECT_THAT(File(), HasSubstr("the first</span></li>\n"));
    m_Page.SectionClosed(m_Run, m_Section);
    m_Page.SectionOpened(m_Run, m_Section);
    Write("of the next test");
    EXPECT_THAT(File(), HasSubstr("of the next test"));
}

TEST_F(HtmlReportBurstTest, EntriesThatFollowFastComeTogether) {
    m_Now += 9ms;
    Write("in a burst");
    EXPECT_THAT(File(), Not(HasSubstr("in a burst")));
    m_Now += 1ms;
    Write("a moment later");
    EXPECT_THAT(File(), HasSubstr("in a burst</span></li>\n<li"));
    EXPECT_THAT(File(), HasSubstr("a moment later</span></li>\n"));
}

TEST_F(HtmlReportBurstTest, EntriesThatAPersonCanFollowAreThereAtOnce) {
    for (int entry = 0; entry < 3; ++entry) {
        m_Now += 10ms;
        Write("entry " + std::to_string(entry));
        EXPECT_THAT(File(), HasSubstr("entry " + std::to_string(entry)));
    }
}

TEST_F(HtmlReportBurstTest, ProblemIsThereAtOnceWithWhatLedToIt) {
    for (EntryKind const kind : {EntryKind::Fail, EntryKind::Abort, EntryKind::Error}) {
        std::string const number = std::to_string(static_cast<int>(kind));
        Write("cause " + number);
        EXPECT_THAT(File(), Not(HasSubstr("cause " + number)));
        Write("problem " + number, kind);
        EXPECT_THAT(File(), HasSubstr("cause " + number));
        EXPECT_THAT(File(), HasSubstr("problem " + number));
    }
}

TEST_F(HtmlReportBurstTest, NoMoreThanAPieceIsKeptBack) {
    Write(std::string(2000, 'x'));
    EXPECT_THAT(File(), Not(HasSubstr("xxx")));
    Write(std::string(2000, 'y'));
    EXPECT_THAT(File(), HasSubstr("xxx"));
    EXPECT_THAT(File(), HasSubstr("yyy"));
}

TEST_F(HtmlReportBurstTest, TestThatIsOverHasAllItsEntries) {
    Write("the last");
    m_Page.SectionClosed(m_Run, m_Section);
    EXPECT_THAT(File(), HasSubstr("the last</span></li>\n</ol></noscript>\n"));
}

// So that a kill in the middle of its next write leaves the one or the other.
TEST(HtmlReportStateTest, StateOfAGrowingPageStandsInOnePageOfItsFile) {
    Folder const folder;
    for (std::size_t size = 0; size < ReportFile::PageSize; size += 256) {
        SCOPED_TRACE(size);
        RunRecord run;
        run.facts.suite = std::string(size, 'x');
        HtmlReport page(
            std::make_unique<ReportFile>(folder.File("page.html"), RawFile::Open::Empty));
        page.RunStarted(run);
        std::string const file = folder.Contents("page.html");
        std::size_t const begin = file.find("<header class=\"top o\">");
        std::size_t const end = file.find("</header>", begin);
        ASSERT_NE(end, file.npos);
        EXPECT_EQ(begin / ReportFile::PageSize, end / ReportFile::PageSize);
    }
}

} // namespace
