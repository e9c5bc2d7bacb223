// Diverting platform operations at link time.
#include "platform/Wrap.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "platform/Tracing.h"

MORVEX_WRAP_API(
    HANDLE, CreateEventA,
    (_SECURITY_ATTRIBUTES * attributes, BOOL manual, BOOL set, char const * name),
    (attributes, manual, set, name))
MORVEX_WRAP_API(ULONGLONG, GetTickCount64, (), ())
MORVEX_WRAP(char *, getenv, (char const * name), (name))

namespace {
std::string g_Sent;
}

MORVEX_REPLACE_API(
    ULONG, TraceMessage, (TRACEHANDLE, ULONG, GUID const *, std::uint16_t number, ...)) {
    va_list arguments;
    va_start(arguments, number);
    auto const * const bytes = static_cast<char const *>(va_arg(arguments, void const *));
    g_Sent.assign(bytes, va_arg(arguments, std::size_t));
    va_end(arguments);
    return 99;
}

namespace {

HANDLE MakeEvent() { return CreateEventA(nullptr, TRUE, FALSE, nullptr); }

} // namespace

TEST(WrapTest, UndivertedCallIsTheRealOne) {
    HANDLE const event = MakeEvent();
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT);
    EXPECT_TRUE(CloseHandle(event));
}

TEST(WrapTest, DivertedCallIsTheFake) {
    Diversion const outOfMemory(wrapped_CreateEventA, [](auto...) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return HANDLE{};
    });
    EXPECT_EQ(MakeEvent(), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
}

TEST(WrapTest, FakeSeesTheArguments) {
    struct {
        BOOL manual;
        BOOL set;
        std::string name;
    } seen{};
    Diversion const spy(wrapped_CreateEventA, [&](auto, BOOL manual, BOOL set, char const * name) {
        seen = {manual, set, name};
        return HANDLE{};
    });
    CreateEventA(nullptr, 7, 9, "name");
    EXPECT_EQ(seen.manual, 7);
    EXPECT_EQ(seen.set, 9);
    EXPECT_EQ(seen.name, "name");
}

TEST(WrapTest, FakeMayMakeTheRealCall) {
    int calls = 0;
    Diversion const counter(
        wrapped_CreateEventA, [&](auto attributes, BOOL manual, BOOL set, char const * name) {
            ++calls;
            return wrapped_CreateEventA.Real(attributes, manual, set, name);
        });
    HANDLE const event = MakeEvent();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(CloseHandle(event));
}

TEST(WrapTest, DiversionEndsWithItsScope) {
    {
        Diversion const stopped(wrapped_GetTickCount64, [] { return ULONGLONG{5}; });
        EXPECT_EQ(GetTickCount64(), 5u);
    }
    ULONGLONG const real = GetTickCount64();
    EXPECT_NE(real, 5u);
}

TEST(WrapTest, InnermostDiversionHolds) {
    Diversion const outer(wrapped_GetTickCount64, [] { return ULONGLONG{1}; });
    {
        Diversion const inner(wrapped_GetTickCount64, [] { return ULONGLONG{2}; });
        EXPECT_EQ(GetTickCount64(), 2u);
    }
    EXPECT_EQ(GetTickCount64(), 1u);
}

TEST(WrapTest, FunctionOfTheCLibraryIsDiverted) {
    EXPECT_STREQ(std::getenv("MORVEX_WRAP_TEST"), nullptr);
    char text[] = "from the fake";
    Diversion const fixed(wrapped_getenv, [&](auto) { return text; });
    EXPECT_STREQ(std::getenv("MORVEX_WRAP_TEST"), "from the fake");
}

TEST(WrapTest, VariadicOperationIsReplaced) {
    g_Sent.clear();
    char const text[] = "text";
    GUID const guid{};
    ULONG const sent = TraceMessage(7, 0x2B, &guid, 10, text, sizeof(text), nullptr);
    EXPECT_EQ(sent, 99u);
    EXPECT_EQ(g_Sent, std::string(text, sizeof(text)));
}
