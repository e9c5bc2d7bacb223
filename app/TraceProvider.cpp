// The trace provider: its registration, its switch, and the records that it sends.
#include "app/TraceProvider.h"

#include <cstring>

namespace {

constexpr GUID kControlGuid = {
    0xbfbc9cd1, 0x92f3, 0x40a3, {0xb0, 0xf5, 0x91, 0x38, 0x62, 0x46, 0x0b, 0x23}};

// Whose message a record is: the catalogue of the texts lies outside the library and goes by GUID
// and number.
constexpr GUID kLibraryMessages = {
    0xdb37377c, 0x43e1, 0x3754, {0x75, 0xb1, 0xea, 0xc6, 0xc7, 0xc9, 0x3f, 0xaa}};
constexpr GUID kOutputMessages = {
    0xc7ddabee, 0x4615, 0x4b22, {0xb7, 0x1c, 0xdc, 0x8b, 0x41, 0x45, 0x32, 0x0e}};
constexpr GUID kLogMessages = {
    0x7c764846, 0x815c, 0x4670, {0xbf, 0x3b, 0xf4, 0x52, 0xcf, 0x60, 0x19, 0x46}};

constexpr std::uint16_t kAttached = 10;
constexpr std::uint16_t kDetached = 11;

constexpr ULONG kRecordFlags = TRACE_MESSAGE_SEQUENCE | TRACE_MESSAGE_GUID | TRACE_MESSAGE_TIMESTAMP
                               | TRACE_MESSAGE_SYSTEMINFO;

// Ends the arguments of TraceMessage.
constexpr void const * kNoMore = nullptr;

GUID const & Messages(TraceFlag flag) {
    switch (flag) {
    case TraceFlag::Output:
        return kOutputMessages;
    case TraceFlag::Log:
        return kLogMessages;
    default:
        return kLibraryMessages;
    }
}

} // namespace

// Constant-initialised: a static that traces while it is built or torn down finds it usable.
constinit TraceProvider::ControlBlock TraceProvider::m_Control;
constinit TraceProvider::ControlBlock * TraceProvider::m_Providers = nullptr;

ULONG WINAPI
TraceProvider::Control(WMIDPREQUESTCODE request, void * context, ULONG * size, void * buffer) {
    *size = 0;
    auto & block = *static_cast<ControlBlock *>(context);
    switch (request) {
    case WMI_ENABLE_EVENTS:
        block.logger = GetTraceLoggerHandle(buffer);
        block.level = GetTraceEnableLevel(block.logger);
        block.flags = GetTraceEnableFlags(block.logger);
        return ERROR_SUCCESS;
    case WMI_DISABLE_EVENTS:
        block.flags = 0;
        block.level = 0;
        block.logger = 0;
        return ERROR_SUCCESS;
    default:
        return ERROR_INVALID_PARAMETER;
    }
}

void TraceProvider::Attach() {
    m_Control.controlGuid = &kControlGuid;
    m_Providers = &m_Control;
    TRACE_GUID_REGISTRATION traceClass = {&kControlGuid, nullptr};
    // A platform that refuses leaves the handle alone: 0 then says that there is nothing to undo.
    RegisterTraceGuidsA(
        &TraceProvider::Control, &m_Control, m_Control.controlGuid, 1, &traceClass, nullptr,
        nullptr, &m_Control.registration);
    SendBare(kAttached);
}

void TraceProvider::Detach() {
    SendBare(kDetached);
    for (ControlBlock * block = m_Providers; block != nullptr; block = block->next) {
        if (block->registration == 0) continue;
        UnregisterTraceGuids(block->registration);
        block->registration = 0;
    }
    m_Providers = nullptr;
}

// Where a record of this flag goes.
TRACEHANDLE TraceProvider::Logger(TraceFlag flag) {
    return MorvexTraceLogger(m_Control.logger, static_cast<std::uint32_t>(flag));
}

void TraceProvider::SendBare(std::uint16_t number) {
    if (!IsOn(TraceFlag::Library)) return;
    TraceMessage(Logger(TraceFlag::Library), kRecordFlags, &kLibraryMessages, number, kNoMore);
}

void TraceProvider::Send(TraceFlag flag, std::uint16_t number, char const * text) {
    if (!IsOn(flag)) return;
    if (text == nullptr) text = "NULL";
    TraceMessage(
        Logger(flag), kRecordFlags, &Messages(flag), number, static_cast<void const *>(text),
        std::strlen(text) + 1, kNoMore);
}
