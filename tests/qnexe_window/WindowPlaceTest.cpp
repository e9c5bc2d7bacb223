// The window comes back where it was closed.
#include <gtest/gtest.h>

#include "qnexe_window/KeptPlace.h"
#include "qnexe_window/WindowChild.h"

bool operator==(RECT const & a, RECT const & b) { return EqualRect(&a, &b) != 0; }

namespace {

class WindowPlaceTest : public WindowChild {
protected:
    RECT Frame() const {
        RECT frame = {};
        GetWindowRect(Window().Handle(), &frame);
        return frame;
    }
};

TEST_F(WindowPlaceTest, AWindowThatWasMovedComesBackThere) {
    Open();
    SetWindowPos(Window().Handle(), nullptr, 40, 30, 800, 400, SWP_NOZORDER);
    RECT const moved = Frame();
    EXPECT_EQ(moved, (RECT{40, 30, 840, 430}));
    EXPECT_EQ(Close(), 2);
    Open();
    EXPECT_EQ(Frame(), moved);
    EXPECT_EQ(Close(), 2);
}

TEST_F(WindowPlaceTest, AMaximizedWindowComesBackMaximized) {
    Open();
    ShowWindow(Window().Handle(), SW_MAXIMIZE);
    EXPECT_EQ(Close(), 2);
    Open();
    EXPECT_NE(IsZoomed(Window().Handle()), 0);
    EXPECT_EQ(Close(), 2);
}

TEST_F(WindowPlaceTest, APlaceThatNoScreenShowsIsForgotten) {
    Open();
    RECT const first = Frame();
    EXPECT_EQ(Close(), 2);
    KeepPlace("90000 90000 90700 90400 normal");
    Open();
    EXPECT_EQ(Frame(), first);
    EXPECT_EQ(Close(), 2);
}

TEST_F(WindowPlaceTest, APlaceThatIsNoneIsForgotten) {
    Open();
    RECT const first = Frame();
    EXPECT_EQ(Close(), 2);
    for (char const * const place : {"", "nonsense", "10 10 5 5 normal", "10 10"}) {
        SCOPED_TRACE(place);
        KeepPlace(place);
        Open();
        EXPECT_EQ(Frame(), first);
        EXPECT_EQ(Close(), 2);
    }
}

} // namespace
