// A device's descriptors as a tree: what the bytes of a recording hold, read without trust.
//
// A recording is the device descriptor (18 bytes) with every configuration behind it, and perhaps
// the BOS descriptor with its device capabilities behind those. The tree borrows the bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Descriptor.h"
#include "Finding.h"

namespace usb {

struct Endpoint {
    Descriptor descriptor;
    std::optional<Descriptor> companion;
    std::optional<Descriptor> isochronousCompanion;
};

// An interface descriptor: one alternate setting of an interface.
struct AlternateSetting {
    Descriptor descriptor;
    std::vector<Endpoint> endpoints;
};

// In every list, each descriptor is at least as long as the standard defines it.
struct Configuration {
    Descriptor descriptor;
    bool complete = true; // false: something of it could not be read, so its counts say nothing
    std::vector<AlternateSetting> settings;
    std::vector<Descriptor> associations;
};

// The binary device object store (BOS).
struct ObjectStore {
    Descriptor descriptor;
    bool complete = true;
    std::vector<Descriptor> capabilities;
};

struct Device {
    Descriptor descriptor;
    bool complete = true; // false: the recording could not be read to its end
    std::vector<Configuration> configurations;
    std::optional<ObjectStore> store;

    bool IsSuperSpeed() const { return descriptor.Get(device::bcdUSB) >= 0x0300; }

    // The edition of the standard whose chapter 9 speaks of this device.
    char const * Standard() const { return IsSuperSpeed() ? Usb32 : Usb20; }
};

struct ParsedRecording {
    std::optional<Device> device;  // none: there is no device descriptor to go by
    std::vector<Finding> findings; // what is wrong with lengths and order
};

// More is not read: 255 configurations of 64 KiB would be legal, but nobody builds them.
inline constexpr std::size_t MaximumRecordingSize = std::size_t{1} << 20;

// Reads any bytes whatever: what cannot be read becomes a finding.
ParsedRecording ParseRecording(std::span<std::uint8_t const> bytes);

} // namespace usb
