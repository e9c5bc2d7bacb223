// The filter and the queue between a window's procedure and a test.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/CAppState.h"
#include "messages/Message.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "platform/Wrap.h"

MORVEX_WRAPPED(EnterCriticalSection)
MORVEX_WRAPPED(LeaveCriticalSection)
MORVEX_WRAPPED(SetEvent)

namespace {

using Lines = std::vector<std::string>;

// Says when it goes.
class Mortal : public CWindowsMessage {
public:
    Mortal(unsigned int code, std::function<void()> onEnd)
        : CWindowsMessage(nullptr, code, 0, 0, nullptr), m_OnEnd(std::move(onEnd)) {}
    ~Mortal() override { m_OnEnd(); }

private:
    std::function<void()> m_OnEnd;
};

} // namespace

class CAppStateMessagesTest : public testing::Test {
protected:
    CAppStateMessagesTest() { CAppState::InitAppState(ApplicationFamilyDefault); }
    ~CAppStateMessagesTest() override {
        if (CAppState::AppStateSet()) CAppState::ClearMessageToFilter();
        CAppState::CleanupAppState();
    }

    static void Push(unsigned int code, unsigned long long wParam = 0) {
        CAppState::PushWindowsMessage(Counted(code, wParam));
    }

    void PushMortal(unsigned int code, std::string const & name) {
        CAppState::PushWindowsMessage(
            {new Mortal(code, [this, name] { m_Lines.push_back(name); }),
             DeleteWindowsMessageFromHeap});
    }

    static bool IsSignalled() {
        return WaitForSingleObject(CAppState::MessageFilterEvent(), 0) == WAIT_OBJECT_0;
    }

    // The WPARAMs of everything that is queued, oldest first.
    static std::vector<unsigned long long> Drain() {
        std::vector<unsigned long long> taken;
        while (auto const message = CAppState::PopWindowsMessage())
            taken.push_back(message->WParam());
        return taken;
    }

    // How many messages `steps` destroy.
    template <typename Steps>
    static unsigned Destroyed(Steps const & steps) {
        unsigned const before = CountedMessage::gone;
        steps();
        return CountedMessage::gone - before;
    }

    Lines m_Lines;
};

TEST_F(CAppStateMessagesTest, FilterIsClearedAtFirstAndCanBeSet) {
    EXPECT_EQ(CAppState::MessageToFilter(), 0u);
    CAppState::SetMessageToFilter(0x219);
    EXPECT_EQ(CAppState::MessageToFilter(), 0x219u);
    CAppState::ClearMessageToFilter();
    EXPECT_EQ(CAppState::MessageToFilter(), 0u);
}

TEST_F(CAppStateMessagesTest, MessageOfAnotherCodeIsDestroyedAndTheEventStays) {
    CAppState::SetMessageToFilter(0x219);
    EXPECT_EQ(Destroyed([] { Push(0x201); }), 1u);
    EXPECT_FALSE(IsSignalled());
    EXPECT_EQ(CAppState::PopWindowsMessage(), nullptr);
    Push(0x219);
    EXPECT_EQ(Destroyed([] { Push(0x201); }), 1u);
    EXPECT_TRUE(IsSignalled());
}

TEST_F(CAppStateMessagesTest, MessagesComeOutInTheirOrder) {
    CAppState::SetMessageToFilter(0x219);
    Push(0x219, 1);
    Push(0x219, 2);
    auto const first = CAppState::PopWindowsMessage();
    auto const second = CAppState::PopWindowsMessage();
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->WParam(), 1u);
    EXPECT_EQ(second->WParam(), 2u);
    EXPECT_EQ(CAppState::PopWindowsMessage(), nullptr);
}

TEST_F(CAppStateMessagesTest, EventStaysSignalledBehindTheLastMessage) {
    CAppState::SetMessageToFilter(0x219);
    Push(0x219);
    Drain();
    EXPECT_TRUE(IsSignalled());
    CAppState::SetMessageToFilter(0x201);
    EXPECT_TRUE(IsSignalled());
    CAppState::ClearMessageToFilter();
    EXPECT_TRUE(IsSignalled());
    ResetEvent(CAppState::MessageFilterEvent());
    EXPECT_FALSE(IsSignalled());
}

TEST_F(CAppStateMessagesTest, EventOfEachMessageIsSignalledAnew) {
    CAppState::SetMessageToFilter(0x219);
    Push(0x219);
    ResetEvent(CAppState::MessageFilterEvent());
    Push(0x219);
    EXPECT_TRUE(IsSignalled());
}

TEST_F(CAppStateMessagesTest, SettingTheFilterDestroysWhatIsQueued) {
    CAppState::SetMessageToFilter(0x219);
    for (unsigned int const code : {0x201u, 0x219u, 0x219u, 0u}) {
        unsigned int const kept = CAppState::MessageToFilter();
        Push(kept);
        Push(kept);
        EXPECT_EQ(Destroyed([&] { CAppState::SetMessageToFilter(code); }), 2u);
        EXPECT_EQ(CAppState::PopWindowsMessage(), nullptr);
    }
}

TEST_F(CAppStateMessagesTest, QueuedMessagesGoFirstToLastBeforeTheFilterChanges) {
    CAppState::SetMessageToFilter(5);
    for (std::string const name : {"a", "b", "c"})
        CAppState::PushWindowsMessage(
            {new Mortal(
                 5,
                 [this, name] {
                     m_Lines.push_back(name + std::to_string(CAppState::MessageToFilter()));
                 }),
             DeleteWindowsMessageFromHeap});
    CAppState::SetMessageToFilter(6);
    EXPECT_EQ(m_Lines, (Lines{"a5", "b5", "c5"}));
}

TEST_F(CAppStateMessagesTest, MessageOfCodeZeroPassesAClearedFilter) {
    Push(0, 7);
    EXPECT_TRUE(IsSignalled());
    EXPECT_EQ(Drain(), std::vector<unsigned long long>{7});
    EXPECT_EQ(Destroyed([] { Push(1); }), 1u);
}

TEST_F(CAppStateMessagesTest, EmptyQueueGivesAnEmptyPointerWithTheDeleter) {
    auto const none = CAppState::PopWindowsMessage();
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(none.get_deleter(), &DeleteWindowsMessageFromHeap);
}

TEST_F(CAppStateMessagesTest, MessageGoesThroughTheDeleterThatItCameWith) {
    static int deleted;
    deleted = 0;
    CWindowsMessage message(nullptr, 5, 0, 0, nullptr);
    auto const count = [](CWindowsMessage *) { ++deleted; };
    CAppState::PushWindowsMessage({&message, count});
    EXPECT_EQ(deleted, 1);
    CAppState::SetMessageToFilter(5);
    CAppState::PushWindowsMessage({&message, count});
    EXPECT_EQ(deleted, 1);
    CAppState::ClearMessageToFilter();
    EXPECT_EQ(deleted, 2);
}

TEST_F(CAppStateMessagesTest, QueueOutlivesTheInstance) {
    CAppState::SetMessageToFilter(5);
    Push(5, 1);
    CAppState::CleanupAppState();
    CAppState::InitAppState(ApplicationFamilyDefault);
    EXPECT_EQ(CAppState::MessageToFilter(), 0u);
    EXPECT_FALSE(IsSignalled());
    EXPECT_EQ(Drain(), std::vector<unsigned long long>{1});
}

TEST_F(CAppStateMessagesTest, RefusedMessageGoesInsideTheCallWhenTheLockIsFree) {
    int depth = 0;
    Diversion const enter(wrapped_EnterCriticalSection, [&](CRITICAL_SECTION * section) {
        wrapped_EnterCriticalSection.Real(section);
        m_Lines.push_back("enter");
        ++depth;
    });
    Diversion const leave(wrapped_LeaveCriticalSection, [&](CRITICAL_SECTION * section) {
        --depth;
        m_Lines.push_back("leave");
        wrapped_LeaveCriticalSection.Real(section);
    });
    PushMortal(5, "gone");
    EXPECT_EQ(m_Lines, (Lines{"enter", "leave", "gone"}));
    EXPECT_EQ(depth, 0);
}

TEST_F(CAppStateMessagesTest, RefusedMessageIsGoneWhenTheCallReturns) {
    Message message(
        new Mortal(5, [this] { m_Lines.push_back("gone"); }), DeleteWindowsMessageFromHeap);
    // One expression: an argument's own end may come as late as that of the expression.
    CAppState::PushWindowsMessage(std::move(message)), m_Lines.push_back("returned");
    EXPECT_EQ(m_Lines, (Lines{"gone", "returned"}));
}

TEST_F(CAppStateMessagesTest, EventIsSignalledUnderTheLock) {
    Diversion const enter(wrapped_EnterCriticalSection, [&](CRITICAL_SECTION * section) {
        wrapped_EnterCriticalSection.Real(section);
        m_Lines.push_back("enter");
    });
    Diversion const leave(wrapped_LeaveCriticalSection, [&](CRITICAL_SECTION * section) {
        m_Lines.push_back("leave");
        wrapped_LeaveCriticalSection.Real(section);
    });
    Diversion const set(wrapped_SetEvent, [&](HANDLE event) {
        m_Lines.push_back(event == CAppState::MessageFilterEvent() ? "set" : "set another");
        return wrapped_SetEvent.Real(event);
    });
    Push(0);
    EXPECT_EQ(m_Lines, (Lines{"enter", "set", "leave"}));
    m_Lines.clear();
    CAppState::PopWindowsMessage();
    CAppState::PopWindowsMessage();
    EXPECT_EQ(m_Lines, (Lines{"enter", "leave", "enter", "leave"}));
}

TEST_F(CAppStateMessagesTest, EndOfAMessageMayUseTheQueue) {
    CAppState::SetMessageToFilter(5);
    CAppState::PushWindowsMessage(
        {new Mortal(5, [] { EXPECT_EQ(CAppState::PopWindowsMessage()->WParam(), 1u); }),
         DeleteWindowsMessageFromHeap});
    Push(5, 1);
    CAppState::ClearMessageToFilter();
    EXPECT_EQ(CAppState::PopWindowsMessage(), nullptr);
}
