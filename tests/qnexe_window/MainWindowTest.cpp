// The window itself: keys, buttons, sizes and resolutions.
#include "examples/QNExe/windows/MainWindow.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/ResourceIds.h"
#include "qnexe_window/KeptPlace.h"
#include "qnexe_window/RemoteWindow.h"

namespace {

class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() {
        ForgetPlace();
        m_Window.Show();
    }
    ~MainWindowTest() override { ForgetPlace(); }

    HWND Control(int number) const { return GetDlgItem(m_Window.Handle(), number); }

    bool Press(WPARAM key, UINT message = WM_KEYDOWN) {
        MSG pressed = {};
        pressed.hwnd = GetFocus() != nullptr ? GetFocus() : m_Window.Handle();
        pressed.message = message;
        pressed.wParam = key;
        return m_Window.TakesMessage(pressed);
    }

    bool PressWith(BYTE held, WPARAM key) {
        BYTE keys[256] = {};
        keys[held] = 0x80;
        SetKeyboardState(keys);
        bool const taken = Press(key);
        keys[held] = 0;
        SetKeyboardState(keys);
        return taken;
    }

    int FontHeight(int number) const {
        LOGFONTW font = {};
        auto const handle =
            reinterpret_cast<HFONT>(SendMessageW(Control(number), WM_GETFONT, 0, 0));
        GetObjectW(handle, sizeof font, &font);
        return -font.lfHeight;
    }

    RECT Frame(HWND window) const {
        RECT frame = {};
        GetWindowRect(window, &frame);
        return frame;
    }

    std::vector<int> m_Commands;
    MainWindow m_Window{[this](int command) { m_Commands.push_back(command); }};
};

using Commands = std::vector<int>;

TEST_F(MainWindowTest, EachCommandHasAKey) {
    struct Case {
        BYTE held;
        WPARAM key;
        int command;
    };
    for (auto const & [held, key, command] :
         {Case{0, VK_F5, ID_RUN_START},
          {VK_SHIFT, VK_F5, ID_RUN_ABORT},
          {VK_CONTROL, 'O', ID_RUN_SETUP},
          {VK_CONTROL, 'S', ID_LOG_SAVE},
          {VK_CONTROL, 'D', ID_DEVICE_RECORD},
          {VK_CONTROL, 'I', ID_DEVICE_VIFS}}) {
        SCOPED_TRACE(command);
        m_Commands.clear();
        EXPECT_TRUE(held != 0 ? PressWith(held, key) : Press(key));
        EXPECT_EQ(m_Commands, Commands{command});
    }
}

TEST_F(MainWindowTest, AKeyOfADisabledCommandDoesNothing) {
    m_Window.Enable(ID_RUN_ABORT, false);
    PressWith(VK_SHIFT, VK_F5);
    EXPECT_EQ(m_Commands, Commands{});
}

TEST_F(MainWindowTest, EachMenuItemHasALetterOfItsOwn) {
    HMENU const menu = GetMenu(m_Window.Handle());
    for (int popup = 0; popup < GetMenuItemCount(menu); ++popup) {
        std::wstring letters;
        HMENU const items = GetSubMenu(menu, popup);
        for (int item = 0; item < GetMenuItemCount(items); ++item) {
            wchar_t text[64] = {};
            GetMenuStringW(items, static_cast<UINT>(item), text, 64, MF_BYPOSITION);
            std::wstring const label = text;
            if (label.empty()) continue;
            auto const mark = label.find(L'&');
            ASSERT_NE(mark, label.npos) << Narrow(label);
            wchar_t const letter = static_cast<wchar_t>(towupper(label[mark + 1]));
            EXPECT_EQ(letters.find(letter), letters.npos) << Narrow(label);
            letters += letter;
        }
        EXPECT_GT(letters.size(), 1u);
    }
}

TEST_F(MainWindowTest, TheTabKeyGoesThroughAllThatTakesKeys) {
    SetFocus(Control(ID_RUN_START));
    std::vector<int> visited;
    for (int step = 0; step < 4; ++step) {
        visited.push_back(GetDlgCtrlID(GetFocus()));
        EXPECT_TRUE(Press(VK_TAB));
    }
    EXPECT_EQ(visited, (std::vector<int>{ID_RUN_START, ID_RUN_ABORT, ID_LOG_SAVE, ID_LOG_VIEW}));
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), ID_RUN_START);
    PressWith(VK_SHIFT, VK_TAB);
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), ID_LOG_VIEW);
}

TEST_F(MainWindowTest, TheEnterKeyPressesTheButtonThatHasTheKeyboard) {
    for (int const command : {ID_RUN_START, ID_RUN_ABORT, ID_LOG_SAVE}) {
        m_Commands.clear();
        SetFocus(Control(command));
        EXPECT_TRUE(Press(VK_RETURN));
        EXPECT_EQ(m_Commands, Commands{command});
    }
}

TEST_F(MainWindowTest, EachButtonHasALetterThatNoMenuHas) {
    SetFocus(Control(ID_LOG_VIEW));
    for (auto const & [letter, command] :
         {std::pair{L's', ID_RUN_START}, {L'a', ID_RUN_ABORT}, {L'l', ID_LOG_SAVE}}) {
        m_Commands.clear();
        EXPECT_TRUE(Press(letter, WM_SYSCHAR));
        EXPECT_EQ(m_Commands, Commands{command});
    }
    HMENU const menu = GetMenu(m_Window.Handle());
    for (int popup = 0; popup < GetMenuItemCount(menu); ++popup) {
        wchar_t text[64] = {};
        GetMenuStringW(menu, static_cast<UINT>(popup), text, 64, MF_BYPOSITION);
        std::wstring const label = text;
        auto const mark = label.find(L'&');
        ASSERT_NE(mark, label.npos);
        EXPECT_EQ(std::wstring(L"SAL").find(label[mark + 1]), std::wstring::npos) << Narrow(label);
    }
}

TEST_F(MainWindowTest, TheKeyboardLeavesAButtonThatIsSwitchedOff) {
    SetFocus(Control(ID_RUN_START));
    m_Window.Enable(ID_RUN_START, false);
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), ID_LOG_VIEW);
}

TEST_F(MainWindowTest, WhatControlsTellBesidesClicksIsNoCommand) {
    SendMessageW(
        m_Window.Handle(), WM_COMMAND, MAKEWPARAM(ID_RUN_START, BN_SETFOCUS),
        reinterpret_cast<LPARAM>(Control(ID_RUN_START)));
    EXPECT_EQ(m_Commands, Commands{});
    SendMessageW(Control(ID_RUN_START), BM_CLICK, 0, 0);
    EXPECT_EQ(m_Commands, Commands{ID_RUN_START});
}

TEST_F(MainWindowTest, ClosingIsACommand) {
    SendMessageW(m_Window.Handle(), WM_CLOSE, 0, 0);
    EXPECT_EQ(m_Commands, Commands{ID_WINDOW_CLOSE});
    EXPECT_NE(IsWindow(m_Window.Handle()), 0);
}

TEST_F(MainWindowTest, StartsAsLargeAsItsContentWithinTheScreen) {
    SIZE const content = m_Window.Log().SizeOf(104, 32);
    RECT log = {};
    GetClientRect(m_Window.Log().Handle(), &log);
    RECT const frame = Frame(m_Window.Handle());
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    bool const asWideAsTheScreen = frame.right - frame.left == work.right - work.left;
    bool const asHighAsTheScreen = frame.bottom - frame.top == work.bottom - work.top;
    EXPECT_TRUE(log.right >= content.cx || asWideAsTheScreen) << log.right << ' ' << content.cx;
    EXPECT_TRUE(log.bottom >= content.cy || asHighAsTheScreen) << log.bottom << ' ' << content.cy;
    EXPECT_LE(frame.right - frame.left, work.right - work.left);
    EXPECT_LE(frame.bottom - frame.top, work.bottom - work.top);
}

TEST_F(MainWindowTest, EverythingLiesInsideTheWindowAndNothingOverlaps) {
    for (SIZE const size : {SIZE{600, 300}, SIZE{1000, 700}}) {
        MoveWindow(m_Window.Handle(), 0, 0, size.cx, size.cy, TRUE);
        RECT const outer = Frame(m_Window.Handle());
        std::vector<RECT> frames;
        for (int const number :
             {ID_RUN_START, ID_RUN_ABORT, ID_LOG_SAVE, ID_SUITE_NAME, ID_LOG_VIEW, ID_PROGRESS_BAR,
              ID_PROGRESS_LABEL, ID_PROGRESS_TIME, ID_STATUS_BAR}) {
            RECT const frame = Frame(Control(number));
            RECT common = {};
            EXPECT_LT(frame.left, frame.right) << number;
            EXPECT_LT(frame.top, frame.bottom) << number;
            UnionRect(&common, &outer, &frame);
            EXPECT_NE(EqualRect(&common, &outer), 0) << number;
            for (RECT const & other : frames)
                EXPECT_EQ(IntersectRect(&common, &frame, &other), 0) << number;
            frames.push_back(frame);
        }
    }
}

TEST_F(MainWindowTest, AnotherResolutionScalesFontsTextAndFrame) {
    UINT const before = GetDpiForWindow(m_Window.Handle());
    int const font = FontHeight(ID_RUN_START);
    // Larger than the least size, at any resolution from 96 to 120 dots an inch.
    RECT wanted{10, 20, 1010, 620};
    UINT const larger = before * 5 / 4;
    SendMessageW(
        m_Window.Handle(), WM_DPICHANGED, MAKEWPARAM(larger, larger),
        reinterpret_cast<LPARAM>(&wanted));
    EXPECT_NEAR(FontHeight(ID_RUN_START), font * 5 / 4, 2);
    DWORD numerator = 0;
    DWORD denominator = 0;
    SendMessageW(
        m_Window.Log().Handle(), EM_GETZOOM, reinterpret_cast<WPARAM>(&numerator),
        reinterpret_cast<LPARAM>(&denominator));
    EXPECT_EQ(numerator * 4, denominator * 5);
    RECT const frame = Frame(m_Window.Handle());
    EXPECT_NE(EqualRect(&frame, &wanted), 0);
}

TEST_F(MainWindowTest, TheLeastSizeScalesWithTheResolution) {
    auto const least = [&] {
        MINMAXINFO info = {};
        SendMessageW(m_Window.Handle(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
        return info.ptMinTrackSize;
    };
    POINT const before = least();
    UINT const twice = 2 * GetDpiForWindow(m_Window.Handle());
    RECT wanted = Frame(m_Window.Handle());
    SendMessageW(
        m_Window.Handle(), WM_DPICHANGED, MAKEWPARAM(twice, twice),
        reinterpret_cast<LPARAM>(&wanted));
    EXPECT_EQ(least().x, 2 * before.x);
    EXPECT_EQ(least().y, 2 * before.y);
}

TEST_F(MainWindowTest, AskedForCursorIsShownUntilItIsTakenBack) {
    HCURSOR const wait = LoadCursorW(nullptr, MAKEINTRESOURCEW(32514));
    auto const shown = [&] {
        SendMessageW(
            m_Window.Handle(), WM_SETCURSOR, reinterpret_cast<WPARAM>(m_Window.Handle()),
            MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        return GetCursor();
    };
    m_Window.SetCursor(wait);
    EXPECT_EQ(shown(), wait);
    m_Window.SetCursor(nullptr);
    EXPECT_NE(shown(), wait);
}

TEST(ProgressPaneTest, TimesAreShownInMinutesAndHours) {
    EXPECT_EQ(TimeText(0), L"0:00");
    EXPECT_EQ(TimeText(7), L"0:07");
    EXPECT_EQ(TimeText(754), L"12:34");
    EXPECT_EQ(TimeText(3599), L"59:59");
    EXPECT_EQ(TimeText(3723), L"1:02:03");
}

} // namespace
