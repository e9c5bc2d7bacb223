// The filter for a scope.
#include "messages/CMessageFilterSetter.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "app/CAppState.h"
#include "messages/Message.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"

static_assert(std::is_empty_v<CMessageFilterSetter>);
static_assert(!std::is_polymorphic_v<CMessageFilterSetter>);

class CMessageFilterSetterTest : public testing::Test {
protected:
    CMessageFilterSetterTest() { CAppState::InitAppState(ApplicationFamilyDefault); }
    ~CMessageFilterSetterTest() override {
        CAppState::ClearMessageToFilter();
        CAppState::CleanupAppState();
    }

    static bool Reaches(unsigned int code) {
        CAppState::PushWindowsMessage(Counted(code));
        return CAppState::PopWindowsMessage() != nullptr;
    }
};

TEST_F(CMessageFilterSetterTest, OnlyItsCodeReachesTheQueueAndNothingAfterIt) {
    {
        CMessageFilterSetter const filter(WM_DEVICECHANGE);
        EXPECT_TRUE(Reaches(WM_DEVICECHANGE));
        EXPECT_FALSE(Reaches(WM_LBUTTONDOWN));
        EXPECT_FALSE(Reaches(0));
    }
    EXPECT_EQ(CAppState::MessageToFilter(), 0u);
    EXPECT_FALSE(Reaches(WM_DEVICECHANGE));
}

TEST_F(CMessageFilterSetterTest, ClickDoesNotSignalTheEventOfADeviceWait) {
    CMessageFilterSetter const filter(WM_DEVICECHANGE);
    CAppState::PushWindowsMessage(ConstructWindowsMessageOnHeap(nullptr, WM_LBUTTONDOWN, 1, 0));
    EXPECT_EQ(WaitForSingleObject(CAppState::MessageFilterEvent(), 0), WAIT_TIMEOUT);
}

TEST_F(CMessageFilterSetterTest, FirstOfTwoToEndClearsForBoth) {
    CMessageFilterSetter const outer(5);
    {
        CMessageFilterSetter const inner(6);
        EXPECT_EQ(CAppState::MessageToFilter(), 6u);
    }
    EXPECT_EQ(CAppState::MessageToFilter(), 0u);
}

TEST_F(CMessageFilterSetterTest, BothEndsDestroyWhatIsQueued) {
    unsigned const before = CountedMessage::gone;
    CAppState::PushWindowsMessage(Counted(0));
    {
        CMessageFilterSetter const filter(5);
        EXPECT_EQ(CountedMessage::gone, before + 1);
        CAppState::PushWindowsMessage(Counted(5));
        EXPECT_EQ(CountedMessage::gone, before + 1);
    }
    EXPECT_EQ(CountedMessage::gone, before + 2);
}

TEST_F(CMessageFilterSetterTest, AssignmentDoesNothing) {
    CMessageFilterSetter first(5);
    CMessageFilterSetter const second(6);
    EXPECT_EQ(&(first = second), &first);
    EXPECT_EQ(CAppState::MessageToFilter(), 6u);
}
