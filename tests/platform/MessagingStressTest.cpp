// Many threads at the same queues: nothing is lost, nothing changes places, nobody is left waiting.
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Messaging.h"
#include "tests/platform/TestWindow.h"

namespace {

constexpr UINT RING = WM_APP + 20;
constexpr UINT DONE = WM_APP + 21;

void OnThreads(int count, std::function<void(int)> const & work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back(work, i);
    }
    for (auto & thread : threads) {
        thread.join();
    }
}

} // namespace

TEST(MessagingStressTest, EveryPostersMessagesArriveInOrder) {
    constexpr int POSTERS = 4;
    constexpr int EACH = 2'000;
    RegisterTestClass();
    HWND const window = MakeTestWindow();
    std::vector<LPARAM> next(POSTERS, 0);
    int misplaced = 0;
    ThreadHandler() = [&](HWND, UINT message, WPARAM poster, LPARAM number) {
        if (message == RING) {
            misplaced += next[poster]++ != number;
        }
        return LRESULT{0};
    };
    std::thread posters([&] {
        OnThreads(POSTERS, [&](int poster) {
            for (int i = 0; i < EACH; ++i) {
                PostMessageA(window, RING, static_cast<WPARAM>(poster), i);
            }
        });
        PostMessageA(window, DONE, 0, 0);
    });
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0 && message.message != DONE) {
        DispatchMessageA(&message);
    }
    posters.join();
    EXPECT_EQ(next, std::vector<LPARAM>(POSTERS, EACH));
    EXPECT_EQ(misplaced, 0);
    ThreadHandler() = nullptr;
    DestroyWindow(window);
}

TEST(MessagingStressTest, EverySenderGetsItsOwnAnswer) {
    constexpr int SENDERS = 4;
    constexpr int EACH = 500;
    WindowThread const host([](HWND, UINT, WPARAM wParam, LPARAM lParam) {
        return static_cast<LRESULT>(wParam) * 100'000 + lParam;
    });
    std::atomic<int> right = 0;
    OnThreads(SENDERS, [&](int sender) {
        for (int i = 0; i < EACH; ++i) {
            right += SendMessageA(host.Window(), RING, static_cast<WPARAM>(sender), i)
                     == sender * 100'000 + i;
        }
    });
    EXPECT_EQ(right, SENDERS * EACH);
}

// Two window threads send to each other all the time; each must serve the other while it waits.
TEST(MessagingStressTest, ThreadsThatSendToEachOtherNeverLock) {
    constexpr int ROUNDS = 300;
    std::atomic<HWND> windows[2] = {nullptr, nullptr};
    std::atomic<int> served = 0;
    auto const handlerOf = [&](int self) {
        return [&, self](HWND, UINT message, WPARAM rounds, LPARAM) {
            ++served;
            for (WPARAM i = 0; message == DONE && i < rounds; ++i) {
                SendMessageA(windows[1 - self], RING, 0, 0);
            }
            return LRESULT{0};
        };
    };
    {
        WindowThread const first(handlerOf(0));
        WindowThread const second(handlerOf(1));
        windows[0] = first.Window();
        windows[1] = second.Window();
        OnThreads(2, [&](int i) { SendMessageA(windows[i], DONE, ROUNDS, 0); });
    }
    // The two starts, the rounds, and WM_DESTROY is heard by nobody: the pump has ended.
    EXPECT_EQ(served, 2 + 2 * ROUNDS);
}

TEST(MessagingStressTest, EndingWindowsLeaveNoSenderWaiting) {
    constexpr int WINDOWS = 50;
    std::atomic<HWND> current = nullptr;
    std::atomic<bool> isOver = false;
    RegisterTestClass();
    std::thread sender([&] {
        while (!isOver) {
            SendMessageA(current, RING, 0, 0);
            PostMessageA(current, RING, 0, 0);
            Sleep(0);
        }
    });
    for (int i = 0; i < WINDOWS; ++i) {
        HWND const window = MakeTestWindow();
        current = window;
        MSG message{};
        for (int peeks = 0; peeks < i % 7; ++peeks) {
            PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);
            Sleep(0);
        }
        DestroyWindow(window);
    }
    isOver = true;
    sender.join();
    EXPECT_FALSE(IsWindow(current));
}
