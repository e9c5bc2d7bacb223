// Many messages from one thread to another: none lost, none destroyed twice, in order.
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "app/CAppState.h"
#include "messages/CWMLButtonDown.h"
#include "messages/Message.h"
#include "platform/Synchronization.h"

namespace {

constexpr unsigned int kCode = 0x219;
constexpr unsigned kMessages = MESSAGES_TO_CROSS;

// A long wait: nothing here takes as long, unless something is wrong.
constexpr DWORD kPatience = 60'000;

// Takes what is there; the event is reset before, so that nothing is overlooked.
unsigned Drain(unsigned long long & next) {
    ResetEvent(CAppState::MessageFilterEvent());
    unsigned taken = 0;
    while (auto const message = CAppState::PopWindowsMessage()) {
        EXPECT_EQ(message->WParam(), next);
        ++next;
        ++taken;
    }
    return taken;
}

} // namespace

class MessageThreadsTest : public testing::Test {
protected:
    MessageThreadsTest() { CAppState::InitAppState(ApplicationFamilyDefault); }
    ~MessageThreadsTest() override {
        CAppState::ClearMessageToFilter();
        CAppState::CleanupAppState();
    }
};

TEST_F(MessageThreadsTest, ManyMessagesCrossInOrderAndEachGoesOnce) {
    CAppState::SetMessageToFilter(kCode);
    unsigned const before = CountedMessage::gone;
    std::thread window([] {
        for (unsigned i = 0; i != kMessages; ++i) {
            CAppState::PushWindowsMessage(Counted(kCode, i));
            if (i % 4 == 0) CAppState::PushWindowsMessage(Counted(kCode + 1, i));
        }
    });
    unsigned taken = 0;
    unsigned long long next = 0;
    while (taken != kMessages) {
        ASSERT_EQ(WaitForSingleObject(CAppState::MessageFilterEvent(), kPatience), WAIT_OBJECT_0);
        taken += Drain(next);
    }
    window.join();
    EXPECT_EQ(CAppState::PopWindowsMessage(), nullptr);
    EXPECT_EQ(CountedMessage::gone - before, kMessages + kMessages / 4);
}

TEST_F(MessageThreadsTest, FilterThatChangesMeanwhileDestroysEachMessageOnce) {
    constexpr unsigned many = 100'000;
    unsigned const before = CountedMessage::gone;
    std::thread window([] {
        for (unsigned i = 0; i != many; ++i)
            CAppState::PushWindowsMessage(Counted(kCode + i % 2));
    });
    for (unsigned i = 0; i != 1000; ++i) {
        CAppState::SetMessageToFilter(kCode + i % 3);
        CAppState::PopWindowsMessage();
        EXPECT_GE(CAppState::MessageToFilter(), kCode);
    }
    window.join();
    CAppState::ClearMessageToFilter();
    EXPECT_EQ(CountedMessage::gone - before, many);
}

TEST_F(MessageThreadsTest, OneMessageDescribesItselfOnManyThreads) {
    CWMLButtonDown const click(nullptr, 0x201, 0x7F, 0);
    std::string const expected = click.GetDetailsStr().get();
    std::thread other([&] {
        for (int i = 0; i != 1000; ++i)
            ASSERT_EQ(click.GetDetailsStr().get(), expected);
    });
    for (int i = 0; i != 1000; ++i)
        ASSERT_EQ(click.GetDetailsStr().get(), expected);
    other.join();
}
