// The run's shared state: its bracket, its defaults, and the setters with a rule of their own.
#include "app/CAppState.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Synchronization.h"
#include "platform/Wrap.h"
#include "prompts/CMXUserInput.h"
#include "settings/CDUTInfo.h"
#include "settings/CIniArgs.h"
#include "siblings/Keelbase.h"
#include "siblings/QuillonLog.h"
#include "support/Allocations.h"

MORVEX_WRAPPED(CloseHandle)
MORVEX_WRAP_API(void, EnterCriticalSection, (CRITICAL_SECTION * section), (section))
MORVEX_WRAP_API(void, LeaveCriticalSection, (CRITICAL_SECTION * section), (section))

namespace {

// A place that a borrowed pointer can name; nobody looks inside.
template <typename Object>
Object * Somewhere() {
    alignas(std::max_align_t) static char place[64];
    return reinterpret_cast<Object *>(place);
}

// Reaches what only a setter reaches.
QNHelper * CurrentHelper();
template <CAppState ** App, QNHelper * CAppState::*Helper>
struct Hidden {
    friend QNHelper * CurrentHelper() { return (*App)->*Helper; }
};
template struct Hidden<&CAppState::m_sTheApp, &CAppState::m_Helper>;

class CAppStateTest : public testing::Test {
protected:
    CAppStateTest() { CAppState::InitAppState(ApplicationFamilyDefault); }
    ~CAppStateTest() override { CAppState::CleanupAppState(); }

    void Configure(std::string const & program) {
        m_Args.AddArg("Quillon", "ProgramName", program);
        CAppState::SetIniArgs(m_Args);
    }

    // Whether a fresh suite record is told that the program's name matches.
    bool NameMatches() {
        CAppState::TestSuiteLog(&m_Suite);
        return m_Suite.m_ProgramNameMatches;
    }

    CIniArgs m_Args;
    CTestSuiteLog m_Suite;
};

constexpr bool copyable = requires(CAppState const & source, CAppState & target) {
    new CAppState(source);
    target = source;
};
static_assert(copyable);
static_assert(sizeof(EApplicationFamily) == 4 && sizeof(ERunType) == 4 && sizeof(EPromptType) == 4);
static_assert(ApplicationFamilyDefault == 0 && RunTypeDefault == 0 && PromptTypeDefault == 0);
static_assert(RunTypeDebug == 1);

TEST(CAppStateBracketTest, TheFamilyIsTheDefaultBeforeTheFirstInit) {
    EXPECT_EQ(CAppState::AppFamily(), ApplicationFamilyDefault);
}

TEST(CAppStateBracketTest, TheInstanceStandsBetweenInitAndCleanup) {
    EXPECT_FALSE(CAppState::AppStateSet());
    CAppState::InitAppState(ApplicationFamilyDefault);
    EXPECT_TRUE(CAppState::AppStateSet());
    CAppState::CleanupAppState();
    EXPECT_FALSE(CAppState::AppStateSet());
}

TEST(CAppStateBracketTest, CleanupWithoutAnInstanceDoesNothing) {
    CAppState::CleanupAppState();
    CAppState::CleanupAppState();
    EXPECT_FALSE(CAppState::AppStateSet());
}

TEST(CAppStateBracketTest, ASecondInitKeepsTheInstanceAndTakesTheFamily) {
    CAppState::InitAppState(EApplicationFamily{3});
    CAppState::ApplicationName("Name");
    std::string const * const held = CAppState::ApplicationName();
    CAppState::InitAppState(EApplicationFamily{0x80000001});
    EXPECT_EQ(CAppState::ApplicationName(), held);
    EXPECT_EQ(*held, "Name");
    EXPECT_EQ(CAppState::AppFamily(), EApplicationFamily{0x80000001});
    CAppState::CleanupAppState();
}

TEST(CAppStateBracketTest, TheFamilyOutlivesTheInstance) {
    CAppState::InitAppState(EApplicationFamily{5});
    CAppState::CleanupAppState();
    EXPECT_EQ(CAppState::AppFamily(), EApplicationFamily{5});
}

TEST(CAppStateBracketTest, AnotherInstanceStartsFromTheDefaults) {
    CAppState::InitAppState(ApplicationFamilyDefault);
    CAppState::ProductType("Type");
    CAppState::QNLogVerbosityLevel(Internal);
    CAppState::CleanupAppState();
    CAppState::InitAppState(ApplicationFamilyDefault);
    EXPECT_EQ(CAppState::ProductType(), nullptr);
    EXPECT_EQ(CAppState::QNLogVerbosityLevel(), Normal);
    CAppState::CleanupAppState();
}

TEST(CAppStateBracketTest, TheUpdateIntervalIsSafeWithoutAnInstance) {
    CAppState::QNMinimumDisplayUpdateTime(55);
    EXPECT_EQ(CAppState::QNMinimumDisplayUpdateTime(), 0u);
    CAppState::InitAppState(ApplicationFamilyDefault);
    EXPECT_EQ(CAppState::QNMinimumDisplayUpdateTime(), 300u);
    CAppState::QNMinimumDisplayUpdateTime(0xFFFFFFFF);
    EXPECT_EQ(CAppState::QNMinimumDisplayUpdateTime(), 0xFFFFFFFFu);
    CAppState::CleanupAppState();
    EXPECT_EQ(CAppState::QNMinimumDisplayUpdateTime(), 0u);
}

TEST(CAppStateBracketTest, CleanupReleasesInOrderAndClosesTheEventLast) {
    CAppState::InitAppState(ApplicationFamilyDefault);
    CAppState::ProductType("type");
    CAppState::HostControllerType("controller");
    CAppState::ReportNamePart("part");
    void const * const event = CAppState::MessageFilterEvent();
    std::vector<void const *> const expected = {
        CAppState::ApplicationName(),
        CAppState::ProductType(),
        CAppState::HostControllerType(),
        CAppState::AlternateTestName(),
        CAppState::DUTInfo(),
        CAppState::ReportNamePart(),
        &CAppState::AppTitle(),
        &CAppState::InitialWorkingDirectory()};

    std::vector<void const *> closed;
    closed.reserve(4);
    std::vector<void const *> releasedBeforeClosing;
    releasedBeforeClosing.reserve(64);
    AllocationWatch watch;
    Diversion const diversion(wrapped_CloseHandle, [&](HANDLE handle) {
        closed.push_back(handle);
        for (void const * const block : watch.Released())
            releasedBeforeClosing.push_back(block);
        return wrapped_CloseHandle.Real(handle);
    });
    CAppState::CleanupAppState();
    watch.End();

    std::erase_if(releasedBeforeClosing, [&](void const * block) {
        return std::find(expected.begin(), expected.end(), block) == expected.end();
    });
    EXPECT_EQ(releasedBeforeClosing, expected);
    EXPECT_EQ(closed, std::vector<void const *>{event});
}

// The platform keeps what it makes at its first use.
void WarmUp() {
    CAppState::InitAppState(ApplicationFamilyDefault);
    CAppState::CleanupAppState();
}

TEST(CAppStateBracketTest, CleanupLeavesNothingBehind) {
    WarmUp();
    AllocationWatch watch;
    CAppState::InitAppState(ApplicationFamilyDefault);
    CAppState::AlternateTestName("a text that is too long for the string's own place");
    CAppState::ApplicationName("a text that is too long for the string's own place");
    CAppState::ProductType("a text that is too long for the string's own place");
    CAppState::HostControllerType("a text that is too long for the string's own place");
    CAppState::ReportNamePart("a text that is too long for the string's own place");
    CAppState::AppTitle("a text that is too long for the string's own place");
    CAppState::DUTInfo(CDUTInfo());
    CAppState::CleanupAppState();
    watch.End();
    EXPECT_EQ(watch.Leaks(), 0u);
}

TEST_F(CAppStateTest, AFreshInstanceHoldsTheDefaults) {
    EXPECT_EQ(*CAppState::AlternateTestName(), "");
    EXPECT_EQ(*CAppState::ApplicationName(), "");
    EXPECT_EQ(CAppState::AppTitle(), "");
    EXPECT_EQ(CAppState::ProductType(), nullptr);
    EXPECT_EQ(CAppState::HostControllerType(), nullptr);
    EXPECT_EQ(CAppState::ReportNamePart(), nullptr);
    EXPECT_EQ(CAppState::Log(), nullptr);
    EXPECT_EQ(CAppState::UserInput(), nullptr);
    EXPECT_EQ(CAppState::TestSuiteLog(), nullptr);
    EXPECT_EQ(CAppState::CurrentTestLog(), nullptr);
    EXPECT_EQ(CAppState::MainWindowHandle(), nullptr);
    EXPECT_EQ(CAppState::GetRunType(), 0u);
    EXPECT_EQ(CAppState::GetPromptType(), 0u);
    EXPECT_FALSE(CAppState::SupportsPromptStateChange());
    EXPECT_FALSE(CAppState::OnlyValidate());
    EXPECT_FALSE(CAppState::FunctionIsExecuting());
    EXPECT_FALSE(CAppState::GetDevelopmentMode());
    EXPECT_FALSE(CAppState::InCertificationMode());
    EXPECT_EQ(CAppState::QNMinimumDisplayUpdateTime(), 300u);
    EXPECT_EQ(CAppState::QNLogVerbosityLevel(), 3);
}

TEST_F(CAppStateTest, AFreshDeviceRecordIsEmpty) {
    CDUTInfo const & info = *CAppState::DUTInfo();
    EXPECT_EQ(info.TID() + info.TestBed() + info.RoomNumber() + info.Comments(), L"");
}

// Every flag of the notice board, in one row.
std::vector<bool> Flags() {
    return {
        CAppState::OnlyValidate(), CAppState::SupportsPromptStateChange(),
        CAppState::FunctionIsExecuting(), CAppState::GetDevelopmentMode(),
        CAppState::InCertificationMode()};
}

TEST_F(CAppStateTest, EachFlagHasItsOwnPlace) {
    void (*const setters[])(bool) = {
        &CAppState::SetOnlyValidate, &CAppState::SupportsPromptStateChange,
        &CAppState::FunctionIsExecuting, &CAppState::SetDevelopmentMode,
        &CAppState::InCertificationMode};
    for (std::size_t flag = 0; flag != std::size(setters); ++flag) {
        SCOPED_TRACE(flag);
        std::vector<bool> expected(std::size(setters));
        setters[flag](true);
        expected[flag] = true;
        EXPECT_EQ(Flags(), expected);
        setters[flag](false);
        EXPECT_EQ(Flags(), std::vector<bool>(std::size(setters)));
    }
}

TEST_F(CAppStateTest, RunAndPromptTypesKeepAnyValueOfTheHost) {
    CAppState::SetRunType(RunTypeDebug);
    CAppState::SetPromptType(EPromptType{0xFFFFFFFF});
    EXPECT_EQ(CAppState::GetRunType(), 1u);
    EXPECT_EQ(CAppState::GetPromptType(), 0xFFFFFFFFu);
    CAppState::SetRunType(ERunType{0xFFFFFFFE});
    EXPECT_EQ(CAppState::GetRunType(), 0xFFFFFFFEu);
}

TEST_F(CAppStateTest, BorrowedPointersComeBackAsTheyWereGiven) {
    CAppState::Log(Somewhere<CMXLog>());
    CAppState::UserInput(Somewhere<CMXUserInput>());
    CAppState::MainWindowHandle(Somewhere<void>());
    CAppState::SetIniArgs(m_Args);
    EXPECT_EQ(CAppState::Log(), Somewhere<CMXLog>());
    EXPECT_EQ(CAppState::UserInput(), Somewhere<CMXUserInput>());
    EXPECT_EQ(CAppState::MainWindowHandle(), Somewhere<void>());
    EXPECT_EQ(&CAppState::GetIniArgs(), &m_Args);
    // The clean-up that follows the test must not touch them.
}

TEST_F(CAppStateTest, AnEntryShowsUpToTheRunsLevel) {
    EXPECT_TRUE(CAppState::IsLogVerbosityLevel(Quiet));
    EXPECT_TRUE(CAppState::IsLogVerbosityLevel(Normal));
    EXPECT_FALSE(CAppState::IsLogVerbosityLevel(Verbose));
    CAppState::QNLogVerbosityLevel(eQNLogVerbosity{6});
    EXPECT_EQ(CAppState::QNLogVerbosityLevel(), 6);
    EXPECT_TRUE(CAppState::IsLogVerbosityLevel(Diagnostic));
    EXPECT_FALSE(CAppState::IsLogVerbosityLevel(Internal));
    CAppState::QNLogVerbosityLevel(Internal);
    EXPECT_TRUE(CAppState::IsLogVerbosityLevel(Internal));
    CAppState::QNLogVerbosityLevel(Quiet);
    EXPECT_TRUE(CAppState::IsLogVerbosityLevel(Quiet));
    EXPECT_FALSE(CAppState::IsLogVerbosityLevel(Minimal));
}

TEST_F(CAppStateTest, EachTextHasItsOwnPlace) {
    CAppState::AlternateTestName("alternate");
    CAppState::ApplicationName("application");
    CAppState::ProductType("product");
    CAppState::HostControllerType("controller");
    CAppState::ReportNamePart("part");
    CAppState::AppTitle("title");
    EXPECT_EQ(*CAppState::AlternateTestName(), "alternate");
    EXPECT_EQ(*CAppState::ApplicationName(), "application");
    EXPECT_EQ(*CAppState::ProductType(), "product");
    EXPECT_EQ(*CAppState::HostControllerType(), "controller");
    EXPECT_EQ(*CAppState::ReportNamePart(), "part");
    EXPECT_EQ(CAppState::AppTitle(), "title");
}

TEST_F(CAppStateTest, ASetterReleasesTheOldTextAndCopiesTheNew) {
    std::string name = "first";
    CAppState::ApplicationName(name);
    void const * const first = CAppState::ApplicationName();
    AllocationWatch watch;
    CAppState::ApplicationName(std::string("second"));
    watch.End();
    EXPECT_EQ(watch.Released(), std::vector<void const *>{first});
    EXPECT_EQ(*CAppState::ApplicationName(), "second");
    CAppState::ApplicationName(name);
    name = "changed";
    EXPECT_EQ(*CAppState::ApplicationName(), "first");
}

TEST_F(CAppStateTest, TheTitleIsAssignedInPlace) {
    std::string & title = CAppState::AppTitle();
    CAppState::AppTitle("a title that is too long for the string's own place");
    CAppState::AppTitle(title);
    EXPECT_EQ(&CAppState::AppTitle(), &title);
    EXPECT_EQ(title, "a title that is too long for the string's own place");
}

TEST_F(CAppStateTest, FirstAppendToTheReportNameYieldsThePartTwice) {
    CAppState::AppendReportNamePart("A");
    EXPECT_EQ(*CAppState::ReportNamePart(), "AA");
    CAppState::AppendReportNamePart("B");
    EXPECT_EQ(*CAppState::ReportNamePart(), "AAB");
}

TEST_F(CAppStateTest, AppendingToASetReportNameAddsThePartOnce) {
    CAppState::ReportNamePart("A");
    CAppState::AppendReportNamePart("B");
    EXPECT_EQ(*CAppState::ReportNamePart(), "AB");
    CAppState::AppendReportNamePart(*CAppState::ReportNamePart());
    EXPECT_EQ(*CAppState::ReportNamePart(), "ABAB");
}

TEST_F(CAppStateTest, TheDeviceRecordIsCopied) {
    CDUTInfo info;
    info.TID(L"1");
    info.TestBed(L"2");
    info.RoomNumber(L"3");
    info.Comments(L"4");
    CAppState::DUTInfo(info);
    info.TID(L"changed");
    CDUTInfo const & held = *CAppState::DUTInfo();
    EXPECT_EQ(
        std::tuple(held.TID(), held.TestBed(), held.RoomNumber(), held.Comments()),
        std::tuple(std::wstring(L"1"), std::wstring(L"2"), std::wstring(L"3"), std::wstring(L"4")));
}

TEST_F(CAppStateTest, ASuiteWithTheTitlesNameKeepsItsMatch) {
    Configure("USB Test");
    CAppState::AppTitle("USB Test");
    EXPECT_TRUE(NameMatches());
    EXPECT_EQ(CAppState::TestSuiteLog(), &m_Suite);
}

TEST_F(CAppStateTest, AMatchThatWasClearedStaysClear) {
    Configure("USB Test");
    CAppState::AppTitle("USB Test");
    m_Suite.m_ProgramNameMatches = false;
    EXPECT_FALSE(NameMatches());
}

TEST_F(CAppStateTest, ASuiteWithAnyOtherNameLosesItsMatch) {
    for (char const * const title : {"usb test", "USB Tes", "USB Test ", "USB Tess", ""}) {
        SCOPED_TRACE(title);
        Configure("USB Test");
        CAppState::AppTitle(title);
        m_Suite.m_ProgramNameMatches = true;
        EXPECT_FALSE(NameMatches());
    }
}

TEST_F(CAppStateTest, ASuiteWithoutAConfiguredNameLosesItsMatch) {
    CAppState::SetIniArgs(m_Args);
    m_Args.AddArg("Quillon", "Other", "");
    EXPECT_FALSE(NameMatches());
}

TEST_F(CAppStateTest, AnEmptyNameMatchesAnEmptyTitle) {
    Configure("");
    EXPECT_TRUE(NameMatches());
}

TEST_F(CAppStateTest, ANullSuiteIsOnlyStored) {
    // There is no store that could be asked.
    CAppState::TestSuiteLog(nullptr);
    EXPECT_EQ(CAppState::TestSuiteLog(), nullptr);
    EXPECT_EQ(CAppState::CurrentTestLog(), nullptr);
}

TEST_F(CAppStateTest, TheCurrentTestsRecordIsTheSuites) {
    Configure("");
    CAppState::TestSuiteLog(&m_Suite);
    EXPECT_EQ(CAppState::CurrentTestLog(), m_Suite.CurrentTestLog());
    m_Suite.OpenTest(true);
    EXPECT_EQ(CAppState::CurrentTestLog(), m_Suite.CurrentTestLog());
}

TEST_F(CAppStateTest, TheHelperIsStoredUnderOneLock) {
    std::vector<std::string> steps;
    CRITICAL_SECTION const * entered = nullptr;
    auto const helper = [] { return CurrentHelper() != nullptr ? " with one" : " with none"; };
    Diversion const enter(wrapped_EnterCriticalSection, [&](CRITICAL_SECTION * section) {
        entered = section;
        wrapped_EnterCriticalSection.Real(section);
        steps.push_back(std::string("enter") + helper());
    });
    Diversion const leave(wrapped_LeaveCriticalSection, [&](CRITICAL_SECTION * section) {
        steps.push_back(std::string(section == entered ? "leave" : "leave another") + helper());
        wrapped_LeaveCriticalSection.Real(section);
    });
    QNHelper * const one = Somewhere<QNHelper>();
    CAppState::SetHelper(one);
    EXPECT_EQ(CurrentHelper(), one);
    CAppState::SetHelper(nullptr);
    EXPECT_EQ(
        steps, (std::vector<std::string>{
                   "enter with none", "leave with one", "enter with one", "leave with none"}));
}

TEST_F(CAppStateTest, RegistryNamesAreThoseOfTheStoredSelections) {
    EXPECT_STREQ(CAppState::m_UFP_VIF_REG_VALUE_NAME, "UFPVif");
    EXPECT_STREQ(CAppState::m_DFP_VIFS_REG_KEY_NAME, "DFPVifs");
}

} // namespace
