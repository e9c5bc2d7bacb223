// The wait cursor's swap, seen as the host sees it.
#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "app/CMXWaitCursor.h"
#include "app/GuardWrapped.h"

namespace {

static_assert(std::is_empty_v<CMXWaitCursor>);

HICON__ * CursorNumber(std::uintptr_t number) { return reinterpret_cast<HICON__ *>(number); }

HICON__ * const Arrow = CursorNumber(0x11);
HICON__ * const Hand = CursorNumber(0x22);
HICON__ * const Wait = CursorNumber(0x33);

class CMXWaitCursorTest : public testing::Test {
protected:
    // What is on show.
    HICON__ * m_Shown = Arrow;
    std::optional<CMXWaitCursor> m_Cursor;

private:
    Diversion<HCURSOR(HINSTANCE, char const *)> const m_Load{
        wrapped_LoadCursorA, [](HINSTANCE instance, char const * name) {
            bool const isWait = reinterpret_cast<std::uintptr_t>(name) == 32514;
            return instance == nullptr && isWait ? Wait : nullptr;
        }};
    Diversion<HCURSOR(HCURSOR)> const m_Set{
        wrapped_SetCursor, [this](HCURSOR cursor) { return std::exchange(m_Shown, cursor); }};
};

TEST_F(CMXWaitCursorTest, TheWaitCursorShowsForTheScope) {
    m_Cursor.emplace();
    EXPECT_EQ(m_Shown, Wait);
    m_Cursor.reset();
    EXPECT_EQ(m_Shown, Arrow);
}

TEST_F(CMXWaitCursorTest, ASecondRestoreBringsTheWaitCursorBack) {
    m_Cursor.emplace();
    EXPECT_EQ(m_Cursor->RestoreCursor(), Wait);
    EXPECT_EQ(m_Shown, Arrow);
    m_Cursor.reset();
    EXPECT_EQ(m_Shown, Wait);
}

TEST_F(CMXWaitCursorTest, TwoRestoresSwapAndTheDestructorIsAThird) {
    m_Cursor.emplace();
    EXPECT_EQ(m_Cursor->RestoreCursor(), Wait);
    EXPECT_EQ(m_Cursor->RestoreCursor(), Arrow);
    EXPECT_EQ(m_Shown, Wait);
    m_Cursor.reset();
    EXPECT_EQ(m_Shown, Arrow);
}

TEST_F(CMXWaitCursorTest, AnotherCursorMovesTheOneToGoBackTo) {
    m_Cursor.emplace();
    EXPECT_EQ(m_Cursor->SetCursor(Hand), Wait);
    EXPECT_EQ(m_Shown, Hand);
    EXPECT_EQ(m_Cursor->RestoreCursor(), Hand);
    EXPECT_EQ(m_Shown, Wait);
}

TEST_F(CMXWaitCursorTest, NestedObjectsShareTheOnePlaceInWhateverOrderTheyEnd) {
    m_Cursor.emplace();
    std::optional<CMXWaitCursor> inner(std::in_place);
    EXPECT_EQ(m_Shown, Wait);
    m_Cursor.reset();
    EXPECT_EQ(m_Shown, Wait);
    inner.reset();
    EXPECT_EQ(m_Shown, Wait);
}

TEST(CMXWaitCursorHostTest, TheHostReadsTheCursorOnShow) {
    HICON__ * const arrow = LoadCursorA(nullptr, IDC_ARROW);
    SetCursor(arrow);
    {
        CMXWaitCursor const cursor;
        EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, IDC_WAIT));
        EXPECT_NE(GetCursor(), arrow);
    }
    EXPECT_EQ(GetCursor(), arrow);
}

} // namespace
