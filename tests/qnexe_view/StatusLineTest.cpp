// Tests of the line of progress.
#include "examples/QNExe/view/StatusLine.h"

#include <iterator>
#include <string>

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

TEST(StatusLineTest, IsCutToTheWidth) {
    EXPECT_EQ(StatusLine({0, 1, "\xC3\xA9t\xC3\xA9"}, 30), "[--------------------]  0/1  \xC3\xA9");
    EXPECT_EQ(StatusLine({0, 1, "x"}, 0), "");
}

constexpr char Head[] = "[--------------------]  0/1  ";

std::string LabelIn(std::size_t columns, char const * label) {
    std::string const line = StatusLine({0, 1, label}, std::size(Head) - 1 + columns);
    EXPECT_EQ(line.substr(0, std::size(Head) - 1), Head);
    return line.substr(std::size(Head) - 1);
}

TEST(StatusLineTest, AWideCharacterTakesTwoColumns) {
    char const * const label = "\xE6\xB8\xAC\xE8\xA9\xA6x";
    EXPECT_EQ(LabelIn(5, label), label);
    EXPECT_EQ(LabelIn(4, label), "\xE6\xB8\xAC\xE8\xA9\xA6");
    // Half a character cannot be shown, nor what stands behind it.
    EXPECT_EQ(LabelIn(3, label), "\xE6\xB8\xAC");
    EXPECT_EQ(LabelIn(1, label), "");
}

TEST(StatusLineTest, ACombiningMarkTakesNoColumn) {
    EXPECT_EQ(LabelIn(2, "e\xCC\x81t\xCC\x81x"), "e\xCC\x81t\xCC\x81");
}

TEST(StatusLineTest, CharactersBeyondTheFirstPlaneStayWhole) {
    char const * const faces = "\xF0\x9F\x98\x80\xF0\x9F\x98\x81";
    EXPECT_EQ(LabelIn(4, faces), faces);
    EXPECT_EQ(LabelIn(3, faces), "\xF0\x9F\x98\x80");
    EXPECT_EQ(LabelIn(1, faces), "");
}

TEST(StatusLineTest, LeavesOutWhatWouldMoveTheCursor) {
    EXPECT_EQ(
        StatusLine({0, 1, "a\r\n\x1b[2Jb\xC2\x9B"}, 80), "[--------------------]  0/1  a[2Jb");
}

} // namespace
