// Software tracing by static probes: one for each enable flag, each with a semaphore.
//
// A tracer such as perf or bpftrace attaches to a probe of this library from outside and raises
// its semaphore while it listens. Nobody is called back: who wants to know reads the semaphores.
#include "platform/Tracing.h"

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/linux/NumberTable.h"

#define _SDT_HAS_SEMAPHORES 1
#include <sys/sdt.h>

// Found by tracers through the notes that the probes leave in the file. Hidden: an exported
// variable could be moved into the program, away from where the tracer writes.
#define MORVEX_PROBE_SEMAPHORE(name)                                                               \
    extern "C" {                                                                                   \
    __attribute__((visibility("hidden"), section(".probes"))) std::atomic<std::uint16_t>           \
        morvex_##name##_semaphore = 0;                                                             \
    }

MORVEX_PROBE_SEMAPHORE(library)
MORVEX_PROBE_SEMAPHORE(output)
MORVEX_PROBE_SEMAPHORE(log)

constinit MorvexTraceSemaphores const g_MorvexTraceSemaphores{
    &morvex_library_semaphore, &morvex_output_semaphore, &morvex_log_semaphore};

namespace {

constexpr TRACEHANDLE NO_LOGGER = ~TRACEHANDLE{0};
constexpr BYTE EVERY_LEVEL = 255;

struct Provider {};

NumberTable<Provider> & Providers() {
    static auto & providers = *new NumberTable<Provider>(0, 1);
    return providers;
}

std::uint32_t RaisedFlags() {
    std::uint32_t flags = 0;
    for (std::uint32_t const flag : {MORVEX_TRACE_LIBRARY, MORVEX_TRACE_OUTPUT, MORVEX_TRACE_LOG}) {
        flags |= MorvexTraceFlagRaised(flag) ? flag : 0;
    }
    return flags;
}

// The arguments of a record one behind another.
std::string Joined(std::va_list arguments) {
    std::string joined;
    while (auto const * const bytes = va_arg(arguments, void const *)) {
        joined.append(static_cast<char const *>(bytes), va_arg(arguments, std::size_t));
    }
    return joined;
}

void Fire(std::uint32_t flags, std::uint16_t number, GUID const * guid, std::string const & text) {
    if (flags & MORVEX_TRACE_LIBRARY) {
        STAP_PROBE4(morvex, library, number, guid, text.data(), text.size());
    }
    if (flags & MORVEX_TRACE_OUTPUT) {
        STAP_PROBE4(morvex, output, number, guid, text.data(), text.size());
    }
    if (flags & MORVEX_TRACE_LOG) {
        STAP_PROBE4(morvex, log, number, guid, text.data(), text.size());
    }
}

// A logger that names no flag writes for everybody who listens.
std::uint32_t ListenersOf(TRACEHANDLE logger) {
    auto const flags = static_cast<std::uint32_t>(logger);
    return RaisedFlags() & (flags == 0 ? ~std::uint32_t{0} : flags);
}

} // namespace

ULONG RegisterTraceGuidsA(
    WMIDPREQUEST control, void *, GUID const * controlGuid, ULONG, TRACE_GUID_REGISTRATION *,
    char const *, char const *, TRACEHANDLE * handle) {
    if (control == nullptr || controlGuid == nullptr || handle == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    *handle = Providers().Add(std::make_shared<Provider>());
    return ERROR_SUCCESS;
}

ULONG UnregisterTraceGuids(TRACEHANDLE handle) {
    return Providers().Remove(handle) ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
}

TRACEHANDLE GetTraceLoggerHandle(void * buffer) {
    if (buffer == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return NO_LOGGER;
    }
    return 0;
}

BYTE GetTraceEnableLevel(TRACEHANDLE logger) { return ListenersOf(logger) ? EVERY_LEVEL : BYTE{0}; }

ULONG GetTraceEnableFlags(TRACEHANDLE logger) { return ListenersOf(logger); }

ULONG TraceMessage(TRACEHANDLE logger, ULONG, GUID const * guid, std::uint16_t number, ...) {
    auto const listeners = ListenersOf(logger);
    if (listeners == 0) {
        return ERROR_SUCCESS;
    }
    std::va_list arguments;
    va_start(arguments, number);
    Fire(listeners, number, guid, Joined(arguments));
    va_end(arguments);
    return ERROR_SUCCESS;
}
