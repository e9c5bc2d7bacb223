// Files on a device that is full.
#include <gtest/gtest.h>

#include "log/CConsoleOutMXLog.h"
#include "log/CRawTextMXLog.h"
#include "log/LogBench.h"

namespace {

constexpr char kFull[] = "/dev/full";

template <typename Sink>
class Exposed : public Sink {
public:
    using Sink::InternalWrite;
    using Sink::Sink;
};

class FullDeviceTest : public testing::Test {
protected:
    LogBench m_Bench;
};

} // namespace

TEST_F(FullDeviceTest, EachEntryIsReportedAsNotWritten) {
    Exposed<CRawTextMXLog> log(kFull);
    EXPECT_EQ(log.GetLogName(), kFull);
    EXPECT_EQ(log.InternalWrite(TEST_STATUS_INFO, "one", nullptr), TS_WRITE_FAILED);
    EXPECT_EQ(log.InternalWrite(TEST_STATUS_INFO, "", nullptr), TS_WRITE_FAILED);
    EXPECT_EQ(log.Write(TEST_STATUS_INFO, "two"), TEST_STATUS_INFO);
    EXPECT_EQ(log.GetLogName(), kFull);
}

TEST_F(FullDeviceTest, TheConsoleIsNotDisturbed) {
    testing::internal::CaptureStderr();
    Exposed<CConsoleOutMXLog> log(kFull);
    EXPECT_EQ(log.InternalWrite(TEST_STATUS_FAIL, "one", nullptr), TS_SUCCESS);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "FAIL    one\n");
}
