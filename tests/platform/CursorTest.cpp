// The system's cursors, and the one on show.
#include <cstdint>

#include <gtest/gtest.h>

#include "platform/Version.h"

namespace {

TEST(CursorTest, SetCursorSwapsWhatGetCursorReads) {
    HCURSOR const arrow = LoadCursorA(nullptr, IDC_ARROW);
    HCURSOR const wait = LoadCursorA(nullptr, IDC_WAIT);
    ASSERT_NE(arrow, nullptr);
    ASSERT_NE(wait, nullptr);
    EXPECT_NE(arrow, wait);
    EXPECT_EQ(LoadCursorA(nullptr, IDC_WAIT), wait);
    SetCursor(arrow);
    EXPECT_EQ(GetCursor(), arrow);
    EXPECT_EQ(SetCursor(wait), arrow);
    EXPECT_EQ(GetCursor(), wait);
    EXPECT_EQ(SetCursor(nullptr), wait);
    EXPECT_EQ(GetCursor(), nullptr);
}

TEST(CursorTest, AnUnknownCursorIsRefused) {
    std::uintptr_t const number = 1234;
    SetLastError(0);
    EXPECT_EQ(LoadCursorA(nullptr, reinterpret_cast<char const *>(number)), nullptr);
    EXPECT_NE(GetLastError(), DWORD{0});
}

} // namespace
