// The library's software trace provider: what a person can watch of a running process.
//
// It comes up when the library is loaded, after the statics, and goes down before them. It is
// switched on and off from outside at any moment; while it is off a trace point costs one read.
// IsOn and Send may be called from any thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "app/Export.h"
#include "platform/Tracing.h"

// What can be switched on.
enum class TraceFlag : std::uint32_t {
    Library = 1,
    Output = 2,
    Log = 4,
};

class MORVEX_API TraceProvider {
public:
    static bool IsOn(TraceFlag flag) {
        auto const bit = static_cast<std::uint32_t>(flag);
        return (m_Control.flags.load(std::memory_order_relaxed) & bit) != 0
               || MorvexTraceFlagRaised(bit);
    }

    // Sends the text with its terminator, "NULL" for a null one, when the flag is on.
    static void Send(TraceFlag flag, std::uint16_t number, char const * text);

    // Registers the provider; called once at load. Without success it stays off.
    static void Attach();

    // Sends the detach record and withdraws the provider; called once at unload.
    static void Detach();

private:
    // One registered provider. A registration of 0 is none.
    struct ControlBlock {
        ControlBlock * next = nullptr;
        GUID const * controlGuid = nullptr;
        TRACEHANDLE registration = 0;
        std::atomic<TRACEHANDLE> logger = 0;
        std::atomic<std::uint8_t> level = 0;
        std::atomic<std::uint32_t> flags = 0;
    };

    // What the platform calls to switch a provider on and off; `context` is its block.
    static ULONG WINAPI
    Control(WMIDPREQUESTCODE request, void * context, ULONG * size, void * buffer);

    // Sends a record without arguments when the library's flag is on.
    static void SendBare(std::uint16_t number);
    static TRACEHANDLE Logger(TraceFlag flag);

    static ControlBlock m_Control;
    static ControlBlock * m_Providers;
};
