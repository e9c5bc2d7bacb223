// Clicks.
#include "messages/CWMLButtonDown.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Details(unsigned long long flags, long long position) {
    return CWMLButtonDown(nullptr, 0x201, flags, position).GetDetailsStr().get();
}

} // namespace

TEST(CWMLButtonDownTest, DetailsAreFlagsAndPositionInTwoLines) {
    EXPECT_EQ(Details(9, 0xC80064), "  [MK_LBUTTON,MK_CONTROL]\n  x=100, y=200");
}

TEST(CWMLButtonDownTest, WithoutAFlagTheBracketsAreEmpty) {
    EXPECT_EQ(Details(0, 0), "  []\n  x=0, y=0");
}

TEST(CWMLButtonDownTest, EachFlagHasItsName) {
    struct Case {
        unsigned long long flag;
        char const * name;
    };
    for (auto const & [flag, name] :
         {Case{0x01, "MK_LBUTTON"},
          {0x02, "MK_RBUTTON"},
          {0x04, "MK_SHIFT"},
          {0x08, "MK_CONTROL"},
          {0x10, "MK_MBUTTON"},
          {0x20, "MK_XBUTTON1"},
          {0x40, "MK_XBUTTON2"}})
        EXPECT_EQ(Details(flag, 0), std::string("  [") + name + "]\n  x=0, y=0");
}

TEST(CWMLButtonDownTest, AllFlagsStandInTheOrderOfTheirValues) {
    EXPECT_EQ(
        Details(0x7F, 0), "  [MK_LBUTTON,MK_RBUTTON,MK_SHIFT,MK_CONTROL,MK_MBUTTON,MK_XBUTTON1,"
                          "MK_XBUTTON2]\n  x=0, y=0");
}

TEST(CWMLButtonDownTest, OtherBitsAreIgnored) {
    EXPECT_EQ(Details(0xFFFFFFFFFFFFFF82, 0), "  [MK_RBUTTON]\n  x=0, y=0");
}

TEST(CWMLButtonDownTest, PositionBeforeTheOriginIsALargeNumber) {
    EXPECT_EQ(Details(0, -1), "  []\n  x=65535, y=65535");
    EXPECT_EQ(Details(0, 0x7FFF00018000FFFE), "  []\n  x=65534, y=32768");
}

TEST(CWMLButtonDownTest, CodeIsTakenAsGiven) {
    CWMLButtonDown const message(nullptr, 0x77, 1, 2);
    EXPECT_EQ(message.MessageCode(), 0x77u);
    EXPECT_EQ(
        std::string(message.GetDescriptionStr().get()),
        "\n0x0077 (WM_LBUTTONDOWN) message received: hWnd=0,WPARAM=0000000000000001, "
        "LPARAM=0000000000000002.");
}

TEST(CWMLButtonDownTest, CopyIsEqual) {
    CWMLButtonDown const source(nullptr, 0x201, 9, 0xC80064);
    CWMLButtonDown const copy(source);
    EXPECT_STREQ(copy.GetDetailsStr().get(), source.GetDetailsStr().get());
    EXPECT_STREQ(copy.GetDescriptionStr().get(), source.GetDescriptionStr().get());
}
