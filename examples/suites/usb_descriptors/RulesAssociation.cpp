// Rules of the interface association descriptor: USB 3.2 9.6.4, and the engineering change notice
// of USB 2.0 that brought the descriptor, with the same words.
#include "Rules.h"

#include <map>
#include <set>

#include "Text.h"

namespace usb {
namespace {

// The interfaces of one function: `count` numbers from `first` on.
struct Range {
    std::uint32_t first;
    std::uint32_t count;
};

Range RangeOf(Descriptor const & descriptor) {
    return {
        descriptor.Get(association::bFirstInterface), descriptor.Get(association::bInterfaceCount)};
}

// Where each interface number of a configuration comes first. Built once, because an association
// asks for up to 255 of them.
class FirstPlaces {
public:
    explicit FirstPlaces(Configuration const & read) {
        for (auto const & each : read.settings)
            m_Offsets.emplace(
                each.descriptor.Get(setting::bInterfaceNumber), each.descriptor.offset);
    }

    bool Has(std::uint32_t number) const { return m_Offsets.contains(number); }

    bool HasBefore(std::uint32_t number, std::size_t offset) const {
        auto const found = m_Offsets.find(number);
        return found != m_Offsets.end() && found->second < offset;
    }

private:
    std::map<std::uint32_t, std::size_t> m_Offsets;
};

void CheckCount(Findings & findings, Descriptor const & descriptor) {
    std::uint32_t const count = RangeOf(descriptor).count;
    if (count == 0)
        findings.Shall(
            descriptor, association::bInterfaceCount, "associates no interface with the function");
    if (count == 1)
        findings.Should(
            descriptor, association::bInterfaceCount,
            "an association should be of two or more interfaces");
}

void CheckRange(Findings & findings, FirstPlaces const & places, Descriptor const & descriptor) {
    auto const [first, count] = RangeOf(descriptor);
    for (std::uint32_t number = first; number < first + count; ++number) {
        if (places.Has(number)) continue;
        findings.Shall(
            descriptor, association::bInterfaceCount,
            Join("from interface ", first, " on; interface ", number, " does not exist"));
        break;
    }
}

void CheckOverlap(
    Findings & findings, Descriptor const & descriptor, std::set<std::uint32_t> & taken) {
    auto const [first, count] = RangeOf(descriptor);
    for (std::uint32_t number = first; number < first + count; ++number) {
        if (taken.insert(number).second) continue;
        findings.Should(
            descriptor, association::bFirstInterface,
            Join("interface ", number, " belongs to an earlier association already"));
        break;
    }
}

void CheckPlace(Findings & findings, FirstPlaces const & places, Descriptor const & descriptor) {
    auto const [first, count] = RangeOf(descriptor);
    for (std::uint32_t number = first; number < first + count; ++number) {
        if (!places.HasBefore(number, descriptor.offset)) continue;
        findings.Shall(
            descriptor, association::bFirstInterface,
            Join("is located before its interfaces, but interface ", number, " came earlier"));
        break;
    }
}

// Hosts older than the descriptor know such a device by its class.
void CheckDeviceClass(Findings & findings, Device const & device) {
    auto const & descriptor = device.descriptor;
    bool const multi = descriptor.Get(device::bDeviceClass) == 0xEF
                       && descriptor.Get(device::bDeviceSubClass) == 0x02
                       && descriptor.Get(device::bDeviceProtocol) == 0x01;
    if (!multi)
        findings.Should(
            descriptor, association::bDeviceClass,
            "a device with interface associations should have the class, subclass and protocol "
            "0xEF, 0x02, 0x01");
}

void CheckConfiguration(Findings & findings, Configuration const & read) {
    FirstPlaces const places(read);
    std::set<std::uint32_t> taken;
    for (auto const & descriptor : read.associations) {
        CheckCount(findings, descriptor);
        if (read.complete) CheckRange(findings, places, descriptor);
        CheckOverlap(findings, descriptor, taken);
        CheckPlace(findings, places, descriptor);
        if (descriptor.Get(association::bFunctionClass) == 0)
            findings.Shall(
                descriptor, association::bFunctionClass, "a value of zero is not allowed");
    }
}

} // namespace

std::vector<Finding> CheckAssociations(Device const & device) {
    Findings findings(Usb32);
    if (HasAssociations(device)) CheckDeviceClass(findings, device);
    for (auto const & read : device.configurations)
        CheckConfiguration(findings, read);
    return findings.Take();
}

} // namespace usb
