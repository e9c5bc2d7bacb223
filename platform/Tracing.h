// Software tracing: a provider that is registered under a GUID and sends numbered records.
//
// A person switches a provider on and off from outside while the process runs. On Windows the
// system calls the provider back. Elsewhere nobody is called: a tracer attaches to one of the
// probes morvex:library, morvex:output and morvex:log, which raises the flag of that name for as
// long as it listens. So a provider is on when its callback says so or MorvexTraceFlagRaised does.
// Operations may be called from any thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/BaseTypes.h"

#if defined(_WIN32)

#include <wmistr.h>

#include <evntrace.h>

inline bool MorvexTraceFlagRaised(std::uint32_t) { return false; }
inline TRACEHANDLE MorvexTraceLogger(TRACEHANDLE logger, std::uint32_t) { return logger; }

#else

using TRACEHANDLE = ULONG64;
using WMIDPREQUESTCODE = int;

inline constexpr WMIDPREQUESTCODE WMI_ENABLE_EVENTS = 4;
inline constexpr WMIDPREQUESTCODE WMI_DISABLE_EVENTS = 5;
inline constexpr ULONG TRACE_MESSAGE_SEQUENCE = 1;
inline constexpr ULONG TRACE_MESSAGE_GUID = 2;
inline constexpr ULONG TRACE_MESSAGE_TIMESTAMP = 8;
inline constexpr ULONG TRACE_MESSAGE_SYSTEMINFO = 32;

using WMIDPREQUEST =
    ULONG (*)(WMIDPREQUESTCODE request, void * context, ULONG * size, void * buffer);

struct TRACE_GUID_REGISTRATION {
    GUID const * Guid;
    HANDLE RegHandle;
};

// The enable flags that have a probe.
inline constexpr std::uint32_t MORVEX_TRACE_LIBRARY = 1;
inline constexpr std::uint32_t MORVEX_TRACE_OUTPUT = 2;
inline constexpr std::uint32_t MORVEX_TRACE_LOG = 4;

// How many tracers listen to each probe. Tracers count in the process's memory from outside.
struct MorvexTraceSemaphores {
    std::atomic<std::uint16_t> * library;
    std::atomic<std::uint16_t> * output;
    std::atomic<std::uint16_t> * log;
};
MORVEX_PLATFORM_API MorvexTraceSemaphores const g_MorvexTraceSemaphores;

// Whether somebody listens to a probe of `flags`. Costs a read.
inline bool MorvexTraceFlagRaised(std::uint32_t flags) {
    auto const & semaphores = g_MorvexTraceSemaphores;
    auto const isRaised =
        [flags](std::uint32_t flag, std::atomic<std::uint16_t> const & listeners) {
            return (flags & flag) != 0 && listeners.load(std::memory_order_relaxed) != 0;
        };
    return isRaised(MORVEX_TRACE_LIBRARY, *semaphores.library)
           || isRaised(MORVEX_TRACE_OUTPUT, *semaphores.output)
           || isRaised(MORVEX_TRACE_LOG, *semaphores.log);
}

// The logger that a record of these flags goes to: the one given on Windows, elsewhere the probes
// of the flags. A logger of 0 stands for all probes.
inline TRACEHANDLE MorvexTraceLogger(TRACEHANDLE, std::uint32_t flags) { return flags; }

// ERROR_SUCCESS and a handle, or ERROR_INVALID_PARAMETER and `handle` untouched: `control`,
// `controlGuid` or `handle` is null. `control` is never called.
MORVEX_PLATFORM_API ULONG RegisterTraceGuidsA(
    WMIDPREQUEST control, void * context, GUID const * controlGuid, ULONG count,
    TRACE_GUID_REGISTRATION * guids, char const * imagePath, char const * resourceName,
    TRACEHANDLE * handle);

// ERROR_INVALID_PARAMETER: not registered.
MORVEX_PLATFORM_API ULONG UnregisterTraceGuids(TRACEHANDLE handle);

// 0; all ones, with ERROR_INVALID_PARAMETER, for a null buffer.
MORVEX_PLATFORM_API TRACEHANDLE GetTraceLoggerHandle(void * buffer);

// The flags that are raised among those of the logger, and a level of 255 while there is one.
MORVEX_PLATFORM_API BYTE GetTraceEnableLevel(TRACEHANDLE logger);
MORVEX_PLATFORM_API ULONG GetTraceEnableFlags(TRACEHANDLE logger);

// Fires the raised probes of the logger with number, GUID, address and size of the arguments
// joined. Behind `number` stand pairs of `void const *` and `size_t`, closed by a null pointer.
// Always ERROR_SUCCESS.
MORVEX_PLATFORM_API ULONG
TraceMessage(TRACEHANDLE logger, ULONG flags, GUID const * guid, std::uint16_t number, ...);

#endif
