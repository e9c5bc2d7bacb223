// Rules of the interface descriptor: USB 2.0 and USB 3.2 9.6.5.
#include "Rules.h"

#include <map>

#include "Text.h"

namespace usb {
namespace {

using Settings = std::map<std::uint32_t, AlternateSetting const *>;
using Interfaces = std::map<std::uint32_t, Settings>;

// The alternate settings by interface and number. A second one of the same number is a finding.
Interfaces Sort(Findings & findings, Configuration const & read) {
    Interfaces interfaces;
    for (auto const & each : read.settings) {
        std::uint32_t const number = each.descriptor.Get(setting::bInterfaceNumber);
        std::uint32_t const alternate = each.descriptor.Get(setting::bAlternateSetting);
        if (!interfaces[number].emplace(alternate, &each).second)
            findings.Shall(
                each.descriptor, setting::bAlternateSetting,
                Join("selects an earlier alternate setting of interface ", number, " already"));
    }
    return interfaces;
}

void CheckNumbers(Findings & findings, Interfaces const & interfaces) {
    std::uint32_t expected = 0;
    for (auto const & [number, settings] : interfaces) {
        if (number != expected)
            findings.Shall(
                settings.begin()->second->descriptor, setting::bInterfaceNumber,
                Join("interfaces are numbered from 0 without a gap, ", expected, " is missing"));
        expected = number + 1;
    }
}

void CheckAlternates(Findings & findings, std::uint32_t number, Settings const & settings) {
    std::uint32_t expected = 0;
    for (auto const & [alternate, each] : settings) {
        if (alternate != expected && expected == 0)
            findings.Shall(
                each->descriptor, setting::bAlternateSetting,
                Join("interface ", number, " has no alternate setting 0, which is its default"));
        else if (alternate != expected)
            findings.Should(
                each->descriptor, setting::bAlternateSetting,
                Join(
                    "alternate settings should count up without a gap, ", expected,
                    " of interface ", number, " is missing"));
        expected = alternate + 1;
    }
}

void CheckEndpointCount(Findings & findings, AlternateSetting const & each) {
    std::size_t const said = each.descriptor.Get(setting::bNumEndpoints);
    if (said != each.endpoints.size())
        findings.Shall(
            each.descriptor, setting::bNumEndpoints,
            Join("says ", said, ", the endpoint descriptors here are ", each.endpoints.size()));
}

void CheckClass(Findings & findings, AlternateSetting const & each) {
    if (each.descriptor.Get(setting::bInterfaceClass) != 0) return;
    findings.Shall(
        each.descriptor, setting::bInterfaceClass, "zero is reserved for future standardization");
    if (each.descriptor.Get(setting::bInterfaceSubClass) != 0)
        findings.Shall(
            each.descriptor, setting::bInterfaceSubClass, "is zero when bInterfaceClass is zero");
}

void CheckConfiguration(Findings & findings, Configuration const & read) {
    auto const interfaces = Sort(findings, read);
    if (read.complete) {
        CheckNumbers(findings, interfaces);
        for (auto const & [number, settings] : interfaces)
            CheckAlternates(findings, number, settings);
    }
    for (auto const & each : read.settings) {
        if (read.complete) CheckEndpointCount(findings, each);
        CheckClass(findings, each);
    }
}

} // namespace

std::vector<Finding> CheckInterfaces(Device const & device) {
    Findings findings(device.Standard());
    for (auto const & read : device.configurations)
        CheckConfiguration(findings, read);
    return findings.Take();
}

} // namespace usb
