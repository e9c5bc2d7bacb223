// The life of tests under the engine: records, verdicts, exceptions, the operator's abort.
#include "examples/QNExe/TestEngine.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qnexe/LibraryState.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string WordOf(TEST_STATUS status) {
    switch (status) {
    case TEST_STATUS_FAIL:
        return "FAIL ";
    case TEST_STATUS_ABORT:
        return "ABORT ";
    case TEST_STATUS_WARNING:
        return "WARNING ";
    case TEST_STATUS_ERROR:
        return "ERROR ";
    case TEST_STATUS_INFO:
        return "INFO ";
    default:
        return "";
    }
}

// Keeps the entries; of start, stop and duration lines only what they are.
class TranscriptLog : public CMXLog {
public:
    TranscriptLog() { GlobalLogExists(true); }

    std::vector<std::string> lines;

protected:
    TS_STATUS InternalWrite(TEST_STATUS status, char const * text, CFormatInfo const *) override {
        lines.push_back(Shortened(WordOf(status) + text));
        return TS_SUCCESS;
    }

private:
    static std::string Shortened(std::string const & line) {
        for (char const * mark : {"Start time", "Stop time", "Duration", "Stopping Test"})
            if (line.find(mark) != line.npos) return mark;
        return line;
    }
};

// One record: name, true test, result, aborted by the user.
using Record = std::tuple<std::string, bool, TEST_STATUS, bool>;

TEST_STATUS Word(CMXLog & log) { return log.TestStatus(); }
TEST_STATUS Fail(CMXLog & log) { return log.Write(TEST_STATUS_FAIL, "no answer"); }

[[noreturn]] TEST_STATUS Throw(char const * text) { throw std::runtime_error(text); }

CUIUpdate & Display() { return *CUIUpdate::GetUIUpdate(); }

class TestEngineTest : public testing::Test {
protected:
    void Run(std::vector<TestCase> const & tests) { TestEngine(m_State.suite, m_Log).Run(tests); }

    // All but the record that stands before the first test.
    std::vector<Record> Records() {
        std::vector<Record> records;
        for (auto const & test : m_State.suite.TestLogs())
            records.emplace_back(
                test->TestName(), test->IsActualTest(), test->TestStatus(), test->m_AbortedByUser);
        records.erase(records.begin());
        return records;
    }

    // The steps of an operator who asks for an abort while the test runs.
    static void AskForAbort() { Display().AbortFunction(true); }

    LibraryState m_State;
    TranscriptLog m_Log;
};

TEST_F(TestEngineTest, TestsRunInOrderEachWithARecordOfItsOwn) {
    Run({{"T1", true, Word}, {"Power up", false, Word}, {"T2", true, Word}});
    EXPECT_THAT(
        Records(), ElementsAre(
                       Record("T1", true, TEST_STATUS_SUCCESS, false),
                       Record("Power up", false, TEST_STATUS_SUCCESS, false),
                       Record("T2", true, TEST_STATUS_SUCCESS, false)));
    EXPECT_THAT(
        m_Log.lines, ElementsAre(
                         "Start time", "Stop time", "Duration", "Stopping Test", "Start time",
                         "Start time", "Stop time", "Duration", "Stopping Test"));
}

TEST_F(TestEngineTest, NoTestsLeaveNoRecord) {
    Run({});
    EXPECT_THAT(Records(), IsEmpty());
    EXPECT_THAT(m_Log.lines, IsEmpty());
}

TEST_F(TestEngineTest, ProgressTellsWhichTestRunsAndInTheEndThatAllAreDone) {
    std::vector<std::string> told;
    auto const tell = [&] {
        told.push_back(
            std::to_string(Display().ProgressPosition()) + '/'
            + std::to_string(Display().ProgressRange()) + ' ' + Display().ProgressLabel());
    };
    auto const test = [&](CMXLog & log) {
        tell();
        return log.TestStatus();
    };
    Run({{"T1", true, test}, {"T2", true, test}});
    tell();
    EXPECT_THAT(told, ElementsAre("0/2 T1", "1/2 T2", "2/2 "));
}

TEST_F(TestEngineTest, UtilityHasAStopTime) {
    auto const before = std::chrono::system_clock::now();
    Run({{"Power up", false, Word}});
    EXPECT_GE(m_State.suite.CurrentTestLog()->StopTime(), before);
}

TEST_F(TestEngineTest, FailureDoesNotReachTheNextTest) {
    Run({{"T1", true, Fail}, {"T2", true, Word}});
    EXPECT_THAT(
        Records(), ElementsAre(
                       Record("T1", true, TEST_STATUS_FAIL, false),
                       Record("T2", true, TEST_STATUS_SUCCESS, false)));
}

TEST_F(TestEngineTest, WhatWasLoggedBeforeTheFirstTestIsNotInItsWord) {
    m_Log.Write(TEST_STATUS_WARNING, "before");
    TEST_STATUS atStart = 0;
    Run({{"T1", true, [&](CMXLog & log) { return atStart = log.TestStatus(); }}});
    EXPECT_EQ(atStart, TEST_STATUS_SUCCESS);
}

TEST_F(TestEngineTest, ReturnedStatusClosesTheTest) {
    Run({{"T1", true, [](CMXLog &) { return TEST_STATUS_FAIL; }}});
    EXPECT_THAT(Records(), ElementsAre(Record("T1", true, TEST_STATUS_FAIL, false)));
    EXPECT_THAT(
        m_Log.lines,
        ElementsAre("Start time", "FAIL Test failed.", "Stop time", "Duration", "Stopping Test"));
}

TEST_F(TestEngineTest, ExceptionIsLoggedAsItStandsAndClosesTheTestAsAborted) {
    Run({{"T1", true, [](CMXLog &) { return Throw("only 50%s of it"); }}, {"T2", true, Word}});
    EXPECT_THAT(
        Records(), ElementsAre(
                       Record("T1", true, TEST_STATUS_FAIL | TEST_STATUS_ABORT, false),
                       Record("T2", true, TEST_STATUS_SUCCESS, false)));
    EXPECT_THAT(
        m_Log.lines,
        ElementsAre(
            "Start time", "ERROR Exception thrown: only 50%s of it", "ABORT Test aborted.",
            "FAIL Test did not execute all required steps.", "Stop time", "Duration",
            "Stopping Test", "Start time", "Stop time", "Duration", "Stopping Test"));
}

TEST_F(TestEngineTest, ExceptionOfTheLibraryIsLoggedLikeAnyOther) {
    Run({{"T1", true, [](CMXLog &) -> TEST_STATUS { ThrowQNRunTime("no stream"); }}});
    ASSERT_GE(m_Log.lines.size(), 2u);
    EXPECT_EQ(m_Log.lines[1], "ERROR Exception thrown: no stream");
}

TEST_F(TestEngineTest, ExceptionWithoutATextIsLoggedAsOne) {
    Run({{"T1", true, [](CMXLog &) -> TEST_STATUS { throw 5; }}});
    EXPECT_THAT(
        m_Log.lines, ElementsAre(
                         "Start time", "ERROR Exception thrown: <unknown type: no message>",
                         "ABORT Test aborted.", "FAIL Test did not execute all required steps.",
                         "Stop time", "Duration", "Stopping Test"));
}

TEST_F(TestEngineTest, TestWithoutStepsIsAborted) {
    Run({{"T1", true, nullptr}});
    EXPECT_THAT(
        Records(), ElementsAre(Record("T1", true, TEST_STATUS_FAIL | TEST_STATUS_ABORT, false)));
}

TEST_F(TestEngineTest, AbortThrowsAtTheNextUpdateAndLeavesTheRestUnopened) {
    bool wentOn = false;
    auto const steps = [&](CMXLog & log) {
        AskForAbort();
        CUIUpdate::DoUpdate(false);
        wentOn = true;
        return log.TestStatus();
    };
    Run({{"T1", true, steps}, {"T2", true, Word}});
    EXPECT_FALSE(wentOn);
    EXPECT_THAT(
        Records(), ElementsAre(Record("T1", true, TEST_STATUS_FAIL | TEST_STATUS_ABORT, true)));
    EXPECT_THAT(
        m_Log.lines, ElementsAre(
                         "Start time", "ABORT Test aborted by user.",
                         "FAIL Test did not execute all required steps.", "Stop time", "Duration",
                         "Stopping Test"));
}

TEST_F(TestEngineTest, UtilityIsAbortedToo) {
    auto const steps = [](CMXLog & log) {
        AskForAbort();
        CUIUpdate::DoUpdate(false);
        return log.TestStatus();
    };
    Run({{"Power up", false, steps}, {"T1", true, Word}});
    EXPECT_THAT(Records(), ElementsAre(Record("Power up", false, TEST_STATUS_ABORT, true)));
    EXPECT_THAT(m_Log.lines, ElementsAre("Start time", "ABORT Aborted by user."));
}

TEST_F(TestEngineTest, AbortThatATestHasSwallowedIsAnAbortAllTheSame) {
    auto const steps = [](CMXLog & log) {
        AskForAbort();
        EXPECT_THROW(CUIUpdate::DoUpdate(false), CQNRunTimeException);
        return log.TestStatus();
    };
    Run({{"T1", true, steps}, {"T2", true, Word}});
    EXPECT_THAT(
        Records(), ElementsAre(Record("T1", true, TEST_STATUS_FAIL | TEST_STATUS_ABORT, true)));
}

TEST_F(TestEngineTest, AbortWithoutAnUpdateIsSeenAtTheEndOfTheTest) {
    auto const steps = [](CMXLog & log) {
        log.Write(TEST_STATUS_FAIL, "no answer");
        AskForAbort();
        return log.TestStatus();
    };
    Run({{"T1", true, steps}, {"T2", true, Word}});
    EXPECT_THAT(
        Records(), ElementsAre(Record("T1", true, TEST_STATUS_FAIL | TEST_STATUS_ABORT, true)));
    EXPECT_THAT(
        m_Log.lines, ElementsAre(
                         "Start time", "FAIL no answer", "ABORT Test aborted by user.",
                         "FAIL Test did not execute all required steps.", "Stop time", "Duration",
                         "Stopping Test"));
}

TEST_F(TestEngineTest, AbortBeforeTheFirstTestOpensNone) {
    AskForAbort();
    Run({{"T1", true, Word}});
    EXPECT_THAT(Records(), IsEmpty());
    EXPECT_THAT(m_Log.lines, IsEmpty());
}

TEST_F(TestEngineTest, OtherExceptionDuringAnAbortIsLogged) {
    auto const steps = [](CMXLog &) {
        AskForAbort();
        return Throw("device lost");
    };
    Run({{"T1", true, steps}});
    ASSERT_GE(m_Log.lines.size(), 3u);
    EXPECT_EQ(m_Log.lines[1], "ERROR Exception thrown: device lost");
    EXPECT_EQ(m_Log.lines[2], "ABORT Test aborted by user.");
}

TEST_F(TestEngineTest, UpdatesThrowOnlyWhileATestRuns) {
    bool armed = false;
    auto const steps = [&](CMXLog & log) {
        armed = Display().ThrowExceptionOnAbort();
        return log.TestStatus();
    };
    Run({{"T1", true, steps}});
    EXPECT_TRUE(armed);
    EXPECT_FALSE(Display().ThrowExceptionOnAbort());
}

// What a test hands back is destroyed behind the scope that arms its updates.
TEST_F(TestEngineTest, ClosingATestDoesNotThrowWhateverTheTestHasArmed) {
    struct ArmsAtItsEnd : std::runtime_error {
        using std::runtime_error::runtime_error;
        ArmsAtItsEnd(ArmsAtItsEnd const &) = default;
        ~ArmsAtItsEnd() override { Display().ThrowExceptionOnAbort(true); }
    };
    auto const steps = [](CMXLog &) -> TEST_STATUS {
        AskForAbort();
        throw ArmsAtItsEnd("device lost");
    };
    EXPECT_NO_THROW(Run({{"T1", true, steps}}));
    EXPECT_THAT(
        Records(), ElementsAre(Record("T1", true, TEST_STATUS_FAIL | TEST_STATUS_ABORT, true)));
    EXPECT_FALSE(Display().ThrowExceptionOnAbort());
}

} // namespace
