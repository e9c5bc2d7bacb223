// The probes as a tracer meets them: found by the notes in the platform library's file, raised by
// counting in the process's memory.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Tracing.h"
#include "tests/platform/linux/TraceProbes.h"

namespace {

constexpr TRACEHANDLE ANY = 0;

} // namespace

TEST(TraceProbeTest, EachFlagHasItsProbe) {
    std::vector<std::string> probes;
    for (auto const & [name, probe] : PlatformProbes()) {
        probes.push_back(name);
        EXPECT_NE(probe.semaphore, 0u) << name;
    }
    EXPECT_EQ(probes, (std::vector<std::string>{"morvex:library", "morvex:log", "morvex:output"}));
}

TEST(TraceProbeTest, TracerRaisesTheFlagOfItsProbeWhileItListens) {
    struct Case {
        char const * probe;
        std::uint32_t flag;
    };
    for (auto const & [probe, flag] :
         {Case{"morvex:library", 1}, {"morvex:output", 2}, {"morvex:log", 4}}) {
        SCOPED_TRACE(probe);
        {
            Listener const tracer(probe);
            EXPECT_TRUE(MorvexTraceFlagRaised(flag));
            EXPECT_TRUE(MorvexTraceFlagRaised(7));
            EXPECT_FALSE(MorvexTraceFlagRaised(7 & ~flag));
            EXPECT_EQ(GetTraceEnableFlags(ANY), flag);
        }
        EXPECT_FALSE(MorvexTraceFlagRaised(flag));
    }
}

TEST(TraceProbeTest, FlagStaysRaisedUntilTheLastTracerHasGone) {
    Listener const first("morvex:log");
    { Listener const second("morvex:log"); }
    EXPECT_TRUE(MorvexTraceFlagRaised(4));
}

TEST(TraceProbeTest, ExportedTableLeadsToTheSemaphoresOfTheNotes) {
    ++*g_MorvexTraceSemaphores.output;
    EXPECT_EQ(GetTraceEnableFlags(ANY), 2u);
    --*g_MorvexTraceSemaphores.output;
    Listener const tracer("morvex:output");
    EXPECT_EQ(*g_MorvexTraceSemaphores.output, 1);
}

TEST(TraceProbeTest, FlagsOfALoggerAreThoseItStandsFor) {
    Listener const library("morvex:library");
    Listener const log("morvex:log");
    EXPECT_EQ(GetTraceEnableFlags(ANY), 5u);
    EXPECT_EQ(GetTraceEnableFlags(MorvexTraceLogger(0, 4)), 4u);
    EXPECT_EQ(GetTraceEnableFlags(MorvexTraceLogger(0, 2)), 0u);
    EXPECT_EQ(GetTraceEnableLevel(MorvexTraceLogger(0, 4)), 255);
    EXPECT_EQ(GetTraceEnableLevel(MorvexTraceLogger(0, 2)), 0);
}

TEST(TraceProbeTest, RegistrationWithoutItsNeedsIsRefusedAndLeavesTheHandle) {
    auto const control = [](WMIDPREQUESTCODE, void *, ULONG *, void *) { return ULONG{0}; };
    GUID const guid{};
    TRACEHANDLE handle = 77;
    auto const registerWith = [&](WMIDPREQUEST callback, GUID const * id, TRACEHANDLE * out) {
        return RegisterTraceGuidsA(callback, nullptr, id, 0, nullptr, nullptr, nullptr, out);
    };
    EXPECT_EQ(registerWith(nullptr, &guid, &handle), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(registerWith(control, nullptr, &handle), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(registerWith(control, &guid, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(handle, 77u);
}

TEST(TraceProbeTest, ProviderIsWithdrawnOnce) {
    auto const control = [](WMIDPREQUESTCODE, void *, ULONG *, void *) { return ULONG{0}; };
    GUID const guid{};
    TRACEHANDLE handle = 0;
    ASSERT_EQ(
        RegisterTraceGuidsA(control, nullptr, &guid, 0, nullptr, nullptr, nullptr, &handle),
        ERROR_SUCCESS);
    EXPECT_EQ(UnregisterTraceGuids(handle), ERROR_SUCCESS);
    EXPECT_EQ(UnregisterTraceGuids(handle), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(UnregisterTraceGuids(0), ERROR_INVALID_PARAMETER);
}

TEST(TraceProbeTest, LoggerHandleNeedsABuffer) {
    int buffer = 0;
    EXPECT_EQ(GetTraceLoggerHandle(&buffer), 0u);
    EXPECT_EQ(GetTraceLoggerHandle(nullptr), ~TRACEHANDLE{0});
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}
