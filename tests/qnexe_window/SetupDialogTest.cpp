// A run that is set up at the window.
#include <string>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/ResourceIds.h"
#include "qnexe_window/WindowChild.h"

namespace {

class SetupDialogTest : public WindowChild {
protected:
    void OpenDialog() {
        Window().Command(ID_RUN_SETUP);
        m_Dialog = Window().Dialog();
    }

    static std::wstring Wide(std::string const & text) { return {text.begin(), text.end()}; }

    RemoteWindow m_Dialog;
};

TEST_F(SetupDialogTest, AChosenSuiteRuns) {
    Open();
    OpenDialog();
    m_Dialog.Child(ID_SETUP_SUITE).Text(Wide(Suite("passing")));
    m_Dialog.End(IDOK);
    EXPECT_TRUE(WaitFor([&] { return Window().Child(ID_RUN_START).IsEnabled(); }));
    EXPECT_EQ(Window().Child(ID_SUITE_NAME).Text(), Wide(Suite("passing")));
    RunToState(L"Passed");
    EXPECT_EQ(Close(), 0);
}

TEST_F(SetupDialogTest, TheOptionsOfTheCommandLineAreShown) {
    Open({"--suite", Suite("passing"), "--recordings", "folder", "--only-failures"});
    OpenDialog();
    EXPECT_EQ(m_Dialog.Child(ID_SETUP_SUITE).Text(), Wide(Suite("passing")));
    EXPECT_EQ(m_Dialog.Child(ID_SETUP_RECORDINGS).Text(), L"folder");
    auto const isOn = [&](int box) { return m_Dialog.Child(box).Send(BM_GETCHECK) == BST_CHECKED; };
    EXPECT_TRUE(isOn(ID_SETUP_ONLY_FAILURES));
    EXPECT_FALSE(isOn(ID_SETUP_INTERACTIVE));
    EXPECT_FALSE(isOn(ID_SETUP_VERSIONS));
    m_Dialog.End(IDCANCEL);
    EXPECT_EQ(Close(), 2);
}

TEST_F(SetupDialogTest, CancelKeepsTheSuite) {
    OpenWithSuite("passing");
    OpenDialog();
    m_Dialog.Child(ID_SETUP_SUITE).Text(L"");
    m_Dialog.End(IDCANCEL);
    EXPECT_TRUE(Window().Child(ID_RUN_START).IsEnabled());
    EXPECT_EQ(Close(), 2);
}

} // namespace
