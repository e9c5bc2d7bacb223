// Formats between the narrow and the wide form of the record.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "output/CFormatInfo.h"
#include "output/Transcript.h"

namespace {

CHARFORMAT2W WideRecord(std::u16string_view face) {
    CHARFORMAT2W record;
    std::memset(&record, 0, sizeof record);
    using Unit = std::remove_reference_t<decltype(record.szFaceName[0])>;
    std::transform(face.begin(), face.end(), record.szFaceName, [](char16_t unit) {
        return static_cast<Unit>(unit);
    });
    return record;
}

CHARFORMAT2A NarrowRecord(std::string_view face) {
    CHARFORMAT2A record = Record(0, 0);
    std::copy(face.begin(), face.end(), record.szFaceName);
    return record;
}

std::string NarrowFace(CHARFORMAT2W const & wide) {
    CHARFORMAT2A narrow;
    std::memset(&narrow, 0x7E, sizeof narrow);
    CFormatInfo::WideToNarrow(narrow, wide);
    return std::string(std::begin(narrow.szFaceName), std::end(narrow.szFaceName));
}

std::u16string WideFace(CHARFORMAT2A const & narrow) {
    CHARFORMAT2W wide;
    std::memset(&wide, 0x7E, sizeof wide);
    CFormatInfo::NarrowToWide(wide, narrow);
    return std::u16string(std::begin(wide.szFaceName), std::end(wide.szFaceName));
}

// A name as it stands in a field: zeros up to the end.
std::string Field(std::string text) {
    text.resize(32);
    return text;
}

std::u16string Field(std::u16string text) {
    text.resize(32);
    return text;
}

template <typename Record>
void SetEveryField(Record & record) {
    record.cbSize = 1;
    record.dwMask = 0xF0000002;
    record.dwEffects = 0xE0000003;
    record.yHeight = -4;
    record.yOffset = -5;
    record.crTextColor = 0xFE000006;
    record.bCharSet = 207;
    record.bPitchAndFamily = 208;
    record.wWeight = 60009;
    record.sSpacing = -10;
    record.crBackColor = 0xFD00000B;
    record.lcid = 12;
    record.dwCookie = 13;
    record.sStyle = -14;
    record.wKerning = 60015;
    record.bUnderlineType = 216;
    record.bAnimation = 217;
    record.bRevAuthor = 218;
    record.bUnderlineColor = 219;
}

} // namespace

TEST(CFormatInfoTest, WideToNarrowCopiesEveryFieldAsItStands) {
    CHARFORMAT2W wide = WideRecord(u"Arial");
    SetEveryField(wide);
    CHARFORMAT2A expected = NarrowRecord("Arial");
    SetEveryField(expected);
    CHARFORMAT2A narrow = Record(0, 0);
    CFormatInfo::WideToNarrow(narrow, wide);
    EXPECT_EQ(Line(narrow), Line(expected));
    EXPECT_EQ(std::memcmp(&narrow, &expected, sizeof narrow), 0);
}

TEST(CFormatInfoTest, NarrowToWideCopiesEveryFieldAsItStands) {
    CHARFORMAT2A narrow = NarrowRecord("Arial");
    SetEveryField(narrow);
    CHARFORMAT2W expected = WideRecord(u"Arial");
    SetEveryField(expected);
    CHARFORMAT2W wide = WideRecord(u"");
    CFormatInfo::NarrowToWide(wide, narrow);
    EXPECT_EQ(std::memcmp(&wide, &expected, sizeof wide), 0);
}

TEST(CFormatInfoTest, AFormatIsMadeFromAWideRecord) {
    CHARFORMAT2W wide = WideRecord(u"Arial");
    wide.cbSize = 116;
    wide.dwMask = CFM_BOLD;
    wide.dwEffects = CFE_BOLD;
    EXPECT_EQ(
        Line(CFormatInfo(wide)), "size=116 mask=00000001 effects=00000001 face=\"Arial\" @0,0");
}

TEST(CFormatInfoTest, AFaceNameEndsAtItsFirstNul) {
    EXPECT_EQ(NarrowFace(WideRecord({u"Arial\0Courier", 13})), Field("Arial"));
    EXPECT_EQ(WideFace(NarrowRecord({"Arial\0Courier", 13})), Field(u"Arial"));
    EXPECT_EQ(NarrowFace(WideRecord(u"")), Field(""));
    EXPECT_EQ(WideFace(NarrowRecord("")), Field(u""));
}

TEST(CFormatInfoTest, AFaceNameGoesThroughUtf8) {
    EXPECT_EQ(
        NarrowFace(WideRecord(u"\u00e9\u4e00\U0001F600x")),
        Field("\xC3\xA9\xE4\xB8\x80\xF0\x9F\x98\x80x"));
    EXPECT_EQ(
        WideFace(NarrowRecord("\xC3\xA9\xE4\xB8\x80\xF0\x9F\x98\x80x")),
        Field(u"\u00e9\u4e00\U0001F600x"));
}

TEST(CFormatInfoTest, AFaceNameThatFillsItsFieldHasNoTerminator) {
    EXPECT_EQ(
        NarrowFace(WideRecord(u"abcdefghijklmnopqrstuvwxyz012345")),
        "abcdefghijklmnopqrstuvwxyz012345");
    EXPECT_EQ(
        WideFace(NarrowRecord("abcdefghijklmnopqrstuvwxyz012345")),
        u"abcdefghijklmnopqrstuvwxyz012345");
}

TEST(CFormatInfoTest, ALongerFaceNameIsCutAtTheEndOfTheField) {
    // 31 letters and a letter of two bytes: the second one does not fit.
    EXPECT_EQ(
        NarrowFace(WideRecord(u"abcdefghijklmnopqrstuvwxyz01234\u00e9")),
        "abcdefghijklmnopqrstuvwxyz01234\xC3");
}

TEST(CFormatInfoTest, IllFormedFaceNamesAreReplaced) {
    EXPECT_EQ(NarrowFace(WideRecord(u"a\xD800z")), Field("a\xEF\xBF\xBDz"));
    EXPECT_EQ(NarrowFace(WideRecord(u"a\xDC00\xD800")), Field("a\xEF\xBF\xBD\xEF\xBF\xBD"));
    EXPECT_EQ(WideFace(NarrowRecord("a\xFFz")), Field(u"a\uFFFDz"));
}

TEST(CFormatInfoTest, HalfAPairAtTheEndOfTheFieldIsReplaced) {
    EXPECT_EQ(
        NarrowFace(WideRecord(u"\u4e00\u4e00bcdefghijklmnopqrstuvwxyz0123\xD83D")),
        "\xE4\xB8\x80\xE4\xB8\x80"
        "bcdefghijklmnopqrstuvwxyz0");
    EXPECT_EQ(
        NarrowFace(WideRecord(u"abcdefghijklmnopqrstuvwxyz01234\xD83D")),
        "abcdefghijklmnopqrstuvwxyz01234\xEF");
}
