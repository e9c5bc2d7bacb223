// Loading and unloading the shared library: its trace provider comes after the statics and goes
// before them.
//
// The library is loaded at run time. The operations that it calls then are this program's own:
// they stand in front of the platform's in the order in which the loader looks.
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Synchronization.h"
#include "platform/Tracing.h"

namespace {

// Where the steps are written, one letter each; -1 while nobody wants them.
int steps = -1;

void Note(char step) {
    if (steps != -1 && write(steps, &step, 1) != 1) std::abort();
}

template <typename Function>
Function * Real(char const * name) {
    static void * const platform = dlopen(MORVEX_PLATFORM_LIBRARY, RTLD_NOW);
    return reinterpret_cast<Function *>(dlsym(platform, name));
}

} // namespace

void InitializeCriticalSection(CRITICAL_SECTION * section) {
    Note('i');
    Real<decltype(InitializeCriticalSection)>("InitializeCriticalSection")(section);
}

void DeleteCriticalSection(CRITICAL_SECTION * section) {
    Note('d');
    Real<decltype(DeleteCriticalSection)>("DeleteCriticalSection")(section);
}

ULONG RegisterTraceGuidsA(
    WMIDPREQUEST, void *, GUID const *, ULONG, TRACE_GUID_REGISTRATION *, char const *,
    char const *, TRACEHANDLE * handle) {
    Note('R');
    *handle = 1;
    return ERROR_SUCCESS;
}

ULONG UnregisterTraceGuids(TRACEHANDLE) {
    Note('U');
    return ERROR_SUCCESS;
}

// The records of coming and going have no arguments; any other record is a step of its own.
ULONG TraceMessage(TRACEHANDLE, ULONG flags, GUID const * guid, std::uint16_t number, ...) {
    static constexpr GUID messages = {
        0xdb37377c, 0x43e1, 0x3754, {0x75, 0xb1, 0xea, 0xc6, 0xc7, 0xc9, 0x3f, 0xaa}};
    std::va_list arguments;
    va_start(arguments, number);
    bool const isBare = va_arg(arguments, void const *) == nullptr;
    va_end(arguments);
    bool const isOurs = flags == 0x2B && std::memcmp(guid, &messages, sizeof messages) == 0;
    Note(!isBare || !isOurs ? '?' : number == 10 ? 'A' : number == 11 ? 'D' : '?');
    return ERROR_SUCCESS;
}

namespace {

// As a tracer does from outside.
void Listen() { ++*g_MorvexTraceSemaphores.library; }

void * Load() { return dlopen(MORVEX_LIBRARY, RTLD_NOW | RTLD_LOCAL); }

// The steps of a process of its own that runs `act` and then ends in the ordinary way.
template <typename Act>
std::string StepsOf(Act act) {
    int ends[2];
    if (pipe(ends) != 0) return "no pipe";
    pid_t const child = fork();
    if (child == 0) {
        steps = ends[1];
        act();
        std::exit(0);
    }
    close(ends[1]);
    std::string seen;
    for (char step; read(ends[0], &step, 1) == 1;)
        seen += step;
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? seen : "failed after " + seen;
}

// Every lock is there before the provider comes, and is still there when it goes.
testing::AssertionResult
StandsInsideTheStatics(std::string const & seen, std::string const & provider = "RU") {
    auto const locks = seen.find('R');
    if (locks == std::string::npos || locks == 0) return testing::AssertionFailure() << seen;
    std::string const expected = std::string(locks, 'i') + provider + std::string(locks, 'd');
    return seen == expected ? testing::AssertionSuccess() : testing::AssertionFailure() << seen;
}

// Unloads before anything else of the process ends.
std::string StepsUntilUnloaded(void (*before)(), void (*meanwhile)()) {
    std::string seen = StepsOf([before, meanwhile] {
        before();
        void * const library = Load();
        if (library == nullptr) std::_Exit(1);
        meanwhile();
        if (dlclose(library) != 0) std::_Exit(1);
        Note('.');
    });
    if (seen.empty() || seen.back() != '.') return "not unloaded: " + seen;
    seen.pop_back();
    return seen;
}

void Nothing() {}

TEST(LibraryEntryTest, TheProviderStandsInsideTheStaticsWhenTheProcessEnds) {
    EXPECT_TRUE(StandsInsideTheStatics(StepsOf([] {
        if (Load() == nullptr) std::_Exit(1);
    })));
}

TEST(LibraryEntryTest, TheProviderStandsInsideTheStaticsWhenTheLibraryIsUnloaded) {
    EXPECT_TRUE(StandsInsideTheStatics(StepsUntilUnloaded(Nothing, Nothing)));
}

TEST(LibraryEntryTest, AListenerSeesTheLibraryComeAndGo) {
    EXPECT_TRUE(StandsInsideTheStatics(StepsUntilUnloaded(Listen, Nothing), "RADU"));
}

TEST(LibraryEntryTest, AListenerSeesTheLibraryGoWithTheProcess) {
    EXPECT_TRUE(StandsInsideTheStatics(
        StepsOf([] {
            Listen();
            if (Load() == nullptr) std::_Exit(1);
        }),
        "RADU"));
}

TEST(LibraryEntryTest, WhoListensFromLaterOnSeesTheLibraryGo) {
    EXPECT_TRUE(StandsInsideTheStatics(StepsUntilUnloaded(Nothing, Listen), "RDU"));
}

} // namespace
