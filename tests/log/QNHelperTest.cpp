// The test helper: the life of a test through it, the current helper, and what it does without a
// log.
#include "log/QNHelper.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "log/LogFixture.h"

MORVEX_WRAPPED(MessageBoxA)

namespace {

constexpr char kStandardText[] = "Internal Error -- Pointer validation failed.";

// Notes the virtual calls that reach it, and lets a test reach what a derived class reaches.
class Helper : public QNHelper {
public:
    using QNHelper::QNHelper;
    using QNHelper::StopTestInit;

    TEST_STATUS CompleteTest(TEST_STATUS status) const override {
        m_Calls.push_back("complete " + Hex(status));
        return QNHelper::CompleteTest(status);
    }
    void SetUserInput(CMXUserInput * const input, CMXLog * const log) override {
        m_Calls.push_back("set input");
        QNHelper::SetUserInput(input, log);
    }
    void SetLog(CMXLog * const log) override {
        m_Calls.push_back("set log");
        QNHelper::SetLog(log);
    }
    void LogValidatePointerFail(TEST_STATUS status, char const * text) const override {
        m_Calls.push_back("pointer fail " + Hex(status) + (text != nullptr ? " text" : " no text"));
        QNHelper::LogValidatePointerFail(status, text);
    }
    void CancelTestSuite() override {
        m_Calls.push_back("cancel");
        if (m_OnCancel) m_OnCancel();
    }

    mutable Lines m_Calls;
    std::function<void()> m_OnCancel;
};

} // namespace

class QNHelperTest : public LogTest {
protected:
    QNHelperTest() { CAppState::Log(nullptr); }
    ~QNHelperTest() override { CAppState::SetHelper(nullptr); }

    // Which helper the host reaches.
    static bool IsCurrent(Helper & helper) {
        helper.m_Calls.clear();
        CAppState::ExitQuillon();
        return helper.m_Calls == Lines{"cancel"};
    }

    static void NoCurrent() { CAppState::SetHelper(nullptr); }

    void WithoutBuffer() { Host().SetOutputBuffer(nullptr); }

    FakePrompt m_Prompt{m_Journal};
    Lines m_Boxes;
    Diversion<int(HWND, char const *, char const *, UINT)> const m_Box{
        wrapped_MessageBoxA, [this](HWND owner, char const * text, char const * title, UINT style) {
            m_Journal.Add("box");
            m_Boxes.push_back(
                Quoted(text) + (owner == nullptr ? " no owner" : " owner")
                + (title == nullptr ? " no title " : " title ") + std::to_string(style));
            return IDOK;
        }};
};

TEST_F(QNHelperTest, HelperHoldsItsLogAndItsPrompt) {
    Helper const helper(m_Log.get(), &m_Prompt, true);
    EXPECT_EQ(helper.Log(), m_Log.get());
    EXPECT_EQ(helper.UserInput(), &m_Prompt);
}

TEST_F(QNHelperTest, MadeHelperIsTheCurrentOne) {
    Helper helper(nullptr, nullptr, false);
    EXPECT_TRUE(IsCurrent(helper));
}

TEST_F(QNHelperTest, HelperMadeToKeepTheCurrentOneLeavesIt) {
    Helper first(nullptr, nullptr, false);
    Helper second(nullptr, nullptr, true);
    EXPECT_TRUE(IsCurrent(first));
    EXPECT_FALSE(IsCurrent(second));
}

TEST_F(QNHelperTest, HelperMadeToKeepTheCurrentOneKeepsItAtEachSetter) {
    Helper first(nullptr, nullptr, false);
    Helper second(nullptr, nullptr, true);
    second.SetLog(m_Log.get());
    second.SetUserInput(&m_Prompt, m_Log.get());
    EXPECT_TRUE(IsCurrent(first));
}

TEST_F(QNHelperTest, LastHelperThatIsTouchedIsTheCurrentOne) {
    Helper first(nullptr, nullptr, false);
    Helper second(nullptr, nullptr, false);
    first.SetLog(m_Log.get());
    EXPECT_TRUE(IsCurrent(first));
    second.SetUserInput(&m_Prompt, nullptr);
    EXPECT_TRUE(IsCurrent(second));
}

TEST_F(QNHelperTest, EndOfAHelperLeavesItTheCurrentOne) {
    alignas(Helper) unsigned char place[sizeof(Helper)];
    auto * const first = new (place) Helper(nullptr, nullptr, false);
    first->~Helper();
    auto * const second = new (place) Helper(nullptr, nullptr, true);
    EXPECT_TRUE(IsCurrent(*second));
    second->~Helper();
}

TEST_F(QNHelperTest, CopyHoldsTheSameAndIsNotTheCurrentHelper) {
    Helper first(m_Log.get(), &m_Prompt, false);
    Helper copy(first);
    EXPECT_EQ(copy.Log(), m_Log.get());
    EXPECT_EQ(copy.UserInput(), &m_Prompt);
    EXPECT_TRUE(IsCurrent(first));
    Helper assigned(nullptr, nullptr, true);
    assigned = first;
    EXPECT_EQ(assigned.Log(), m_Log.get());
    EXPECT_EQ(assigned.UserInput(), &m_Prompt);
    EXPECT_TRUE(IsCurrent(first));
    assigned.SetLog(nullptr);
    EXPECT_TRUE(IsCurrent(assigned));
}

TEST_F(QNHelperTest, SetUserInputGivesTheLogToThePrompt) {
    Helper helper(nullptr, nullptr, true);
    helper.SetUserInput(&m_Prompt, m_Log.get());
    EXPECT_EQ(helper.UserInput(), &m_Prompt);
    EXPECT_EQ(m_Prompt.m_Log, m_Log.get());
    EXPECT_EQ(helper.Log(), nullptr);
}

TEST_F(QNHelperTest, ReinitSetsBothThroughTheSettersAndRegistersAtTheEnd) {
    Helper other(nullptr, nullptr, true);
    struct Observing : Helper {
        using Helper::Helper;
        void SetUserInput(CMXUserInput * const input, CMXLog * const log) override {
            Helper::SetUserInput(input, log);
            Lines const calls = m_Calls;
            m_WasCurrent = IsCurrent(*this);
            m_Calls = calls;
        }
        bool m_WasCurrent = true;
    } helper(nullptr, nullptr, true);
    helper.Reinit(m_Log.get(), &m_Prompt);
    EXPECT_EQ(helper.m_Calls, (Lines{"set log", "set input"}));
    EXPECT_FALSE(helper.m_WasCurrent);
    EXPECT_EQ(helper.Log(), m_Log.get());
    EXPECT_EQ(helper.UserInput(), &m_Prompt);
    EXPECT_EQ(m_Prompt.m_Log, m_Log.get());
    EXPECT_TRUE(IsCurrent(helper));
    CAppState::SetHelper(&other);
    helper.SetLog(m_Log.get());
    EXPECT_TRUE(IsCurrent(helper));
}

TEST_F(QNHelperTest, RegistrationAndExitTakeOneLock) {
    Helper helper(nullptr, nullptr, true);
    Lines locks;
    Diversion const enter(wrapped_EnterCriticalSection, [&](CRITICAL_SECTION * section) {
        wrapped_EnterCriticalSection.Real(section);
        locks.push_back("enter");
    });
    Diversion const leave(wrapped_LeaveCriticalSection, [&](CRITICAL_SECTION * section) {
        locks.push_back("leave");
        wrapped_LeaveCriticalSection.Real(section);
    });
    helper.m_OnCancel = [&] { locks.push_back("cancel"); };
    helper.Reinit(m_Log.get(), &m_Prompt);
    EXPECT_EQ(locks, (Lines{"enter", "leave"}));
    locks.clear();
    CAppState::ExitQuillon();
    EXPECT_EQ(locks, (Lines{"enter", "cancel", "leave"}));
}

TEST_F(QNHelperTest, ExitWithoutAHelperDoesNothing) {
    NoCurrent();
    EXPECT_NO_THROW(CAppState::ExitQuillon());
}

TEST_F(QNHelperTest, ExitThatThrowsGivesTheLockBack) {
    Helper helper(nullptr, nullptr, false);
    int depth = 0;
    Diversion const enter(wrapped_EnterCriticalSection, [&](CRITICAL_SECTION * section) {
        ++depth;
        wrapped_EnterCriticalSection.Real(section);
    });
    Diversion const leave(wrapped_LeaveCriticalSection, [&](CRITICAL_SECTION * section) {
        --depth;
        wrapped_LeaveCriticalSection.Real(section);
    });
    helper.m_OnCancel = [] { throw std::runtime_error("no"); };
    EXPECT_THROW(CAppState::ExitQuillon(), std::runtime_error);
    EXPECT_EQ(depth, 0);
}

TEST_F(QNHelperTest, CancelMayMakeAnotherHelperTheCurrentOneOnItsThread) {
    Helper helper(nullptr, nullptr, false);
    Helper other(nullptr, nullptr, true);
    helper.m_OnCancel = [&] { CAppState::SetHelper(&other); };
    CAppState::ExitQuillon();
    EXPECT_TRUE(IsCurrent(other));
}

TEST_F(QNHelperTest, CancelOfTheBaseDoesNothing) {
    QNHelper const helper(m_Log.get(), &m_Prompt, false);
    Watch();
    CAppState::ExitQuillon();
    EXPECT_EQ(Seen(), Lines{});
}

TEST_F(QNHelperTest, LoggerIsTheHelpersOwnOrTheRuns) {
    Helper helper(m_Log.get(), nullptr, true);
    EXPECT_EQ(helper.GetLogger(), m_Log.get());
    helper.SetLog(nullptr);
    EXPECT_EQ(helper.GetLogger(), nullptr);
    CAppState::Log(m_Log.get());
    EXPECT_EQ(helper.GetLogger(), m_Log.get());
    CAppState::Log(nullptr);
}

TEST_F(QNHelperTest, StartTestPausesForASecond) {
    Helper const helper(m_Log.get(), nullptr, true);
    Watch();
    EXPECT_EQ(helper.StartTest("T1"), TEST_STATUS_SUCCESS);
    Lines const byPointer = Seen();
    EXPECT_NE(std::find(byPointer.begin(), byPointer.end(), "sleep 1000"), byPointer.end());
    EXPECT_EQ(TestRecord().TestName(), std::string("T1"));
    Watch();
    EXPECT_EQ(helper.StartTest(std::string("T2")), TEST_STATUS_SUCCESS);
    Lines const byText = Seen();
    EXPECT_NE(std::find(byText.begin(), byText.end(), "sleep 1000"), byText.end());
    EXPECT_EQ(TestRecord().TestName(), std::string("T2"));
}

TEST_F(QNHelperTest, StopTestEndsTheDialogAndDisarmsTheAbortBeforeTheLogStops) {
    Helper const helper(m_Log.get(), &m_Prompt, true);
    Start();
    Host().ThrowExceptionOnAbort(true);
    Log().m_OnWrite = [&](std::string const &) { EXPECT_FALSE(Host().ThrowExceptionOnAbort()); };
    Watch();
    EXPECT_EQ(helper.StopTest(TEST_STATUS_FAIL), TEST_STATUS_FAIL);
    Lines const seen = Seen();
    ASSERT_GT(seen.size(), 1u);
    EXPECT_EQ(seen[0], "terminate dialog");
    EXPECT_TRUE(Log().StopTestHasBeenCalled());
    EXPECT_EQ(helper.m_Calls, Lines{"complete 80000000"});
}

TEST_F(QNHelperTest, StopTestDisarmsAlsoAnAbortThatWasThrown) {
    Helper const helper(nullptr, nullptr, true);
    AskForAbort(true);
    EXPECT_EQ(Thrown([] { CUIUpdate::DoUpdate(true); }), "Test Aborted by user.");
    helper.StopTest(TEST_STATUS_SUCCESS);
    EXPECT_FALSE(Host().ThrowExceptionOnAbort());
    Host().ThrowExceptionOnAbort(true);
    EXPECT_EQ(Thrown([] { CUIUpdate::DoUpdate(true); }), "Test Aborted by user.");
}

TEST_F(QNHelperTest, StopTestWithoutAStatusClosesWithTheLogsWord) {
    Helper const helper(m_Log.get(), nullptr, true);
    Start();
    Enter(TEST_STATUS_WARNING);
    helper.StopTest();
    EXPECT_EQ(helper.m_Calls, Lines{"complete 08000001"});
}

TEST_F(QNHelperTest, FirstPartOfTheStopIsThereForDerivedClasses) {
    Helper const helper(m_Log.get(), &m_Prompt, true);
    Host().ThrowExceptionOnAbort(true);
    Watch();
    helper.StopTestInit();
    EXPECT_EQ(Seen(), Lines{"terminate dialog"});
    EXPECT_FALSE(Host().ThrowExceptionOnAbort());
}

TEST_F(QNHelperTest, StatusAndVerdictAreTheLogs) {
    Helper helper(m_Log.get(), nullptr, true);
    EXPECT_EQ(helper.TestStatus(), TEST_STATUS_SUCCESS);
    EXPECT_FALSE(helper.TestFailed());
    EXPECT_FALSE(helper.TestAborted());
    EXPECT_EQ(helper.TranslateTestStatus(TS_NO_STREAM), 0x80000001u);
    EXPECT_FALSE(helper.TestFailed());
    Enter(TEST_STATUS_FAIL);
    EXPECT_TRUE(helper.TestFailed());
    EXPECT_FALSE(helper.TestAborted());
    Enter(TEST_STATUS_ABORT);
    EXPECT_TRUE(helper.TestAborted());
    EXPECT_EQ(helper.TestStatus(), 0xC0000001u);
}

TEST_F(QNHelperTest, WithoutALogTheTestIsAbortedAndNothingIsWritten) {
    Helper const helper(nullptr, nullptr, true);
    Watch();
    EXPECT_EQ(helper.TestStatus(), TEST_STATUS_ABORT);
    EXPECT_TRUE(helper.TestFailed());
    EXPECT_TRUE(helper.TestAborted());
    EXPECT_EQ(helper.CompleteTest(TEST_STATUS_FAIL), TEST_STATUS_FAIL | TEST_STATUS_ABORT);
    EXPECT_EQ(helper.StopTest(), TEST_STATUS_ABORT);
    EXPECT_EQ(Seen(), Lines{});
}

TEST_F(QNHelperTest, PointersAreValidWithALogAndAPrompt) {
    Helper const helper(m_Log.get(), &m_Prompt, true);
    Watch();
    EXPECT_EQ(helper.ValidatePointers(), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Seen(), Lines{});
}

TEST_F(QNHelperTest, MissingPromptIsAnEntryAtLevelMinimal) {
    Helper const helper(m_Log.get(), nullptr, true);
    Level(Minimal);
    EXPECT_EQ(helper.ValidatePointers(), TEST_STATUS_ABORT);
    EXPECT_EQ(Written(), Lines{"ABORT none \"Internal Error: NULL User Input module.\""});
    Level(Quiet);
    EXPECT_EQ(helper.ValidatePointers(), TEST_STATUS_ABORT);
    EXPECT_EQ(Written(), Lines{});
}

TEST_F(QNHelperTest, MissingLogIsSilent) {
    for (CMXUserInput * const input :
         {static_cast<CMXUserInput *>(nullptr), static_cast<CMXUserInput *>(&m_Prompt)}) {
        Helper const helper(nullptr, input, true);
        Watch();
        EXPECT_EQ(helper.ValidatePointers(), TEST_STATUS_ABORT);
        EXPECT_EQ(Seen(), Lines{});
    }
}

TEST_F(QNHelperTest, FailedPointersAreAnEntryAtTheLevelOfTheStatusAndCloseTheTest) {
    Helper const helper(m_Log.get(), nullptr, true);
    Start();
    Level(Minimal);
    Written();
    EXPECT_EQ(helper.ValidatePointerFail(TEST_STATUS_FAIL), TEST_STATUS_FAIL);
    EXPECT_EQ(helper.m_Calls, (Lines{"pointer fail 80000000 no text", "complete 80000000"}));
    EXPECT_EQ(Written().at(0), "FAIL none \"Internal Error -- Pointer validation failed.\"");
    EXPECT_TRUE(Log().StopTestHasBeenCalled());
}

TEST_F(QNHelperTest, FailureTextActsAsAFormatInTheLog) {
    Helper const helper(m_Log.get(), &m_Prompt, true);
    helper.LogValidatePointerFail(TEST_STATUS_WARNING, "100%% of it");
    helper.LogValidatePointerFail(TEST_STATUS_INFO, "");
    Level(Minimal);
    helper.LogValidatePointerFail(TEST_STATUS_WARNING, "dropped");
    EXPECT_EQ(
        Written(),
        (Lines{"WARNING none \"100% of it\"", std::string("INFO none \"") + kStandardText + '"'}));
}

TEST_F(QNHelperTest, WithoutALogTheFailureGoesToTheOutputBuffer) {
    Helper const helper(nullptr, &m_Prompt, true);
    struct Case {
        TEST_STATUS status;
        char const * look;
    };
    for (auto const & [status, look] :
         {Case{TEST_STATUS_INFO, "info"},
          {TEST_STATUS_WARNING, "warning"},
          {TEST_STATUS_FAIL, "fail"},
          {TEST_STATUS_ABORT, "fail"},
          {TEST_STATUS_UNKNOWN, "fail"},
          {TEST_STATUS_INFO | TEST_STATUS_SUCCESS, "fail"}}) {
        SCOPED_TRACE(Hex(status));
        Watch();
        helper.LogValidatePointerFail(status, "50%% left");
        EXPECT_EQ(Seen(), (Lines{std::string("buffer ") + look + " \"50%% left \"", "update"}));
        m_Bench.m_Buffer.Clear();
    }
}

TEST_F(QNHelperTest, WithoutABufferTheOperatorIsAsked) {
    Helper const helper(nullptr, &m_Prompt, true);
    WithoutBuffer();
    Watch();
    helper.LogValidatePointerFail(TEST_STATUS_FAIL, nullptr);
    EXPECT_EQ(
        Seen(),
        Lines{std::string("prompt \"") + kStandardText + "\" 4294967295 true null \"OK\" null"});
    EXPECT_EQ(m_Boxes, Lines{});
}

TEST_F(QNHelperTest, WithoutAnybodyTheFailureIsAMessageBox) {
    Helper const helper(nullptr, nullptr, true);
    WithoutBuffer();
    Watch();
    helper.LogValidatePointerFail(TEST_STATUS_FAIL, "text");
    EXPECT_EQ(Seen(), (Lines{"update", "box"}));
    EXPECT_EQ(m_Boxes, Lines{"\"text\" no owner no title 16"});
}

TEST_F(QNHelperTest, ExceptionIsTwoEntriesAndAnUpdate) {
    Helper helper(m_Log.get(), nullptr, true);
    Watch();
    helper.HandleRunTimeException(CQNRunTimeException("50% done"), TEST_STATUS_WARNING);
    Lines const seen = Seen();
    EXPECT_EQ(
        Written(), (Lines{
                       "ERROR none \"...skipping test steps because of failure...\"",
                       "WARNING none \"Test failure info:  50% done\""}));
    EXPECT_EQ(seen.back(), "update");
    EXPECT_EQ(helper.TestStatus(), 0x08000001u);
}

TEST_F(QNHelperTest, EntriesOfAnExceptionHaveTheLevelsOfTheirStatus) {
    Helper helper(m_Log.get(), nullptr, true);
    Level(Minimal);
    helper.HandleRunTimeException(CQNRunTimeException("text"), TEST_STATUS_WARNING);
    EXPECT_EQ(Written(), Lines{"ERROR none \"...skipping test steps because of failure...\""});
    Level(Quiet);
    helper.HandleRunTimeException(CQNRunTimeException("text"), TEST_STATUS_FAIL);
    EXPECT_EQ(Written(), Lines{});
}

TEST_F(QNHelperTest, ExceptionGoesToTheRunsLogWithoutAnOwnOne) {
    Helper helper(nullptr, nullptr, true);
    CAppState::Log(m_Log.get());
    helper.HandleRunTimeException(CQNRunTimeException("text"), TEST_STATUS_FAIL);
    EXPECT_EQ(Written().size(), 2u);
    CAppState::Log(nullptr);
}

TEST_F(QNHelperTest, ExceptionWithoutAnyLogIsAnUpdate) {
    Helper helper(nullptr, &m_Prompt, true);
    Watch();
    helper.HandleRunTimeException(CQNRunTimeException("text"), TEST_STATUS_FAIL);
    EXPECT_EQ(Seen(), Lines{"update"});
}

TEST_F(QNHelperTest, HandlingAnExceptionThrowsTheOperatorsAbort) {
    Helper helper(nullptr, nullptr, true);
    AskForAbort(true);
    EXPECT_EQ(
        Thrown(
            [&] { helper.HandleRunTimeException(CQNRunTimeException("text"), TEST_STATUS_FAIL); }),
        "Test Aborted by user.");
}
