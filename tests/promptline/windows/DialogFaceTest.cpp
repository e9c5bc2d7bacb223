// The system's dialogs, driven as an operator does: by their controls.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "log/LogBench.h"
#include "platform/Environment.h"
#include "promptline/ServiceThread.h"
#include "prompts/CMFCDialogMXUserInput.h"
#include "siblings/promptline/windows/DialogWindow.h"

namespace {

using namespace std::chrono_literals;

constexpr unsigned long WithoutEnd = 0xFFFFFFFF;
constexpr char Header[] = "A header of these tests";

class DialogFaceTest : public testing::Test {
protected:
    DialogFaceTest() {
        ClearEnvironment("QN_PROMPTS");
        m_Service = std::make_unique<ServiceThread>();
        m_Input = std::make_unique<CMFCDialogMXUserInput>(nullptr, std::string(Header));
    }
    ~DialogFaceTest() override {
        if (m_Operator.joinable()) m_Operator.join();
        m_Input.reset();
        m_Service.reset();
    }

    // Runs the steps on a thread of their own as soon as a dialog of that title is there.
    void Operate(std::function<void(HWND)> const & steps, std::string const & title = Header) {
        if (m_Operator.joinable()) m_Operator.join();
        m_Operator = std::thread([steps, title] {
            HWND const dialog = Await([&] { return FindWindowA("#32770", title.c_str()); });
            ASSERT_NE(dialog, nullptr);
            // Served when the dialog is complete and its thread takes messages.
            SendMessageW(dialog, WM_NULL, 0, 0);
            steps(dialog);
        });
    }

    static HWND Await(std::function<HWND()> const & find) {
        auto const deadline = std::chrono::steady_clock::now() + 30s;
        for (;;) {
            HWND const window = find();
            if (window != nullptr || std::chrono::steady_clock::now() > deadline) return window;
            std::this_thread::sleep_for(5ms);
        }
    }

    static void Press(HWND dialog, int button) {
        PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
    }
    static void Enter(HWND dialog, wchar_t const * text) {
        SendDlgItemMessageW(
            dialog, DialogWindow::Edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    }
    static std::wstring Shown(HWND dialog, int control) {
        wchar_t text[200] = {};
        SendDlgItemMessageW(dialog, control, WM_GETTEXT, 200, reinterpret_cast<LPARAM>(text));
        return text;
    }
    static HWND AwaitText(HWND dialog, int control, std::wstring const & text) {
        return Await([&] { return Shown(dialog, control) == text ? dialog : nullptr; });
    }

    bool IsUp() { return FindWindowA("#32770", Header) != nullptr; }

    LogBench m_Bench;
    std::unique_ptr<ServiceThread> m_Service;
    std::unique_ptr<CMFCDialogMXUserInput> m_Input;
    std::thread m_Operator;
    std::wstring m_Text = L"What is asked?";
    std::vector<std::wstring> m_List = {L"a", L"b", L"c"};
    unsigned long m_Number = 1;
};

TEST_F(DialogFaceTest, InformationEndsWithItsButton) {
    std::wstring button = L"Go on";
    std::wstring message, label;
    Operate([&](HWND dialog) {
        message = Shown(dialog, DialogWindow::Message);
        label = Shown(dialog, IDOK);
        Press(dialog, IDCANCEL);
        Press(dialog, IDOK);
    });
    EXPECT_EQ(
        m_Input->DisplayInfoToUser(&m_Text, WithoutEnd, true, nullptr, &button, nullptr),
        TS_SUCCESS);
    m_Operator.join();
    EXPECT_EQ(message, m_Text);
    EXPECT_EQ(label, L"Go on");
    EXPECT_FALSE(IsUp());
    ASSERT_EQ(m_Service->Records().size(), 1u);
    EXPECT_EQ(m_Service->Records()[0].source, "operator");
}

TEST_F(DialogFaceTest, AChoiceHasTwoButtons) {
    bool answer = false;
    Operate([](HWND dialog) { Press(dialog, IDOK); });
    EXPECT_EQ(
        m_Input->GetBooleanDecision(
            &m_Text, nullptr, nullptr, &answer, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    EXPECT_TRUE(answer);
    Operate([](HWND dialog) { Press(dialog, DialogWindow::SecondButton); });
    EXPECT_EQ(
        m_Input->GetBooleanDecision(
            &m_Text, nullptr, nullptr, &answer, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    EXPECT_FALSE(answer);
}

TEST_F(DialogFaceTest, ANumberIsCheckedBeforeItIsTaken) {
    std::wstring preset, problem = L"Type a number from 0 to 4294967295.";
    Operate([&](HWND dialog) {
        preset = Shown(dialog, DialogWindow::Edit);
        Enter(dialog, L"1x");
        Press(dialog, IDOK);
        EXPECT_NE(AwaitText(dialog, DialogWindow::Problem, problem), nullptr);
        Enter(dialog, L"");
        Press(dialog, IDOK);
        Enter(dialog, L"77");
        Press(dialog, IDOK);
    });
    EXPECT_EQ(
        m_Input->GetInteger(
            &m_Text, &m_Text, &m_Number, false, WithoutEnd, nullptr, 0xFFFFFFFF, 0, nullptr),
        TS_SUCCESS);
    EXPECT_EQ(m_Number, 77u);
    m_Operator.join();
    EXPECT_EQ(preset, L"1");
}

TEST_F(DialogFaceTest, ATextIsTakenAsItStands) {
    std::wstring answer = L"old";
    Operate([](HWND dialog) {
        Enter(dialog, L" \u00b5\u20ac ");
        Press(dialog, IDOK);
    });
    EXPECT_EQ(
        m_Input->GetString(&m_Text, &m_Text, &answer, WithoutEnd, nullptr, nullptr), TS_SUCCESS);
    EXPECT_EQ(answer, L" \u00b5\u20ac ");
}

TEST_F(DialogFaceTest, AListOffersItsPresetAndTakesAnother) {
    LRESULT preset = -1;
    Operate([&](HWND dialog) {
        preset = SendDlgItemMessageW(dialog, DialogWindow::List, LB_GETCURSEL, 0, 0);
        SendDlgItemMessageW(dialog, DialogWindow::List, LB_SETCURSEL, 2, 0);
        Press(dialog, IDOK);
    });
    EXPECT_EQ(
        m_Input->GetSelectionFromList(&m_Text, &m_List, &m_Number, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    EXPECT_EQ(m_Number, 2u);
    m_Operator.join();
    EXPECT_EQ(preset, 1);
}

TEST_F(DialogFaceTest, AListWithoutAChoiceIsNotTaken) {
    m_Number = 99;
    bool aborted = false;
    Operate([](HWND dialog) {
        Press(dialog, IDOK);
        EXPECT_NE(AwaitText(dialog, DialogWindow::Problem, L"Choose an entry."), nullptr);
        Press(dialog, DialogWindow::SecondButton);
    });
    EXPECT_EQ(
        m_Input->GetSelectionFromListAllowAbort(
            &m_Text, &m_Text, &m_Text, &m_List, &m_Number, &aborted, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    EXPECT_TRUE(aborted);
    EXPECT_EQ(m_Number, 99u);
}

TEST_F(DialogFaceTest, SeveralEntriesAreTaken) {
    Operate([](HWND dialog) {
        SendDlgItemMessageW(dialog, DialogWindow::List, LB_SETSEL, TRUE, 2);
        SendDlgItemMessageW(dialog, DialogWindow::List, LB_SETSEL, TRUE, 0);
        Press(dialog, IDOK);
    });
    std::vector<unsigned long> * selections = nullptr;
    EXPECT_EQ(
        m_Input->GetMultipleSelectionsFromList(
            &m_Text, &m_List, &selections, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    std::unique_ptr<std::vector<unsigned long>> const owned(selections);
    ASSERT_NE(owned, nullptr);
    EXPECT_EQ(*owned, (std::vector<unsigned long>{0, 2}));
}

TEST_F(DialogFaceTest, ATimeOutTakesTheDialogAway) {
    std::wstring left;
    Operate([&](HWND dialog) { left = Shown(dialog, DialogWindow::TimeLeft); });
    EXPECT_EQ(
        m_Input->GetSelectionFromList(&m_Text, &m_List, &m_Number, 900, nullptr, nullptr),
        TS_DIALOG_TIMED_OUT);
    m_Operator.join();
    EXPECT_EQ(left, L"1 s left");
    EXPECT_FALSE(IsUp());
}

TEST_F(DialogFaceTest, ANoticeStaysUntilItIsTerminated) {
    CMXGuiEvent event(0);
    EXPECT_EQ(m_Input->DisplayInfoToUser(&m_Text, 0, false, &event, nullptr, nullptr), TS_SUCCESS);
    HWND const dialog = FindWindowA("#32770", Header);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(GetDlgItem(dialog, IDOK), nullptr);
    EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
    EXPECT_FALSE(IsUp());
    EXPECT_EQ(event.WaitOnEvent(0), TS_SUCCESS);
}

TEST_F(DialogFaceTest, DisabledInputDisablesTheControlsAndPlaceIsKept) {
    WINDOW_ARGS place{10, 20, 400, 300};
    CMXGuiEvent event(0);
    std::wstring answer;
    m_Input->DisableInput();
    m_Input->GetString(&m_Text, &m_Text, &answer, 0, &event, &place);
    HWND const dialog = FindWindowA("#32770", Header);
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDOK)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, DialogWindow::Edit)));
    RECT box = {};
    GetWindowRect(dialog, &box);
    EXPECT_EQ(box.left, 10);
    EXPECT_EQ(box.top, 20);
    EXPECT_EQ(box.right - box.left, 400);
    EXPECT_EQ(box.bottom - box.top, 300);
    m_Input->TerminateDialog();
}

TEST_F(DialogFaceTest, TheOperatorsAbortTakesTheDialogAway) {
    Operate([this](HWND) { m_Service->Do([](CPromptService & service) { service.Abort(); }); });
    bool answer = true;
    EXPECT_EQ(
        m_Input->GetBooleanDecision(
            &m_Text, nullptr, nullptr, &answer, WithoutEnd, nullptr, nullptr),
        TS_DIALOG_TIMED_OUT);
    EXPECT_TRUE(answer);
    EXPECT_FALSE(IsUp());
}

class FileChooserTest : public DialogFaceTest {
protected:
    FileChooserTest() {
        m_File = std::filesystem::temp_directory_path() / "chosen by a test.bin";
        std::ofstream(m_File) << "x";
    }
    ~FileChooserTest() override {
        std::error_code ignored;
        std::filesystem::remove(m_File, ignored);
    }

    // The field for the name: a box with a list, or a plain one.
    static HWND NameField(HWND dialog) {
        HWND const field = GetDlgItem(dialog, 0x47C);
        return field != nullptr ? field : GetDlgItem(dialog, 0x480);
    }

    std::filesystem::path m_File;
};

TEST_F(FileChooserTest, AFileIsChosen) {
    std::wstring const path = m_File.wstring();
    Operate(
        [&](HWND dialog) {
            HWND const field = Await([&] { return NameField(dialog); });
            SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
            // What is not accepted would leave the dialog up for ever.
            Press(dialog, field != nullptr ? IDOK : IDCANCEL);
        },
        "Choose one");
    CSafeString file("");
    EXPECT_TRUE(m_Input->SelectSingleFile(file, L"Choose one", L"Recordings|*.bin|", true));
    EXPECT_EQ(std::filesystem::path(file.get()), m_File);
}

TEST_F(FileChooserTest, ACancelledChoiceIsNone) {
    Operate([](HWND dialog) { Press(dialog, IDCANCEL); }, "Choose one");
    CSafeString file("f");
    EXPECT_FALSE(m_Input->SelectSingleFile(file, L"Choose one", nullptr, true));
    EXPECT_STREQ(file.get(), "f");
}

TEST_F(FileChooserTest, TheOperatorsAbortTakesTheDialogAway) {
    Operate(
        [this](HWND) { m_Service->Do([](CPromptService & service) { service.Abort(); }); },
        "Choose one");
    CSafeString file("f");
    EXPECT_FALSE(m_Input->SelectSingleFile(file, L"Choose one", nullptr, true));
    m_Operator.join();
    // The call returns at once, the window follows.
    EXPECT_NE(
        Await([&] { return FindWindowA("#32770", "Choose one") ? nullptr : GetDesktopWindow(); }),
        nullptr);
}

} // namespace
