// The window comes back where it was closed.
#include "examples/QNExe/windows/WindowPlace.h"

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

// A window that comes to a screen of twice the resolution, and does as the system bids it.
LRESULT CALLBACK Grow(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_MOVE && GetWindowLongPtrW(window, GWLP_USERDATA) == 0) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 1);
        SetWindowPos(window, nullptr, 0, 0, 1200, 800, SWP_NOMOVE | SWP_NOZORDER);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

TEST_F(WindowPlaceTest, TheSizeStaysWhenTheScreenHasAnotherResolution) {
    KeepPlace("40 30 640 430 normal");
    HWND const window = CreateWindowExW(
        0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Grow));
    EXPECT_TRUE(RestoreWindowPlace(window));
    EXPECT_EQ(GetWindowLongPtrW(window, GWLP_USERDATA), 1);
    RECT frame = {};
    GetWindowRect(window, &frame);
    EXPECT_EQ(frame, (RECT{40, 30, 640, 430}));
    DestroyWindow(window);
}

} // namespace
