// The rich-edit records as the bytes that a control reads.
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/RichEdit.h"

namespace {

using Places = std::vector<std::string>;

// Sets a field of a zeroed record to one value in each of its bytes, and tells which those are.
template <typename Record, typename Set>
std::string Place(char const * name, Set set) {
    Record record;
    std::memset(&record, 0, sizeof record);
    set(record);
    unsigned char bytes[sizeof record];
    std::memcpy(bytes, &record, sizeof record);
    std::size_t first = 0;
    while (first < sizeof bytes && bytes[first] == 0)
        ++first;
    std::size_t last = sizeof bytes;
    while (last > first && bytes[last - 1] == 0)
        --last;
    return name + (' ' + std::to_string(first)) + '-' + std::to_string(last);
}

// As Place, for a member of either record.
#define PLACE(member)                                                                              \
    Place<Record>(                                                                                 \
        #member, [](Record & record) { std::memset(&record.member, 0x11, sizeof record.member); })

template <typename Record>
Places InFrontOfTheName() {
    return {PLACE(cbSize),  PLACE(dwMask),      PLACE(dwEffects), PLACE(yHeight),
            PLACE(yOffset), PLACE(crTextColor), PLACE(bCharSet),  PLACE(bPitchAndFamily)};
}

template <typename Record>
Places FromTheNameOn() {
    return {PLACE(szFaceName),     PLACE(wWeight),    PLACE(sSpacing),   PLACE(crBackColor),
            PLACE(lcid),           PLACE(dwCookie),   PLACE(sStyle),     PLACE(wKerning),
            PLACE(bUnderlineType), PLACE(bAnimation), PLACE(bRevAuthor), PLACE(bUnderlineColor)};
}

Places const InFront{"cbSize 0-4",     "dwMask 4-8",           "dwEffects 8-12",
                     "yHeight 12-16",  "yOffset 16-20",        "crTextColor 20-24",
                     "bCharSet 24-25", "bPitchAndFamily 25-26"};

} // namespace

TEST(RichEditTest, TheNarrowRecordHasThePublishedPlaces) {
    EXPECT_EQ(InFrontOfTheName<CHARFORMAT2A>(), InFront);
    EXPECT_EQ(
        FromTheNameOn<CHARFORMAT2A>(),
        (Places{
            "szFaceName 26-58", "wWeight 60-62", "sSpacing 62-64", "crBackColor 64-68",
            "lcid 68-72", "dwCookie 72-76", "sStyle 76-78", "wKerning 78-80",
            "bUnderlineType 80-81", "bAnimation 81-82", "bRevAuthor 82-83",
            "bUnderlineColor 83-84"}));
}

TEST(RichEditTest, TheWideRecordHasThePublishedPlaces) {
    EXPECT_EQ(InFrontOfTheName<CHARFORMAT2W>(), InFront);
    EXPECT_EQ(
        FromTheNameOn<CHARFORMAT2W>(),
        (Places{
            "szFaceName 26-90", "wWeight 92-94", "sSpacing 94-96", "crBackColor 96-100",
            "lcid 100-104", "dwCookie 104-108", "sStyle 108-110", "wKerning 110-112",
            "bUnderlineType 112-113", "bAnimation 113-114", "bRevAuthor 114-115",
            "bUnderlineColor 115-116"}));
}

TEST(RichEditTest, ARangeHasThePublishedPlaces) {
    using Record = _charrange;
    EXPECT_EQ((Places{PLACE(cpMin), PLACE(cpMax)}), (Places{"cpMin 0-4", "cpMax 4-8"}));
}
