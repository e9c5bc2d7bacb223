// Tests of terminal bytes.
#include "examples/QNExe/view/TerminalText.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TextLook const Plain;

std::string Styled(std::wstring const & text, TextLook const & look) {
    return TerminalText({{text, look}}, true);
}

TEST(TerminalTextTest, PlainTextHasSingleLineFeeds) {
    EXPECT_EQ(Styled(L"a\r\nb\nc", Plain), "a\nb\nc");
}

TEST(TerminalTextTest, EachLineOpensAndClosesItsLook) {
    EXPECT_EQ(Styled(L"a\r\n\r\nb\r\n", {.bold = true}), "\x1b[1ma\x1b[0m\n\n\x1b[1mb\x1b[0m\n");
}

TEST(TerminalTextTest, EveryAttributeHasItsCode) {
    TextLook const look{
        .bold = true, .italic = true, .underline = true, .color = 0x0000FF, .backColor = 0x00FFFF};
    EXPECT_EQ(Styled(L"x", look), "\x1b[1;3;4;38;2;255;0;0;48;2;255;255;0mx\x1b[0m");
}

TEST(TerminalTextTest, WithoutStylesThereIsTextAlone) {
    EXPECT_EQ(TerminalText({{L"x\r\n", {.bold = true, .color = 0x0000FF}}}, false), "x\n");
}

TEST(TerminalTextTest, ControlCharactersOfTheTextAreShownAsEscapes) {
    EXPECT_EQ(
        TerminalText({{L"a\x1b[2J\a\x7f\x9b\tb\rc", Plain}}, true),
        "a\\x1B[2J\\x07\\x7F\\x9B\tb\\x0Dc");
}

TEST(TerminalTextTest, TextIsUtf8) {
    EXPECT_EQ(Styled(L"\u00e9\u20ac", Plain), "\xC3\xA9\xE2\x82\xAC");
}

TEST(TerminalTextTest, ContrastFollowsTheDefinition) {
    EXPECT_NEAR(Contrast(0x000000, 0xFFFFFF), 21.0, 1e-9);
    EXPECT_NEAR(Contrast(0xFFFFFF, 0x000000), 21.0, 1e-9);
    EXPECT_NEAR(Contrast(0x777777, 0xFFFFFF), 4.48, 0.01);
}

TEST(TerminalTextTest, ReadableColorsStayAsTheyAre) {
    EXPECT_EQ(ReadableColor(0x0000FF), 0x0000FFu);
    EXPECT_EQ(ReadableColor(0x007F00), 0x007F00u);
}

TEST(TerminalTextTest, EveryColorBecomesReadableOnBlackAndOnWhite) {
    for (std::uint32_t r = 0; r <= 255; r += 15) {
        for (std::uint32_t g = 0; g <= 255; g += 15) {
            for (std::uint32_t b = 0; b <= 255; b += 15) {
                COLORREF const shown = ReadableColor(static_cast<COLORREF>(r | g << 8 | b << 16));
                ASSERT_GE(Contrast(shown, 0x000000), 3.0) << r << " " << g << " " << b;
                ASSERT_GE(Contrast(shown, 0xFFFFFF), 3.0) << r << " " << g << " " << b;
            }
        }
    }
}

TEST(TerminalTextTest, AColorOnABackgroundOfItsOwnIsNotChanged) {
    EXPECT_EQ(
        Styled(L"x", {.color = 0xAA0000, .backColor = 0xFFFFFF}),
        "\x1b[38;2;0;0;170;48;2;255;255;255mx\x1b[0m");
}

// The terminal's own colour may be as light, or as dark, as the background.
TEST(TerminalTextTest, ABackgroundWithoutAColorGetsTextThatCanBeRead) {
    EXPECT_EQ(Styled(L"x", {.backColor = 0x00FFFF}), "\x1b[38;2;0;0;0;48;2;255;255;0mx\x1b[0m");
    EXPECT_EQ(Styled(L"x", {.backColor = 0x7F0000}), "\x1b[38;2;255;255;255;48;2;0;0;127mx\x1b[0m");
    EXPECT_EQ(
        Styled(L"x", {.backColor = 0x757575}), "\x1b[38;2;255;255;255;48;2;117;117;117mx\x1b[0m");
    EXPECT_EQ(Styled(L"x", {.backColor = 0x767676}), "\x1b[38;2;0;0;0;48;2;118;118;118mx\x1b[0m");
}

} // namespace
