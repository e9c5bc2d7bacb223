// Waiting: arm, wait for the event, drain the queue.
#include "DeviceWait.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "Text.h"
#include "app/CAppState.h"
#include "log/CMXLog.h"
#include "messages/CDeviceInterfaceRegistrar.h"
#include "messages/CMessageFilterSetter.h"
#include "messages/CWMDeviceChange.h"
#include "output/CUIUpdate.h"
#include "platform/DeviceServices.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "prompts/CMXUserInput.h"

namespace usb {
namespace {

constexpr GUID UsbDeviceClass = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

// How long the operator's abort may stay unseen.
constexpr DWORD SliceMilliseconds = 100;

void Ask(CMXLog & log, std::uint32_t seconds) {
    std::string text = Join("Plug in a USB device within ", seconds, " seconds.");
    log.Write(TEST_STATUS_INFO, "%s", text);
    CMXUserInput * const input = CAppState::UserInput();
    // A question with a time-out of 0 would stand without end.
    if (input == nullptr || seconds == 0) return;
    std::string button = "OK";
    input->DisplayInfoToUser(&text, seconds * 1000ul, true, nullptr, &button, nullptr);
}

// The ids stand in the name: \\?\USB#VID_F1D0&PID_0001#...
std::optional<Arrival> IdsOf(char const * name) {
    unsigned vendor = 0;
    unsigned product = 0;
    std::string const text = name;
    auto const at = text.find("VID_");
    if (at == std::string::npos) return std::nullopt;
    if (std::sscanf(text.c_str() + at, "VID_%4x&PID_%4x", &vendor, &product) != 2)
        return std::nullopt;
    return Arrival{static_cast<std::uint16_t>(vendor), static_cast<std::uint16_t>(product)};
}

std::optional<Arrival> ArrivalOf(CWMDeviceChange const & message) {
    if (message.EventType() != DBT_DEVICEARRIVAL) return std::nullopt;
    char const * const name = message.DevInterfaceDevName();
    return name != nullptr ? IdsOf(name) : std::nullopt;
}

void Show(CMXLog & log, CWindowsMessage const & message) {
    log.Write(TEST_STATUS_INFO, "%s", message.GetDescriptionStr());
    log.Write(TEST_STATUS_INFO, "%s", message.GetDetailsStr());
}

// The event is reset before the queue is drained, so that no message comes unseen in between.
std::optional<Arrival> TakeArrival(CMXLog & log) {
    ResetEvent(CAppState::MessageFilterEvent());
    while (auto const message = CAppState::PopWindowsMessage()) {
        Show(log, *message);
        // What passes the filter is of this class.
        if (auto const arrival = ArrivalOf(static_cast<CWMDeviceChange const &>(*message)))
            return arrival;
    }
    return std::nullopt;
}

std::optional<Arrival> Abort(CMXLog & log, std::string const & reason) {
    log.Write(TEST_STATUS_ABORT, "%s", reason);
    return std::nullopt;
}

} // namespace

std::optional<Arrival> WaitForDevice(CMXLog & log, std::uint32_t seconds) {
    CMessageFilterSetter const filter(WM_DEVICECHANGE);
    CDeviceInterfaceRegistrar const registrar(UsbDeviceClass);
    if (!registrar.IsValid()) return Abort(log, "This system does not announce devices.");
    ULONGLONG const end = GetTickCount64() + ULONGLONG{seconds} * 1000;
    Ask(log, seconds);
    for (;;) {
        if (auto const arrival = TakeArrival(log)) return arrival;
        if (CUIUpdate::DoUpdate(false) != TS_SUCCESS)
            return Abort(log, "The operator has ended the wait.");
        ULONGLONG const now = GetTickCount64();
        if (now >= end) return Abort(log, Join("No device came within ", seconds, " seconds."));
        DWORD const left = static_cast<DWORD>(std::min<ULONGLONG>(end - now, SliceMilliseconds));
        WaitForSingleObject(CAppState::MessageFilterEvent(), left);
    }
}

} // namespace usb
