// A suite's start that fails: what exists then, what is reported and where, and what leaves.
#include <cstddef>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "app/CommonSuiteBench.h"
#include "support/Allocations.h"

namespace {

constexpr char AbortLine[] = "ABORT Exception thrown: Test Aborted by user..";
constexpr char NoInput[] = "ABORT Unable to create User Input module.";

class CommonInitFailureTest : public CommonSuiteBench {
protected:
    // Does this at the `number`th abort point. The log's own update comes before the first.
    void AtPoint(int number, std::function<void()> const & act) {
        m_Rings = 0;
        m_Bell.m_OnRing = [this, number, act] {
            if (++m_Rings == number + 1) act();
        };
    }

    // The text of each item in CUIUpdate's buffer.
    Lines Shown() {
        Lines texts;
        for (std::string const & line : Take(m_Bench.m_Buffer))
            if (line[0] == '"') texts.push_back(line.substr(0, line.rfind('"') + 1));
        return texts;
    }

    std::string Objects() const {
        return std::string(m_Log != nullptr ? "log " : "no log ")
               + (m_UserInput != nullptr ? "input " : "no input ")
               + (CAppState::Log() != nullptr ? "global " : "no global ")
               + (CAppState::UserInput() != nullptr ? "held" : "none held");
    }

    int m_Rings = 0;
};

TEST_F(CommonInitFailureTest, AnUnknownTypeIsReportedInThreeLinesToTheOutputBuffer) {
    for (int const type : {0, 2, 3, 5}) {
        SCOPED_TRACE(type);
        m_Type = static_cast<tagTS_LOG_TYPE>(type);
        EXPECT_EQ(Init(), TS_ABORTED);
        EXPECT_EQ(Objects(), "no log no input no global none held");
        EXPECT_EQ(
            Shown(), (Lines{
                         R"("Exception thrown: Unknown log type: HTML or Console expected.\a ")",
                         R"("Unable to create test log.\a ")",
                         R"("Unable to create User Input module.\a ")"}));
    }
}

TEST_F(CommonInitFailureTest, AFormattedLogWithoutABufferIsReported) {
    m_Buffer = nullptr;
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Objects(), "no log no input no global none held");
    EXPECT_EQ(
        Shown(),
        (Lines{
            R"("Exception thrown: INTERNAL ERROR: NULL output buffer..\a ")",
            R"("Unable to create test log.\a ")", R"("Unable to create User Input module.\a ")"}));
}

TEST_F(CommonInitFailureTest, TheReportedLinesHaveTheLookOfErrors) {
    m_Buffer = nullptr;
    Init();
    Lines const lines = Take(m_Bench.m_Buffer);
    ASSERT_EQ(lines.size(), 6u);
    for (std::size_t i = 0; i != lines.size(); i += 2)
        EXPECT_NE(lines[i].find(" weight=700"), std::string::npos) << lines[i];
}

TEST_F(CommonInitFailureTest, WithoutSinkAndBufferTheLinesAreLost) {
    CUIUpdate::GetUIUpdate()->SetOutputBuffer(nullptr);
    m_Type = static_cast<tagTS_LOG_TYPE>(2);
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_TRUE(Shown().empty());
    CUIUpdate::GetUIUpdate()->SetOutputBuffer(&m_Bench.m_Buffer);
}

TEST_F(CommonInitFailureTest, AnEarlyFailureLeavesTheHeldPromptObjectAlone) {
    CMFCDialogMXUserInput earlier;
    CAppState::UserInput(&earlier);
    m_Type = static_cast<tagTS_LOG_TYPE>(2);
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(CAppState::UserInput(), &earlier);
}

TEST_F(CommonInitFailureTest, AnEarlyFailureForgetsTheEarlierGlobalLogAndDoesNotReportToIt) {
    LineLog earlier;
    CAppState::Log(&earlier);
    m_Type = static_cast<tagTS_LOG_TYPE>(2);
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(CAppState::Log(), nullptr);
    EXPECT_TRUE(earlier.Take().empty());
}

TEST_F(CommonInitFailureTest, UnderAnArmedAbortItFailsAtItsFirstPointWithALog) {
    Abort();
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Objects(), "log no input global none held");
    EXPECT_EQ(Entries(), (Lines{OpeningLines[0], OpeningLines[1], AbortLine, NoInput}));
    EXPECT_EQ(Rings(), (Lines{"send 7 0x8014 0 0", "send 7 0x8014 0 0"}));
}

TEST_F(CommonInitFailureTest, AnAbortAtTheFirstPointKeepsALogThatIsNotGlobalAsItIs) {
    m_MakeGlobal = false;
    Abort();
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Objects(), "log no input no global none held");
    EXPECT_EQ(Entries(), (Lines{OpeningLines[0], OpeningLines[1], AbortLine, NoInput}));
}

TEST_F(CommonInitFailureTest, AnAbortAtTheSecondPointEndsThePromptObject) {
    AtPoint(2, Abort);
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Objects(), "log no input global none held");
    EXPECT_EQ(
        Entries(), (Lines{OpeningLines[0], OpeningLines[1], OpeningLines[2], AbortLine, NoInput}));
}

TEST_F(CommonInitFailureTest, AnAbortAtTheThirdPointKeepsBothObjects) {
    AtPoint(3, Abort);
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Objects(), "log input global held");
    EXPECT_EQ(Entries(), (Lines{OpeningLines[0], OpeningLines[1], OpeningLines[2], AbortLine}));
}

TEST_F(CommonInitFailureTest, AnAbortWithoutAnExceptionDoesNotStopTheStart) {
    CUIUpdate::GetUIUpdate()->AbortFunction(true);
    EXPECT_EQ(Init(), TS_SUCCESS);
}

TEST_F(CommonInitFailureTest, AFailureInTheBannerKeepsBothObjects) {
    m_Versions = true;
    Diversion const system(wrapped_GetVersionExA, [](OSVERSIONINFOA *) -> BOOL {
        throw std::runtime_error("no version");
    });
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Objects(), "log input global held");
    EXPECT_EQ(Entries().back(), "ABORT Exception thrown: no version.");
}

TEST_F(CommonInitFailureTest, AnAbortAfterTheBannerIsThrownAndReported) {
    m_Versions = true;
    AtPoint(4, Abort);
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Objects(), "log input global held");
    EXPECT_EQ(Entries().back(), AbortLine);
}

TEST_F(CommonInitFailureTest, AFailureInTheMakingOfThePromptObjectLeavesNone) {
    Diversion const mutex(
        wrapped_CreateMutexA, [](auto...) -> HANDLE { throw std::runtime_error("no mutex"); });
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Objects(), "log no input global none held");
    EXPECT_EQ(
        Entries(),
        (Lines{OpeningLines[0], OpeningLines[1], "ABORT Exception thrown: no mutex.", NoInput}));
}

TEST_F(CommonInitFailureTest, WhatIsNoStandardExceptionIsReportedAsUnknown) {
    AtPoint(1, [] { throw 7; });
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(
        Entries(), (Lines{
                       OpeningLines[0], OpeningLines[1],
                       "ABORT Exception thrown: <unknown type: no message>..", NoInput}));
}

TEST_F(CommonInitFailureTest, AnAbortIsReportedWithTwoFullStops) {
    AtPoint(3, Abort);
    Init();
    EXPECT_TRUE(Entries().back().ends_with("user.."));
}

TEST_F(CommonInitFailureTest, APercentSignInAReasonIsReadAsADirective) {
    AtPoint(3, [] { throw std::runtime_error("100%% of 5%d%s"); });
    Init();
    EXPECT_EQ(Entries().back(), "ABORT Exception thrown: 100% of 5.");
}

TEST_F(CommonInitFailureTest, AReportIsDroppedByAQuietRunAsOneOfLevel1) {
    CAppState::QNLogVerbosityLevel(Quiet);
    Abort();
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Entries(), (Lines{OpeningLines[0], "INFO Log Level: Quiet"}));
}

TEST_F(CommonInitFailureTest, AReportIsShownByARunOfLevel1) {
    CAppState::QNLogVerbosityLevel(Minimal);
    Abort();
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(Entries(), (Lines{OpeningLines[0], "INFO Log Level: Minimal", AbortLine, NoInput}));
}

TEST_F(CommonInitFailureTest, ALackOfMemoryLeavesAtEachUpdate) {
    std::string const objects[] = {
        "no log no input no global none held", "log no input global none held",
        "log no input global none held", "log input global held"};
    for (int number = 0; number <= 3; ++number) {
        SCOPED_TRACE(number);
        AtPoint(number, [] { throw std::bad_alloc(); });
        EXPECT_THROW(Init(), std::bad_alloc);
        EXPECT_EQ(Objects(), objects[number]);
        for (std::string const & entry : Entries())
            EXPECT_EQ(entry.find("ABORT"), entry.npos) << entry;
        m_Bell.m_OnRing = nullptr;
        End();
        m_Bench.m_Suite.OpenTest(false);
    }
}

// Lets the start run out of memory after so many allocations; nothing when it got through.
TEST_F(CommonInitFailureTest, MemoryThatRunsOutAnywhereLeavesAsItIsAndWhatWasMadeCanBeGivenBack) {
    // What is kept from the first use on.
    EXPECT_EQ(Init(), TS_SUCCESS);
    End();
    std::size_t granted = 0;
    for (bool done = false; !done && granted != 1000; ++granted) {
        std::optional<TS_STATUS> result;
        {
            AllocationWatch watch(granted);
            try {
                result = Init();
            } catch (std::bad_alloc const &) {
            }
            watch.End();
        }
        done = result.has_value();
        EXPECT_EQ(result.value_or(TS_SUCCESS), TS_SUCCESS);
        EXPECT_EQ(CAppState::Log(), m_Log);
        EXPECT_EQ(CAppState::UserInput(), m_UserInput);
        EXPECT_EQ(End(), TS_SUCCESS);
    }
    EXPECT_GT(granted, 10u);
    EXPECT_LT(granted, 1000u);
}

} // namespace
