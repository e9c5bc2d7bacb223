// What a device is called: its class, its ids and its interface name, in the published form.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/BaseTypes.h"

struct udev_device;

bool operator==(GUID const & left, GUID const & right);

struct DeviceIdentity {
    // One of the three interface classes of USB.
    GUID interfaceClass;

    // Enumerator, kind and instance: "USB\VID_F1D0&PID_0001\4711". A device without a usable serial
    // number has its place instead: "0&1&1.2" is port 2 of the hub on port 1 of bus 1.
    std::string instanceId;

    // The most exact one first.
    std::vector<std::string> hardwareIds;

    // For people.
    std::string description;

    // "\\?\USB#VID_F1D0&PID_0001#4711#{a5dcbf10-...}".
    std::string InterfaceName() const;
};

// No value: the device is not one of USB, nor a controller of it.
//
// What the event itself carries counts first; the system's files are asked only while they are
// still those of this very device.
std::optional<DeviceIdentity> IdentifyDevice(udev_device * device);
