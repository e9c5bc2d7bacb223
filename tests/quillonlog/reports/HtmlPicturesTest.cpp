// The pictures of the page, of runs by a clock of the test's own.
#include "siblings/quillonlog/reports/HtmlPictures.h"

#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "siblings/quillonlog/reports/ReportSink.h"

namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

// As many tests as asked for, a millisecond each, one behind another.
class HtmlPicturesTest : public testing::Test {
protected:
    static RunRecord Passing(std::size_t tests) {
        RunRecord run;
        run.start.steady = run.stop.steady = std::chrono::steady_clock::time_point{1h};
        for (std::size_t i = 0; i < tests; ++i) {
            Section section;
            section.number = i + 1;
            section.name = "T";
            section.isTest = true;
            section.start = run.stop;
            run.stop.steady += 1ms;
            section.stop = run.stop;
            section.verdict = SectionVerdict::Passed;
            run.sections.push_back(section);
        }
        return run;
    }

    static std::size_t CountOf(std::string const & text, std::string const & part) {
        std::size_t count = 0;
        for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }
};

TEST_F(HtmlPicturesTest, MarksAtOnePlaceAreDrawnOnceButEveryFailureHasItsOwn) {
    RunRecord run = Passing(20'000);
    run.sections[7777].verdict = SectionVerdict::Failed;
    std::string const line = HtmlPictures::TimeLine(run);
    EXPECT_GE(CountOf(line, "<rect class=\"p\""), 1000u);
    EXPECT_LE(CountOf(line, "<rect class=\"p\""), 2000u);
    EXPECT_EQ(CountOf(line, "<rect class=\"f\""), 1u);
    EXPECT_THAT(
        line, HasSubstr("<a href=\"#t7778\" tabindex=\"-1\">"
                        "<rect class=\"f\" x=\"3888\" y=\"0\" width=\"40\" height=\"100\">"));
}

TEST_F(HtmlPicturesTest, FailureIsDrawnOverWhatPassedAtItsPlace) {
    RunRecord run = Passing(20'000);
    run.sections[1].verdict = SectionVerdict::Failed;
    std::string const line = HtmlPictures::TimeLine(run);
    EXPECT_GT(line.find("<rect class=\"f\""), line.rfind("<rect class=\"p\""));
}

TEST_F(HtmlPicturesTest, MarkOfTheLastTestStaysInThePicture) {
    RunRecord run = Passing(20'000);
    run.sections.back().verdict = SectionVerdict::Aborted;
    EXPECT_THAT(
        HtmlPictures::TimeLine(run),
        HasSubstr("<rect class=\"a\" x=\"9960\" y=\"0\" width=\"40\""));
}

TEST_F(HtmlPicturesTest, MarkIsAsLongAsItsTest) {
    RunRecord run = Passing(4);
    run.sections[2].verdict = SectionVerdict::Failed;
    EXPECT_THAT(
        HtmlPictures::TimeLine(run),
        HasSubstr("<rect class=\"f\" x=\"5000\" y=\"0\" width=\"2500\""));
}

TEST_F(HtmlPicturesTest, PartsOfTheRingFollowEachOther) {
    std::string const ring =
        HtmlPictures::Ring({.tests = 4, .passed = 2, .failed = 1, .aborted = 1});
    EXPECT_THAT(
        ring, HasSubstr("class=\"p\" stroke-dasharray=\"500 1000\" stroke-dashoffset=\"0\""));
    EXPECT_THAT(
        ring, HasSubstr("class=\"f\" stroke-dasharray=\"250 1000\" stroke-dashoffset=\"-500\""));
    EXPECT_THAT(
        ring, HasSubstr("class=\"a\" stroke-dasharray=\"250 1000\" stroke-dashoffset=\"-750\""));
}

} // namespace
