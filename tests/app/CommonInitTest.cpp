// A suite's start that goes well: what is made, what is written, what is held by whom; and the
// names of the levels.
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "app/CommonSuiteBench.h"
#include "log/CConsoleOutMXLog.h"
#include "log/CHTMLMXLog.h"

namespace {

using CommonInitTest = CommonSuiteBench;

TEST_F(CommonInitTest, AFormattedSuiteStartsWithItsThreeLines) {
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_NE(dynamic_cast<CHTMLMXLog *>(m_Log), nullptr);
    EXPECT_NE(dynamic_cast<CMFCDialogMXUserInput *>(m_UserInput), nullptr);
    EXPECT_EQ(Entries(), (Lines{OpeningLines[0], OpeningLines[1], OpeningLines[2]}));
}

TEST_F(CommonInitTest, TheFormattedLogWritesIntoTheGivenBufferWhichIsEmptiedFirst) {
    COutputBuffer other;
    other.AddText(std::string("old"));
    m_Buffer = &other;
    Take(m_Bench.m_Buffer);
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_TRUE(Take(m_Bench.m_Buffer).empty());
    Lines const shown = Take(other);
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].find("\"Test log initialized.\\d\\aLog Level: Normal"), 0u) << shown[0];
    End();
}

TEST_F(CommonInitTest, AConsoleSuiteWritesToStandardError) {
    m_Type = TS_LOG_CONSOLE;
    m_Buffer = nullptr;
    testing::internal::CaptureStderr();
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "INFO    Test log initialized.\nINFO    Log Level: Normal\n"
        "INFO    User Input module initialized\n");
    auto * const log = dynamic_cast<CConsoleOutMXLog *>(m_Log);
    ASSERT_NE(log, nullptr);
    EXPECT_EQ(log->GetLogName(), "stdout");
}

TEST_F(CommonInitTest, TheConsoleLogHasTheNameOfTheGivenFile) {
    m_Type = TS_LOG_CONSOLE;
    std::string name = testing::TempDir() + "common-init.log";
    m_LogFileName = name.data();
    testing::internal::CaptureStderr();
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(dynamic_cast<CConsoleOutMXLog &>(*m_Log).GetLogName(), name);
    End();
    testing::internal::GetCapturedStderr();
    std::remove(name.c_str());
}

TEST_F(CommonInitTest, TheOpeningLinesShowInAQuietRun) {
    CAppState::QNLogVerbosityLevel(Quiet);
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(Entries(), (Lines{OpeningLines[0], "INFO Log Level: Quiet", OpeningLines[2]}));
}

TEST_F(CommonInitTest, AGlobalLogIsTheRunsLog) {
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(CAppState::Log(), m_Log);
    EXPECT_EQ(CAppState::UserInput(), m_UserInput);
    EXPECT_TRUE(m_Log->GlobalLogExists());
}

TEST_F(CommonInitTest, AnotherLogLeavesTheRunWithoutAGlobalOneAndWritesAllTheSame) {
    m_MakeGlobal = false;
    LineLog earlier;
    CAppState::Log(&earlier);
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(CAppState::Log(), nullptr);
    EXPECT_EQ(CAppState::UserInput(), m_UserInput);
    EXPECT_FALSE(m_Log->GlobalLogExists());
    EXPECT_EQ(Entries(), (Lines{OpeningLines[0], OpeningLines[1], OpeningLines[2]}));
}

TEST_F(CommonInitTest, ASecondStartForgetsTheEarlierGlobalLogWithoutDeletingIt) {
    EXPECT_EQ(Init(), TS_SUCCESS);
    std::unique_ptr<CMXLog> const earlier(m_Log);
    std::unique_ptr<CMXUserInput> const earlierInput(m_UserInput);
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_NE(m_Log, earlier.get());
    EXPECT_EQ(CAppState::Log(), m_Log);
    EXPECT_EQ(earlier->Write(TEST_STATUS_INFO, "still there"), TEST_STATUS_INFO);
}

TEST_F(CommonInitTest, TheDialogsHaveTheGivenHeaderOrQuillon) {
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(Header(), L"Quillon");
    End();
    m_Header = "Other \xC3\xA4";
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(Header(), L"Other \u00e4");
    End();
    m_Header = "";
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(Header(), L"");
}

TEST_F(CommonInitTest, TheHostIsWaitedForAfterTheLogAtThreePointsAndAfterTheBanner) {
    m_Bell.m_OnRing = [this] { m_Moments.push_back(Moment()); };
    EXPECT_EQ(Init(), TS_SUCCESS);
    std::string const update = "send 7 0x8014 0 0";
    EXPECT_EQ(Rings(), (Lines{update, update, update, update}));
    EXPECT_EQ(
        m_Moments, (Lines{
                       "0 entries", "2 entries, log", "3 entries, log, held input",
                       "3 entries, log, held input, input"}));
    End();
    m_Versions = true;
    m_Bell.Take();
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(Rings(), (Lines{update, update, update, update, update}));
}

TEST_F(CommonInitTest, TheBannerStandsBehindTheOpeningLinesTheSystemFirst) {
    m_Versions = true;
    FakeRegistry registry;
    registry.m_Values = {{"ProductName", "P"}, {"BuildLabEx", "B"}};
    Diversion const system(wrapped_GetVersionExA, [](OSVERSIONINFOA * version) {
        auto & record = *reinterpret_cast<OSVERSIONINFOEXA *>(version);
        record.dwPlatformId = 2;
        record.dwMajorVersion = 6;
        record.dwMinorVersion = 2;
        return BOOL{TRUE};
    });
    Diversion const none(
        wrapped_GetFileVersionInfoSizeA, [](char const *, DWORD *) { return DWORD{0}; });
    EXPECT_EQ(Init(), TS_SUCCESS);
    Lines expected{OpeningLines[0], OpeningLines[1], OpeningLines[2], "INFO P (Build B)"};
    for (char const * const file :
         {"QNExe.exe", "Keelbase.dll", "QuillonLog.dll", "Promptline.dll", "Morvex.dll",
          "Runcore.dll", "Portsheet.dll"})
        expected.push_back(std::string("WARNING Could not get version information for ") + file);
    EXPECT_EQ(Entries(), expected);
    EXPECT_EQ(m_Bench.m_Suite.OSVersion(), "P (Build B)");
}

TEST(GetLogLevelNameTest, EveryLevelHasAName) {
    for (auto const & [level, name] :
         {std::pair<int, char const *>{0, "Quiet"},
          {1, "Minimal"},
          {2, "Low"},
          {3, "Normal"},
          {4, "Verbose"},
          {5, "Diagnostic"},
          {6, "Diagnostic"},
          {254, "Diagnostic"},
          {255, "Internal"}}) {
        auto const text = GetLogLevelName(static_cast<eQNLogVerbosity>(level));
        ASSERT_TRUE(text);
        EXPECT_EQ(*text, name) << level;
    }
}

// A log of the host's own kind.
class OwnLog : public CMXLog {
public:
    explicit OwnLog(std::string & written) : m_Written(written) {}
    ~OwnLog() override { m_Written += "ended"; }

protected:
    TS_STATUS InternalWrite(TEST_STATUS, char const * const text, CFormatInfo const *) override {
        m_Written.append(text).push_back('\n');
        return TS_SUCCESS;
    }

private:
    std::string & m_Written;
};

class CommonInitWithLogTest : public CommonSuiteBench {
protected:
    ~CommonInitWithLogTest() override { End(); }

    TS_STATUS Init() {
        auto given = std::make_unique<OwnLog>(m_Written);
        m_Given = given.get();
        return Common_InitTestSuiteWithLog(
            m_Log, std::move(given), m_UserInput, m_Header, m_Versions, m_MakeGlobal);
    }

    std::string m_Written;
    CMXLog * m_Given = nullptr;
};

TEST_F(CommonInitWithLogTest, TheGivenLogTakesTheOpeningLinesAndIsTheCallers) {
    m_Header = "Own";
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(m_Log, m_Given);
    EXPECT_EQ(CAppState::Log(), m_Given);
    EXPECT_TRUE(m_Log->GlobalLogExists());
    EXPECT_EQ(
        m_Written, "Test log initialized.\nLog Level: Normal\nUser Input module initialized\n");
    EXPECT_EQ(Header(), L"Own");
    m_Written.clear();
    EXPECT_EQ(End(), TS_SUCCESS);
    EXPECT_EQ(m_Written, "ended");
}

TEST_F(CommonInitWithLogTest, ALogThatIsNotGlobalKnowsOfNone) {
    m_MakeGlobal = false;
    EXPECT_EQ(Init(), TS_SUCCESS);
    EXPECT_EQ(CAppState::Log(), nullptr);
    EXPECT_FALSE(m_Log->GlobalLogExists());
}

TEST_F(CommonInitWithLogTest, AnAbortIsReportedToTheGivenLog) {
    CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(true);
    CUIUpdate::GetUIUpdate()->AbortFunction(true);
    EXPECT_EQ(Init(), TS_ABORTED);
    EXPECT_EQ(m_Log, m_Given);
    EXPECT_EQ(m_UserInput, nullptr);
    EXPECT_NE(m_Written.find("Exception thrown: Test Aborted by user..\n"), std::string::npos)
        << m_Written;
    EXPECT_NE(m_Written.find("Unable to create User Input module.\n"), std::string::npos);
    CUIUpdate::GetUIUpdate()->AbortFunction(false);
}

TEST_F(CommonInitWithLogTest, WithoutALogItFailsAndSaysSoInTheBuffer) {
    EXPECT_EQ(
        Common_InitTestSuiteWithLog(m_Log, nullptr, m_UserInput, m_Header, false, true),
        TS_ABORTED);
    EXPECT_EQ(m_Log, nullptr);
    EXPECT_EQ(m_UserInput, nullptr);
    Lines const shown = Take(m_Bench.m_Buffer);
    std::string text;
    for (auto const & line : shown)
        text += line;
    EXPECT_NE(text.find("Exception thrown: No test log was given."), std::string::npos) << text;
    EXPECT_NE(text.find("Unable to create test log."), std::string::npos) << text;
}

} // namespace
