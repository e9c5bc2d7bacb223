// The choice of VIF files, through the dialog's controls.
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/ResourceIds.h"
#include "qnexe_window/WindowChild.h"

namespace {

class VifDialogTest : public WindowChild {
protected:
    void OpenDialog() {
        Window().Command(ID_DEVICE_VIFS);
        m_Dialog = Window().Dialog();
    }

    RemoteWindow List() const { return m_Dialog.Child(ID_VIF_DFP_LIST); }

    std::vector<std::wstring> Listed() const {
        std::vector<std::wstring> names;
        auto const count = static_cast<WPARAM>(List().Send(LB_GETCOUNT));
        for (WPARAM place = 0; place < count; ++place) {
            wchar_t name[MAX_PATH] = {};
            List().Send(LB_GETTEXT, place, reinterpret_cast<LPARAM>(name));
            names.emplace_back(name);
        }
        return names;
    }

    void ForgetChoice() {
        Open({"--ufp-vif", "", "--dfp-vif", ""});
        EXPECT_EQ(Close(), 2);
    }

    RemoteWindow m_Dialog;
};

using Names = std::vector<std::wstring>;

TEST_F(VifDialogTest, TheChoiceOfTheCommandLineIsShown) {
    Open({"--ufp-vif", "u.xml", "--dfp-vif", "a.xml", "--dfp-vif", "b.xml"});
    OpenDialog();
    EXPECT_EQ(m_Dialog.Child(ID_VIF_UFP).Text(), L"u.xml");
    EXPECT_EQ(Listed(), (Names{L"a.xml", L"b.xml"}));
    m_Dialog.End(IDCANCEL);
    EXPECT_EQ(Close(), 2);
    ForgetChoice();
}

TEST_F(VifDialogTest, SavedChangesAreThereInTheNextProgram) {
    Open({"--ufp-vif", "u.xml", "--dfp-vif", "a.xml", "--dfp-vif", "b.xml"});
    OpenDialog();
    m_Dialog.Child(ID_VIF_UFP).Text(L"\x00FC.xml");
    List().Send(LB_SETSEL, TRUE, 0);
    m_Dialog.Send(WM_COMMAND, ID_VIF_DFP_REMOVE);
    m_Dialog.End(IDOK);
    EXPECT_EQ(Close(), 2);
    Open();
    OpenDialog();
    EXPECT_EQ(m_Dialog.Child(ID_VIF_UFP).Text(), L"\x00FC.xml");
    EXPECT_EQ(Listed(), Names{L"b.xml"});
    m_Dialog.End(IDCANCEL);
    EXPECT_EQ(Close(), 2);
    ForgetChoice();
}

TEST_F(VifDialogTest, AChosenFileJoinsTheList) {
    std::string const file = File("chosen.xml");
    std::ofstream(file) << "<vif/>";
    ForgetChoice();
    Open();
    OpenDialog();
    m_Dialog.Command(ID_VIF_DFP_ADD);
    m_Dialog.Dialog().TakeFile(file);
    EXPECT_TRUE(WaitFor([&] { return List().Send(LB_GETCOUNT) == 1; }));
    EXPECT_EQ(Listed(), Names{std::wstring(file.begin(), file.end())});
    m_Dialog.End(IDCANCEL);
    EXPECT_EQ(Close(), 2);
}

TEST_F(VifDialogTest, CancelKeepsTheChoice) {
    Open({"--ufp-vif", "u.xml"});
    OpenDialog();
    m_Dialog.Child(ID_VIF_UFP).Text(L"other.xml");
    m_Dialog.End(IDCANCEL);
    OpenDialog();
    EXPECT_EQ(m_Dialog.Child(ID_VIF_UFP).Text(), L"u.xml");
    m_Dialog.End(IDCANCEL);
    EXPECT_EQ(Close(), 2);
    ForgetChoice();
}

} // namespace
