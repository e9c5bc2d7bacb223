// A window that ends between the moment a poster or sender has found it and the moment its message
// reaches the queue. The platform's own sources are linked, since no caller can hold that moment.
#include <memory>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

#include "platform/linux/MessageQueue.h"
#include "platform/linux/Windows.h"
#include "tests/platform/TestWindow.h"

namespace {

constexpr UINT RING = WM_APP + 20;

class WindowRaceTest : public testing::Test {
protected:
    // What another thread has found of a window that lives no more.
    static std::shared_ptr<Window> FoundBeforeItsEnd() {
        RegisterTestClass();
        HWND const handle = MakeTestWindow();
        auto found = LookUpWindow(handle);
        DestroyWindow(handle);
        return found;
    }

    static std::shared_ptr<Window> FoundBeforeTheEndOfItsThread() {
        RegisterTestClass();
        std::shared_ptr<Window> found;
        std::thread([&] { found = LookUpWindow(MakeTestWindow()); }).join();
        return found;
    }

    static DWORD Post(std::shared_ptr<Window> const & window) {
        return window->queue->Post(window.get(), {window->handle, RING, 0, 0, 0, {0, 0}});
    }

    static bool Deliver(std::shared_ptr<Window> const & window) {
        auto const sender = std::make_shared<MessageQueue>();
        SentMessage sent{window, RING, 0, 0, sender, std::nullopt, false};
        return window->queue->Deliver(sent);
    }
};

} // namespace

TEST_F(WindowRaceTest, PostReachesNoQueue) {
    EXPECT_EQ(Post(FoundBeforeItsEnd()), ERROR_INVALID_WINDOW_HANDLE);
    MSG message{};
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
}

TEST_F(WindowRaceTest, SenderDoesNotWait) { EXPECT_FALSE(Deliver(FoundBeforeItsEnd())); }

TEST_F(WindowRaceTest, QueueOfAnEndedThreadTakesNothing) {
    auto const window = FoundBeforeTheEndOfItsThread();
    EXPECT_EQ(Post(window), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_FALSE(Deliver(window));
}

TEST_F(WindowRaceTest, WindowThatStaysTakesBoth) {
    RegisterTestClass();
    HWND const handle = MakeTestWindow();
    auto const window = LookUpWindow(handle);
    EXPECT_EQ(Post(window), ERROR_SUCCESS);
    auto const sender = std::make_shared<MessageQueue>();
    SentMessage sent{window, RING, 0, 0, sender, std::nullopt, false};
    EXPECT_TRUE(window->queue->Deliver(sent));
    window->queue->ServeSentMessages();
    EXPECT_TRUE(sent.isClosed);
    EXPECT_EQ(sent.result, 0);
    DestroyWindow(handle);
}
