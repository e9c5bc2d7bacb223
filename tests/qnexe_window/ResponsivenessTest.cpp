// The window answers while much is written.
#include <algorithm>
#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/ResourceIds.h"
#include "qnexe_window/WindowChild.h"

namespace {

using Clock = std::chrono::steady_clock;

class ResponsivenessTest : public WindowChild {
protected:
    // Whether the window has answered in time.
    bool Answers() {
        auto const start = Clock::now();
        DWORD_PTR ignored = 0;
        bool const answered =
            SendMessageTimeoutW(Window().Handle(), WM_NULL, 0, 0, SMTO_NORMAL, 5'000, &ignored)
            != 0;
        m_Longest = std::max(m_Longest, Clock::now() - start);
        ++m_Questions;
        return answered;
    }

    Clock::duration m_Longest{};
    int m_Questions = 0;
};

TEST_F(ResponsivenessTest, TheWindowAnswersThroughoutARunOfTwentyThousandEntries) {
    OpenWithSuite("flooding");
    Window().Command(ID_RUN_START);
    RemoteWindow const save = Window().Child(ID_LOG_SAVE);
    bool answered = true;
    ASSERT_TRUE(WaitFor([&] {
        answered = answered && Answers();
        return save.IsEnabled();
    }));
    EXPECT_TRUE(answered);
    RecordProperty("LongestAnswerMicroseconds", std::to_string(m_Longest.count() / 1000));
    RecordProperty("Questions", m_Questions);
    std::wstring const log = Log().RichText();
    EXPECT_NE(log.find(L"entry 1\n"), std::wstring::npos);
    EXPECT_NE(log.find(L"entry 19999\nentry 20000\n"), std::wstring::npos);
    EXPECT_EQ(Close(), 0);
}

} // namespace
