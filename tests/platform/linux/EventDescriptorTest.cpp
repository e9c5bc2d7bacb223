// What events are off Windows: descriptors of the process, for event loops to wait on.
#include <atomic>
#include <csignal>
#include <thread>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>

#include <gtest/gtest.h>

#include "platform/Synchronization.h"
#include "tests/platform/linux/NoMoreDescriptors.h"

namespace {

bool IsReadable(int descriptor) {
    pollfd readable{descriptor, POLLIN, 0};
    return poll(&readable, 1, 0) == 1;
}

class ManualResetEvent {
public:
    ManualResetEvent() : handle(CreateEventA(nullptr, TRUE, FALSE, nullptr)) {}
    ManualResetEvent(ManualResetEvent const &) = delete;
    ManualResetEvent & operator=(ManualResetEvent const &) = delete;
    ~ManualResetEvent() { CloseHandle(handle); }

    HANDLE const handle;
};

void DoNothing(int) {}

} // namespace

TEST(EventDescriptorTest, IsReadableWhileTheEventIsSet) {
    ManualResetEvent const event;
    int const descriptor = MorvexEventDescriptor(event.handle);
    ASSERT_GE(descriptor, 0);
    EXPECT_FALSE(IsReadable(descriptor));
    SetEvent(event.handle);
    EXPECT_TRUE(IsReadable(descriptor));
    WaitForSingleObject(event.handle, 0);
    EXPECT_TRUE(IsReadable(descriptor));
    ResetEvent(event.handle);
    EXPECT_FALSE(IsReadable(descriptor));
}

TEST(EventDescriptorTest, SettingASetEventCostsNoWrite) {
    ManualResetEvent const event;
    for (int i = 0; i < 3; ++i) {
        SetEvent(event.handle);
    }
    eventfd_t written = 0;
    ASSERT_EQ(eventfd_read(MorvexEventDescriptor(event.handle), &written), 0);
    EXPECT_EQ(written, 1u);
}

TEST(EventDescriptorTest, WhatIsNoEventHasNone) {
    EXPECT_EQ(MorvexEventDescriptor(nullptr), -1);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST(EventDescriptorTest, HandleIsNotGivenOutAgain) {
    HANDLE const first = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(first);
    ManualResetEvent const second;
    EXPECT_NE(second.handle, first);
    EXPECT_FALSE(SetEvent(first));
}

TEST(EventDescriptorTest, EventIsNullWhenNoDescriptorIsLeft) {
    NoMoreDescriptors const none;
    EXPECT_EQ(CreateEventA(nullptr, TRUE, FALSE, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
}

TEST(EventDescriptorTest, NameIsRefused) {
    EXPECT_EQ(CreateEventA(nullptr, TRUE, FALSE, "name"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(EventDescriptorTest, SignalOfTheSystemDoesNotEndAWait) {
    struct sigaction interrupt {};
    interrupt.sa_handler = DoNothing;
    sigaction(SIGUSR1, &interrupt, nullptr);
    ManualResetEvent const event;
    std::atomic<DWORD> result = WAIT_FAILED;
    std::thread waiter([&] { result = WaitForSingleObject(event.handle, 10'000); });
    for (int i = 0; i < 5; ++i) {
        Sleep(10);
        pthread_kill(waiter.native_handle(), SIGUSR1);
    }
    EXPECT_EQ(result, WAIT_FAILED);
    SetEvent(event.handle);
    waiter.join();
    EXPECT_EQ(result, WAIT_OBJECT_0);
}
