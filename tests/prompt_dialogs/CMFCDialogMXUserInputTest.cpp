// Questions as dialogs: what reaches the dialog library, in which order, and what is left behind.
#include <cstring>
#include <type_traits>

#include "prompt_dialogs/DialogBench.h"

namespace {

static_assert(!std::is_abstract_v<CMFCDialogMXUserInput>);

using CMFCDialogMXUserInputTest = DialogBench;

constexpr char LongWait[] = "wait 4294967295";

WINDOW_ARGS args;

// The calls of a dialog that is answered: from its state to its end.
Lines Whole(std::string const & init, std::string const & wait, std::string const & end) {
    return {init,      "update",    "event 0",    "clear",   "create",        "created",
            wait,      "take",      "timed out?", "release", "event gone",    "take",
            "destroy", "destroyed", "state gone", "release", "update posted", end};
}

Lines Answered(std::string const & init, std::string const & wait = LongWait) {
    Lines lines = Whole(init, wait, "");
    lines.pop_back();
    return lines;
}

TEST_F(CMFCDialogMXUserInputTest, EachConstructorForgetsDialogsAndMakesAMutex) {
    Lines const made = {"forget", "mutex"};
    {
        DialogInput const bare;
        EXPECT_EQ(bare.m_Log, nullptr);
        EXPECT_EQ(bare.m_DialogHeader, L"");
        EXPECT_NE(bare.m_DialogMutex, nullptr);
        EXPECT_EQ(Calls(), made);
        DialogInput const logged(&*m_Log);
        EXPECT_EQ(logged.m_Log, &*m_Log);
        EXPECT_EQ(Calls(), made);
        DialogInput const wide(&*m_Log, std::wstring(L"\u00b5"));
        EXPECT_EQ(wide.m_DialogHeader, L"\u00b5");
        EXPECT_EQ(Calls(), made);
        DialogInput const narrow(&*m_Log, std::string("\xC2\xB5"));
        EXPECT_EQ(narrow.m_DialogHeader, L"\u00b5");
        EXPECT_EQ(Calls(), made);
        DialogInput::m_CurrentlyTerminating = true;
        DialogInput const another;
        EXPECT_FALSE(DialogInput::m_CurrentlyTerminating);
        Calls();
    }
    EXPECT_EQ(Calls().size(), 10u);
}

TEST_F(CMFCDialogMXUserInputTest, TheEndDeletesTheStateForgetsAndClosesButKeepsTheClaim) {
    std::vector<unsigned long> ** const nowhere = nullptr;
    m_Input->GetMultipleSelectionsFromList(
        static_cast<std::wstring *>(nullptr), nullptr, nowhere, 1, nullptr, nullptr);
    DialogInput::m_CurrentlyTerminating = true;
    Calls();
    m_Input.reset();
    EXPECT_EQ(Calls(), (Lines{"state gone", "forget", "close"}));
    EXPECT_EQ(DialogInput::m_ActiveDialogState, nullptr);
    EXPECT_FALSE(DialogInput::m_CurrentlyTerminating);
    EXPECT_TRUE(DialogInput::m_DialogActive);
    m_Input.emplace();
    EXPECT_TRUE(m_Input->IsDialogActive());
}

TEST_F(CMFCDialogMXUserInputTest, ACopyHasTheMutexAndTheBytesOfTheLock) {
    m_Input->SetDialogHeader(static_cast<std::wstring *>(nullptr));
    {
        DialogInput const copy = *m_Input;
        EXPECT_EQ(copy.m_DialogMutex, m_Input->m_DialogMutex);
        EXPECT_EQ(
            std::memcmp(&copy.m_DialogLock, &m_Input->m_DialogLock, sizeof copy.m_DialogLock), 0);
        EXPECT_EQ(copy.m_Log, &*m_Log);
        EXPECT_EQ(copy.m_DialogHeader, L"");
    }
    // The original goes on.
    Calls();
    EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
    EXPECT_EQ(Calls(), (Lines{"take", "release", "update posted"}));
    DialogInput assigned;
    HANDLE const own = assigned.m_DialogMutex;
    assigned = *m_Input;
    EXPECT_EQ(assigned.m_DialogMutex, m_Input->m_DialogMutex);
    CloseHandle(own);
}

TEST_F(CMFCDialogMXUserInputTest, InformationIsShownInSteps) {
    std::wstring text = L"text";
    std::wstring button = L"Go";
    EXPECT_EQ(m_Input->DisplayInfoToUser(&text, 0xFFFFFFFF, false, nullptr, &button, &args), 0u);
    EXPECT_EQ(Calls(), Answered("init info, H, text, false, Go, 4294967295"));
    EXPECT_EQ(Dialogs().places, (std::vector<void const *>{nullptr, &args}));
    EXPECT_TRUE(Dialogs().inputEnabled);
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputTest, NarrowFormsArriveWide) {
    std::string text = "\xC2\xB5";
    EXPECT_EQ(m_Input->DisplayInfoToUser(&text, 7, true, nullptr, nullptr, nullptr), 0u);
    EXPECT_EQ(Calls(), Answered("init info, H, \xC2\xB5, true, -, 7", "wait 7"));
}

TEST_F(CMFCDialogMXUserInputTest, EachQuestionGoesToItsDialog) {
    std::wstring a = L"a", b = L"b", c = L"c", answer;
    std::vector<std::wstring> list = {L"x"};
    unsigned long number = 0;
    bool flag = false;
    void const * const null = nullptr;
    using Places = std::vector<void const *>;

    m_Input->GetBooleanDecision(&a, &b, &c, &flag, 1, nullptr, &args);
    EXPECT_EQ(Calls(), Answered("init choice, H, a, b, c, 1", "wait 1"));
    EXPECT_EQ(Dialogs().places, (Places{&flag, null, &args}));

    m_Input->GetString(&a, &b, &answer, 2, nullptr, &args);
    EXPECT_EQ(Calls(), Answered("init item, H, a, b, false, false, 2", "wait 2"));
    EXPECT_EQ(Dialogs().places, (Places{null, &answer, null, &args}));

    m_Input->GetSelectionFromList(&a, &list, &number, 3, nullptr, &args);
    EXPECT_EQ(Calls(), Answered("init one, H, a, 3", "wait 3"));
    EXPECT_EQ(Dialogs().places, (Places{&list, &number, null, &args}));

    m_Input->GetSelectionFromListAllowAbort(&a, &b, &c, &list, &number, &flag, 4, nullptr, &args);
    EXPECT_EQ(Calls(), Answered("init one or out, H, a, b, c, 4", "wait 4"));
    EXPECT_EQ(Dialogs().places, (Places{&list, &number, &flag, null, &args}));

    auto * selections = reinterpret_cast<std::vector<unsigned long> *>(&number);
    m_Input->GetMultipleSelectionsFromList(&a, &list, &selections, 5, nullptr, &args);
    EXPECT_EQ(Calls(), Answered("init several, H, a, null, 5", "wait 5"));
    EXPECT_EQ(Dialogs().places, (Places{&list, &selections, null, &args}));
    EXPECT_EQ(selections, nullptr);

    m_Input->GetInteger(&a, &b, &number, true, 6, nullptr, 0xFFFFFFFF, 0, &args);
    Lines expected = Answered("init item, H, a, b, true, true, 6", "wait 6");
    expected.push_back("timed out?");
    EXPECT_EQ(Calls(), expected);
    EXPECT_EQ(Dialogs().places, (Places{&number, null, null, &args}));
}

TEST_F(CMFCDialogMXUserInputTest, DisabledInputReachesTheDialog) {
    m_Input->DisableInput();
    m_Input->GetString(nullptr, nullptr, nullptr, 1, nullptr, nullptr);
    EXPECT_FALSE(Dialogs().inputEnabled);
}

TEST_F(CMFCDialogMXUserInputTest, ATimeOutOfNothingWaitsWithoutEnd) {
    bool answer = false;
    m_Input->GetBooleanDecision(
        static_cast<std::wstring *>(nullptr), nullptr, nullptr, &answer, 0, nullptr, nullptr);
    EXPECT_EQ(Dialogs().timeout, 0xFFFFFFFFu);
    EXPECT_EQ(Calls(), Answered("init choice, H, -, -, -, 0"));
}

TEST_F(CMFCDialogMXUserInputTest, TheVerdictIsTheDialogLibrarysNotThatOfTheWait) {
    Dialogs().timedOut = true;
    EXPECT_EQ(
        m_Input->GetString(nullptr, nullptr, nullptr, 5, nullptr, nullptr), TS_DIALOG_TIMED_OUT);
    EXPECT_TRUE(IsIdle());
    Dialogs().timedOut = false;
    EXPECT_EQ(m_Input->GetString(nullptr, nullptr, nullptr, 5, nullptr, nullptr), TS_SUCCESS);
}

TEST_F(CMFCDialogMXUserInputTest, WithAnEventTheDialogStaysUntilItIsTerminated) {
    CMXGuiEvent event(1);
    Calls();
    EXPECT_EQ(m_Input->GetString(nullptr, nullptr, nullptr, 0, &event, nullptr), TS_SUCCESS);
    EXPECT_EQ(
        Calls(), (Lines{"init item, H, -, -, false, false, 0", "clear", "create", "created"}));
    EXPECT_EQ(Dialogs().event, &event);
    EXPECT_EQ(Dialogs().timeout, 0xFFFFFFFFu);
    EXPECT_TRUE(m_Input->IsDialogActive());
    EXPECT_EQ(DialogInput::m_ActiveDialogState, Dialogs().state);
    EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
    EXPECT_EQ(
        Calls(), (Lines{"take", "destroy", "destroyed", "state gone", "release", "update posted"}));
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputTest, ASecondQuestionIsBusyAndDisturbsNothing) {
    CMXGuiEvent event(0);
    m_Input->GetString(nullptr, nullptr, nullptr, 5, &event, nullptr);
    auto const * const shown = DialogInput::m_ActiveDialogState;
    Calls();
    bool flag = false;
    unsigned long number = 3;
    int something = 0;
    auto * selections = reinterpret_cast<std::vector<unsigned long> *>(&something);
    auto * const preset = selections;
    std::wstring text = L"t";
    DialogInput other;
    Calls();
    EXPECT_EQ(m_Input->DisplayInfoToUser(&text, 1, true, nullptr, &text, nullptr), TS_DIALOG_BUSY);
    EXPECT_EQ(
        other.GetBooleanDecision(&text, &text, &text, &flag, 1, nullptr, nullptr), TS_DIALOG_BUSY);
    EXPECT_EQ(
        other.GetInteger(&text, &text, &number, false, 1, nullptr, 9, 1, nullptr), TS_DIALOG_BUSY);
    EXPECT_EQ(
        other.GetMultipleSelectionsFromList(&text, nullptr, &selections, 1, nullptr, nullptr),
        TS_DIALOG_BUSY);
    EXPECT_EQ(
        other.GetSelectionFromList(&text, nullptr, &number, 1, nullptr, nullptr), TS_DIALOG_BUSY);
    EXPECT_EQ(
        other.GetSelectionFromListAllowAbort(
            &text, &text, &text, nullptr, &number, &flag, 1, nullptr, nullptr),
        TS_DIALOG_BUSY);
    EXPECT_EQ(other.GetString(&text, &text, &text, 1, nullptr, nullptr), TS_DIALOG_BUSY);
    EXPECT_EQ(Calls(), Lines{});
    EXPECT_EQ(DialogInput::m_ActiveDialogState, shown);
    EXPECT_EQ(selections, preset);
    m_Input->TerminateDialog();
}

TEST_F(CMFCDialogMXUserInputTest, SelectionsWithoutAPlaceKeepTheClaimAndShowNothing) {
    std::vector<unsigned long> ** const nowhere = nullptr;
    std::wstring text = L"t";
    EXPECT_EQ(
        m_Input->GetMultipleSelectionsFromList(&text, nullptr, nowhere, 1, nullptr, nullptr),
        TS_NULL_RESULT);
    EXPECT_EQ(Calls(), Lines{"init several, H, t, no place, 1"});
    EXPECT_NE(DialogInput::m_ActiveDialogState, nullptr);
    EXPECT_EQ(m_Input->GetString(nullptr, nullptr, nullptr, 1, nullptr, nullptr), TS_DIALOG_BUSY);
    m_Input->TerminateDialog();
    EXPECT_TRUE(IsIdle());
    EXPECT_EQ(m_Input->GetString(nullptr, nullptr, nullptr, 1, nullptr, nullptr), TS_SUCCESS);
}

TEST_F(CMFCDialogMXUserInputTest, ADialogThatAnotherThreadHasEndedIsBusy) {
    Dialogs().onWait = [this] {
        Dialogs().onWait = nullptr;
        m_Input->TerminateDialog();
        Calls();
    };
    EXPECT_EQ(m_Input->GetString(nullptr, nullptr, nullptr, 5, nullptr, nullptr), TS_DIALOG_BUSY);
    EXPECT_EQ(
        Calls(), (Lines{"take", "release", "event gone", "take", "release", "update posted"}));
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputTest, ADialogThatIsEndedBeforeItIsShownIsBusy) {
    Diversion const update(wrapped_SendMessageA, [this](HWND, UINT, WPARAM, LPARAM) {
        m_Input->TerminateDialog();
        Calls();
        return LRESULT{};
    });
    EXPECT_EQ(m_Input->GetString(nullptr, nullptr, nullptr, 5, nullptr, nullptr), TS_DIALOG_BUSY);
    EXPECT_EQ(Calls(), (Lines{"event 0", "take", "release", "update posted", "event gone"}));
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputTest, TerminatingNothingFreesTheClaimAndRingsTheHost) {
    EXPECT_TRUE(m_Input->AcquireActiveDialog());
    EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
    EXPECT_EQ(Calls(), (Lines{"take", "release", "update posted"}));
    EXPECT_FALSE(m_Input->IsDialogActive());
    EXPECT_FALSE(DialogInput::m_CurrentlyTerminating);
}

TEST_F(CMFCDialogMXUserInputTest, ATerminationUnderWayIsNotDoneAgain) {
    CMXGuiEvent event(0);
    m_Input->GetString(nullptr, nullptr, nullptr, 5, &event, nullptr);
    Calls();
    DialogInput::m_CurrentlyTerminating = true;
    EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
    EXPECT_EQ(Calls(), (Lines{"take", "release", "update posted"}));
    EXPECT_FALSE(m_Input->IsDialogActive());
    EXPECT_FALSE(DialogInput::m_CurrentlyTerminating);
    EXPECT_NE(DialogInput::m_ActiveDialogState, nullptr);
    m_Input->TerminateDialog();
}

TEST_F(CMFCDialogMXUserInputTest, TheClaimIsTakenOnceAndGivenBackOnce) {
    EXPECT_FALSE(m_Input->IsDialogActive());
    EXPECT_TRUE(m_Input->AcquireActiveDialog());
    EXPECT_FALSE(m_Input->AcquireActiveDialog());
    EXPECT_FALSE(DialogInput().AcquireActiveDialog());
    EXPECT_TRUE(m_Input->IsDialogActive());
    EXPECT_TRUE(m_Input->ReleaseActiveDialog());
    EXPECT_FALSE(m_Input->ReleaseActiveDialog());
}

TEST_F(CMFCDialogMXUserInputTest, ResetForgetsAndLeavesClaimAndState) {
    CMXGuiEvent event(0);
    m_Input->GetString(nullptr, nullptr, nullptr, 5, &event, nullptr);
    DialogInput::m_CurrentlyTerminating = true;
    Calls();
    EXPECT_EQ(CMFCDialogMXUserInput::Reset(), TS_SUCCESS);
    EXPECT_EQ(Calls(), Lines{"forget"});
    EXPECT_FALSE(DialogInput::m_CurrentlyTerminating);
    EXPECT_TRUE(m_Input->IsDialogActive());
    EXPECT_NE(DialogInput::m_ActiveDialogState, nullptr);
    m_Input->TerminateDialog();
}

TEST_F(CMFCDialogMXUserInputTest, AnAbortBeforeTheDialogLeavesItsStateAndTheClaim) {
    Abort();
    EXPECT_THROW(
        m_Input->GetString(nullptr, nullptr, nullptr, 5, nullptr, nullptr), CQNRunTimeException);
    EXPECT_EQ(Calls(), (Lines{"init item, H, -, -, false, false, 5", "update"}));
    EXPECT_TRUE(m_Input->IsDialogActive());
    EXPECT_NE(DialogInput::m_ActiveDialogState, nullptr);
    m_Input->TerminateDialog();
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputTest, AnAbortDuringADialogComesAfterTheCleaningUp) {
    Dialogs().onWait = [] { Abort(); };
    EXPECT_THROW(
        m_Input->GetString(nullptr, nullptr, nullptr, 5, nullptr, nullptr), CQNRunTimeException);
    EXPECT_EQ(Calls(), Answered("init item, H, -, -, false, false, 5", "wait 5"));
    EXPECT_TRUE(IsIdle());
    EXPECT_FALSE(DialogInput::m_CurrentlyTerminating);
}

TEST_F(CMFCDialogMXUserInputTest, AnEventIsShownWithoutAnUpdateAndWithoutAnAbort) {
    Abort();
    CMXGuiEvent event(0);
    EXPECT_EQ(m_Input->GetString(nullptr, nullptr, nullptr, 5, &event, nullptr), TS_SUCCESS);
    EXPECT_THROW(m_Input->TerminateDialog(), CQNRunTimeException);
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputTest, WithoutAMutexQuestionsAreAskedAllTheSame) {
    Diversion const none(
        wrapped_CreateMutexA, [](_SECURITY_ATTRIBUTES *, BOOL, char const *) { return HANDLE{}; });
    DialogInput input;
    EXPECT_EQ(input.GetString(nullptr, nullptr, nullptr, 5, nullptr, nullptr), TS_SUCCESS);
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputTest, FilesAreChosenAfterALookForAnAbort) {
    CSafeString file("f");
    std::vector<CSafeString> * files = nullptr;
    Dialogs().chosen = true;
    m_Input->AcquireActiveDialog();
    EXPECT_TRUE(m_Input->SelectSingleFile(file, L"a", L"b", true));
    EXPECT_EQ(Dialogs().places, std::vector<void const *>{&file});
    EXPECT_TRUE(m_Input->SelectMultipleFiles(files, L"c", nullptr, false));
    EXPECT_EQ(Dialogs().places, std::vector<void const *>{&files});
    Dialogs().chosen = false;
    EXPECT_FALSE(m_Input->SelectSingleFile(file, L"a", L"b", true));
    EXPECT_EQ(
        Calls(), (Lines{
                     "update", "select file, a, b, true", "update", "select files, c, -, false",
                     "update", "select file, a, b, true"}));
    Abort();
    EXPECT_THROW(m_Input->SelectSingleFile(file, L"a", L"b", true), CQNRunTimeException);
    CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(false);
    Abort();
    EXPECT_THROW(m_Input->SelectMultipleFiles(files, L"a", L"b", true), CQNRunTimeException);
    EXPECT_EQ(Calls(), (Lines{"update", "update"}));
}

TEST_F(CMFCDialogMXUserInputTest, AVifIsChosenAfterItsMessage) {
    CSafeString file("f");
    std::vector<CSafeString> * files = nullptr;
    Dialogs().chosen = true;
    EXPECT_TRUE(m_Input->SelectSingleVIF(file, L"Take one.", L"x", true));
    Lines expected =
        Answered("init info, H, Take one.\n\nClick 'OK' to continue., true, -, 4294967295");
    expected.push_back("select VIF, x, true");
    EXPECT_EQ(Calls(), expected);
    EXPECT_EQ(Dialogs().places, std::vector<void const *>{&file});
    EXPECT_TRUE(m_Input->SelectMultipleVIFs(files, L"Take one.", L"x", false));
    expected.back() = "select VIFs, x, false";
    EXPECT_EQ(Calls(), expected);
    EXPECT_EQ(Dialogs().places, std::vector<void const *>{&files});
}

TEST_F(CMFCDialogMXUserInputTest, AnEmptyOrMissingMessageIsNotShownAndABusyOneIsNoHindrance) {
    CSafeString file("f");
    std::vector<CSafeString> * files = nullptr;
    EXPECT_FALSE(m_Input->SelectSingleVIF(file, L"", nullptr, true));
    EXPECT_FALSE(m_Input->SelectSingleVIF(file, nullptr, nullptr, true));
    EXPECT_FALSE(m_Input->SelectMultipleVIFs(files, L"", nullptr, true));
    m_Input->AcquireActiveDialog();
    EXPECT_FALSE(m_Input->SelectMultipleVIFs(files, L"m", nullptr, true));
    EXPECT_EQ(
        Calls(), (Lines{
                     "select VIF, -, true", "select VIF, -, true", "select VIFs, -, true",
                     "select VIFs, -, true"}));
}

} // namespace
