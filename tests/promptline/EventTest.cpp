// The event of a dialog.
#include <gtest/gtest.h>

#include "siblings/Promptline.h"

namespace {

TEST(CMXGuiEventTest, IsSignalledFromTheStartIfAsked) {
    EXPECT_EQ(CMXGuiEvent(0).WaitOnEvent(0), TS_DIALOG_TIMED_OUT);
    EXPECT_EQ(CMXGuiEvent(1).WaitOnEvent(0), TS_SUCCESS);
}

TEST(CMXGuiEventTest, StaysSignalledUntilItIsCleared) {
    CMXGuiEvent event(0);
    EXPECT_EQ(event.SignalEvent(), TS_SUCCESS);
    EXPECT_EQ(event.WaitOnEvent(0xFFFFFFFF), TS_SUCCESS);
    EXPECT_EQ(event.WaitOnEvent(0), TS_SUCCESS);
    EXPECT_EQ(event.ClearEvent(), TS_SUCCESS);
    EXPECT_EQ(event.WaitOnEvent(1), TS_DIALOG_TIMED_OUT);
}

} // namespace
