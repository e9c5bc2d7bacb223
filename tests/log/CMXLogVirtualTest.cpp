// A derived class hears of every step that it may override.
#include <gtest/gtest.h>

#include "log/LogFixture.h"

namespace {

class DerivedLog : public RecordingSink {
public:
    using RecordingSink::RecordingSink;

    TEST_STATUS CompleteTest(TEST_STATUS status) override {
        m_Completed.push_back(Hex(status));
        return RecordingSink::CompleteTest(status);
    }

    Lines m_Completed;

protected:
    std::string MakeStartTimeString() override { return "the start"; }
    std::string MakeStopTimeString() override { return "the stop"; }
};

class CMXLogVirtualTest : public LogTest {
protected:
    CMXLogVirtualTest() {
        auto log = std::make_unique<DerivedLog>(m_Journal);
        m_Derived = log.get();
        m_Log = std::move(log);
        m_Log->GlobalLogExists(true);
    }

    DerivedLog * m_Derived;
};

} // namespace

TEST_F(CMXLogVirtualTest, TheStartLineShowsTheDerivedTime) {
    Start();
    EXPECT_EQ(Written(), Lines{R"(INFO start "Start time: the start\r\n")"});
}

TEST_F(CMXLogVirtualTest, TheStopLineShowsTheDerivedTime) {
    Start();
    Written();
    Stop();
    EXPECT_EQ(Written().front(), R"(INFO passed "\nStop time: the stop")");
}

TEST_F(CMXLogVirtualTest, AStopIsCompletedByTheDerivedClass) {
    Start();
    EXPECT_EQ(Stop(TEST_STATUS_FAIL), TEST_STATUS_FAIL);
    EXPECT_EQ(m_Derived->m_Completed, Lines{"80000000"});
}
