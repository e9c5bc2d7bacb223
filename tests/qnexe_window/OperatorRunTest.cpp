// Runs that an operator starts at the window: what it shows, and how the program ends.
#include <string>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/ResourceIds.h"
#include "examples/QNExe/windows/StatusCounts.h"
#include "qnexe_window/WindowChild.h"

namespace {

class OperatorRunTest : public WindowChild {
protected:
    void OpenSampleSuite() {
        auto const suite = ProgramFolder() / "usb_descriptors.dll";
        Open({"--suite", suite.string(), "--recordings", RECORDINGS});
    }

    // The same run without a window.
    std::string FormattedRun(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--view", "formatted"});
        return Run(arguments).error;
    }

    std::string Shown() const { return Normalized(Narrow(Log().RichText())); }
};

// The look of a control's characters, as far as a log changes it.
struct Look {
    bool bold;
    bool italic;
    bool underline;
    std::optional<COLORREF> color;
    std::optional<COLORREF> backColor;

    bool operator==(Look const &) const = default;
};

Look LookFrom(CHARFORMAT2W const & format) {
    auto const on = [&](DWORD effect) { return (format.dwEffects & effect) != 0; };
    Look look{on(CFE_BOLD), on(CFE_ITALIC), on(CFE_UNDERLINE), {}, {}};
    if (!on(CFE_AUTOCOLOR)) look.color = format.crTextColor;
    if (!on(CFE_AUTOBACKCOLOR)) look.backColor = format.crBackColor;
    return look;
}

constexpr Look Plain{false, false, false, {}, {}};

TEST_F(OperatorRunTest, TheSampleSuiteIsShownAsTheFormattedLogShowsItAndFails) {
    auto const suite = (ProgramFolder() / "usb_descriptors.dll").string();
    std::string const expected = FormattedRun({"--suite", suite, "--recordings", RECORDINGS});
    OpenSampleSuite();
    RunToState(L"Failed");
    EXPECT_EQ(Shown(), expected);
    EXPECT_EQ(Close(), 1);
}

TEST_F(OperatorRunTest, TheStatusBarCountsWhatTheSummaryOfTheLogCounts) {
    OpenSampleSuite();
    RunToState(L"Failed");
    std::wstring const log = Log().RichText();
    auto const numberBehind = [&](wchar_t const * mark) {
        return std::to_wstring(std::stoul(log.substr(log.rfind(mark) + std::wstring(mark).size())));
    };
    EXPECT_EQ(Part(StatusCounts::Passed), L"Tests passed: " + numberBehind(L"Passed ("));
    EXPECT_EQ(Part(StatusCounts::Failed), L"Tests failed: " + numberBehind(L"Failed ("));
    EXPECT_EQ(Part(StatusCounts::Failures), L"Failures: " + numberBehind(L"Fails ("));
    EXPECT_EQ(Part(StatusCounts::Warnings), L"Warnings: " + numberBehind(L"Warnings ("));
    EXPECT_EQ(Part(StatusCounts::Aborts), L"Aborts: " + numberBehind(L"Aborts ("));
    EXPECT_EQ(Close(), 1);
}

TEST_F(OperatorRunTest, EntriesHaveTheLooksThatTheTestGaveThem) {
    OpenWithSuite("looking");
    RunToState(L"Passed");
    Look const marked{true, true, true, RGB(0, 0, 0), RGB(0xFF, 0xFF, 0)};
    EXPECT_EQ(LookFrom(Log().LookOf(L"plain\n")), Plain);
    EXPECT_EQ(LookFrom(Log().LookOf(L"marked\n")), marked);
    EXPECT_EQ(LookFrom(Log().LookOf(L"plain again\n")), Plain);
    EXPECT_EQ(Close(), 0);
}

TEST_F(OperatorRunTest, AbortEndsARunAndTheProgramTellsOfIt) {
    OpenWithSuite("endless");
    Window().Command(ID_RUN_START);
    ASSERT_TRUE(WaitFor([&] { return Window().Child(ID_RUN_ABORT).IsEnabled(); }));
    Window().Command(ID_RUN_ABORT);
    AwaitState(L"Aborted by the operator");
    EXPECT_NE(Shown().find("*** TEST SUITE WAS ABORTED BY USER ***"), std::string::npos);
    EXPECT_EQ(Close(), 3);
}

TEST_F(OperatorRunTest, AButtonPressedByAMessageThatIsSentStartsARunToo) {
    OpenWithSuite("passing");
    Window().Child(ID_RUN_START).Send(BM_CLICK);
    AwaitState(L"Passed");
    EXPECT_EQ(Close(), 0);
}

TEST_F(OperatorRunTest, AnotherRunBeginsWithAnEmptyLogAndCountsOfItsOwn) {
    OpenWithSuite("looking");
    RunToState(L"Passed");
    std::string const first = Shown();
    Log().Text(L"");
    RunToState(L"Passed");
    EXPECT_EQ(Shown(), first);
    EXPECT_EQ(Part(StatusCounts::Passed), L"Tests passed: 1");
    EXPECT_EQ(Close(), 0);
}

TEST_F(OperatorRunTest, WithoutARunNothingHasPassed) {
    OpenWithSuite("passing");
    EXPECT_EQ(State(), L"Ready");
    EXPECT_EQ(Close(), 2);
}

TEST_F(OperatorRunTest, WithoutASuiteStartIsNotOffered) {
    Open();
    EXPECT_FALSE(Window().Child(ID_RUN_START).IsEnabled());
    EXPECT_EQ(Window().Child(ID_SUITE_NAME).Text(), L"No suite chosen");
    EXPECT_EQ(Close(), 2);
}

TEST_F(OperatorRunTest, ASuiteThatDoesNotLoadIsAProblemInTheLog) {
    Open({"--suite", File("missing.dll")});
    RunToState(L"Could not run");
    EXPECT_EQ(Shown().find("the suite \"" + File("missing.dll") + "\" cannot be loaded"), 0u);
    EXPECT_TRUE(LookFrom(Log().LookOf(L"cannot be loaded")).bold);
    EXPECT_EQ(Close(), 4);
}

TEST_F(OperatorRunTest, ClosingAbortsTheRunFirst) {
    OpenWithSuite("endless");
    Window().Command(ID_RUN_START);
    ASSERT_TRUE(WaitFor([&] { return Window().Child(ID_RUN_ABORT).IsEnabled(); }));
    EXPECT_EQ(Close(), 3);
}

TEST_F(OperatorRunTest, ATestThatDoesNotAnswerIsEndedWhenTheOperatorSaysSo) {
    OpenWithSuite("stuck");
    Window().Command(ID_RUN_START);
    // The test runs: no abort can end the run before it any more.
    RemoteWindow const label = Window().Child(ID_PROGRESS_LABEL);
    ASSERT_TRUE(WaitFor([&] { return label.Text().starts_with(L"0 of 1"); }));
    PostMessageW(Window().Handle(), WM_CLOSE, 0, 0);
    PostMessageW(Window().Handle(), WM_CLOSE, 0, 0);
    Window().Dialog().Command(IDYES);
    EXPECT_EQ(Finish().code, 3);
}

TEST_F(OperatorRunTest, WhileATestRunsSetUpAndRecordsAreOutOfReach) {
    OpenWithSuite("endless");
    Window().Command(ID_RUN_START);
    ASSERT_TRUE(WaitFor([&] { return Window().Child(ID_RUN_ABORT).IsEnabled(); }));
    HMENU const menu = GetMenu(Window().Handle());
    for (UINT const command : {ID_RUN_SETUP, ID_RUN_START, ID_DEVICE_RECORD, ID_DEVICE_VIFS})
        EXPECT_NE(GetMenuState(menu, command, MF_BYCOMMAND) & MF_GRAYED, 0u) << command;
    EXPECT_EQ(Close(), 3);
}

TEST_F(OperatorRunTest, ProgressAndTimeAreShown) {
    OpenWithSuite("endless");
    Window().Command(ID_RUN_START);
    EXPECT_TRUE(WaitFor([&] { return Window().Child(ID_PROGRESS_LABEL).Text() == L"0 of 2  T1"; }));
    EXPECT_TRUE(WaitFor([&] { return Window().Child(ID_PROGRESS_TIME).Text() >= L"0:02"; }));
    EXPECT_EQ(Close(), 3);
}

} // namespace
