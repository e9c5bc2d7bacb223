// A suite's end: what is deleted, in which order, and what is forgotten.
#include <functional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "app/CommonSuiteBench.h"

namespace {

// Says when it ends, and what there was then.
class EndingLog : public LineLog {
public:
    explicit EndingLog(std::function<void()> ended) : m_Ended(std::move(ended)) {}
    ~EndingLog() override { m_Ended(); }

private:
    std::function<void()> m_Ended;
};

class EndingInput : public CMFCDialogMXUserInput {
public:
    explicit EndingInput(std::function<void()> ended) : m_Ended(std::move(ended)) {}
    ~EndingInput() override { m_Ended(); }

private:
    std::function<void()> m_Ended;
};

class CommonEndTest : public CommonSuiteBench {
protected:
    // What ends here still notes it.
    ~CommonEndTest() override { End(); }

    // The caller's, to be ended by the library; the global one too, unless told otherwise.
    void Make() {
        m_Log = NewLog("log");
        m_UserInput = NewInput("input");
        CAppState::Log(m_Log);
        CAppState::UserInput(m_UserInput);
    }

    CMXLog * NewLog(std::string const & name) {
        return new EndingLog([this, name] { Note(name); });
    }

    CMXUserInput * NewInput(std::string const & name) {
        return new EndingInput([this, name] { Note(name); });
    }

    void Note(std::string const & name) {
        m_Ended.push_back(
            name + (CAppState::Log() != nullptr ? ", a global log" : "")
            + (CAppState::UserInput() != nullptr ? ", an input held" : ""));
    }

    void Forget() {
        m_Log = nullptr;
        m_UserInput = nullptr;
    }

    Lines m_Ended;
};

TEST_F(CommonEndTest, WithoutArgumentsBothOfTheRunsObjectsEnd) {
    Make();
    Forget();
    EXPECT_EQ(Common_EndTestSuite(), TS_SUCCESS);
    EXPECT_EQ(m_Ended, (Lines{"input, a global log", "log, a global log"}));
    EXPECT_EQ(CAppState::Log(), nullptr);
    EXPECT_EQ(CAppState::UserInput(), nullptr);
}

TEST_F(CommonEndTest, WithoutArgumentsAndObjectsItSucceeds) {
    EXPECT_EQ(Common_EndTestSuite(), TS_SUCCESS);
    EXPECT_EQ(Common_EndTestSuite(), TS_SUCCESS);
}

TEST_F(CommonEndTest, AGlobalLogThatAppearsWhileThePromptObjectEndsIsEndedToo) {
    CAppState::UserInput(new EndingInput([this] { CAppState::Log(NewLog("late log")); }));
    EXPECT_EQ(Common_EndTestSuite(), TS_SUCCESS);
    EXPECT_EQ(m_Ended, Lines{"late log, a global log"});
    EXPECT_EQ(CAppState::Log(), nullptr);
}

TEST_F(CommonEndTest, WithArgumentsTheCallersObjectsEndAndBecomeNull) {
    Make();
    EXPECT_EQ(End(), TS_SUCCESS);
    EXPECT_EQ(m_Ended, (Lines{"input, a global log", "log, a global log"}));
    EXPECT_EQ(m_Log, nullptr);
    EXPECT_EQ(m_UserInput, nullptr);
    EXPECT_EQ(CAppState::Log(), nullptr);
    EXPECT_EQ(CAppState::UserInput(), nullptr);
}

TEST_F(CommonEndTest, AnotherGlobalLogAndAnotherHeldPromptObjectAreForgottenNotEnded) {
    Make();
    LineLog global;
    CMFCDialogMXUserInput held;
    CAppState::Log(&global);
    CAppState::UserInput(&held);
    EXPECT_EQ(End(), TS_SUCCESS);
    EXPECT_EQ(m_Ended, (Lines{"input, a global log", "log, a global log"}));
    EXPECT_EQ(CAppState::Log(), nullptr);
    EXPECT_EQ(CAppState::UserInput(), nullptr);
}

TEST_F(CommonEndTest, InThePlaceOfANullLogTheGlobalOneEnds) {
    Make();
    m_Log = nullptr;
    EXPECT_EQ(End(), TS_SUCCESS);
    EXPECT_EQ(m_Ended, (Lines{"input, a global log", "log, a global log"}));
    EXPECT_EQ(CAppState::Log(), nullptr);
}

TEST_F(CommonEndTest, WithArgumentsThatAreNullItSucceeds) { EXPECT_EQ(End(), TS_SUCCESS); }

TEST_F(CommonEndTest, WithoutArgumentsALogThatIsNotGlobalIsNotFound) {
    m_MakeGlobal = false;
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(Common_EndTestSuite(), TS_SUCCESS);
    m_UserInput = nullptr;
    EXPECT_EQ(m_Log->Write(TEST_STATUS_INFO, "still there"), TEST_STATUS_INFO);
}

TEST_F(CommonEndTest, CleanupEndsThePromptObjectAlone) {
    Make();
    EXPECT_EQ(Common_CleanupUserInput(m_UserInput), TS_SUCCESS);
    EXPECT_EQ(m_Ended, Lines{"input, a global log"});
    EXPECT_EQ(m_UserInput, nullptr);
    EXPECT_EQ(CAppState::UserInput(), nullptr);
    EXPECT_EQ(CAppState::Log(), m_Log);
    EXPECT_EQ(Common_CleanupUserInput(m_UserInput), TS_SUCCESS);
}

} // namespace
