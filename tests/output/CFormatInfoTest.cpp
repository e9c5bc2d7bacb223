// What a format specifies, and as what.
#include "output/CFormatInfo.h"

#include <cstddef>
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include "output/Transcript.h"

static_assert(std::has_virtual_destructor_v<CFormatInfo>);
static_assert(std::is_nothrow_copy_constructible_v<CFormatInfo>);
static_assert(sizeof(CFormatInfo) == 104);

namespace {

constexpr unsigned long kRed = 0x0000FF;

CHARFORMAT2A FilledRecord(int byte) {
    CHARFORMAT2A record;
    std::memset(&record, byte, sizeof record);
    return record;
}

bool SameBytes(CHARFORMAT2A const & a, CHARFORMAT2A const & b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// A format whose range and flag are not those of a new one, so that a change to them shows.
CFormatInfo Placed(CFormatInfo look = {}) {
    look.range = {3, 7};
    look.autoRange = false;
    return look;
}

} // namespace

TEST(CFormatInfoTest, ValueConstructorsSpecifyWhatTheyAreGiven) {
    EXPECT_EQ(Line(CFormatInfo()), "mask=00000000 effects=44000000 @0,0");
    EXPECT_EQ(Line(CFormatInfo(kRed)), "mask=40000000 effects=04000000 color=0000FF @0,0");
    EXPECT_EQ(
        Line(CFormatInfo(kRed, true, 700)),
        "mask=40400001 effects=04000001 color=0000FF weight=700 @0,0");
    EXPECT_EQ(
        Line(CFormatInfo(kRed, true, true, 900)),
        "mask=40400003 effects=04000003 color=0000FF weight=900 @0,0");
    EXPECT_EQ(Line(CFormatInfo(true, 700)), "mask=00400001 effects=44000001 weight=700 @0,0");
    EXPECT_EQ(Line(CFormatInfo(true, true, 700)), "mask=00400003 effects=44000003 weight=700 @0,0");
}

TEST(CFormatInfoTest, ValueConstructorsSpecifyBoldAndItalicAsOffToo) {
    EXPECT_EQ(
        Line(CFormatInfo(kRed, false, 700)),
        "mask=40400001 effects=04000000 color=0000FF weight=400 @0,0");
    EXPECT_EQ(
        Line(CFormatInfo(kRed, true, false, 700)),
        "mask=40400003 effects=04000002 color=0000FF weight=400 @0,0");
    EXPECT_EQ(
        Line(CFormatInfo(kRed, false, true, 700)),
        "mask=40400003 effects=04000001 color=0000FF weight=700 @0,0");
    EXPECT_EQ(Line(CFormatInfo(false, 700)), "mask=00400001 effects=44000000 weight=400 @0,0");
    EXPECT_EQ(
        Line(CFormatInfo(true, false, 700)), "mask=00400003 effects=44000002 weight=400 @0,0");
    EXPECT_EQ(
        Line(CFormatInfo(false, true, 700)), "mask=00400003 effects=44000001 weight=700 @0,0");
}

TEST(CFormatInfoTest, ANewFormatIsZeroBetweenItsFieldsToo) {
    alignas(CFormatInfo) unsigned char storage[sizeof(CFormatInfo)];
    std::memset(storage, 0xA5, sizeof storage);
    auto * const look = new (storage) CFormatInfo();
    EXPECT_TRUE(SameBytes(look->format, Record(0, 0x44000000)));
    look->~CFormatInfo();
}

TEST(CFormatInfoTest, ARecordIsTakenByteForByte) {
    CHARFORMAT2A const record = FilledRecord(0xA5);
    CFormatInfo const look(record);
    EXPECT_TRUE(SameBytes(look.format, record));
    EXPECT_EQ(look.range.cpMin, 0);
    EXPECT_EQ(look.range.cpMax, 0);
    EXPECT_TRUE(look.autoRange);
}

TEST(CFormatInfoTest, CopiesCarryRangeFlagAndEveryByte) {
    CFormatInfo const source = Placed(CFormatInfo(FilledRecord(0x5A)));
    CFormatInfo const copy(source);
    CFormatInfo assigned;
    assigned = source;
    for (auto const & look : {copy, assigned}) {
        EXPECT_TRUE(SameBytes(look.format, source.format));
        EXPECT_EQ(look.range.cpMin, 3);
        EXPECT_EQ(look.range.cpMax, 7);
        EXPECT_FALSE(look.autoRange);
    }
}

TEST(CFormatInfoTest, AssigningAFormatToItselfKeepsIt) {
    CFormatInfo look = Placed(CFormatInfo(FilledRecord(0x5A)));
    CFormatInfo const & same = look;
    look = same;
    EXPECT_TRUE(SameBytes(look.format, FilledRecord(0x5A)));
    EXPECT_EQ(look.range.cpMax, 7);
}

TEST(CFormatInfoTest, NamedColoursAreColourValues) {
    EXPECT_EQ(unsigned{eColorBlack}, 0x000000u);
    EXPECT_EQ(unsigned{eColorWhite}, 0xFFFFFFu);
    EXPECT_EQ(unsigned{eColorGray}, 0x7F7F7Fu);
    EXPECT_EQ(unsigned{eColorRed}, 0x0000FFu);
    EXPECT_EQ(unsigned{eColorGreen}, 0x00FF00u);
    EXPECT_EQ(unsigned{eColorBlue}, 0xFF0000u);
    EXPECT_EQ(unsigned{eColorYellow}, 0x00FFFFu);
    EXPECT_EQ(unsigned{eColorMagenta}, 0xFF00FFu);
    EXPECT_EQ(unsigned{eColorCyan}, 0xFFFF00u);
}

TEST(CFormatInfoTest, SetColorStoresTheValueUnmasked) {
    CFormatInfo look = Placed();
    look.setColor(0xFE123456ul);
    EXPECT_EQ(Line(look), "mask=40000000 effects=04000000 color=FE123456 @3,7 own");
    look.setColor(~0ul);
    EXPECT_EQ(Line(look), "mask=40000000 effects=04000000 color=FFFFFFFF @3,7 own");
    look.setColor(eColorRed);
    EXPECT_EQ(Line(look), "mask=40000000 effects=04000000 color=0000FF @3,7 own");
    look.setColor(0x12, 0x34, 0x56);
    EXPECT_EQ(Line(look), "mask=40000000 effects=04000000 color=563412 @3,7 own");
}

TEST(CFormatInfoTest, AddingAColourTwiceUndoesIt) {
    CFormatInfo look = Placed();
    look.setColor(0xFE123456ul);
    look.addColor(0xAB0F0F0Ful);
    EXPECT_EQ(Line(look), "mask=40000000 effects=04000000 color=1D3B59 @3,7 own");
    look.addColor(0xAB0F0F0Ful);
    EXPECT_EQ(Line(look), "mask=40000000 effects=04000000 color=123456 @3,7 own");
}

TEST(CFormatInfoTest, AddingAColourToABlankFormatSpecifiesIt) {
    CFormatInfo look;
    look.addColor(kRed);
    EXPECT_EQ(Line(look), "mask=40000000 effects=04000000 color=0000FF @0,0");
}

TEST(CFormatInfoTest, ClearColorSpecifiesTheAutomaticOneAndKeepsTheValue) {
    CFormatInfo look = Placed(CFormatInfo(kRed));
    look.clearColor();
    EXPECT_EQ(Line(look), "mask=40000000 effects=44000000 color=0000FF @3,7 own");
    EXPECT_TRUE(look.colorIsSet());

    CFormatInfo blank;
    EXPECT_FALSE(blank.colorIsSet());
    blank.clearColor();
    EXPECT_EQ(Line(blank), "mask=40000000 effects=44000000 @0,0");
    EXPECT_TRUE(blank.colorIsSet());
}

TEST(CFormatInfoTest, TheBackgroundFollowsTheSameRules) {
    CFormatInfo look = Placed();
    EXPECT_FALSE(look.backColorIsSet());
    look.setBackColor(0xFE123456ul);
    EXPECT_EQ(Line(look), "mask=04000000 effects=40000000 back=FE123456 @3,7 own");
    EXPECT_TRUE(look.backColorIsSet());
    look.setBackColor(eColorYellow);
    EXPECT_EQ(Line(look), "mask=04000000 effects=40000000 back=00FFFF @3,7 own");
    look.setBackColor(0x12, 0x34, 0x56);
    EXPECT_EQ(Line(look), "mask=04000000 effects=40000000 back=563412 @3,7 own");
    look.clearBackColor();
    EXPECT_EQ(Line(look), "mask=04000000 effects=44000000 back=563412 @3,7 own");
    EXPECT_TRUE(look.backColorIsSet());
    EXPECT_FALSE(look.colorIsSet());
}

TEST(CFormatInfoTest, SetBoldSpecifiesBoldnessAndWeight) {
    CFormatInfo look = Placed();
    EXPECT_FALSE(look.boldIsSet());
    look.setBold(true, 700);
    EXPECT_EQ(Line(look), "mask=00400001 effects=44000001 weight=700 @3,7 own");
    look.setBold(false, 700);
    EXPECT_EQ(Line(look), "mask=00400001 effects=44000000 weight=400 @3,7 own");
    EXPECT_TRUE(look.boldIsSet());
}

TEST(CFormatInfoTest, BoldIsSetByEitherOfItsMaskBits) {
    EXPECT_TRUE(CFormatInfo(Record(CFM_BOLD, 0)).boldIsSet());
    EXPECT_TRUE(CFormatInfo(Record(CFM_WEIGHT, 0)).boldIsSet());
    EXPECT_FALSE(CFormatInfo(Record(~(CFM_BOLD | CFM_WEIGHT), CFE_BOLD)).boldIsSet());
}

TEST(CFormatInfoTest, SetItalicSpecifiesIt) {
    CFormatInfo look = Placed();
    look.setItalic(true);
    EXPECT_EQ(Line(look), "mask=00000002 effects=44000002 @3,7 own");
    look.setItalic(false);
    EXPECT_EQ(Line(look), "mask=00000002 effects=44000000 @3,7 own");
    EXPECT_TRUE(look.italicIsSet());
    EXPECT_FALSE(CFormatInfo(Record(~CFM_ITALIC, CFE_ITALIC)).italicIsSet());
}

TEST(CFormatInfoTest, SetUnderlineSpecifiesIt) {
    CFormatInfo look = Placed();
    look.setUnderline(true);
    EXPECT_EQ(Line(look), "mask=00000004 effects=44000004 @3,7 own");
    look.setUnderline(false);
    EXPECT_EQ(Line(look), "mask=00000004 effects=44000000 @3,7 own");
    EXPECT_TRUE(look.underlineIsSet());
    EXPECT_FALSE(CFormatInfo(Record(~CFM_UNDERLINE, CFE_UNDERLINE)).underlineIsSet());
}

TEST(CFormatInfoTest, PitchAndFamilyHaveNoMaskBit) {
    CFormatInfo look = Placed();
    look.setPitchAndFamily(0x31);
    EXPECT_EQ(Line(look), "mask=00000000 effects=44000000 pitch=49 @3,7 own");
}

TEST(CFormatInfoTest, SetStyleReplacesTheWholeRecordAndNothingElse) {
    CHARFORMAT2A const record = FilledRecord(0xC3);
    CFormatInfo typed = Placed(CFormatInfo(kRed));
    typed.setStyle(&record);
    CFormatInfo untyped = Placed(CFormatInfo(kRed));
    untyped.setStyle(static_cast<void const *>(&record));
    for (auto const & look : {typed, untyped}) {
        EXPECT_TRUE(SameBytes(look.format, record));
        EXPECT_EQ(look.range.cpMin, 3);
        EXPECT_EQ(look.range.cpMax, 7);
        EXPECT_FALSE(look.autoRange);
    }
}

TEST(CFormatInfoTest, ClearFormatMakesABlankOne) {
    CFormatInfo look = Placed(CFormatInfo(FilledRecord(0xC3)));
    look.ClearFormat();
    EXPECT_TRUE(SameBytes(look.format, Record(0, 0x44000000)));
    EXPECT_EQ(Line(look), "mask=00000000 effects=44000000 @0,0");
}
