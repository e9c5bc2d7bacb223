// The record of the device under test: four texts, each with its own place.
#include "settings/CDUTInfo.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

auto Texts(CDUTInfo const & info) {
    return std::tuple(info.TID(), info.TestBed(), info.RoomNumber(), info.Comments());
}

CDUTInfo FilledRecord() {
    CDUTInfo info;
    info.TID(L"1234");
    info.TestBed(L"Bed 7");
    info.RoomNumber(L"B.104");
    info.Comments(L"Fifth sample, \u00b5 probe");
    return info;
}

auto const filledTexts = std::tuple(
    std::wstring(L"1234"), std::wstring(L"Bed 7"), std::wstring(L"B.104"),
    std::wstring(L"Fifth sample, \u00b5 probe"));

TEST(CDUTInfoTest, NewRecordIsEmpty) {
    EXPECT_EQ(
        Texts(CDUTInfo()),
        std::tuple(std::wstring(), std::wstring(), std::wstring(), std::wstring()));
}

TEST(CDUTInfoTest, EachTextHasItsOwnPlace) { EXPECT_EQ(Texts(FilledRecord()), filledTexts); }

TEST(CDUTInfoTest, CopyKeepsItsTextsWhenTheSourceChanges) {
    CDUTInfo source = FilledRecord();
    CDUTInfo const copy(source);
    CDUTInfo assigned;
    assigned = source;
    source.TID(L"other");
    EXPECT_EQ(Texts(copy), filledTexts);
    EXPECT_EQ(Texts(assigned), filledTexts);
}

TEST(CDUTInfoTest, GetterHandsOutACopy) {
    CDUTInfo info = FilledRecord();
    std::wstring bed = info.TestBed();
    bed += L" moved";
    EXPECT_EQ(info.TestBed(), L"Bed 7");
}

} // namespace
