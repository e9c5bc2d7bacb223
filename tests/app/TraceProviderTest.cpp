// The trace provider: how it registers, what switches it, and what it sends.
#include "app/TraceProvider.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstring>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Wrap.h"

MORVEX_WRAP_API(
    ULONG, RegisterTraceGuidsA,
    (WMIDPREQUEST control, void * context, GUID const * controlGuid, ULONG count,
     TRACE_GUID_REGISTRATION * guids, char const * imagePath, char const * resourceName,
     TRACEHANDLE * handle),
    (control, context, controlGuid, count, guids, imagePath, resourceName, handle))
MORVEX_WRAP_API(ULONG, UnregisterTraceGuids, (TRACEHANDLE handle), (handle))
MORVEX_WRAP_API(TRACEHANDLE, GetTraceLoggerHandle, (void * buffer), (buffer))
MORVEX_WRAP_API(BYTE, GetTraceEnableLevel, (TRACEHANDLE logger), (logger))
MORVEX_WRAP_API(ULONG, GetTraceEnableFlags, (TRACEHANDLE logger), (logger))

namespace {

std::string Text(GUID const & guid) {
    char text[40];
    std::snprintf(
        text, sizeof text, "%08lx-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
        static_cast<unsigned long>(guid.Data1), guid.Data2, guid.Data3, guid.Data4[0],
        guid.Data4[1], guid.Data4[2], guid.Data4[3], guid.Data4[4], guid.Data4[5], guid.Data4[6],
        guid.Data4[7]);
    return text;
}

// One record as it was sent; the arguments with all their bytes.
struct Record {
    TRACEHANDLE logger;
    ULONG flags;
    std::string guid;
    std::uint16_t number;
    std::vector<std::string> arguments;

    bool operator==(Record const &) const = default;
};

void PrintTo(Record const & record, std::ostream * out) {
    *out << "{logger " << record.logger << ", flags " << record.flags << ", " << record.guid
         << ", number " << record.number;
    for (std::string const & argument : record.arguments)
        *out << ", " << testing::PrintToString(argument);
    *out << "}";
}

std::vector<Record> sent;

std::vector<std::string> ReadArguments(std::va_list list) {
    std::vector<std::string> arguments;
    while (auto const * const bytes = static_cast<char const *>(va_arg(list, void const *)))
        arguments.emplace_back(bytes, va_arg(list, std::size_t));
    return arguments;
}

} // namespace

MORVEX_REPLACE_API(
    ULONG, TraceMessage,
    (TRACEHANDLE logger, ULONG flags, GUID const * guid, std::uint16_t number, ...)) {
    std::va_list list;
    va_start(list, number);
    sent.push_back({logger, flags, Text(*guid), number, ReadArguments(list)});
    va_end(list);
    return ERROR_SUCCESS;
}

namespace {

constexpr char controlGuid[] = "bfbc9cd1-92f3-40a3-b0f5-913862460b23";
constexpr char libraryGuid[] = "db37377c-43e1-3754-75b1-eac6c7c93faa";
constexpr TRACEHANDLE logger = 0x1234567890;
constexpr TRACEHANDLE registration = 0x55AA00000001;

using RegisterSignature = ULONG(
    WMIDPREQUEST, void *, GUID const *, ULONG, TRACE_GUID_REGISTRATION *, char const *,
    char const *, TRACEHANDLE *);

class TraceProviderTest : public testing::Test {
protected:
    TraceProviderTest() { sent.clear(); }
    ~TraceProviderTest() override {
        TraceProvider::Detach();
        if (m_Control != nullptr) Request(WMI_DISABLE_EVENTS);
    }

    // What the platform does when a person switches the provider on or off.
    ULONG Request(WMIDPREQUESTCODE code) {
        m_Size = 77;
        return m_Control(code, m_Context, &m_Size, &m_Buffer);
    }

    void SwitchOn(ULONG flags) {
        m_Flags = flags;
        Request(WMI_ENABLE_EVENTS);
    }

    Record Expected(
        TraceFlag flag, std::string const & guid, std::uint16_t number,
        std::vector<std::string> const & arguments) {
        return {
            MorvexTraceLogger(logger, static_cast<std::uint32_t>(flag)), 0x2B, guid, number,
            arguments};
    }

    Record Bare(std::uint16_t number) {
        return Expected(TraceFlag::Library, libraryGuid, number, {});
    }

    // A record's GUID, checked for nothing: which message it is.
    static std::string SentGuid(TraceFlag flag) {
        sent.clear();
        TraceProvider::Send(flag, 1, "");
        return sent.size() == 1 ? sent[0].guid : std::string();
    }

    WMIDPREQUEST m_Control = nullptr;
    void * m_Context = nullptr;
    ULONG m_Size = 0;
    char m_Buffer = 0;
    ULONG m_Flags = 0;
    bool m_Refuse = false;
    // Switches the provider on from inside the registration.
    bool m_EnabledAlready = false;
    std::vector<std::string> m_Registered;
    std::vector<TRACEHANDLE> m_Unregistered;

    Diversion<RegisterSignature> m_Register{
        wrapped_RegisterTraceGuidsA,
        [this](
            WMIDPREQUEST control, void * context, GUID const * guid, ULONG count,
            TRACE_GUID_REGISTRATION * guids, char const * image, char const * resource,
            TRACEHANDLE * handle) -> ULONG {
            m_Registered = {
                Text(*guid), std::to_string(count), Text(*guids[0].Guid),
                image == nullptr ? "no image" : image,
                resource == nullptr ? "no resource" : resource};
            m_Control = control;
            m_Context = context;
            if (m_Refuse) return ERROR_ACCESS_DENIED;
            *handle = registration;
            if (m_EnabledAlready) Request(WMI_ENABLE_EVENTS);
            return ERROR_SUCCESS;
        }};
    Diversion<ULONG(TRACEHANDLE)> m_Unregister{
        wrapped_UnregisterTraceGuids, [this](TRACEHANDLE handle) -> ULONG {
            m_Unregistered.push_back(handle);
            sent.push_back({});
            return ERROR_SUCCESS;
        }};
    Diversion<TRACEHANDLE(void *)> m_GetLogger{wrapped_GetTraceLoggerHandle, [this](void * buffer) {
                                                   return buffer == &m_Buffer ? logger
                                                                              : TRACEHANDLE{0};
                                               }};
    Diversion<BYTE(TRACEHANDLE)> m_GetLevel{
        wrapped_GetTraceEnableLevel, [](TRACEHANDLE) { return BYTE{5}; }};
    Diversion<ULONG(TRACEHANDLE)> m_GetFlags{
        wrapped_GetTraceEnableFlags,
        [this](TRACEHANDLE handle) { return handle == logger ? m_Flags : ULONG{0}; }};
};

TEST_F(TraceProviderTest, RegistersOneClassUnderTheControlGuid) {
    TraceProvider::Attach();
    EXPECT_EQ(
        m_Registered,
        (std::vector<std::string>{controlGuid, "1", controlGuid, "no image", "no resource"}));
    EXPECT_NE(m_Control, nullptr);
    EXPECT_EQ(sent, std::vector<Record>{});
}

TEST_F(TraceProviderTest, AttachIsToldWhenTheLibraryFlagIsOnAlready) {
    m_EnabledAlready = true;
    m_Flags = 1;
    TraceProvider::Attach();
    EXPECT_EQ(sent, std::vector<Record>{Bare(10)});
}

TEST_F(TraceProviderTest, AttachIsNotToldUnderOtherFlags) {
    m_EnabledAlready = true;
    m_Flags = ~ULONG{1};
    TraceProvider::Attach();
    EXPECT_EQ(sent, std::vector<Record>{});
}

TEST_F(TraceProviderTest, DetachIsToldBeforeTheProviderIsWithdrawn) {
    TraceProvider::Attach();
    SwitchOn(1);
    TraceProvider::Detach();
    EXPECT_EQ(sent, (std::vector<Record>{Bare(11), Record{}}));
    EXPECT_EQ(m_Unregistered, std::vector<TRACEHANDLE>{registration});
}

TEST_F(TraceProviderTest, DetachIsNotToldUnderOtherFlags) {
    TraceProvider::Attach();
    SwitchOn(~ULONG{1});
    TraceProvider::Detach();
    EXPECT_EQ(sent, std::vector<Record>{Record{}});
}

TEST_F(TraceProviderTest, AProviderIsWithdrawnOnce) {
    TraceProvider::Attach();
    TraceProvider::Detach();
    TraceProvider::Detach();
    EXPECT_EQ(m_Unregistered, std::vector<TRACEHANDLE>{registration});
}

TEST_F(TraceProviderTest, ARefusedRegistrationLeavesNothingToWithdraw) {
    m_Refuse = true;
    TraceProvider::Attach();
    TraceProvider::Detach();
    EXPECT_EQ(m_Unregistered, std::vector<TRACEHANDLE>{});
    EXPECT_FALSE(TraceProvider::IsOn(TraceFlag::Library));
}

TEST_F(TraceProviderTest, EnableTurnsOnTheFlagsOfThePlatform) {
    TraceProvider::Attach();
    struct Case {
        ULONG flags;
        std::tuple<bool, bool, bool> on;
    };
    for (auto const & [flags, on] :
         {Case{1, {true, false, false}}, Case{2, {false, true, false}},
          Case{4, {false, false, true}}, Case{7, {true, true, true}},
          Case{8, {false, false, false}}}) {
        SCOPED_TRACE(flags);
        m_Flags = flags;
        EXPECT_EQ(Request(WMI_ENABLE_EVENTS), ULONG{ERROR_SUCCESS});
        EXPECT_EQ(m_Size, 0u);
        EXPECT_EQ(
            std::tuple(
                TraceProvider::IsOn(TraceFlag::Library), TraceProvider::IsOn(TraceFlag::Output),
                TraceProvider::IsOn(TraceFlag::Log)),
            on);
    }
}

TEST_F(TraceProviderTest, DisableTurnsEverythingOff) {
    TraceProvider::Attach();
    SwitchOn(7);
    EXPECT_EQ(Request(WMI_DISABLE_EVENTS), ULONG{ERROR_SUCCESS});
    EXPECT_EQ(m_Size, 0u);
    TraceProvider::Send(TraceFlag::Log, 1, "text");
    TraceProvider::Send(TraceFlag::Output, 1, "text");
    TraceProvider::Send(TraceFlag::Library, 1, "text");
    EXPECT_EQ(sent, std::vector<Record>{});
}

TEST_F(TraceProviderTest, AnyOtherRequestIsRefusedAndChangesNothing) {
    TraceProvider::Attach();
    SwitchOn(4);
    for (int const code : {0, 1, 2, 3, 6, 7, 8, 9, 10, 11, -1}) {
        SCOPED_TRACE(code);
        EXPECT_EQ(Request(static_cast<WMIDPREQUESTCODE>(code)), 87u);
        EXPECT_EQ(m_Size, 0u);
        EXPECT_TRUE(TraceProvider::IsOn(TraceFlag::Log));
    }
}

TEST_F(TraceProviderTest, RequestCodesAreThePublishedOnes) {
    EXPECT_EQ(static_cast<int>(WMI_ENABLE_EVENTS), 4);
    EXPECT_EQ(static_cast<int>(WMI_DISABLE_EVENTS), 5);
}

TEST_F(TraceProviderTest, ATextGoesWithItsTerminatorUnderItsFlag) {
    TraceProvider::Attach();
    SwitchOn(4);
    TraceProvider::Send(TraceFlag::Log, 13, "Stop time");
    TraceProvider::Send(TraceFlag::Output, 10, "unseen");
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(
        sent[0], Expected(TraceFlag::Log, sent[0].guid, 13, {std::string("Stop time\0", 10)}));
}

TEST_F(TraceProviderTest, ANullTextGoesAsTheWordNull) {
    TraceProvider::Attach();
    SwitchOn(2);
    TraceProvider::Send(TraceFlag::Output, 11, nullptr);
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0], Expected(TraceFlag::Output, sent[0].guid, 11, {std::string("NULL\0", 5)}));
}

TEST_F(TraceProviderTest, AnEmptyTextIsItsTerminator) {
    TraceProvider::Attach();
    SwitchOn(4);
    TraceProvider::Send(TraceFlag::Log, 16, "");
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].arguments, std::vector<std::string>{std::string(1, '\0')});
}

TEST_F(TraceProviderTest, LogAndOutputHaveMessageGuidsOfTheirOwn) {
    TraceProvider::Attach();
    SwitchOn(7);
    std::string const log = SentGuid(TraceFlag::Log);
    std::string const output = SentGuid(TraceFlag::Output);
    EXPECT_EQ(log, "7c764846-815c-4670-bf3b-f452cf601946");
    EXPECT_EQ(output, "c7ddabee-4615-4b22-b71c-dc8b4145320e");
    EXPECT_EQ(SentGuid(TraceFlag::Library), libraryGuid);
}

} // namespace
