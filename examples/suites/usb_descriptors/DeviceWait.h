// Waiting for the operator to plug a device in.
//
// For the test thread, while the host forwards WM_DEVICECHANGE of its main window to the library.
#pragma once

#include <cstdint>
#include <optional>

class CMXLog;

namespace usb {

struct Arrival {
    std::uint16_t vendor;
    std::uint16_t product;
};

// Asks the operator, if there are a prompt object and time, and takes the first USB device that
// arrives; every device event meanwhile is shown. No value, with an ABORT entry that says why:
// nothing came in time, the operator has asked for the end, or this system announces no devices.
// Throws as any update of the display while the abort's exception is armed.
std::optional<Arrival> WaitForDevice(CMXLog & log, std::uint32_t seconds);

} // namespace usb
