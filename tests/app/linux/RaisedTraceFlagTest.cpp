// A tracer that listens to a probe switches the trace provider on without calling anybody.
#include <gtest/gtest.h>

#include <tuple>

#include "app/TraceProvider.h"

namespace {

auto WhatIsOn() {
    return std::tuple(
        TraceProvider::IsOn(TraceFlag::Library), TraceProvider::IsOn(TraceFlag::Output),
        TraceProvider::IsOn(TraceFlag::Log));
}

TEST(RaisedTraceFlagTest, AListenerTurnsItsOwnFlagOnForAsLongAsItListens) {
    EXPECT_EQ(WhatIsOn(), std::tuple(false, false, false));
    ++*g_MorvexTraceSemaphores.log;
    EXPECT_EQ(WhatIsOn(), std::tuple(false, false, true));
    ++*g_MorvexTraceSemaphores.library;
    --*g_MorvexTraceSemaphores.log;
    EXPECT_EQ(WhatIsOn(), std::tuple(true, false, false));
    --*g_MorvexTraceSemaphores.library;
    EXPECT_EQ(WhatIsOn(), std::tuple(false, false, false));
}

} // namespace
