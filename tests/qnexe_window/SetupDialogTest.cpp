// A run that is set up at the window.
#include <filesystem>
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

TEST_F(SetupDialogTest, ReportsThatAreAskedForAreWritten) {
    OpenWithSuite("passing");
    OpenDialog();
    m_Dialog.Child(ID_SETUP_REPORTS).Text(Wide("junit:" + File("run.xml")));
    m_Dialog.End(IDOK);
    RunToState(L"Passed");
    EXPECT_TRUE(std::filesystem::exists(File("run.xml")));
    OpenDialog();
    m_Dialog.Child(ID_SETUP_REPORTS).Text(L"");
    m_Dialog.End(IDOK);
    RunToState(L"Passed");
    EXPECT_FALSE(std::filesystem::exists(File("run-2.xml")));
    EXPECT_EQ(Close(), 0);
}

TEST_F(SetupDialogTest, ReportsOfTheCommandLineAreShownAsTheyWereGiven) {
    std::string const words = "json:a,junit:b,html:c\\,overwrite";
    Open({"--report", words});
    OpenDialog();
    EXPECT_EQ(m_Dialog.Child(ID_SETUP_REPORTS).Text(), Wide(words));
    m_Dialog.End(IDCANCEL);
    EXPECT_EQ(Close(), 2);
}

TEST_F(SetupDialogTest, WordsThatAskForNoReportsStayToBeMended) {
    Open();
    OpenDialog();
    m_Dialog.Child(ID_SETUP_SUITE).Text(Wide(Suite("passing")));
    m_Dialog.Child(ID_SETUP_REPORTS).Text(L"pdf:a");
    m_Dialog.Send(WM_COMMAND, IDOK);
    ASSERT_TRUE(IsWindow(m_Dialog.Handle()));
    EXPECT_NE(m_Dialog.Child(ID_SETUP_REPLY).Text().find(L"\"pdf:a\""), std::wstring::npos);
    m_Dialog.End(IDCANCEL);
    EXPECT_FALSE(Window().Child(ID_RUN_START).IsEnabled());
    EXPECT_EQ(Close(), 2);
}

TEST_F(SetupDialogTest, AFolderForReportsIsAskedForAllThree) {
    constexpr UINT select = WM_USER + 103;
    Open();
    OpenDialog();
    m_Dialog.Command(ID_SETUP_REPORTS_FOLDER);
    RemoteWindow const folders = m_Dialog.Dialog();
    struct Path {
        wchar_t text[MAX_PATH];
    } folder = {};
    std::wstring const wanted = std::filesystem::path(File("")).parent_path().wstring();
    wanted.copy(folder.text, MAX_PATH - 1);
    folders.Ask(select, TRUE, folder);
    folders.End(IDOK);
    std::wstring const path = wanted + L'\\';
    std::wstring const all = L"html:" + path + L",junit:" + path + L",json:" + path;
    EXPECT_TRUE(WaitFor([&] { return m_Dialog.Child(ID_SETUP_REPORTS).Text() == all; }))
        << Narrow(m_Dialog.Child(ID_SETUP_REPORTS).Text());
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
