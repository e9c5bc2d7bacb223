// Posted messages: their order, who takes them, and what is refused.
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Messaging.h"
#include "tests/platform/Host.h"
#include "tests/platform/TestWindow.h"

namespace {

constexpr UINT FIRST = WM_APP + 1;
constexpr UINT SECOND = WM_APP + 2;
constexpr UINT THIRD = WM_APP + 3;

using Numbers = std::vector<UINT>;

HWND const THREAD_MESSAGES = reinterpret_cast<HWND>(-1LL);

} // namespace

class PostMessageTest : public testing::Test {
protected:
    PostMessageTest() {
        RegisterTestClass();
        m_Window = MakeTestWindow();
        m_Other = MakeTestWindow();
    }
    ~PostMessageTest() override {
        DestroyWindow(m_Window);
        DestroyWindow(m_Other);
    }

    // The numbers of all messages that wait and that the filter admits, in the order of taking.
    static Numbers Drain(HWND window = nullptr, UINT first = 0, UINT last = 0) {
        Numbers numbers;
        MSG message;
        while (PeekMessageA(&message, window, first, last, PM_REMOVE)) {
            numbers.push_back(message.message);
        }
        return numbers;
    }

    static BOOL Peek(MSG & message, UINT remove) {
        return PeekMessageA(&message, nullptr, 0, 0, remove);
    }

    HWND m_Window;
    HWND m_Other;
};

TEST_F(PostMessageTest, MessageArrivesWhole) {
    auto const before = static_cast<DWORD>(GetTickCount64());
    EXPECT_TRUE(PostMessageA(m_Window, FIRST, ~WPARAM{0}, -5));
    MSG message{};
    ASSERT_TRUE(Peek(message, PM_REMOVE));
    EXPECT_EQ(message.hwnd, m_Window);
    EXPECT_EQ(message.message, FIRST);
    EXPECT_EQ(message.wParam, ~WPARAM{0});
    EXPECT_EQ(message.lParam, -5);
    EXPECT_LT(message.time - before, 10'000u);
}

TEST_F(PostMessageTest, MessagesComeInTheOrderOfPosting) {
    for (UINT const number : {SECOND, FIRST, THIRD, FIRST}) {
        PostMessageA(m_Window, number, 0, 0);
    }
    EXPECT_EQ(Drain(), (Numbers{SECOND, FIRST, THIRD, FIRST}));
}

TEST_F(PostMessageTest, PostingDoesNotRunTheProcedure) {
    bool hasRun = false;
    ThreadHandler() = [&](auto...) {
        hasRun = true;
        return LRESULT{0};
    };
    PostMessageA(m_Window, FIRST, 0, 0);
    EXPECT_FALSE(hasRun);
    Drain();
    EXPECT_FALSE(hasRun);
    ThreadHandler() = nullptr;
}

TEST_F(PostMessageTest, OtherThreadsPostToo) {
    std::thread([&] { EXPECT_TRUE(PostMessageA(m_Window, FIRST, 0, 0)); }).join();
    EXPECT_EQ(Drain(), Numbers{FIRST});
}

TEST_F(PostMessageTest, NullWindowIsTheCallingThreadsOwnQueue) {
    EXPECT_TRUE(PostMessageA(nullptr, FIRST, 3, 4));
    std::thread([] { EXPECT_EQ(Drain(), Numbers{}); }).join();
    MSG message{};
    ASSERT_TRUE(Peek(message, PM_REMOVE));
    EXPECT_EQ(message.hwnd, nullptr);
    EXPECT_EQ(message.message, FIRST);
    EXPECT_EQ(message.wParam, 3u);
    EXPECT_EQ(message.lParam, 4);
}

TEST_F(PostMessageTest, WindowThatIsGoneIsRefused) {
    HWND const gone = MakeTestWindow();
    DestroyWindow(gone);
    SetLastError(0);
    EXPECT_FALSE(PostMessageA(gone, FIRST, 0, 0));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_EQ(Drain(), Numbers{});
}

TEST_F(PostMessageTest, WindowOfAnEndedThreadIsRefused) {
    HWND gone = nullptr;
    std::thread([&] { gone = MakeTestWindow(); }).join();
    EXPECT_FALSE(PostMessageA(gone, FIRST, 0, 0));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST_F(PostMessageTest, MessagesEndWithTheirWindow) {
    PostMessageA(m_Other, FIRST, 0, 0);
    PostMessageA(m_Window, SECOND, 0, 0);
    DestroyWindow(m_Other);
    EXPECT_EQ(Drain(), Numbers{SECOND});
}

// The record lives only while a sender waits.
TEST_F(PostMessageTest, DeviceEventWithARecordIsForSendingOnly) {
    int record = 0;
    SetLastError(0);
    EXPECT_FALSE(
        PostMessageA(m_Window, WM_DEVICECHANGE, 0x8000, reinterpret_cast<LPARAM>(&record)));
    EXPECT_EQ(GetLastError(), ERROR_MESSAGE_SYNC_ONLY);
    EXPECT_TRUE(PostMessageA(m_Window, WM_DEVICECHANGE, 7, 0));
    EXPECT_EQ(Drain(), Numbers{WM_DEVICECHANGE});
}

TEST_F(PostMessageTest, QueueHoldsTenThousandMessages) {
    constexpr int LIMIT = 10'000;
    for (int i = 0; i < LIMIT; ++i) {
        ASSERT_TRUE(PostMessageA(m_Window, FIRST, 0, 0)) << i;
    }
    // Wine has no limit.
    if (!UnderWine()) {
        EXPECT_FALSE(PostMessageA(m_Window, SECOND, 0, 0));
        EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_QUOTA);
    }
    MSG message{};
    Peek(message, PM_REMOVE);
    EXPECT_TRUE(PostMessageA(m_Window, THIRD, 0, 0));
    auto const taken = Drain();
    EXPECT_GE(taken.size(), static_cast<std::size_t>(LIMIT));
    EXPECT_EQ(taken.back(), THIRD);
}

TEST_F(PostMessageTest, PeekLeavesTheMessageUnlessToldToRemoveIt) {
    PostMessageA(m_Window, FIRST, 0, 0);
    MSG message{};
    EXPECT_TRUE(Peek(message, PM_NOREMOVE));
    EXPECT_EQ(message.message, FIRST);
    EXPECT_TRUE(Peek(message, PM_REMOVE));
    EXPECT_FALSE(Peek(message, PM_REMOVE));
}

TEST_F(PostMessageTest, PeekAtNothingLeavesTheRecordUntouched) {
    MSG message{m_Other, THIRD, 1, 2, 3, {4, 5}};
    EXPECT_FALSE(Peek(message, PM_REMOVE));
    EXPECT_EQ(message.hwnd, m_Other);
    EXPECT_EQ(message.message, THIRD);
    EXPECT_EQ(message.wParam, 1u);
}

TEST_F(PostMessageTest, FilterByWindow) {
    PostMessageA(m_Window, FIRST, 0, 0);
    PostMessageA(nullptr, SECOND, 0, 0);
    PostMessageA(m_Other, THIRD, 0, 0);
    EXPECT_EQ(Drain(m_Other), Numbers{THIRD});
    EXPECT_EQ(Drain(THREAD_MESSAGES), Numbers{SECOND});
    EXPECT_EQ(Drain(), Numbers{FIRST});
}

TEST_F(PostMessageTest, FilterByNumberTakesBothLimits) {
    for (UINT const number : {FIRST, SECOND, THIRD}) {
        PostMessageA(m_Window, number, 0, 0);
    }
    EXPECT_EQ(Drain(nullptr, SECOND, THIRD), (Numbers{SECOND, THIRD}));
    EXPECT_EQ(Drain(nullptr, SECOND, THIRD), Numbers{});
    EXPECT_EQ(Drain(nullptr, FIRST, FIRST), Numbers{FIRST});
}

TEST_F(PostMessageTest, FilterThatNamesAWindowThatIsGoneFails) {
    HWND const gone = MakeTestWindow();
    DestroyWindow(gone);
    MSG message{};
    SetLastError(0);
    EXPECT_EQ(GetMessageA(&message, gone, 0, 0), -1);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_FALSE(PeekMessageA(&message, gone, 0, 0, PM_REMOVE));
}

TEST_F(PostMessageTest, GetWaitsForAPost) {
    std::thread poster([&] {
        Sleep(A_MOMENT);
        PostMessageA(m_Window, FIRST, 0, 0);
    });
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, FIRST);
    poster.join();
}

TEST_F(PostMessageTest, GetWaitsForWhatItsFilterAdmits) {
    PostMessageA(m_Window, FIRST, 0, 0);
    std::thread poster([&] {
        PostMessageA(m_Window, THIRD, 0, 0);
        Sleep(A_MOMENT);
        PostMessageA(m_Window, SECOND, 0, 0);
    });
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, SECOND, SECOND), 0);
    EXPECT_EQ(message.message, SECOND);
    EXPECT_EQ(Drain(), (Numbers{FIRST, THIRD}));
    poster.join();
}

TEST_F(PostMessageTest, QuitComesAfterThePostedMessages) {
    PostQuitMessage(-3);
    PostMessageA(m_Window, FIRST, 0, 0);
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, FIRST);
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.hwnd, nullptr);
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(static_cast<int>(message.wParam), -3);
    EXPECT_EQ(Drain(), Numbers{});
}

TEST_F(PostMessageTest, QuitPassesEveryFilter) {
    PostQuitMessage(1);
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, m_Window, FIRST, FIRST), 0);
    EXPECT_EQ(message.message, WM_QUIT);
}

TEST_F(PostMessageTest, QuitThatIsOnlyPeekedAtStays) {
    PostQuitMessage(1);
    MSG message{};
    EXPECT_TRUE(Peek(message, PM_NOREMOVE));
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(Drain(), Numbers{WM_QUIT});
}

TEST_F(PostMessageTest, QuitEndsThePumpOfItsThreadAlone) {
    std::thread([] { PostQuitMessage(1); }).join();
    EXPECT_EQ(Drain(), Numbers{});
}
