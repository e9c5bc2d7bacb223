// The page as a text: what it says at the end of a run and at every moment before. How a browser
// shows it is tested by tests/browser.
#include <regex>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quillonlog/reports/ReportRun.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class HtmlReportTest : public ReportRun {
protected:
    HtmlReportTest() {
        Begin("html:@/run.html", {"my <suite>", {{"Versions", {{"<QNExe>", "1 & 2"}}}}});
    }

    std::string Page() const { return Contents("run.html"); }

    // The page without style sheet and script.
    std::string Body() const {
        std::string const page = Page();
        return page.substr(page.find("<body>"));
    }

    static std::size_t CountOf(std::string const & text, std::string const & part) {
        std::size_t count = 0;
        for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }
};

TEST_F(HtmlReportTest, PageNeedsNoNetwork) {
    Pass("T1");
    End();
    std::string const page = Page();
    EXPECT_THAT(page, HasSubstr("Content-Security-Policy\" content=\"default-src 'none';"));
    for (char const * const reference : {"http:", "https:", "src=", "@import", "url("})
        EXPECT_EQ(page.find(reference), page.npos) << reference;
}

TEST_F(HtmlReportTest, HeadTellsTheVerdictAndWhatWasTested) {
    Pass("T1");
    Fail("T<2>", "no & answer");
    End(ERunVerdict::Failed, "because <b>");
    std::string const body = Body();
    EXPECT_THAT(body, HasSubstr("<h1>my &lt;suite&gt;</h1>"));
    EXPECT_THAT(
        body, HasSubstr("<span class=\"pill f\">Failed</span> <span>because &lt;b&gt;</span>"));
    EXPECT_THAT(body, HasSubstr("aria-label=\"1 of 2 tests passed\""));
    EXPECT_THAT(body, HasSubstr("<tr><th scope=\"row\">&lt;QNExe&gt;</th><td>1 &amp; 2</td></tr>"));
    EXPECT_THAT(body, HasSubstr("<a href=\"#t2\">T&lt;2&gt;</a><p>no &amp; answer</p></div></li>"));
}

TEST_F(HtmlReportTest, EntryHasAnAnchorAKindAndItsLook) {
    Open("T1");
    Write(TEST_STATUS_INFO, "<script>alert(1)</script>", "font-weight: bold;color:#0000AA");
    Write(TEST_STATUS_FAIL, "two\nlines");
    Close(TEST_STATUS_FAIL);
    End(ERunVerdict::Failed);
    std::string const body = std::regex_replace(Body(), std::regex("\\d\\.\\d{3}"), "<t>");
    EXPECT_THAT(
        body,
        HasSubstr(
            "<noscript><ol>\n"
            "<li id=e1-1 class=\"i sb sc\" style=\"--l:#0000aa;--d:#8080d5\"><a href=#e1-1><t></a>"
            "<b>Info</b><span>&lt;script&gt;alert(1)&lt;/script&gt;</span></li>\n"
            "<li id=e1-2 class=\"f\"><a href=#e1-2><t></a><b>Fail</b><span>two\nlines</span></li>\n"
            "</ol></noscript>\n</div></details>"));
}

TEST_F(HtmlReportTest, TestsThatFailedAreUnfolded) {
    Pass("T1");
    Fail("T2", "no");
    End(ERunVerdict::Failed);
    EXPECT_THAT(Body(), HasSubstr("<details class=\"t p\" id=\"t1\" data-n=\"0\"><summary>"));
    EXPECT_THAT(Body(), HasSubstr("<details class=\"t f\" id=\"t2\" data-n=\"1\" open><summary>"));
}

TEST_F(HtmlReportTest, GrowingPageNamesTheOpenTestAndHasItsEntries) {
    Pass("T1");
    Open("T2");
    Write(TEST_STATUS_INFO, "the last words");
    std::string const body = Body();
    EXPECT_THAT(
        body, HasSubstr("<span class=\"pill o\">Not finished</span> <span>So far 1 test: "
                        "1 passed, 0 failed, 0 aborted."));
    std::string const open = body.substr(body.find("id=\"t2\""));
    EXPECT_THAT(
        open, HasSubstr("Not finished</span><h3>T2</h3><span class=\"m\">counts as failed"));
    EXPECT_THAT(open, HasSubstr("the last words</span></li>\n"));
    EXPECT_THAT(open, Not(HasSubstr("class=\"r\"")));
    EXPECT_THAT(body, HasSubstr("<p class=\"r\"><span class=\"pill p\">Passed</span> after"));
}

TEST_F(HtmlReportTest, FinishedPageHasNothingOfTheGrowingOne) {
    Pass("T1");
    Fail("T2", "no");
    End(ERunVerdict::Failed);
    EXPECT_THAT(Body(), Not(HasSubstr("Not finished")));
    EXPECT_THAT(Body(), Not(HasSubstr("class=\"r\"")));
    EXPECT_TRUE(Page().ends_with("</html>\n"));
    EXPECT_FALSE(m_Folder.Has("run.html.part"));
}

TEST_F(HtmlReportTest, TestThatWasLeftOpenIsAborted) {
    Open("T1");
    Pass("T2");
    End(ERunVerdict::Failed);
    EXPECT_THAT(Body(), HasSubstr("<span class=\"pill a\">Aborted</span><h3>T1</h3>"));
}

TEST_F(HtmlReportTest, EveryEntryStandsOnceInBlocks) {
    Open("T1");
    for (int i = 0; i < 1001; ++i)
        Write(TEST_STATUS_INFO, "entry");
    Close(TEST_STATUS_SUCCESS);
    End();
    EXPECT_EQ(CountOf(Body(), "<li id=e1-"), 1001u);
    EXPECT_EQ(CountOf(Body(), "<noscript><ol>\n"), 5u);
    EXPECT_EQ(CountOf(Body(), "</ol></noscript>\n"), 5u);
    EXPECT_THAT(Body(), HasSubstr("<li id=e1-1001 "));
}

TEST_F(HtmlReportTest, QuestionsAndDevicesStandAmongTheEntries) {
    Open("T1");
    m_Suite.AddPrompt({.question = "Plug?", .answer = "ok", .source = "operator"});
    m_Suite.AddPrompt({.question = "Port?", .source = "none", .reason = "too late"});
    m_Suite.AddDeviceEvent({"arrived", "USB#1"});
    Close(TEST_STATUS_SUCCESS);
    End();
    EXPECT_THAT(Body(), HasSubstr("<b>Question</b><span>Plug?\n&quot;ok&quot; (operator)</span>"));
    EXPECT_THAT(Body(), HasSubstr("<b>Question</b><span>Port?\nno answer: too late (none)</span>"));
    EXPECT_THAT(Body(), HasSubstr("<b>Device</b><span>arrived: USB#1</span>"));
}

TEST_F(HtmlReportTest, WhatTheSuiteFiledIsShownButForEachTestsLine) {
    m_Suite.AddMeta("Test-Pass", "T1 [line of a test]");
    m_Suite.AddMeta("Test-Fail", "T2 [line of a test]");
    m_Suite.AddMeta("Suite-Result", "PASS [x]");
    m_Suite.AddToSummary("TestVersion", "Morvex.dll ver 1");
    End();
    EXPECT_THAT(Body(), HasSubstr("<tr><th scope=\"row\">Suite-Result</th><td>PASS [x]</td></tr>"));
    EXPECT_THAT(Body(), HasSubstr("Morvex.dll ver 1"));
    EXPECT_THAT(Body(), Not(HasSubstr("line of a test")));
}

TEST_F(HtmlReportTest, LongRunLeavesOutInformationAndNothingElse) {
    auto const write = [this](int count, TEST_STATUS status, char const * text) {
        for (int i = 0; i < count; ++i)
            Write(status, text);
    };
    Open("T1");
    write(100'000, TEST_STATUS_INFO, "early");
    Close(TEST_STATUS_SUCCESS);
    Open("T2");
    write(300, TEST_STATUS_INFO, "late");
    write(300, TEST_STATUS_FAIL, "failure");
    write(300, TEST_STATUS_WARNING, "warning");
    write(300, TEST_STATUS_ERROR, "error");
    Close(TEST_STATUS_FAIL);
    EXPECT_THAT(Body(), HasSubstr("290 entries of information left out, as the run is long."));
    End(ERunVerdict::Failed);
    std::string const body = Body();
    EXPECT_EQ(CountOf(body, "<span>early</span>"), 100'000u);
    EXPECT_EQ(CountOf(body, "<span>late</span>"), 10u);
    for (char const * const kept : {"failure", "warning", "error"})
        EXPECT_EQ(CountOf(body, std::string("<span>") + kept + "</span>"), 300u) << kept;
    EXPECT_EQ(CountOf(body, "290 entries of information left out"), 2u);
    EXPECT_THAT(body, HasSubstr("<li id=e2-301 class=\"f\">"));
}

} // namespace
