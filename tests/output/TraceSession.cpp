// The provider's side of the platform, played by the test.
#include "output/TraceSession.h"

#include <cstdarg>
#include <cstddef>
#include <utility>

#include "platform/Tracing.h"
#include "platform/Wrap.h"

namespace {

constexpr TRACEHANDLE kLogger = 77;

WMIDPREQUEST control = nullptr;
void * controlContext = nullptr;
std::uint32_t enabled = 0;
std::vector<std::string> records;

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

MORVEX_REPLACE_API(ULONG, GetTraceEnableFlags, (TRACEHANDLE logger)) {
    return logger == kLogger ? enabled : 0;
}

MORVEX_REPLACE_API(
    ULONG, TraceMessage, (TRACEHANDLE, ULONG flags, GUID const *, std::uint16_t number, ...)) {
    std::string record = std::to_string(flags) + ' ' + std::to_string(number) + ' ';
    std::va_list arguments;
    va_start(arguments, number);
    while (auto const * const data = va_arg(arguments, char const *)) {
        std::string value(data, va_arg(arguments, std::size_t));
        if (value.ends_with('\0')) value.back() = '|';
        record += value;
    }
    va_end(arguments);
    records.push_back(record);
    return ERROR_SUCCESS;
}

TraceSession::TraceSession(TraceFlag flag) {
    TraceProvider::Attach();
    enabled = static_cast<std::uint32_t>(flag);
    Request(WMI_ENABLE_EVENTS);
}

TraceSession::~TraceSession() {
    Request(WMI_DISABLE_EVENTS);
    records.clear();
}

std::vector<std::string> TraceSession::Take() { return std::exchange(records, {}); }
