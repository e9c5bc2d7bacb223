// Registering a trace provider, the enable queries and sending while nobody listens.
#include "platform/Tracing.h"

#include <cstddef>
#include <cstdint>

#include <gtest/gtest.h>

#include "tests/platform/Host.h"

namespace {

constexpr GUID PROVIDER = {
    0x1b1d2a5c, 0x6f0e, 0x4c83, {0x91, 0x5e, 0x20, 0x7d, 0x3c, 0xaa, 0x48, 0x06}};

int g_Calls = 0;

ULONG WINAPI Control(WMIDPREQUESTCODE, void *, ULONG *, void *) {
    ++g_Calls;
    return ERROR_SUCCESS;
}

ULONG Register(WMIDPREQUEST control, GUID const * guid, TRACEHANDLE * handle) {
    TRACE_GUID_REGISTRATION traceClass{&PROVIDER, nullptr};
    return RegisterTraceGuidsA(control, nullptr, guid, 1, &traceClass, nullptr, nullptr, handle);
}

constexpr TRACEHANDLE PRESET = 0x1234567890;

} // namespace

TEST(TracingTest, RegisteredProviderHasAHandleToWithdrawIt) {
    TRACEHANDLE handle = PRESET;
    EXPECT_EQ(Register(Control, &PROVIDER, &handle), ULONG{ERROR_SUCCESS});
    // Wine answers with success and leaves the handle as it was.
    if (!UnderWine()) {
        EXPECT_NE(handle, PRESET);
        EXPECT_NE(handle, 0u);
    }
    EXPECT_EQ(UnregisterTraceGuids(handle), ULONG{ERROR_SUCCESS});
}

TEST(TracingTest, NobodyIsCalledBackWhileNobodyListens) {
    TRACEHANDLE handle = 0;
    Register(Control, &PROVIDER, &handle);
    UnregisterTraceGuids(handle);
    EXPECT_EQ(g_Calls, 0);
}

TEST(TracingTest, NothingIsRaisedWhileNobodyListens) {
    EXPECT_FALSE(MorvexTraceFlagRaised(1 | 2 | 4));
    EXPECT_EQ(GetTraceEnableFlags(0), 0u);
    // Wine always gives the level 5.
    if (!UnderWine()) {
        EXPECT_EQ(GetTraceEnableLevel(0), 0);
    }
}

TEST(TracingTest, MessageMayBeSentWhileNobodyListens) {
    char const text[] = "text";
    void const * const noMore = nullptr;
    ULONG const flags = TRACE_MESSAGE_SEQUENCE | TRACE_MESSAGE_GUID | TRACE_MESSAGE_TIMESTAMP
                        | TRACE_MESSAGE_SYSTEMINFO;
    EXPECT_EQ(flags, 0x2Bu);
    TraceMessage(
        MorvexTraceLogger(0, 1), flags, &PROVIDER, 10, static_cast<void const *>(text),
        sizeof(text), noMore);
}
