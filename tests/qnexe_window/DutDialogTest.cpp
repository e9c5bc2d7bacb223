// The dialog of the device under test, through its controls.
#include <string>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/ResourceIds.h"
#include "qnexe_window/WindowChild.h"

namespace {

class DutDialogTest : public WindowChild {
protected:
    // Opens the dialog on an empty store.
    void SetUp() override {
        Open();
        OpenDialog();
        Press(ID_DUT_CLEAR);
    }

    void TearDown() override {
        Press(ID_DUT_CLEAR);
        CloseDialog();
        EXPECT_EQ(Close(), 2);
    }

    void OpenDialog() {
        Window().Command(ID_DEVICE_RECORD);
        m_Dialog = Window().Dialog();
    }

    void CloseDialog() { m_Dialog.End(IDCANCEL); }

    // A button's command, done when this returns.
    void Press(int button) { m_Dialog.Send(WM_COMMAND, static_cast<WPARAM>(button)); }

    void Fill(std::wstring const & mark) {
        for (int const field : Fields)
            m_Dialog.Child(field).Text(mark + std::to_wstring(field));
    }

    void ExpectFields(std::wstring const & mark) {
        for (int const field : Fields)
            EXPECT_EQ(m_Dialog.Child(field).Text(), mark + std::to_wstring(field));
    }

    void ExpectEmpty() {
        for (int const field : Fields)
            EXPECT_EQ(m_Dialog.Child(field).Text(), L"");
    }

    std::wstring Reply() const { return m_Dialog.Child(ID_DUT_REPLY).Text(); }

    static constexpr int Fields[] = {ID_DUT_TID, ID_DUT_TEST_BED, ID_DUT_ROOM, ID_DUT_COMMENTS};

    RemoteWindow m_Dialog;
};

TEST_F(DutDialogTest, WhatIsSavedIsThereWhenTheDialogOpensAgain) {
    Fill(L"\x00DF\x4E2D ");
    Press(ID_DUT_SAVE);
    EXPECT_EQ(Reply(), L"Saved. The next run logs it.");
    CloseDialog();
    OpenDialog();
    ExpectFields(L"\x00DF\x4E2D ");
}

TEST_F(DutDialogTest, WhatIsSavedIsThereInTheNextProgram) {
    Fill(L"kept ");
    Press(ID_DUT_SAVE);
    CloseDialog();
    EXPECT_EQ(Close(), 2);
    Open();
    OpenDialog();
    ExpectFields(L"kept ");
}

TEST_F(DutDialogTest, LoadTakesBackWhatWasTypedSince) {
    Fill(L"saved ");
    Press(ID_DUT_SAVE);
    Fill(L"typed ");
    Press(ID_DUT_LOAD);
    ExpectFields(L"saved ");
    EXPECT_EQ(Reply(), L"Loaded what is stored.");
}

TEST_F(DutDialogTest, ClearEmptiesTheFieldsAndTheStore) {
    Fill(L"gone ");
    Press(ID_DUT_SAVE);
    Press(ID_DUT_CLEAR);
    ExpectEmpty();
    EXPECT_EQ(Reply(), L"Cleared, here and in the store.");
    Press(ID_DUT_LOAD);
    ExpectEmpty();
    EXPECT_EQ(Reply(), L"Nothing is stored.");
}

TEST_F(DutDialogTest, WhatIsNotSavedIsNotKept) {
    Fill(L"lost ");
    CloseDialog();
    OpenDialog();
    ExpectEmpty();
}

TEST_F(DutDialogTest, WhileTheDialogIsUpNoRunStarts) {
    Window().Send(WM_COMMAND, ID_RUN_START);
    EXPECT_EQ(State(), L"Ready");
    EXPECT_FALSE(Window().IsEnabled());
}

} // namespace
