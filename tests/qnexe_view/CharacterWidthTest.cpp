// Tests of the widths of characters.
#include "examples/QNExe/view/CharacterWidth.h"

#include <gtest/gtest.h>

namespace {

TEST(CharacterWidthTest, LettersTakeOneColumn) {
    for (int const character : {0x20, 0x61, 0x7E, 0xE9, 0x416, 0x5D0, 0x20AC, 0x2014, 0xFFFD})
        EXPECT_EQ(WidthOf(static_cast<char32_t>(character)), 1u) << character;
}

TEST(CharacterWidthTest, WideCharactersTakeTwoColumns) {
    // First and last of a range, and what stands beside it.
    EXPECT_EQ(WidthOf(0x10FF), 1u);
    for (int const character :
         {0x1100, 0x115F, 0x2E80, 0x3042, 0x4E00, 0xA4CF, 0xAC00, 0xD7A3, 0xFF21, 0x1F600, 0x20000,
          0x3FFFD})
        EXPECT_EQ(WidthOf(static_cast<char32_t>(character)), 2u) << character;
    EXPECT_EQ(WidthOf(0x1160), 1u);
    EXPECT_EQ(WidthOf(0xFF61), 1u);
    EXPECT_EQ(WidthOf(0x3FFFE), 1u);
}

TEST(CharacterWidthTest, CombiningMarksTakeNone) {
    EXPECT_EQ(WidthOf(0x02FF), 1u);
    for (int const character : {0x0300, 0x036F, 0x200B, 0x20D0, 0x3099, 0xFEFF})
        EXPECT_EQ(WidthOf(static_cast<char32_t>(character)), 0u) << character;
    EXPECT_EQ(WidthOf(0x0370), 1u);
}

} // namespace
