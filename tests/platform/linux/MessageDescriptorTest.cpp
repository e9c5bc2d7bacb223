// What a queue is off Windows: a descriptor for a host's own event loop, and a box that is a line.
#include <atomic>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>

#include <gtest/gtest.h>

#include "platform/Messaging.h"
#include "tests/platform/TestWindow.h"
#include "tests/platform/linux/NoMoreDescriptors.h"

namespace {

constexpr UINT RING = WM_APP + 20;
constexpr UINT OTHER = WM_APP + 21;

bool IsReadable(int descriptor, int timeout = 0) {
    pollfd readable{descriptor, POLLIN, 0};
    return poll(&readable, 1, timeout) == 1;
}

bool MessageWaits() { return IsReadable(MorvexMessageDescriptor()); }

bool Take() {
    MSG message{};
    return PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE;
}

// The one descriptor that the queue's own watches: its eventfd. -1: there are more or fewer.
int EventOfTheQueue() {
    std::ifstream file("/proc/self/fdinfo/" + std::to_string(MorvexMessageDescriptor()));
    int found = -1;
    for (std::string line; std::getline(file, line);) {
        int watched = -1;
        if (std::sscanf(line.c_str(), "tfd: %d", &watched) == 1) {
            found = found == -1 ? watched : -1;
        }
    }
    return found;
}

double ProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
           + static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

} // namespace

class MessageDescriptorTest : public testing::Test {
protected:
    MessageDescriptorTest() {
        RegisterTestClass();
        m_Window = MakeTestWindow();
    }
    ~MessageDescriptorTest() override {
        ThreadHandler() = nullptr;
        DestroyWindow(m_Window);
    }

    void Post(UINT message = RING) const { EXPECT_TRUE(PostMessageA(m_Window, message, 0, 0)); }

    HWND m_Window;
};

TEST_F(MessageDescriptorTest, IsReadableWhileAPostedMessageWaits) {
    EXPECT_FALSE(MessageWaits());
    Post();
    Post();
    EXPECT_TRUE(MessageWaits());
    EXPECT_TRUE(Take());
    EXPECT_TRUE(MessageWaits());
    EXPECT_TRUE(Take());
    EXPECT_FALSE(MessageWaits());
}

TEST_F(MessageDescriptorTest, IsReadableWhileQuitWaits) {
    PostQuitMessage(0);
    EXPECT_TRUE(MessageWaits());
    EXPECT_TRUE(Take());
    EXPECT_FALSE(MessageWaits());
}

TEST_F(MessageDescriptorTest, IsReadableWhileASenderWaits) {
    ThreadHandler() = [](auto...) { return LRESULT{3}; };
    LRESULT result = 0;
    std::thread sender([&] { result = SendMessageA(m_Window, RING, 0, 0); });
    EXPECT_TRUE(IsReadable(MorvexMessageDescriptor(), 10'000));
    EXPECT_FALSE(Take());
    EXPECT_FALSE(MessageWaits());
    sender.join();
    EXPECT_EQ(result, 3);
}

TEST_F(MessageDescriptorTest, EndOfAWindowTakesItsMessagesAway) {
    Post();
    DestroyWindow(m_Window);
    EXPECT_FALSE(MessageWaits());
}

TEST_F(MessageDescriptorTest, PostingToAQueueThatShowsItCostsNoWrite) {
    Post();
    Post();
    Post();
    eventfd_t written = 0;
    ASSERT_EQ(eventfd_read(EventOfTheQueue(), &written), 0);
    EXPECT_EQ(written, 1u);
}

TEST_F(MessageDescriptorTest, StaysTheSameForAThreadAndDiffersFromOthers) {
    int const mine = MorvexMessageDescriptor();
    int others = mine;
    std::thread([&] { others = MorvexMessageDescriptor(); }).join();
    EXPECT_GE(mine, 0);
    EXPECT_NE(others, mine);
    EXPECT_EQ(MorvexMessageDescriptor(), mine);
}

TEST_F(MessageDescriptorTest, MessagesThatCameBeforeItAreShown) {
    std::thread([] {
        PostMessageA(nullptr, RING, 0, 0);
        EXPECT_TRUE(MessageWaits());
    }).join();
}

TEST_F(MessageDescriptorTest, WhatAFilterHoldsBackIsShownAfterTheWait) {
    Post(OTHER);
    std::thread poster([&] {
        Sleep(A_MOMENT);
        Post(RING);
    });
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, RING, RING), 0);
    EXPECT_TRUE(MessageWaits());
    poster.join();
}

TEST_F(MessageDescriptorTest, WaitBehindAFilterCostsNoProcessorTime) {
    Post(OTHER);
    std::thread poster([&] {
        Sleep(200);
        Post(RING);
    });
    double const before = ProcessorSeconds();
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, RING, RING), 0);
    EXPECT_LT(ProcessorSeconds() - before, 0.1);
    poster.join();
}

TEST(MessageQueueTest, HandleOfAWindowIsNeverGivenOutAgain) {
    RegisterTestClass();
    HWND last = MakeTestWindow();
    for (int i = 0; i < 1'000; ++i) {
        DestroyWindow(last);
        HWND const next = MakeTestWindow();
        ASSERT_GT(next, last);
        last = next;
    }
    DestroyWindow(last);
}

TEST(MessageQueueTest, ClassNeedsANameAndAProcedure) {
    auto const errorOf = [](WNDCLASSA const * windowClass) {
        SetLastError(0);
        EXPECT_EQ(RegisterClassA(windowClass), 0);
        return GetLastError();
    };
    WNDCLASSA unnamed{};
    unnamed.lpfnWndProc = DefWindowProcA;
    WNDCLASSA idle{};
    idle.lpszClassName = "Idle";
    EXPECT_EQ(errorOf(&unnamed), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(errorOf(&idle), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(errorOf(nullptr), ERROR_INVALID_PARAMETER);
}

TEST(MessageQueueTest, DispatchRunsNoProcedureOfAnotherThread) {
    bool hasRun = false;
    WindowThread const host([&](auto...) {
        hasRun = true;
        return LRESULT{1};
    });
    MSG const message{host.Window(), RING, 0, 0, 0, {0, 0}};
    EXPECT_EQ(DispatchMessageA(&message), 0);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(hasRun);
}

TEST(MessageQueueTest, ThreadWithoutADescriptorHasNoWindow) {
    RegisterTestClass();
    std::thread([] {
        NoMoreDescriptors const none;
        EXPECT_EQ(MakeTestWindow(), nullptr);
        EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
        MSG message{};
        EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), -1);
        EXPECT_EQ(MorvexMessageDescriptor(), -1);
    }).join();
}

TEST(MessageQueueTest, ProcedureThatThrowsLetsItsSenderGo) {
    RegisterTestClass();
    std::atomic<HWND> window = nullptr;
    std::thread owner([&] {
        ThreadHandler() = [](auto...) -> LRESULT { throw 1; };
        window = MakeTestWindow();
        MSG message{};
        EXPECT_THROW(GetMessageA(&message, nullptr, 0, 0), int);
        EXPECT_EQ(InSendMessage(), FALSE);
        ThreadHandler() = nullptr;
    });
    while (window == nullptr) {
        Sleep(1);
    }
    EXPECT_EQ(SendMessageA(window, RING, 0, 0), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    owner.join();
}

namespace {

struct SendsAtTheEndOfItsThread {
    ~SendsAtTheEndOfItsThread() {
        if (target) {
            result = SendMessageA(target, RING, 0, 0);
            MakeTestWindow();
        }
    }

    HWND target = nullptr;
    static inline std::atomic<LRESULT> result = 0;
};

// Built before the thread's queue is and therefore destroyed after it.
thread_local SendsAtTheEndOfItsThread t_Last;

} // namespace

TEST(MessageQueueTest, ThreadThatEndsStillSends) {
    WindowThread const host([](auto...) { return LRESULT{11}; });
    std::thread([&] {
        t_Last.target = host.Window();
        PostMessageA(nullptr, RING, 0, 0);
    }).join();
    EXPECT_EQ(SendsAtTheEndOfItsThread::result, 11);
}

TEST(MessageBoxTest, IsALineOnStandardError) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(MessageBoxA(nullptr, "Text", "Title", MB_OK | MB_ICONERROR), IDOK);
    EXPECT_EQ(MessageBoxA(nullptr, "Text", nullptr, MB_OK), IDOK);
    EXPECT_EQ(MessageBoxA(nullptr, nullptr, "Title", MB_OK), IDOK);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Title: Text\nText\nTitle: \n");
}
