// The words with which reports are asked for.
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "siblings/QuillonReports.h"

namespace {

using enum EReportFormat;
using testing::HasSubstr;

TEST(ReportWordsTest, NothingAsksForNothing) { EXPECT_EQ(ReadReportRequest(""), CReportRequest{}); }

TEST(ReportWordsTest, EachFormatHasItsPath) {
    EXPECT_EQ(
        ReadReportRequest("html:a.html,junit:b/c.xml,json:d.jsonl"),
        (CReportRequest{{{Html, "a.html"}, {JUnit, "b/c.xml"}, {Json, "d.jsonl"}}, false}));
}

TEST(ReportWordsTest, OverwriteStandsAnywhere) {
    CReportRequest const expected{{{Json, "d"}, {Html, "a"}}, true};
    EXPECT_EQ(ReadReportRequest("overwrite,json:d,html:a"), expected);
    EXPECT_EQ(ReadReportRequest("json:d,overwrite,html:a"), expected);
    EXPECT_EQ(ReadReportRequest("json:d,html:a,overwrite"), expected);
}

TEST(ReportWordsTest, PathMayHoldCommasAndColons) {
    EXPECT_EQ(
        ReadReportRequest("html:C:\\a,b\\c, overwritten.html,json:x,overwrites"),
        (CReportRequest{{{Html, "C:\\a,b\\c, overwritten.html"}, {Json, "x,overwrites"}}, false}));
}

TEST(ReportWordsTest, WrongWordsSayWhatToWrite) {
    struct Case {
        char const * words;
        char const * why;
    };
    for (auto const & [words, why] :
         {Case{"xml:a", "a word is none of the four"},
          {"a.html", "a word is none of the four"},
          {"overwrite", "there is nothing to replace"},
          {"html:", "a path is empty"},
          {"html:,json:a", "a path is empty"},
          {"html:a,html:b", "a format stands twice"},
          {",html:a", "a word is none of the four"}}) {
        SCOPED_TRACE(words);
        try {
            ReadReportRequest(words);
            ADD_FAILURE() << "nothing was thrown";
        } catch (std::runtime_error const & error) {
            EXPECT_THAT(error.what(), HasSubstr(why));
            EXPECT_THAT(error.what(), HasSubstr("Give html:<path>,junit:<path>,json:<path>"));
        }
    }
}

} // namespace
