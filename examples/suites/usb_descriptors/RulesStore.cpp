// Rules of the BOS descriptor and its device capabilities: USB 3.2 9.6.2.
#include "Rules.h"

#include <algorithm>

#include "Text.h"

namespace usb {
namespace {

constexpr std::uint32_t Usb20Extension = 0x02;
constexpr std::uint32_t SuperSpeedUsb = 0x03;
constexpr std::uint32_t SuperSpeedPlus = 0x0A;

struct CapabilityLength {
    std::uint32_t type;
    std::size_t least;
    char const * name;
};

constexpr CapabilityLength CapabilityLengths[] = {
    {Usb20Extension, 7, "a USB 2.0 Extension"},
    {SuperSpeedUsb, 10, "a SuperSpeed USB Device Capability"},
    {0x04, 20, "a Container ID"},
    {0x05, 20, "a Platform Descriptor"},
    {SuperSpeedPlus, 16, "a SuperSpeedPlus USB Device Capability"},
};

// Bits of a capability's field that are reserved and zero.
struct ReservedBits {
    std::uint32_t type;
    Field field;
    std::uint32_t mask;
};

constexpr ReservedBits ReservedTable[] = {
    // 9.6.2.1 reserves bits 15..2 as well; the errata on link power management took them into use.
    {Usb20Extension, {"9.6.2.1 bmAttributes", 3, 4, Usb32}, 0xFFFF0001},
    {SuperSpeedUsb, {"9.6.2.2 bmAttributes", 3, 1, Usb32}, 0xFD},
    {SuperSpeedUsb, {"9.6.2.2 wSpeedsSupported", 4, 2, Usb32}, 0xFFF0},
    {0x04, {"9.6.2.3 bReserved", 3, 1, Usb32}, 0xFF},
    {0x05, {"9.6.2.4 bReserved", 3, 1, Usb32}, 0xFF},
    {SuperSpeedPlus, {"9.6.2.5 bReserved", 3, 1, Usb32}, 0xFF},
    {SuperSpeedPlus, {"9.6.2.5 bmAttributes", 4, 4, Usb32}, 0xFFFFFE00},
    {SuperSpeedPlus, {"9.6.2.5 wFunctionalitySupport", 8, 2, Usb32}, 0x00F0},
    {SuperSpeedPlus, {"9.6.2.5 wReserved", 10, 2, Usb32}, 0xFFFF},
};

constexpr Field ExtensionAttributes{"9.6.2.1 bmAttributes", 3, 4, Usb32};
constexpr Field Speeds{"9.6.2.2 wSpeedsSupported", 4, 2, Usb32};
constexpr Field Functionality{"9.6.2.2 bFunctionalitySupport", 6, 1, Usb32};
constexpr Field U1ExitLatency{"9.6.2.2 bU1DevExitLat", 7, 1, Usb32};
constexpr Field U2ExitLatency{"9.6.2.2 wU2DevExitLat", 8, 2, Usb32};
constexpr Field SublinkCount{"9.6.2.5 bmAttributes", 4, 4, Usb32};

// False: too short for its type, so that its fields are not read.
bool CheckLength(Findings & findings, Descriptor const & descriptor) {
    std::uint32_t const type = descriptor.Get(capability::bDevCapabilityType);
    auto const known = std::ranges::find(CapabilityLengths, type, &CapabilityLength::type);
    if (known == std::end(CapabilityLengths) || descriptor.bytes.size() >= known->least)
        return true;
    findings.Shall(
        descriptor, any::bLength, Join(known->name, " has at least ", known->least, " bytes"));
    return false;
}

void CheckReserved(Findings & findings, Descriptor const & descriptor) {
    std::uint32_t const type = descriptor.Get(capability::bDevCapabilityType);
    for (auto const & row : ReservedTable)
        if (row.type == type && (descriptor.Get(row.field) & row.mask) != 0)
            findings.Shall(
                descriptor, row.field,
                Join("bits ", Hex(row.mask, 2 * row.field.width), " are reserved and zero"));
}

void CheckExtension(Findings & findings, Device const & device, Descriptor const & descriptor) {
    if (device.IsSuperSpeed() && (descriptor.Get(ExtensionAttributes) & 0x02) == 0)
        findings.Shall(
            descriptor, ExtensionAttributes,
            "bit 1 (link power management) is set in a SuperSpeed device");
}

void CheckSuperSpeed(Findings & findings, Descriptor const & descriptor) {
    std::uint32_t const lowest = descriptor.Get(Functionality);
    if (lowest > 3 || (descriptor.Get(Speeds) >> lowest & 1) == 0)
        findings.Shall(
            descriptor, Functionality,
            Join(
                "is the number of a bit that is set in wSpeedsSupported (",
                Hex(descriptor.Get(Speeds), 4), ")"));
    if (descriptor.Get(U1ExitLatency) > 0x0A)
        findings.Shall(descriptor, U1ExitLatency, "values above 0x0A are reserved");
    if (descriptor.Get(U2ExitLatency) > 0x07FF)
        findings.Shall(descriptor, U2ExitLatency, "values above 0x07FF are reserved");
}

void CheckSuperSpeedPlus(Findings & findings, Descriptor const & descriptor) {
    std::uint32_t const sublinks = (descriptor.Get(SublinkCount) & 0x1F) + 1;
    if (descriptor.bytes.size() < 12 + 4 * sublinks)
        findings.Shall(
            descriptor, any::bLength,
            Join(
                "bmAttributes counts ", sublinks, " sublink speed attributes, which makes ",
                12 + 4 * sublinks, " bytes"));
}

void CheckCapability(Findings & findings, Device const & device, Descriptor const & descriptor) {
    if (!CheckLength(findings, descriptor)) return;
    CheckReserved(findings, descriptor);
    switch (descriptor.Get(capability::bDevCapabilityType)) {
    case Usb20Extension:
        CheckExtension(findings, device, descriptor);
        break;
    case SuperSpeedUsb:
        CheckSuperSpeed(findings, descriptor);
        break;
    case SuperSpeedPlus:
        CheckSuperSpeedPlus(findings, descriptor);
        break;
    default:
        break;
    }
}

void CheckCount(Findings & findings, ObjectStore const & read) {
    std::size_t const said = read.descriptor.Get(store::bNumDeviceCaps);
    if (read.complete && said != read.capabilities.size())
        findings.Shall(
            read.descriptor, store::bNumDeviceCaps,
            Join(
                "says ", said, ", the device capability descriptors here are ",
                read.capabilities.size()));
}

void CheckPresence(Findings & findings, ObjectStore const & read, std::uint32_t type) {
    bool const present = std::ranges::any_of(read.capabilities, [&](auto const & each) {
        return each.Get(capability::bDevCapabilityType) == type;
    });
    auto const known = std::ranges::find(CapabilityLengths, type, &CapabilityLength::type);
    if (!present)
        findings.Shall(
            read.descriptor, store::bNumDeviceCaps,
            Join("a SuperSpeed device has ", known->name, " (type ", Hex(type, 2), ")"));
}

} // namespace

std::vector<Finding> CheckStore(Device const & device) {
    Findings findings(device.Standard());
    if (!device.store) return {};
    CheckCount(findings, *device.store);
    if (device.IsSuperSpeed() && device.store->complete)
        for (std::uint32_t const type : {Usb20Extension, SuperSpeedUsb})
            CheckPresence(findings, *device.store, type);
    for (auto const & each : device.store->capabilities)
        CheckCapability(findings, device, each);
    return findings.Take();
}

} // namespace usb
