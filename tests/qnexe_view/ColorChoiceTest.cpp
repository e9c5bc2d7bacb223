// Tests of the choice of colours.
#include "examples/QNExe/view/ColorChoice.h"

#include <gtest/gtest.h>

namespace {

constexpr auto Terminal = StreamKind::Terminal;
constexpr auto File = StreamKind::File;
constexpr auto Pipe = StreamKind::Other;

TEST(ColorChoiceTest, ATerminalHasColorsAndNothingElseHas) {
    EXPECT_TRUE(WantsColor({}, Terminal));
    EXPECT_FALSE(WantsColor({}, File));
    EXPECT_FALSE(WantsColor({}, Pipe));
}

TEST(ColorChoiceTest, NoColorWinsOverEverything) {
    EXPECT_FALSE(WantsColor({.noColor = "1"}, Terminal));
    EXPECT_FALSE(WantsColor({.noColor = "0"}, Terminal));
    EXPECT_FALSE(WantsColor({.noColor = "1", .cliColorForce = "1", .cliColor = "1"}, Terminal));
}

TEST(ColorChoiceTest, ForceWinsOverCliColorAndReachesAPipe) {
    EXPECT_TRUE(WantsColor({.cliColorForce = "1", .cliColor = "0"}, Terminal));
    EXPECT_TRUE(WantsColor({.cliColorForce = "1"}, Pipe));
    EXPECT_FALSE(WantsColor({.cliColorForce = "0"}, Pipe));
}

TEST(ColorChoiceTest, CliColorZeroSwitchesOff) {
    EXPECT_FALSE(WantsColor({.cliColor = "0"}, Terminal));
    EXPECT_TRUE(WantsColor({.cliColor = "1"}, Terminal));
    EXPECT_FALSE(WantsColor({.cliColor = "1"}, Pipe));
}

TEST(ColorChoiceTest, ADumbTerminalAndAFileNeverHaveColors) {
    EXPECT_FALSE(WantsColor({.cliColorForce = "1", .term = "dumb"}, Terminal));
    EXPECT_FALSE(WantsColor({.cliColorForce = "1"}, File));
}

} // namespace
