// Rules of the endpoint descriptor, USB 2.0 and USB 3.2 9.6.6, for each endpoint by itself and for
// the addresses and speeds of all of them. The companions' rules stand in RulesCompanion.cpp.
#include "Rules.h"

#include <map>
#include <set>

#include "RulesCompanion.h"
#include "Speeds.h"
#include "Text.h"

namespace usb {
namespace {

std::string NameOf(Endpoint const & read) {
    return Join(
        "endpoint ", Hex(read.descriptor.Get(endpoint::bEndpointAddress), 2), ", ",
        NameOf(TransferTypeOf(read)));
}

// Which bits of bmAttributes must be zero, and which values of bits 5..4 are reserved.
struct AttributeRule {
    std::uint32_t zero;
    std::uint32_t reservedUsage; // one bit for each value of bits 5..4
};

AttributeRule AttributeRuleFor(TransferType type, bool superSpeed) {
    switch (type) {
    case TransferType::Isochronous:
        return {0xC0, 0b1000};
    case TransferType::Interrupt:
        return superSpeed ? AttributeRule{0xCC, 0b1100} : AttributeRule{0xFC, 0};
    default:
        return {0xFC, 0};
    }
}

class EndpointRules {
public:
    explicit EndpointRules(Device const & device)
        : m_Device(device), m_Findings(device.Standard()), m_Possible(SpeedsOfDevice(device)) {
        // A bMaxPacketSize0 that contradicts bcdUSB is a finding of the device descriptor.
        if (m_Possible == 0) m_Possible = SpeedsOfVersion(device);
        m_Speeds = m_Possible;
    }

    std::vector<Finding> Run() {
        for (auto const & read : m_Device.configurations) {
            m_Owners.clear();
            for (auto const & each : read.settings)
                CheckSetting(each, read.complete);
        }
        return m_Findings.Take();
    }

private:
    void CheckSetting(AlternateSetting const & each, bool complete);
    void CheckAddress(Endpoint const & read);
    void CheckOwner(AlternateSetting const & each, Endpoint const & read);
    void CheckAttributes(Endpoint const & read);
    void CheckPacketSize(AlternateSetting const & each, Endpoint const & read);
    void CheckSpeed(Endpoint const & read);
    void CheckCommonSpeed(Endpoint const & read, SpeedSet sizes, SpeedSet intervals);
    void CheckInterval(Endpoint const & read);

    Device const & m_Device;
    Findings m_Findings;
    SpeedSet m_Possible; // what the device descriptor allows
    SpeedSet m_Speeds;   // what the endpoints seen so far have left of it
    std::map<std::uint32_t, std::uint32_t> m_Owners; // interface by endpoint address
};

void EndpointRules::CheckSetting(AlternateSetting const & each, bool complete) {
    std::set<std::uint32_t> addresses;
    for (auto const & read : each.endpoints) {
        CheckAddress(read);
        if (addresses.insert(read.descriptor.Get(endpoint::bEndpointAddress)).second)
            CheckOwner(each, read);
        else
            m_Findings.Shall(
                read.descriptor, endpoint::bEndpointAddress,
                "belongs to an earlier endpoint of this alternate setting already");
        CheckAttributes(read);
        CheckPacketSize(each, read);
        CheckSpeed(read);
        CheckInterval(read);
        CheckCompanions(m_Findings, m_Device, read, complete);
    }
}

void EndpointRules::CheckAddress(Endpoint const & read) {
    std::uint32_t const address = read.descriptor.Get(endpoint::bEndpointAddress);
    if ((address & 0x70) != 0)
        m_Findings.Shall(
            read.descriptor, endpoint::bEndpointAddress,
            "bits 6..4 are reserved and reset to zero");
    if ((address & 0x0F) == 0)
        m_Findings.Shall(
            read.descriptor, endpoint::bEndpointAddress,
            "there is never a descriptor for endpoint zero");
}

void EndpointRules::CheckOwner(AlternateSetting const & each, Endpoint const & read) {
    std::uint32_t const address = read.descriptor.Get(endpoint::bEndpointAddress);
    std::uint32_t const number = each.descriptor.Get(setting::bInterfaceNumber);
    auto const [owner, first] = m_Owners.emplace(address, number);
    if (!first && owner->second != number)
        m_Findings.Shall(
            read.descriptor, endpoint::SharedAddress,
            Join(
                "is used by interface ", owner->second,
                " already; interfaces of a configuration share no endpoint"));
}

void EndpointRules::CheckAttributes(Endpoint const & read) {
    std::uint32_t const attributes = read.descriptor.Get(endpoint::bmAttributes);
    auto const rule = AttributeRuleFor(TransferTypeOf(read), m_Device.IsSuperSpeed());
    if ((attributes & rule.zero) != 0)
        m_Findings.Shall(
            read.descriptor, endpoint::bmAttributes,
            Join(NameOf(read), ": bits ", Hex(rule.zero, 2), " are reserved and reset to zero"));
    else if ((rule.reservedUsage >> (attributes >> 4 & 3) & 1) != 0)
        m_Findings.Shall(
            read.descriptor, endpoint::bmAttributes,
            Join(NameOf(read), ": usage type ", attributes >> 4 & 3, " (bits 5..4) is reserved"));
}

void EndpointRules::CheckPacketSize(AlternateSetting const & each, Endpoint const & read) {
    if (m_Device.IsSuperSpeed()) return;
    std::uint32_t const field = read.descriptor.Get(endpoint::wMaxPacketSize);
    if ((field & 0xE000) != 0)
        m_Findings.Shall(
            read.descriptor, endpoint::wMaxPacketSize,
            Join(NameOf(read), ": bits 15..13 are reserved and set to zero"));
    bool const payload = TransferTypeOf(read) == TransferType::Isochronous && (field & 0x07FF) != 0;
    bool const byDefault = each.descriptor.Get(setting::bAlternateSetting) == 0;
    // USB 1.1 did not ask for this.
    if (payload && byDefault && m_Device.descriptor.Get(device::bcdUSB) >= 0x0200)
        m_Findings.Shall(
            read.descriptor, endpoint::DefaultPayload,
            Join(NameOf(read), ": has no payload in alternate setting 0, the default"));
}

void EndpointRules::CheckSpeed(Endpoint const & read) {
    auto const type = TransferTypeOf(read);
    SpeedSet const sizes = SpeedsOfPacketSize(read) & m_Possible;
    SpeedSet const intervals = SpeedsOfInterval(read) & m_Possible;
    if (sizes == 0)
        m_Findings.Shall(
            read.descriptor, endpoint::wMaxPacketSize,
            Join(NameOf(read), ": takes ", PacketSizesAllowed(type, m_Possible)));
    else if (intervals == 0)
        m_Findings.Shall(
            read.descriptor, endpoint::bInterval,
            Join(NameOf(read), ": takes ", IntervalsAllowed(type, m_Possible)));
    else if ((sizes & intervals) == 0)
        m_Findings.Shall(
            read.descriptor, endpoint::bInterval,
            Join(
                NameOf(read), ": takes ", IntervalsAllowed(type, sizes),
                ", for which alone its wMaxPacketSize is right"));
    else
        CheckCommonSpeed(read, sizes, intervals);
}

// A recording does not tell its speed; but the device ran at one when it was made, so that one
// speed has to be right for every endpoint.
void EndpointRules::CheckCommonSpeed(Endpoint const & read, SpeedSet sizes, SpeedSet intervals) {
    SpeedSet const left = m_Speeds & sizes & intervals;
    if (left != 0) {
        m_Speeds = left;
        return;
    }
    bool const bySize = (m_Speeds & sizes) == 0;
    m_Findings.Shall(
        read.descriptor, bySize ? endpoint::wMaxPacketSize : endpoint::bInterval,
        Join(
            NameOf(read), ": right at ", NamesOf(bySize ? sizes : intervals),
            ", but what comes before is right at ", NamesOf(m_Speeds), " alone"));
}

void EndpointRules::CheckInterval(Endpoint const & read) {
    if (!m_Device.IsSuperSpeed()) return;
    auto const type = TransferTypeOf(read);
    std::uint32_t const interval = read.descriptor.Get(endpoint::bInterval);
    bool const periodic = type == TransferType::Interrupt || type == TransferType::Isochronous;
    if (!periodic && interval != 0)
        m_Findings.Should(
            read.descriptor, endpoint::bInterval,
            Join(NameOf(read), ": the field is reserved and should be zero"));
    bool const notification = type == TransferType::Interrupt
                              && (read.descriptor.Get(endpoint::bmAttributes) >> 4 & 3) == 1;
    if (notification && interval >= 1 && interval <= 7)
        m_Findings.Shall(
            read.descriptor, endpoint::bInterval,
            Join(NameOf(read), ": takes 8 to 16 for notifications"));
}

} // namespace

std::vector<Finding> CheckEndpoints(Device const & device) { return EndpointRules(device).Run(); }

} // namespace usb
