// The platform's side of the trace provider, played by the test.
#include "log/TraceTap.h"

#include <cstdarg>
#include <cstddef>
#include <utility>

#include "app/TraceProvider.h"
#include "platform/Tracing.h"
#include "platform/Wrap.h"

namespace {

constexpr TRACEHANDLE kLogger = 91;

WMIDPREQUEST control = nullptr;
void * controlContext = nullptr;
TraceTap::Receiver receive;

void Request(WMIDPREQUESTCODE code) {
    ULONG size = 1;
    control(code, controlContext, &size, nullptr);
}

} // namespace

MORVEX_REPLACE_API(
    ULONG, RegisterTraceGuidsA,
    (WMIDPREQUEST callback, void * context, GUID const *, ULONG, TRACE_GUID_REGISTRATION *,
     char const *, char const *, TRACEHANDLE *)) {
    control = callback;
    controlContext = context;
    return ERROR_SUCCESS;
}

MORVEX_REPLACE_API(TRACEHANDLE, GetTraceLoggerHandle, (void *)) { return kLogger; }

MORVEX_REPLACE_API(BYTE, GetTraceEnableLevel, (TRACEHANDLE)) { return 0; }

MORVEX_REPLACE_API(ULONG, GetTraceEnableFlags, (TRACEHANDLE)) {
    return static_cast<ULONG>(TraceFlag::Log);
}

MORVEX_REPLACE_API(
    ULONG, TraceMessage, (TRACEHANDLE, ULONG flags, GUID const *, std::uint16_t number, ...)) {
    std::va_list arguments;
    va_start(arguments, number);
    auto const * const data = va_arg(arguments, char const *);
    std::string text(data, va_arg(arguments, std::size_t));
    if (va_arg(arguments, void const *) != nullptr) text += "(and more)";
    va_end(arguments);
    if (text.ends_with('\0'))
        text.pop_back();
    else
        text += "(unterminated)";
    if (flags != 0x2B) text += "(flags " + std::to_string(flags) + ')';
    if (receive) receive(number, text);
    return ERROR_SUCCESS;
}

TraceTap::TraceTap(Receiver receiver) {
    receive = std::move(receiver);
    TraceProvider::Attach();
    Request(WMI_ENABLE_EVENTS);
}

TraceTap::~TraceTap() {
    Request(WMI_DISABLE_EVENTS);
    receive = nullptr;
}
