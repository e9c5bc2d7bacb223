// How a format fills in what it leaves open, and when one gives all that another asks for.
#include <cstring>

#include <gtest/gtest.h>

#include "output/CFormatInfo.h"
#include "output/Transcript.h"

namespace {

std::string Merged(CFormatInfo look, CHARFORMAT2A const & other) {
    return Line(look.MergeFormat(other));
}

// One value that a merge treats by a mask bit of its own.
struct Field {
    char const * name;
    DWORD bit;
    void (*set)(CHARFORMAT2A & record, int value);
    std::string shown;
};

Field const kFields[] = {
    {"weight", CFM_WEIGHT, [](CHARFORMAT2A & r, int v) { r.wWeight = static_cast<WORD>(v); },
     " weight="},
    {"animation", CFM_ANIMATION,
     [](CHARFORMAT2A & r, int v) { r.bAnimation = static_cast<BYTE>(v); }, " animation="},
    {"charset", CFM_CHARSET, [](CHARFORMAT2A & r, int v) { r.bCharSet = static_cast<BYTE>(v); },
     " charset="},
    {"kerning", CFM_KERNING, [](CHARFORMAT2A & r, int v) { r.wKerning = static_cast<WORD>(v); },
     " kerning="},
    {"lcid", CFM_LCID, [](CHARFORMAT2A & r, int v) { r.lcid = static_cast<DWORD>(v); }, " lcid="},
    {"offset", CFM_OFFSET, [](CHARFORMAT2A & r, int v) { r.yOffset = v; }, " offset="},
    {"height", CFM_SIZE, [](CHARFORMAT2A & r, int v) { r.yHeight = v; }, " height="},
    {"spacing", CFM_SPACING, [](CHARFORMAT2A & r, int v) { r.sSpacing = static_cast<SHORT>(v); },
     " spacing="},
    {"style", CFM_STYLE, [](CHARFORMAT2A & r, int v) { r.sStyle = static_cast<SHORT>(v); },
     " style="},
    {"underline type", CFM_UNDERLINETYPE,
     [](CHARFORMAT2A & r, int v) { r.bUnderlineType = static_cast<BYTE>(v); }, " underlinetype="},
};

CHARFORMAT2A With(Field const & field, DWORD mask, int value) {
    CHARFORMAT2A record = Record(mask, 0);
    field.set(record, value);
    return record;
}

CHARFORMAT2A Named(DWORD mask, char const (&name)[33]) {
    CHARFORMAT2A record = Record(mask, 0);
    std::memcpy(record.szFaceName, name, 32);
    return record;
}

} // namespace

TEST(CFormatInfoTest, MergeReturnsTheFormatsOwnRecord) {
    CFormatInfo look;
    EXPECT_EQ(&look.MergeFormat(Record(CFM_BOLD, 0)), &look.format);
    EXPECT_EQ(look.format.dwMask, CFM_BOLD);
}

TEST(CFormatInfoTest, MergeInheritsAColourThatIsNotSpecified) {
    CHARFORMAT2A outer = Record(CFM_COLOR, 0);
    outer.crTextColor = 0x0000FF;
    EXPECT_EQ(Merged({}, outer), "mask=40000000 effects=44000000 color=0000FF");
    EXPECT_EQ(
        Merged(CFormatInfo(0x00FF00ul), outer), "mask=40000000 effects=04000000 color=00FF00");
}

TEST(CFormatInfoTest, MergeInheritsAnUnspecifiedColourEvenFromABlankFormat) {
    CHARFORMAT2A outer = Record(0, 0);
    outer.crTextColor = 0x0000FF;
    outer.crBackColor = 0x00FFFF;
    EXPECT_EQ(Merged({}, outer), "mask=00000000 effects=44000000 color=0000FF back=00FFFF");
}

TEST(CFormatInfoTest, MergeInheritsABackgroundThatIsNotSpecified) {
    CHARFORMAT2A outer = Record(CFM_BACKCOLOR, 0);
    outer.crBackColor = 0x00FFFF;
    EXPECT_EQ(Merged({}, outer), "mask=04000000 effects=44000000 back=00FFFF");
    CFormatInfo own;
    own.setBackColor(0xFF0000ul);
    EXPECT_EQ(Merged(own, outer), "mask=04000000 effects=40000000 back=FF0000");
}

TEST(CFormatInfoTest, MergeInheritsAutomaticColoursOnlyWhereNoneIsSpecified) {
    CHARFORMAT2A const outer = Record(CFM_COLOR | CFM_BACKCOLOR, CFE_AUTOCOLOR | CFE_AUTOBACKCOLOR);
    EXPECT_EQ(Merged(CFormatInfo(Record(0, 0)), outer), "mask=44000000 effects=44000000");
    EXPECT_EQ(Merged(CFormatInfo(Record(CFM_COLOR, 0)), outer), "mask=44000000 effects=04000000");
    EXPECT_EQ(
        Merged(CFormatInfo(Record(CFM_BACKCOLOR, 0)), outer), "mask=44000000 effects=40000000");
}

TEST(CFormatInfoTest, MergeOnlyAddsEffects) {
    EXPECT_EQ(
        Merged(CFormatInfo(false, 700), Record(CFM_ITALIC, CFE_BOLD | CFE_ITALIC)),
        "mask=00400003 effects=44000003 weight=400");
    EXPECT_EQ(
        Merged(CFormatInfo(true, 700), Record(CFM_BOLD, 0)),
        "mask=00400001 effects=44000001 weight=700");
}

TEST(CFormatInfoTest, MergeClaimsAWeightThatItDoesNotTake) {
    CHARFORMAT2A outer = Record(CFM_WEIGHT, 0);
    outer.wWeight = 700;
    EXPECT_EQ(Merged({}, outer), "mask=00400000 effects=44000000");
}

TEST(CFormatInfoTest, MergeTakesAFieldOnlyWhenNeitherSideSpecifiesIt) {
    for (auto const & field : kFields) {
        SCOPED_TRACE(field.name);
        auto const masked = [&](DWORD mask) {
            return "mask=" + Number("%08lX", mask) + " effects=00000000" + field.shown;
        };
        auto const own = [&](DWORD mask) { return CFormatInfo(With(field, mask, 11)); };
        EXPECT_EQ(Merged(own(0), With(field, 0, 22)), masked(0) + "22");
        EXPECT_EQ(Merged(own(0), With(field, field.bit, 22)), masked(field.bit) + "11");
        EXPECT_EQ(Merged(own(field.bit), With(field, 0, 22)), masked(field.bit) + "11");
        EXPECT_EQ(Merged(own(field.bit), With(field, field.bit, 22)), masked(field.bit) + "11");
        // No other bit holds this field back.
        EXPECT_EQ(Merged(own(0), With(field, ~field.bit, 22)), masked(~field.bit) + "22");
    }
}

TEST(CFormatInfoTest, MergeTakesTheFaceNameWithoutWhatStandsBehindItsEnd) {
    CHARFORMAT2A const outer = Named(0, "Courier\0rest of an older name...");
    CFormatInfo const own(Named(0, "Arial\0 behind the end of a name."));
    EXPECT_EQ(Merged(own, outer), "mask=00000000 effects=00000000 face=\"Courier\"");
    EXPECT_EQ(
        Merged(own, Named(CFM_FACE, "Courier\0........................")),
        "mask=20000000 effects=00000000 face=\"Arial\\0 behind the end of a name.\"");
}

TEST(CFormatInfoTest, MergeTakesAFaceNameThatFillsItsField) {
    CHARFORMAT2A const outer = Named(0, "abcdefghijklmnopqrstuvwxyz012345");
    EXPECT_EQ(
        Merged({}, outer),
        "mask=00000000 effects=44000000 face=\"abcdefghijklmnopqrstuvwxyz012345\"");
}

TEST(CFormatInfoTest, MergeLeavesEverythingElseAlone) {
    CHARFORMAT2A outer;
    std::memset(&outer, 0x11, sizeof outer);
    outer.dwMask = 0;
    outer.dwEffects = 0;
    CHARFORMAT2A own = Record(~DWORD{0}, 0);
    own.cbSize = 1;
    own.bPitchAndFamily = 2;
    own.dwCookie = 3;
    own.bRevAuthor = 4;
    own.bUnderlineColor = 5;
    CFormatInfo look(own);
    look.range = {3, 7};
    look.autoRange = false;
    look.MergeFormat(outer);
    EXPECT_EQ(
        Line(look), "size=1 mask=FFFFFFFF effects=00000000 pitch=2 cookie=3 author=4 "
                    "underlinecolor=5 @3,7 own");
}

TEST(CFormatInfoTest, ARecordGivesWhatItAsksForItself) {
    CHARFORMAT2A const record = CFormatInfo(0x0000FFul, true, 700).format;
    EXPECT_TRUE(CFormatInfo::FormatEqual(record, record, 0));
    EXPECT_TRUE(CFormatInfo::FormatEqual(record, CFormatInfo(record).format, ~0ul));
}

TEST(CFormatInfoTest, AMoreSpecificRecordGivesAllButTheExtraBits) {
    CHARFORMAT2A const wanted = Record(CFM_COLOR, 0);
    CHARFORMAT2A const have = Record(CFM_COLOR | CFM_BOLD, 0);
    EXPECT_TRUE(CFormatInfo::FormatEqual(have, wanted, 0));
    EXPECT_FALSE(CFormatInfo::FormatEqual(have, wanted, CFM_BOLD));
    EXPECT_TRUE(CFormatInfo::FormatEqual(have, wanted, CFM_ITALIC));
    EXPECT_TRUE(CFormatInfo::FormatEqual(have, wanted, CFM_COLOR));
}

TEST(CFormatInfoTest, ALessSpecificRecordDoesNotGiveAll) {
    EXPECT_FALSE(
        CFormatInfo::FormatEqual(Record(CFM_COLOR, 0), Record(CFM_COLOR | CFM_BOLD, 0), 0));
    EXPECT_FALSE(CFormatInfo::FormatEqual(Record(CFM_COLOR, 0), Record(CFM_BOLD, 0), CFM_BOLD));
}

TEST(CFormatInfoTest, AnyDifferenceOutsideTheMaskIsADifference) {
    CHARFORMAT2A const wanted = Record(CFM_COLOR, 0);
    CHARFORMAT2A have = Record(CFM_COLOR | CFM_BOLD, 0);
    have.bUnderlineColor = 1;
    EXPECT_FALSE(CFormatInfo::FormatEqual(have, wanted, 0));
    have = Record(CFM_COLOR, 0);
    have.cbSize = sizeof have;
    EXPECT_FALSE(CFormatInfo::FormatEqual(have, wanted, 0));
}

TEST(CFormatInfoTest, TheFirstDefaultFormatWins) {
    CHARFORMAT2A first;
    std::memset(&first, 0x3C, sizeof first);
    CFormatInfo::InitializeDefaultFormat(first);
    CHARFORMAT2A const & kept = CFormatInfo::GetDefaultFormat();
    EXPECT_NE(&kept, &first);
    EXPECT_EQ(std::memcmp(&kept, &first, sizeof first), 0);

    CFormatInfo::InitializeDefaultFormat(Record(CFM_BOLD, CFE_BOLD));
    EXPECT_EQ(&CFormatInfo::GetDefaultFormat(), &kept);
    EXPECT_EQ(std::memcmp(&kept, &first, sizeof first), 0);
}
