// Tests of the line of progress.
#include "examples/QNExe/view/StatusLine.h"

#include <gtest/gtest.h>

namespace {

TEST(StatusLineTest, ShowsBarCountAndLabel) {
    EXPECT_EQ(StatusLine({3, 12, "Endpoints"}, 80), "[#####---------------]  3/12  Endpoints");
}

TEST(StatusLineTest, IsEmptyWithoutARange) {
    EXPECT_EQ(StatusLine({3, 0, "Endpoints"}, 80), "");
    EXPECT_EQ(StatusLine({3, -1, "Endpoints"}, 80), "");
}

TEST(StatusLineTest, KeepsThePositionWithinTheRange) {
    EXPECT_EQ(StatusLine({-1, 2, ""}, 80), "[--------------------]  0/2  ");
    EXPECT_EQ(StatusLine({9, 2, ""}, 80), "[####################]  2/2  ");
}

TEST(StatusLineTest, TakesTheLargestRangeThereIs) {
    EXPECT_EQ(
        StatusLine({2147483647, 2147483647, ""}, 80),
        "[####################]  2147483647/2147483647  ");
}

TEST(StatusLineTest, IsCutToTheWidthByCharacters) {
    EXPECT_EQ(StatusLine({0, 1, "\xC3\xA9t\xC3\xA9"}, 30), "[--------------------]  0/1  \xC3\xA9");
    EXPECT_EQ(StatusLine({0, 1, "x"}, 0), "");
}

TEST(StatusLineTest, LeavesOutWhatWouldMoveTheCursor) {
    EXPECT_EQ(
        StatusLine({0, 1, "a\r\n\x1b[2Jb\xC2\x9B"}, 80), "[--------------------]  0/1  a[2Jb");
}

} // namespace
