// What an entry costs: nothing from the heap when it is dropped, nor of its own when it is shown.
#include <cstdlib>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "log/CConsoleOutMXLog.h"
#include "log/CDummyMXLog.h"
#include "log/CRawTextMXLog.h"
#include "log/LogBench.h"
#include "log/Requests.h"
#include "log/TempFile.h"

namespace {

class LogAllocationTest : public testing::Test {
protected:
    LogAllocationTest() { m_Bench.m_Suite.OpenTest(true); }

    LogBench m_Bench;
    CDummyMXLog m_Log;
    std::string const m_Line = std::string(60, 'x');
    std::string const m_LongLine = std::string(1024, 'x');
};

} // namespace

TEST_F(LogAllocationTest, RequestsAreCounted) {
    void * volatile memory = nullptr;
    EXPECT_EQ(RequestsDuring([&] { memory = std::malloc(1); }), 1);
    EXPECT_EQ(RequestsDuring([&] { memory = std::realloc(memory, 2); }), 1);
    std::free(memory);
    EXPECT_EQ(RequestsDuring([&] { memory = std::calloc(1, 1); }), 1);
    std::free(memory);
    EXPECT_EQ(RequestsDuring([&] { memory = operator new(1); }), 1);
    operator delete(memory);
}

TEST_F(LogAllocationTest, AFilteredEntryAsksForNoMemory) {
    EXPECT_EQ(
        RequestsDuring([&] {
            m_Log.Write(TEST_STATUS_INFO, Verbose, "%s has %d ports", "hub", 4);
            m_Log.Write(TEST_STATUS_FAIL, Internal, "%1000d", 4);
        }),
        0);
    EXPECT_EQ(m_Log.TestStatus(), 0x84000001u);
}

TEST_F(LogAllocationTest, AnEntryWithLoggingOffAsksForNoMemory) {
    m_Log.DisableLogging();
    EXPECT_EQ(
        RequestsDuring([&] { m_Log.Write(TEST_STATUS_FAIL, "%s has %d ports", "hub", 4); }), 0);
    EXPECT_EQ(m_Log.TestStatus(), 0x80000001u);
}

TEST_F(LogAllocationTest, AShownEntryAsksForNoMemoryOfItsOwn) {
    // The thread's buffer comes with the first text that it has to hold.
    m_Log.Write(TEST_STATUS_INFO, "%s has %d ports", "hub", 4);
    TEST_STATUS shown = TEST_STATUS_NOT_LOGGED;
    TEST_STATUS failed = TEST_STATUS_NOT_LOGGED;
    EXPECT_EQ(
        RequestsDuring([&] {
            shown = m_Log.Write(TEST_STATUS_INFO, "%s has %d ports", "hub", 5);
            failed = m_Log.Write(TEST_STATUS_FAIL, "%04X", 0xABu);
        }),
        0);
    EXPECT_EQ(shown, TEST_STATUS_INFO);
    EXPECT_EQ(failed, TEST_STATUS_FAIL);
}

TEST_F(LogAllocationTest, AnEntryToAFileAsksForNoMemory) {
    TempFile const file;
    CRawTextMXLog log(file.Name().c_str());
    // The thread's buffer has grown by then.
    log.Write(TEST_STATUS_INFO, "%s", m_LongLine);
    EXPECT_EQ(
        RequestsDuring([&] {
            log.Write(TEST_STATUS_INFO, "%s", m_Line);
            log.Write(TEST_STATUS_INFO, "%s", m_LongLine);
        }),
        0);
    EXPECT_EQ(file.Bytes(), InTextMode(m_LongLine + '\n' + m_Line + '\n' + m_LongLine + '\n'));
}

TEST_F(LogAllocationTest, AnEntryToConsoleAndFileAsksForItsLineAlone) {
    TempFile const file;
    int requests = 0;
    testing::internal::CaptureStderr();
    {
        CConsoleOutMXLog log(file.Name().c_str());
        log.Write(TEST_STATUS_INFO, "%s", m_LongLine);
        requests = RequestsDuring([&] { log.Write(TEST_STATUS_INFO, "%s", m_LongLine); });
    }
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "INFO    " + m_LongLine + "\nINFO    " + m_LongLine
            + "\nINFO    TEST SUITE SUMMARY:\n    [ Fails (0); Aborts (0); Warnings (0) ]\n\n"
              "INFO    TEST RESULTS:\n    [ Passed (0); Failed (1) ]\n");
    EXPECT_EQ(requests, 1);
}

TEST_F(LogAllocationTest, AnEntryThatIsDroppedIsNotFormatted) {
    // The thread's buffer holds the last text that was formatted.
    char const * const last = FormatText(nullptr, nullptr, FormatPadding{0, 0}, "the last text");
    m_Log.Write(TEST_STATUS_INFO, Verbose, "%s", "filtered");
    EXPECT_STREQ(last, "the last text");
    m_Log.DisableLogging();
    m_Log.Write(TEST_STATUS_FAIL, "%s", "off");
    EXPECT_STREQ(last, "the last text");
}
