// Rules of the device descriptor: USB 2.0 and USB 3.2 9.6.1.
#include "Rules.h"

#include "Speeds.h"
#include "Text.h"

namespace usb {
namespace {

bool IsDecimal(std::uint32_t value) {
    for (; value != 0; value /= 16)
        if (value % 16 > 9) return false;
    return true;
}

void CheckDecimal(Findings & findings, Device const & device, Field const & field) {
    if (!IsDecimal(device.descriptor.Get(field)))
        findings.Shall(device.descriptor, field, "each digit of a binary-coded decimal is 0 to 9");
}

void CheckClass(Findings & findings, Device const & device) {
    auto const & descriptor = device.descriptor;
    if (descriptor.Get(device::bDeviceClass) != 0) return;
    if (descriptor.Get(device::bDeviceSubClass) != 0)
        findings.Shall(descriptor, device::bDeviceSubClass, "is zero when bDeviceClass is zero");
    if (descriptor.Get(device::bDeviceProtocol) != 0)
        findings.Should(
            descriptor, device::bDeviceProtocol,
            "has no meaning when bDeviceClass is zero, and should be zero");
}

void CheckControlSize(Findings & findings, Device const & device) {
    if (SpeedsOfDevice(device) != 0) return;
    findings.Shall(
        device.descriptor, device::bMaxPacketSize0,
        device.IsSuperSpeed() ? "is 9 (2 to the power of 9 bytes) at SuperSpeed, which bcdUSB says"
                              : "is 8, 16, 32 or 64");
}

void CheckCount(Findings & findings, Device const & device) {
    std::size_t const said = device.descriptor.Get(device::bNumConfigurations);
    std::size_t const found = device.configurations.size();
    if (said == 0)
        findings.Shall(
            device.descriptor, device::bNumConfigurations,
            "a device has one or more configurations");
    else if (device.complete && said != found)
        findings.Shall(
            device.descriptor, device::bNumConfigurations,
            Join("says ", said, ", the configuration descriptors here are ", found));
}

} // namespace

std::vector<Finding> CheckDevice(Device const & device) {
    Findings findings(device.Standard());
    CheckDecimal(findings, device, device::bcdUSB);
    CheckClass(findings, device);
    CheckControlSize(findings, device);
    CheckDecimal(findings, device, device::bcdDevice);
    CheckCount(findings, device);
    return findings.Take();
}

} // namespace usb
