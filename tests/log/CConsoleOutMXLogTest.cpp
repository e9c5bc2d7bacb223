// The sink that shows entries on standard error and keeps them in a file.
#include "log/CConsoleOutMXLog.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "log/LogBench.h"
#include "log/StreamFaults.h"
#include "log/TempFile.h"
#include "log/TestClock.h"

namespace {

class ConsoleSink : public CConsoleOutMXLog {
public:
    using CConsoleOutMXLog::CConsoleOutMXLog;
    using CConsoleOutMXLog::InternalWrite;

    TS_STATUS Show(TEST_STATUS status, char const * text) {
        return InternalWrite(status, text, nullptr);
    }
};

bool IsStandardError(std::FILE * stream) { return stream == stderr; }

class CConsoleOutMXLogTest : public testing::Test {
protected:
    CConsoleOutMXLogTest() { m_Bench.m_Suite.OpenTest(true); }

    void Open(char const * name) {
        m_Log = std::make_unique<ConsoleSink>(name);
        m_Log->GlobalLogExists(true);
    }
    void Open() { Open(m_File.Name().c_str()); }
    ConsoleSink & Log() { return *m_Log; }

    // What `action` shows on standard error, line ends as the log writes them.
    static std::string Shown(std::function<void()> const & action) {
        testing::internal::CaptureStderr();
        action();
        std::fflush(stderr);
        return testing::internal::GetCapturedStderr();
    }

    // The same through a text stream, which is how it is compared with a file.
    void ExpectShownAndFiled(std::string const & text, std::function<void()> const & action) {
        EXPECT_EQ(Shown(action), text);
        EXPECT_EQ(m_File.Bytes(), InTextMode(text));
    }

    LogBench m_Bench;
    TestClock m_Clock;
    TempFile m_File;
    std::unique_ptr<ConsoleSink> m_Log;
};

using CConsoleOutMXLogDeathTest = CConsoleOutMXLogTest;

constexpr char kStartLine[] = "INFO    Start time: Nov 14, 2026 - 17:08:36\r\n\n";

} // namespace

TEST_F(CConsoleOutMXLogTest, EachStatusHasItsWord) {
    Open();
    ExpectShownAndFiled(
        "FAIL    f\nABORT   a\nWARNING w\nINFO    i\nERROR   e\nu\nn\ns\nfa\nii\n", [&] {
            EXPECT_EQ(Log().Show(TEST_STATUS_FAIL, "f"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_ABORT, "a"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_WARNING, "w"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_INFO, "i"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_ERROR, "e"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_UNKNOWN, "u"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_NOT_LOGGED, "n"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_SUCCESS, "s"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_FAIL | TEST_STATUS_ABORT, "fa"), TS_SUCCESS);
            EXPECT_EQ(Log().Show(TEST_STATUS_INFO | TEST_STATUS_SUCCESS, "ii"), TS_SUCCESS);
        });
}

TEST_F(CConsoleOutMXLogTest, AnEmptyTextIsTheWordAndALineFeed) {
    Open();
    ExpectShownAndFiled("WARNING \n\n", [&] {
        Log().Show(TEST_STATUS_WARNING, "");
        Log().Show(TEST_STATUS_UNKNOWN, "");
    });
}

TEST_F(CConsoleOutMXLogTest, OnlyTheFirstLineOfATextHasTheWord) {
    Open();
    ExpectShownAndFiled("FAIL    one\ntwo\r\nthree\n\n", [&] {
        Log().Show(TEST_STATUS_FAIL, "one\ntwo\r\nthree\n");
    });
}

TEST_F(CConsoleOutMXLogTest, APercentSignIsNotADirective) {
    Open();
    ExpectShownAndFiled(
        "INFO    100% %s %n\n", [&] { Log().Show(TEST_STATUS_INFO, "100% %s %n"); });
}

TEST_F(CConsoleOutMXLogTest, ALongTextArrivesWhole) {
    Open();
    std::string const text(100000, 'x');
    ExpectShownAndFiled("INFO    " + text + '\n', [&] {
        EXPECT_EQ(Log().Show(TEST_STATUS_INFO, text.c_str()), TS_SUCCESS);
    });
}

TEST_F(CConsoleOutMXLogTest, TheLookIsIgnored) {
    Open();
    ExpectShownAndFiled("INFO    text\n", [&] {
        Log().InternalWrite(TEST_STATUS_INFO, "text", &CMXLog::DefaultFailFormat());
    });
}

TEST_F(CConsoleOutMXLogTest, ATrueTestWithoutEntriesShowsTheseLines) {
    Open();
    ExpectShownAndFiled(
        "INFO    Start time: Nov 14, 2026 - 17:08:36\r\n\n"
        "INFO    \nStop time: Nov 14, 2026 - 17:08:48\n"
        "INFO    Duration:  12 seconds.\n\n"
        "INFO    Stopping Test [ T1:\n     Number of: Fails (0); Aborts (0); Warnings (0) "
        "]\r\n\r\n\n",
        [&] {
            Log().StartTest("T1", 0);
            m_Clock.Advance(12);
            EXPECT_EQ(Log().StopTest(), TEST_STATUS_SUCCESS);
        });
}

TEST_F(CConsoleOutMXLogTest, ATestWithAFailureShowsTheseLines) {
    Open();
    ExpectShownAndFiled(
        "INFO    Start time: Nov 14, 2026 - 17:08:36\r\n\n"
        "WARNING careful\n"
        "FAIL    Test failed.\n"
        "INFO    \nStop time: Nov 14, 2026 - 17:08:36\n"
        "INFO    Duration:  0 seconds.\n\n"
        "INFO    Stopping Test [ T1:\n     Number of: Fails (1); Aborts (0); Warnings (1) "
        "]\r\n\r\n\n",
        [&] {
            Log().StartTest("T1", 0);
            Log().Write(TEST_STATUS_WARNING, "careful");
            Log().Write(TEST_STATUS_INFO, Verbose, "filtered");
            EXPECT_EQ(Log().StopTest(TEST_STATUS_FAIL), TEST_STATUS_FAIL);
        });
}

TEST_F(CConsoleOutMXLogTest, TheFileGrowsFromTestToTest) {
    m_File.Write("old\n");
    Open();
    Shown([&] {
        Log().Show(TEST_STATUS_INFO, "one");
        EXPECT_EQ(Log().Clear(), TS_SUCCESS);
        Log().Show(TEST_STATUS_INFO, "two");
    });
    EXPECT_EQ(m_File.Bytes(), InTextMode("old\nINFO    one\nINFO    two\n"));
}

TEST_F(CConsoleOutMXLogTest, ClearTouchesNoFile) {
    Open();
    FileCalls calls;
    EXPECT_EQ(Log().Clear(), TS_SUCCESS);
    EXPECT_EQ(calls.Take(), "");
}

TEST_F(CConsoleOutMXLogTest, WithoutANameStandardErrorAloneGetsTheEntries) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(
        Shown([&] {
            Open(nullptr);
            EXPECT_EQ(Log().GetLogName(), "stdout");
            EXPECT_EQ(Log().Show(TEST_STATUS_INFO, "text"), TS_SUCCESS);
        }),
        "INFO    text\n");
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(CConsoleOutMXLogTest, AFileThatCannotBeOpenedDoesNotDisturbTheConsole) {
    std::string const name = (std::filesystem::path(TempFile().Name()) / "log.txt").string();
    Open(name.c_str());
    EXPECT_EQ(Log().GetLogName(), "");
    EXPECT_EQ(
        Shown([&] { EXPECT_EQ(Log().Show(TEST_STATUS_FAIL, "text"), TS_SUCCESS); }),
        "FAIL    text\n");
}

TEST_F(CConsoleOutMXLogTest, AFileThatCannotBeWrittenDoesNotDisturbTheConsole) {
    Open();
    EXPECT_EQ(
        Shown([&] {
            StreamFault const fault(Fault::All, std::not_fn(IsStandardError));
            EXPECT_EQ(Log().Show(TEST_STATUS_FAIL, "text"), TS_SUCCESS);
            EXPECT_GT(fault.Count(), 0);
        }),
        "FAIL    text\n");
}

TEST_F(CConsoleOutMXLogTest, AConsoleThatCannotBeWrittenIsIgnored) {
    Open();
    {
        StreamFault const fault(Fault::All, IsStandardError);
        EXPECT_EQ(Log().Show(TEST_STATUS_FAIL, "text"), TS_SUCCESS);
        EXPECT_GT(fault.Count(), 0);
    }
    EXPECT_EQ(m_File.Bytes(), InTextMode("FAIL    text\n"));
}

TEST_F(CConsoleOutMXLogTest, EachEntryIsInTheFileBeforeTheCallReturns) {
    Open();
    Shown([&] {
        Log().Show(TEST_STATUS_INFO, "one");
        EXPECT_EQ(m_File.Bytes(), InTextMode("INFO    one\n"));
        Log().Show(TEST_STATUS_INFO, "two");
        EXPECT_EQ(m_File.Bytes(), InTextMode("INFO    one\nINFO    two\n"));
    });
}

TEST_F(CConsoleOutMXLogTest, TheConsoleComesBeforeTheFile) {
    Open();
    std::string streams;
    Shown([&] {
        StreamFault const spy(Fault::All, [&](std::FILE * stream) {
            char const shown = IsStandardError(stream) ? 'e' : 'f';
            if (!streams.ends_with(shown)) streams += shown;
            return false;
        });
        Log().Show(TEST_STATUS_INFO, "one");
        Log().Show(TEST_STATUS_INFO, "two");
    });
    EXPECT_EQ(streams, "efef");
}

// The end of the log.

TEST_F(CConsoleOutMXLogTest, TheEndOfTheLogWritesTheSummary) {
    Open();
    ExpectShownAndFiled(
        std::string(kStartLine)
            + "INFO    \nStop time: Nov 14, 2026 - 17:08:36\n"
              "INFO    Duration:  0 seconds.\n\n"
              "INFO    Stopping Test [ T1:\n     Number of: Fails (0); Aborts (0); Warnings (0) "
              "]\r\n\r\n\n"
              "INFO    TEST SUITE SUMMARY:\n    [ Fails (0); Aborts (0); Warnings (0) ]\n\n"
              "INFO    TEST RESULTS:\n    [ Passed (1); Failed (0) ]\n",
        [&] {
            Log().StartTest("T1", 0);
            Log().StopTest();
            m_Log.reset();
        });
    EXPECT_EQ(
        m_Bench.m_Suite.Meta(),
        (CTestSuiteLog::Pairs{
            {"Test-Pass", "T1 [Fails (0); Aborts (0); Warnings (0)]"},
            {"Suite-Result", "PASS [Fails (0); Aborts (0); Warnings (0)]"}}));
}

TEST_F(CConsoleOutMXLogTest, TheEndOfTheLogWritesASecondSummary) {
    Open();
    m_Bench.m_Suite.CurrentTestLog()->IncrInfo();
    std::string const summary =
        "INFO    TEST SUITE SUMMARY:\n    [ Fails (0); Aborts (0); Warnings (0) ]\n\n"
        "INFO    TEST RESULTS:\n    [ Passed (0); Failed (1) ]\n";
    ExpectShownAndFiled(summary + summary, [&] {
        EXPECT_EQ(Log().DumpSummaryCounts(), TS_SUCCESS);
        m_Log.reset();
    });
}

// What throws out of the summary finds a destructor, and no handler behind it.
TEST_F(CConsoleOutMXLogDeathTest, AnUnexpectedEntryDuringTheLastSummaryEndsTheProcess) {
    EXPECT_EXIT(
        {
            Open();
            m_Bench.m_Suite.CurrentTestLog()->IncrAborts();
            std::set_terminate([] { std::_Exit(77); });
            StreamFault const intrusion(Fault::All, [&](std::FILE *) {
                m_Bench.m_Suite.CurrentTestLog()->IncrUnknowns();
                return false;
            });
            m_Log.reset();
            std::_Exit(0);
        },
        testing::ExitedWithCode(77), "");
}

TEST_F(CConsoleOutMXLogTest, ALogWithNothingRecordedEndsInSilence) {
    Open();
    ExpectShownAndFiled("", [&] { m_Log.reset(); });
}

TEST_F(CConsoleOutMXLogTest, TheEndOfTheLogClosesTheFileAndResetsTheRunPhase) {
    Open();
    m_Bench.m_Suite.m_RunPhase = 3;
    FileCalls calls;
    m_Log.reset();
    EXPECT_EQ(calls.Take(), "close;");
    EXPECT_EQ(m_Bench.m_Suite.m_RunPhase, 0u);
    EXPECT_NE(std::fputs("Standard error is still open.\n", stderr), EOF);
}
