// The life of a dialog: its one end, the verdict on it, and what the host hears.
#include "siblings/promptline/Desk.h"

#include <memory>

#include <gtest/gtest.h>

#include "promptline/ScriptedFace.h"
#include "promptline/ServiceThread.h"
#include "siblings/Keelbase.h"

namespace {

constexpr unsigned long LongEnough = 20'000;
constexpr unsigned long WithoutEnd = 0xFFFFFFFF;

class DeskTest : public testing::Test {
protected:
    DeskTest() { ScriptedFace::Clear(); }
    ~DeskTest() override {
        m_State.reset();
        m_Service.reset();
        ResetHelperDialogs();
        ScriptedFace::Clear();
    }

    // Makes a dialog as a caller does; its answer goes into m_Number.
    void Ask(unsigned long timeout = WithoutEnd) {
        m_Event.ClearEvent();
        m_State.reset(InitGetUserItemDialog(
            L"H", &m_Title, &m_Text, true, false, timeout, &m_Number, nullptr, &m_Event, nullptr));
        Create();
    }
    int Create() {
        int const posted = PostHelperDialogCreateMessage(
            AppMainWnd(), reinterpret_cast<std::intptr_t>(m_State.get()));
        WaitForHelperDialogCreationToComplete();
        return posted;
    }
    static void Destroy() {
        PostHelperDialogDestroyMessage(AppMainWnd());
        WaitForHelperDialogDestructionToComplete();
    }

    bool HasEnded() { return m_Event.WaitOnEvent(0) == TS_SUCCESS; }
    bool Ends() { return m_Event.WaitOnEvent(LongEnough) == TS_SUCCESS; }

    void Answer(std::uint32_t number) {
        m_Service->Do([&](CPromptService &) {
            Desk::The().Answer(ScriptedFace::last, Reply{.number = number}, "operator");
        });
    }

    // The records when all that was asked for has been served, without the seconds.
    struct Heard {
        std::string answer;
        std::string source;
        std::string reason;
        bool wantsAbort = false;
        bool operator==(Heard const &) const = default;
    };
    std::vector<Heard> Records() {
        m_Service->Do([](CPromptService &) {});
        std::vector<Heard> heard;
        for (auto const & record : m_Service->Records()) {
            EXPECT_EQ(record.question, "text");
            EXPECT_GE(record.seconds, 0);
            EXPECT_LT(record.seconds, 60);
            heard.push_back({record.answer, record.source, record.reason, record.wantsAbort});
        }
        return heard;
    }

    std::unique_ptr<ServiceThread> m_Service = std::make_unique<ServiceThread>();
    CMXGuiEvent m_Event{0};
    std::unique_ptr<CHelperDialogState> m_State;
    std::wstring m_Title = L"title";
    std::wstring m_Text = L"text";
    unsigned long m_Number = 50;
};

TEST_F(DeskTest, ADialogIsShownWhenItsCreationIsComplete) {
    Ask();
    EXPECT_EQ(ScriptedFace::shown, 1);
    EXPECT_FALSE(HasEnded());
    EXPECT_FALSE(DialogTimedOut());
    EXPECT_NE(AppMainWnd(), nullptr);
}

TEST_F(DeskTest, AnAnswerIsStoredSignalledAndRecorded) {
    Ask(LongEnough);
    Answer(7);
    EXPECT_TRUE(HasEnded());
    EXPECT_EQ(m_Number, 7u);
    EXPECT_FALSE(DialogTimedOut());
    EXPECT_EQ(ScriptedFace::removed, 1);
    EXPECT_EQ(Records(), (std::vector<Heard>{{"7", "operator", "", false}}));
}

TEST_F(DeskTest, AnAnswerAtOnceIsAnAnswer) {
    ScriptedFace::onShow = [](SharedDialog const & dialog) {
        Desk::The().Answer(dialog, Reply{.number = 3}, "file");
    };
    Ask();
    EXPECT_TRUE(HasEnded());
    EXPECT_EQ(m_Number, 3u);
    EXPECT_EQ(Records(), (std::vector<Heard>{{"3", "file", "", false}}));
}

TEST_F(DeskTest, ATimeOutEndsTheDialogAndLeavesThePreset) {
    Ask(20);
    EXPECT_TRUE(Ends());
    EXPECT_TRUE(DialogTimedOut());
    EXPECT_EQ(m_Number, 50u);
    Destroy();
    EXPECT_TRUE(DialogTimedOut());
    EXPECT_EQ(ScriptedFace::removed, 1);
    EXPECT_EQ(Records(), (std::vector<Heard>{{"", "none", "timed out", false}}));
}

TEST_F(DeskTest, AskingForTheVerdictEndsADialogWhoseTimeIsUp) {
    m_Service->Do([&](CPromptService &) {
        // The window's thread is busy, so no tick ends it.
        m_State.reset(InitGetUserItemDialog(
            L"H", &m_Title, &m_Text, true, false, 1, &m_Number, nullptr, &m_Event, nullptr));
        std::thread asking([&] {
            PostHelperDialogCreateMessage(
                AppMainWnd(), reinterpret_cast<std::intptr_t>(m_State.get()));
        });
        asking.join();
        Desk::The().Serve(Desk::CreateRequest, reinterpret_cast<LPARAM>(m_State.get()));
        Sleep(5);
        EXPECT_FALSE(HasEnded());
        EXPECT_TRUE(DialogTimedOut());
        EXPECT_TRUE(HasEnded());
        Desk::The().Answer(ScriptedFace::last, Reply{.number = 7}, "operator");
    });
    EXPECT_EQ(m_Number, 50u);
    EXPECT_TRUE(DialogTimedOut());
    EXPECT_EQ(Records(), (std::vector<Heard>{{"", "none", "timed out", false}}));
}

TEST_F(DeskTest, AnAnswerAfterTheEndChangesNothing) {
    Ask();
    Answer(7);
    Answer(8);
    EXPECT_EQ(m_Number, 7u);
    EXPECT_EQ(Records().size(), 1u);
}

TEST_F(DeskTest, WhatNobodyCanAnswerTimesOutAtOnceOrWantsAnAbort) {
    ScriptedFace::onShow = [](SharedDialog const & dialog) {
        Desk::The().LeaveUnanswered(dialog, "nobody");
    };
    Ask(LongEnough);
    EXPECT_TRUE(HasEnded());
    EXPECT_TRUE(DialogTimedOut());
    Ask();
    EXPECT_TRUE(HasEnded());
    EXPECT_TRUE(DialogTimedOut());
    EXPECT_EQ(m_Number, 50u);
    EXPECT_EQ(
        Records(),
        (std::vector<Heard>{{"", "none", "nobody", false}, {"", "none", "nobody", true}}));
}

TEST_F(DeskTest, AVerdictIsThatOfTheLastDialog) {
    Ask(1);
    EXPECT_TRUE(Ends());
    EXPECT_TRUE(DialogTimedOut());
    Ask();
    Answer(1);
    EXPECT_FALSE(DialogTimedOut());
}

TEST_F(DeskTest, DestroyingEndsTheLastDialogWithoutAVerdictOfTimeOut) {
    Ask(LongEnough);
    Destroy();
    EXPECT_TRUE(HasEnded());
    EXPECT_FALSE(DialogTimedOut());
    EXPECT_EQ(ScriptedFace::removed, 1);
    EXPECT_EQ(Records(), (std::vector<Heard>{{"", "none", "ended by the test", false}}));
    Destroy();
    EXPECT_EQ(Records().size(), 1u);
}

TEST_F(DeskTest, OfTwoDialogsTheLastIsDestroyed) {
    Ask();
    auto const first = std::move(m_State);
    CMXGuiEvent other(0);
    m_State.reset(
        InitDisplayInfoToUserDialog(L"H", &m_Text, true, WithoutEnd, nullptr, &other, nullptr));
    Create();
    Destroy();
    EXPECT_EQ(other.WaitOnEvent(0), TS_SUCCESS);
    EXPECT_FALSE(HasEnded());
    Destroy();
    EXPECT_TRUE(HasEnded());
}

TEST_F(DeskTest, DeletingAStateTakesItsDialogAway) {
    Ask();
    m_State.reset();
    EXPECT_TRUE(HasEnded());
    Answer(7);
    EXPECT_EQ(m_Number, 50u);
    EXPECT_EQ(ScriptedFace::removed, 1);
    EXPECT_EQ(Records(), (std::vector<Heard>{{"", "none", "ended by the test", false}}));
}

TEST_F(DeskTest, AnEventMayGoBeforeItsDialog) {
    auto event = std::make_unique<CMXGuiEvent>(0);
    m_State.reset(InitDisplayInfoToUserDialog(
        L"H", &m_Text, true, WithoutEnd, nullptr, event.get(), nullptr));
    Create();
    event.reset();
    Destroy();
    EXPECT_EQ(Records().size(), 1u);
}

TEST_F(DeskTest, ANoticeIsNoQuestionAndIsNotRecorded) {
    m_State.reset(
        InitDisplayInfoToUserDialog(L"H", &m_Text, false, WithoutEnd, nullptr, &m_Event, nullptr));
    Create();
    EXPECT_EQ(ScriptedFace::shown, 1);
    Destroy();
    EXPECT_TRUE(HasEnded());
    EXPECT_EQ(Records(), std::vector<Heard>{});
}

TEST_F(DeskTest, TheOperatorsAbortEndsEveryDialogWithoutAnAnswer) {
    Ask();
    m_Service->Do([](CPromptService & service) { service.Abort(); });
    EXPECT_TRUE(HasEnded());
    EXPECT_TRUE(DialogTimedOut());
    EXPECT_EQ(m_Number, 50u);
    EXPECT_EQ(Records(), (std::vector<Heard>{{"", "none", "aborted by the operator", false}}));
}

TEST_F(DeskTest, ResettingForgetsTheVerdictAndLeavesADialog) {
    Ask(1);
    EXPECT_TRUE(Ends());
    EXPECT_TRUE(DialogTimedOut());
    ResetHelperDialogs();
    EXPECT_FALSE(DialogTimedOut());
    Ask();
    ResetHelperDialogs();
    Answer(4);
    EXPECT_TRUE(HasEnded());
    EXPECT_EQ(m_Number, 4u);
}

TEST_F(DeskTest, TheEndOfTheServiceEndsItsDialogs) {
    Ask();
    m_Service->End();
    EXPECT_TRUE(HasEnded());
    EXPECT_TRUE(DialogTimedOut());
    EXPECT_EQ(m_Service->Records().size(), 1u);
    EXPECT_FALSE(m_Service->Records()[0].wantsAbort);
    EXPECT_EQ(AppMainWnd(), nullptr);
}

TEST_F(DeskTest, WithoutAServiceNobodyAnswersAndNobodyWaits) {
    m_Service->End();
    m_State.reset(InitGetUserItemDialog(
        L"H", &m_Title, &m_Text, true, false, WithoutEnd, &m_Number, nullptr, &m_Event, nullptr));
    EXPECT_EQ(Create(), 0);
    EXPECT_TRUE(HasEnded());
    EXPECT_TRUE(DialogTimedOut());
    EXPECT_EQ(WaitForHelperDialogDestructionToComplete(), TS_FAILED);
    CSafeString file("f");
    EXPECT_FALSE(SelectSingleFile(file, nullptr, nullptr, true));
    EXPECT_STREQ(file.get(), "f");
}

TEST_F(DeskTest, ASecondServiceIsRefused) { EXPECT_THROW(ServiceThread(), std::runtime_error); }

TEST_F(DeskTest, AChooserWaitsForItsFile) {
    m_Text = L"";
    ScriptedFace::onShow = [](SharedDialog const & dialog) {
        EXPECT_EQ(dialog->question.kind, QuestionKind::OneFile);
        EXPECT_EQ(dialog->question.filter, L"A|*.a|");
        EXPECT_TRUE(dialog->question.mustExist);
        Desk::The().Answer(dialog, Reply{.texts = {L"\u00b5"}}, "operator");
    };
    CSafeString file("f");
    EXPECT_TRUE(SelectSingleFile(file, L"text", L"A|*.a|", true));
    EXPECT_STREQ(file.get(), "\xC2\xB5");
    EXPECT_EQ(Records(), (std::vector<Heard>{{"\xC2\xB5", "operator", "", false}}));
}

TEST_F(DeskTest, AChooserWithoutAChoiceLeavesItsOutput) {
    ScriptedFace::onShow = [](SharedDialog const & dialog) {
        Desk::The().Answer(dialog, Reply{.affirmed = false}, "operator");
    };
    CSafeString file("f");
    EXPECT_FALSE(SelectSingleFile(file, L"text", nullptr, false));
    EXPECT_FALSE(SelectSingleVIF(file, L"text", false));
    EXPECT_STREQ(file.get(), "f");
    std::vector<CSafeString> * files = nullptr;
    EXPECT_FALSE(SelectMultipleFiles(files, L"text", nullptr, false));
    EXPECT_EQ(files, nullptr);
}

TEST_F(DeskTest, AChooserOfSeveralMakesAVector) {
    ScriptedFace::onShow = [](SharedDialog const & dialog) {
        Desk::The().Answer(dialog, Reply{.texts = {L"a", L"b"}}, "operator");
    };
    std::vector<CSafeString> * files = nullptr;
    EXPECT_TRUE(SelectMultipleVIFs(files, L"text", false));
    std::unique_ptr<std::vector<CSafeString>> const owned(files);
    ASSERT_NE(owned, nullptr);
    ASSERT_EQ(owned->size(), 2u);
    EXPECT_STREQ(owned->at(1).get(), "b");
}

TEST_F(DeskTest, AChooserThatNobodyAnswersWantsAnAbortAndLeavesTheVerdict) {
    Ask();
    Answer(1);
    ScriptedFace::onShow = [](SharedDialog const & dialog) {
        Desk::The().LeaveUnanswered(dialog, "nobody");
    };
    CSafeString file("f");
    EXPECT_FALSE(SelectSingleFile(file, L"text", nullptr, false));
    EXPECT_FALSE(DialogTimedOut());
    EXPECT_TRUE(Records().back().wantsAbort);
}

} // namespace
