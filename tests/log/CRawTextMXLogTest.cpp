// The sink that appends each entry to a text file.
#include "log/CRawTextMXLog.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "log/LogBench.h"
#include "log/StreamFaults.h"
#include "log/TempFile.h"
#include "log/TestClock.h"

namespace {

class RawSink : public CRawTextMXLog {
public:
    using CRawTextMXLog::CRawTextMXLog;
    using CRawTextMXLog::InternalWrite;

    TS_STATUS Show(char const * text, TEST_STATUS status = TEST_STATUS_INFO) {
        return InternalWrite(status, text, nullptr);
    }
};

class CRawTextMXLogTest : public testing::Test {
protected:
    CRawTextMXLogTest() { m_Bench.m_Suite.OpenTest(true); }

    void Open(char const * name) {
        m_Log.reset();
        m_Log = std::make_unique<RawSink>(name);
        m_Log->GlobalLogExists(true);
    }
    void Open() { Open(m_File.Name().c_str()); }
    RawSink & Log() { return *m_Log; }

    // What the log holds, line ends as the platform writes them.
    void ExpectFile(std::string const & text) { EXPECT_EQ(m_File.Bytes(), InTextMode(text)); }

    static std::string InMissingFolder() {
        return (std::filesystem::path(TempFile().Name()) / "log.txt").string();
    }

    LogBench m_Bench;
    TestClock m_Clock;
    TempFile m_File;
    std::unique_ptr<RawSink> m_Log;
};

} // namespace

TEST_F(CRawTextMXLogTest, TheFileIsOpenedForReadingAndAppending) {
    FileCalls calls;
    Open();
    EXPECT_EQ(calls.Take(), "open " + m_File.Name() + " at+;");
    EXPECT_EQ(Log().GetLogName(), m_File.Name());
}

TEST_F(CRawTextMXLogTest, AnEntryIsItsTextAndALineFeed) {
    Open();
    EXPECT_EQ(Log().Show("text"), TS_SUCCESS);
    EXPECT_EQ(Log().Show("a failure", TEST_STATUS_FAIL), TS_SUCCESS);
    EXPECT_EQ(Log().Show("no element", TEST_STATUS_UNKNOWN), TS_SUCCESS);
    ExpectFile("text\na failure\nno element\n");
}

TEST_F(CRawTextMXLogTest, LineBreaksAndPercentSignsPassUnchanged) {
    Open();
    EXPECT_EQ(Log().Show("one\ntwo\r\n100% %s\n"), TS_SUCCESS);
    ExpectFile("one\ntwo\r\n100% %s\n\n");
}

TEST_F(CRawTextMXLogTest, AnEmptyTextIsABareLineFeed) {
    Open();
    EXPECT_EQ(Log().Show(""), TS_SUCCESS);
    ExpectFile("\n");
}

TEST_F(CRawTextMXLogTest, ALongTextArrivesWhole) {
    Open();
    std::string const text(100000, 'x');
    EXPECT_EQ(Log().Show(text.c_str()), TS_SUCCESS);
    ExpectFile(text + '\n');
}

TEST_F(CRawTextMXLogTest, TextsOfEveryLengthArriveWhole) {
    Open();
    std::string expected;
    for (std::size_t const length :
         {1u, 63u, 64u, 510u, 511u, 512u, 1023u, 1024u, 2046u, 2047u, 2048u, 2049u, 4095u, 4096u,
          4097u, 8191u, 8192u}) {
        std::string const text(length, 'x');
        EXPECT_EQ(Log().Show(text.c_str()), TS_SUCCESS);
        expected += text + '\n';
    }
    ExpectFile(expected);
}

TEST_F(CRawTextMXLogTest, TheLookIsIgnored) {
    Open();
    EXPECT_EQ(
        Log().InternalWrite(TEST_STATUS_INFO, "text", &CMXLog::DefaultFailFormat()), TS_SUCCESS);
    ExpectFile("text\n");
}

TEST_F(CRawTextMXLogTest, EachEntryIsInTheFileBeforeTheCallReturns) {
    Open();
    for (std::string text; text.size() < 40; text += "entry\n") {
        ExpectFile(text);
        EXPECT_EQ(Log().Show("entry"), TS_SUCCESS);
    }
}

TEST_F(CRawTextMXLogTest, EntriesOfATestComeThroughTheLog) {
    Open();
    Log().Write(TEST_STATUS_INFO, "shown");
    Log().Write(TEST_STATUS_INFO, Verbose, "filtered");
    Log().Write(TEST_STATUS_FAIL, "failed");
    ExpectFile("shown\nfailed\n");
}

TEST_F(CRawTextMXLogTest, AnOldLogIsKeptAndGrows) {
    m_File.Write("old\n");
    Open();
    Log().Show("new");
    Open();
    Log().Show("newer");
    ExpectFile("old\nnew\nnewer\n");
}

TEST_F(CRawTextMXLogTest, TheStopOfATestEmptiesTheFile) {
    m_File.Write("old\n");
    Open();
    Log().StartTest("T1", 0);
    Log().Write(TEST_STATUS_INFO, "entry");
    ExpectFile("old\nStart time: Nov 14, 2026 - 17:08:36\r\n\nentry\n");
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_SUCCESS);
    ExpectFile("");
    Log().Write(TEST_STATUS_INFO, "later");
    ExpectFile("later\n");
}

// Clear.

TEST_F(CRawTextMXLogTest, ClearClosesTheFileAndOpensItEmpty) {
    Open();
    Log().Show("entry");
    FileCalls calls;
    EXPECT_EQ(Log().Clear(), TS_SUCCESS);
    EXPECT_EQ(calls.Take(), "close;open " + m_File.Name() + " wt;");
    ExpectFile("");
    EXPECT_EQ(Log().GetLogName(), m_File.Name());
    EXPECT_EQ(Log().Show("one"), TS_SUCCESS);
    EXPECT_EQ(Log().Show("two"), TS_SUCCESS);
    ExpectFile("one\ntwo\n");
}

TEST_F(CRawTextMXLogTest, AFileThatCannotBeOpenedAgainIsGoneForGood) {
    Open();
    {
        FileCalls calls;
        calls.m_OpenFails = true;
        EXPECT_EQ(Log().Clear(), TS_FILE_REOPEN_FAILED);
        EXPECT_EQ(calls.Take(), "close;open " + m_File.Name() + " wt;");
    }
    EXPECT_EQ(Log().GetLogName(), "");
    EXPECT_EQ(Log().Show("lost"), TS_NO_STREAM);
    EXPECT_EQ(Log().Clear(), TS_NO_STREAM);
    EXPECT_EQ(Log().Write(TEST_STATUS_INFO, "lost"), TEST_STATUS_INFO);
}

TEST_F(CRawTextMXLogTest, ATestWhoseFileCannotBeOpenedAgainStopsAllTheSame) {
    Open();
    Log().StartTest("T1", 0);
    FileCalls calls;
    calls.m_OpenFails = true;
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_SUCCESS);
}

// Without a file.

TEST_F(CRawTextMXLogTest, ALogWithoutANameShowsNothing) {
    FileCalls calls;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Open(nullptr);
    EXPECT_EQ(Log().GetLogName(), "stdout");
    EXPECT_EQ(Log().Show("text"), TS_SUCCESS);
    EXPECT_EQ(Log().Clear(), TS_SUCCESS);
    EXPECT_EQ(Log().GetLogName(), "stdout");
    m_Log.reset();
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(CRawTextMXLogTest, ALogWithoutANameOpensAndClosesNothing) {
    FileCalls calls;
    Open(nullptr);
    Log().Show("text");
    Log().Clear();
    m_Log.reset();
    EXPECT_EQ(calls.Take(), "");
    EXPECT_NE(std::puts("Standard output is still open."), EOF);
}

TEST_F(CRawTextMXLogTest, AFileThatCannotBeOpenedLeavesALogWithoutOne) {
    std::string const name = InMissingFolder();
    Open(name.c_str());
    EXPECT_EQ(Log().GetLogName(), "");
    EXPECT_EQ(Log().Show("lost"), TS_NO_STREAM);
    EXPECT_EQ(Log().Clear(), TS_NO_STREAM);
    EXPECT_EQ(Log().StartTest("T1", 0), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Log().Write(TEST_STATUS_FAIL, "lost"), TEST_STATUS_FAIL);
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_FAIL);
}

// Writes that fail.

TEST_F(CRawTextMXLogTest, AWriteThatFailsIsReportedAndTheNextEntryTriesAgain) {
    Open();
    {
        StreamFault const fault(Fault::All);
        EXPECT_EQ(Log().Show("lost"), TS_WRITE_FAILED);
        EXPECT_GT(fault.Count(), 0);
    }
    EXPECT_EQ(Log().GetLogName(), m_File.Name());
    EXPECT_EQ(Log().Show("kept"), TS_SUCCESS);
    m_Log.reset();
    EXPECT_TRUE(m_File.Bytes().ends_with(InTextMode("kept\n")));
}

TEST_F(CRawTextMXLogTest, EachFunctionThatFailsIsReported) {
    int failures = 0;
    for (Fault const function : {Fault::Put, Fault::PutCharacter, Fault::Write, Fault::Flush}) {
        Open();
        StreamFault const fault(function);
        bool const reported = Log().Show("text") == TS_WRITE_FAILED;
        EXPECT_EQ(reported, fault.Count() != 0) << static_cast<int>(function);
        failures += fault.Count();
    }
    EXPECT_GT(failures, 0);
}

TEST_F(CRawTextMXLogTest, TheLogIgnoresAWriteThatFails) {
    Open();
    StreamFault const fault(Fault::All);
    EXPECT_EQ(Log().StartTest("T1", 0), TEST_STATUS_SUCCESS);
    EXPECT_EQ(Log().Write(TEST_STATUS_WARNING, "lost"), TEST_STATUS_WARNING);
    EXPECT_EQ(Log().StopTest(), TEST_STATUS_SUCCESS);
}

// The end of the log.

TEST_F(CRawTextMXLogTest, TheEndOfTheLogClosesTheFileAndWritesNoSummary) {
    Open();
    Log().Write(TEST_STATUS_INFO, "entry");
    m_Bench.m_Suite.m_RunPhase = 3;
    FileCalls calls;
    m_Log.reset();
    EXPECT_EQ(calls.Take(), "close;");
    ExpectFile("entry\n");
    EXPECT_EQ(m_Bench.m_Suite.m_RunPhase, 0u);
}

TEST_F(CRawTextMXLogTest, TheLogKeepsACopyOfTheName) {
    std::string name = m_File.Name();
    Open(name.c_str());
    name.assign(name.size(), 'x');
    EXPECT_EQ(Log().GetLogName(), m_File.Name());
    Log().Show("entry");
    EXPECT_EQ(Log().Clear(), TS_SUCCESS);
    ExpectFile("");
}
