// The dialogs by keyboard alone, and whether their texts have room at the system's resolution.
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/DutDialog.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "examples/QNExe/windows/SetupDialog.h"
#include "examples/QNExe/windows/VifDialog.h"
#include "platform/ChildProcess.h"
#include "qnexe_window/Picture.h"
#include "qnexe_window/RemoteWindow.h"

namespace {

struct Letter {
    wchar_t letter;
    int control;
};

struct DialogCase {
    char const * name;
    std::function<void(HWND)> show;
    // In the order of the Tab key.
    std::vector<int> controls;
    // Those that take the keyboard without doing something.
    std::vector<Letter> letters;
    int defaultButton;
};

void PrintTo(DialogCase const & dialog, std::ostream * stream) { *stream << dialog.name; }

DialogCase const Dialogs[] = {
    {"Setup",
     [](HWND owner) {
         HostOptions options;
         ShowSetupDialog(owner, options);
     },
     {ID_SETUP_SUITE, ID_SETUP_SUITE_BROWSE, ID_SETUP_RECORDINGS, ID_SETUP_RECORDINGS_BROWSE,
      ID_SETUP_REPORTS, ID_SETUP_REPORTS_FOLDER, ID_SETUP_INTERACTIVE, ID_SETUP_ONLY_FAILURES,
      ID_SETUP_VERSIONS, IDOK, IDCANCEL},
     {{L'r', ID_SETUP_RECORDINGS},
      {L't', ID_SETUP_REPORTS},
      {L'm', ID_SETUP_INTERACTIVE},
      {L'p', ID_SETUP_ONLY_FAILURES},
      {L'v', ID_SETUP_VERSIONS},
      {L's', ID_SETUP_SUITE}},
     IDOK},
    {"Device",
     ShowDutDialog,
     {ID_DUT_TID, ID_DUT_TEST_BED, ID_DUT_ROOM, ID_DUT_COMMENTS, ID_DUT_SAVE, ID_DUT_LOAD,
      ID_DUT_CLEAR, IDCANCEL},
     {{L'b', ID_DUT_TEST_BED}, {L'r', ID_DUT_ROOM}, {L'c', ID_DUT_COMMENTS}, {L't', ID_DUT_TID}},
     ID_DUT_SAVE},
    {"Vifs",
     ShowVifDialog,
     {ID_VIF_UFP, ID_VIF_UFP_BROWSE, ID_VIF_DFP_LIST, ID_VIF_DFP_ADD, ID_VIF_DFP_REMOVE, IDOK,
      IDCANCEL},
     {{L'd', ID_VIF_DFP_LIST}, {L'u', ID_VIF_UFP}},
     IDOK},
};

class DialogKeysTest : public testing::TestWithParam<DialogCase> {
protected:
    ~DialogKeysTest() override { DestroyWindow(m_Owner); }

    // Does `look` while the dialog stands, on a thread of its own, and ends it.
    void While(std::function<void()> const & look) {
        std::thread operatorsHand([&] {
            m_Dialog = RemoteWindow(m_Owner).Dialog();
            WaitFor([&] { return Focus() == GetParam().controls.front(); });
            look();
            if (IsWindow(m_Dialog.Handle()) != 0) m_Dialog.End(IDCANCEL);
        });
        GetParam().show(m_Owner);
        operatorsHand.join();
    }

    HWND Focused() const {
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(m_Thread, &info);
        return info.hwndFocus;
    }
    int Focus() const { return GetDlgCtrlID(Focused()); }

    void Press(WPARAM key, UINT message = WM_KEYDOWN) const {
        PostMessageW(Focused(), message, key, 0);
        // What was posted has been served when this is.
        m_Dialog.Send(WM_NULL);
    }

    static BOOL CALLBACK Collect(HWND window, LPARAM list) {
        reinterpret_cast<std::vector<HWND> *>(list)->push_back(window);
        return TRUE;
    }
    std::vector<HWND> Children() const {
        std::vector<HWND> children;
        EnumChildWindows(m_Dialog.Handle(), Collect, reinterpret_cast<LPARAM>(&children));
        return children;
    }

    static std::wstring ClassOf(HWND window) {
        wchar_t name[32] = {};
        GetClassNameW(window, name, 32);
        return name;
    }

    // What the text takes in the control's font, with its letter's mark left out.
    static SIZE SizeOf(HWND control, std::wstring const & text) {
        HDC const screen = GetDC(control);
        auto const font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
        HGDIOBJ const before = SelectObject(screen, font);
        RECT area = {};
        DrawTextW(screen, text.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
        SelectObject(screen, before);
        ReleaseDC(control, screen);
        return {area.right, area.bottom};
    }

    // For people's eyes: what the controls draw, without the frame's own parts.
    void SavePicture() const {
        RECT area = {};
        GetClientRect(m_Dialog.Handle(), &area);
        Picture picture(area.right, area.bottom);
        picture.Print(m_Dialog.Handle(), {});
        for (HWND const child : Children()) {
            RECT frame = {};
            GetWindowRect(child, &frame);
            POINT place{frame.left, frame.top};
            ScreenToClient(m_Dialog.Handle(), &place);
            picture.Print(child, place);
        }
        auto const file = std::string("dialog-") + GetParam().name + ".png";
        EXPECT_TRUE(picture.SavePng((ProgramFolder() / file).wstring()));
    }

    DWORD m_Thread = GetCurrentThreadId();
    HWND m_Owner = CreateWindowExW(
        0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 900, 700, nullptr, nullptr, nullptr, nullptr);
    RemoteWindow m_Dialog;
};

TEST_P(DialogKeysTest, TheTabKeyGoesThroughAllThatTakesKeys) {
    While([&] {
        for (int const control : GetParam().controls) {
            EXPECT_TRUE(WaitFor([&] { return Focus() == control; })) << Focus() << ' ' << control;
            Press(VK_TAB);
        }
        EXPECT_TRUE(WaitFor([&] { return Focus() == GetParam().controls.front(); }));
    });
}

TEST_P(DialogKeysTest, ALetterLeadsToItsField) {
    While([&] {
        for (auto const & [letter, control] : GetParam().letters) {
            Press(letter, WM_SYSCHAR);
            EXPECT_TRUE(WaitFor([&] { return Focus() == control; })) << Focus() << ' ' << control;
        }
    });
}

TEST_P(DialogKeysTest, NoLetterStandsTwice) {
    While([&] {
        std::set<wchar_t> letters;
        for (HWND const child : Children()) {
            std::wstring const text = RemoteWindow(child).Text();
            auto const mark = text.find(L'&');
            if (ClassOf(child) == L"Edit" || mark == text.npos) continue;
            auto const letter = static_cast<wchar_t>(towupper(text[mark + 1]));
            EXPECT_TRUE(letters.insert(letter).second) << Narrow(text);
        }
        EXPECT_GE(letters.size(), GetParam().letters.size());
    });
}

TEST_P(DialogKeysTest, EscapeEndsIt) {
    While([&] {
        PostMessageW(Focused(), WM_KEYDOWN, VK_ESCAPE, 0);
        EXPECT_TRUE(WaitFor([&] { return IsWindow(m_Dialog.Handle()) == 0; }));
    });
}

TEST_P(DialogKeysTest, EnterPressesItsMainButton) {
    While([&] { EXPECT_EQ(LOWORD(m_Dialog.Send(DM_GETDEFID)), GetParam().defaultButton); });
}

// At whatever resolution the system has.
TEST_P(DialogKeysTest, EveryTextHasRoom) {
    While([&] {
        for (HWND const child : Children()) {
            std::wstring const text = RemoteWindow(child).Text();
            std::wstring const kind = ClassOf(child);
            if (text.empty() || (kind != L"Static" && kind != L"Button")) continue;
            RECT area = {};
            GetClientRect(child, &area);
            SIZE const size = SizeOf(child, text);
            EXPECT_LE(size.cx, area.right) << Narrow(text);
            EXPECT_LE(size.cy, area.bottom + 1) << Narrow(text);
        }
        SavePicture();
    });
}

INSTANTIATE_TEST_SUITE_P(
    EachDialog, DialogKeysTest, testing::ValuesIn(Dialogs),
    [](testing::TestParamInfo<DialogCase> const & each) { return std::string(each.param.name); });

} // namespace
