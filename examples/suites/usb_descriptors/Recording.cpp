// Reads the bytes of a recording into a tree of descriptors.
//
// A configuration reaches to the next configuration or BOS descriptor, whatever its wTotalLength
// says: so a wrong length is one finding and its descriptors are still seen. The walk goes forward
// by at least two bytes a step and ends at the first length that cannot be followed.
#include "Recording.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Text.h"

namespace usb {
namespace {

struct StandardLength {
    DescriptorType type;
    std::size_t length;
    char const * name;
};

constexpr StandardLength StandardLengths[] = {
    {DescriptorType::Configuration, configuration::Size, "a configuration descriptor"},
    {DescriptorType::Interface, setting::Size, "an interface descriptor"},
    {DescriptorType::Endpoint, endpoint::Size, "an endpoint descriptor"},
    {DescriptorType::InterfaceAssociation, association::Size,
     "an interface association descriptor"},
    {DescriptorType::ObjectStore, store::Size, "a BOS descriptor"},
    {DescriptorType::DeviceCapability, capability::Size, "a device capability descriptor"},
    {DescriptorType::EndpointCompanion, companion::Size, "an endpoint companion descriptor"},
    {DescriptorType::IsochronousCompanion, isochronous::Size,
     "an isochronous endpoint companion descriptor"},
};

StandardLength const * FindStandardLength(DescriptorType type) {
    auto const found = std::ranges::find(StandardLengths, type, &StandardLength::type);
    return found == std::end(StandardLengths) ? nullptr : &*found;
}

// Types that a GetDescriptor request of their own returns, never that for a configuration.
bool BelongsElsewhere(DescriptorType type) {
    constexpr DescriptorType types[] = {
        DescriptorType::Device, DescriptorType::String, DescriptorType::DeviceQualifier,
        DescriptorType::OtherSpeedConfiguration, DescriptorType::DeviceCapability};
    return std::ranges::find(types, type) != std::end(types);
}

bool StartsSection(DescriptorType type) {
    return type == DescriptorType::Configuration || type == DescriptorType::ObjectStore;
}

constexpr unsigned AudioClass = 0x01;

class Parser {
public:
    explicit Parser(std::span<std::uint8_t const> bytes)
        : m_Bytes(bytes), m_Findings(Edition(bytes)) {}

    ParsedRecording Run() {
        ParsedRecording result;
        if (ReadDevice()) result.device = std::move(m_Device);
        result.findings = m_Findings.Take();
        return result;
    }

private:
    static char const * Edition(std::span<std::uint8_t const> bytes) {
        return Device{.descriptor = {0, bytes}, .configurations = {}, .store = {}}.Standard();
    }

    bool ReadDevice();
    void ReadSections();
    bool ReadConfiguration(Descriptor const & header);
    bool ReadStore(Descriptor const & header);
    bool IsReadable(Descriptor const & header);
    bool ReadBody(auto place);
    std::optional<Descriptor> Next();
    bool HasStandardLength(Descriptor const & descriptor);
    bool CheckTotal(Descriptor const & header, Field const & total);
    void Place(Configuration & configuration, Descriptor const & descriptor);
    void PlaceSetting(Configuration & configuration, Descriptor const & descriptor);
    void PlaceEndpoint(Configuration & configuration, Descriptor const & descriptor);
    void PlaceCompanion(Configuration & configuration, Descriptor const & descriptor);
    void PlaceIsochronousCompanion(Configuration & configuration, Descriptor const & descriptor);

    std::span<std::uint8_t const> m_Bytes;
    std::size_t m_At = 0;
    bool m_Broken = false;           // the walk met a length that cannot be followed
    bool m_InAudioInterface = false; // the audio class adds two bytes to endpoint descriptors
    DescriptorType m_Previous = DescriptorType::Device;
    // An interface or endpoint descriptor that was rejected: what belongs to it goes with it.
    std::optional<DescriptorType> m_Rejected;
    Device m_Device;
    Findings m_Findings;
};

bool Parser::ReadDevice() {
    Descriptor const whole{0, m_Bytes};
    if (m_Bytes.size() < device::Size) {
        m_Findings.Shall(
            whole, device::bLength,
            Join(
                "the recording has ", m_Bytes.size(), " bytes, a device descriptor alone has ",
                device::Size));
        return false;
    }
    if (m_Bytes.size() > MaximumRecordingSize) {
        m_Findings.Shall(
            whole, device::bLength,
            Join("the recording is larger than ", MaximumRecordingSize, " bytes and was not read"));
        return false;
    }
    if (whole.Type() != DescriptorType::Device) {
        m_Findings.Shall(
            whole, device::bDescriptorType,
            "a recording begins with a device descriptor, type 0x01; this is none");
        return false;
    }
    m_Device.descriptor = {0, m_Bytes.first(device::Size)};
    std::uint32_t const length = m_Device.descriptor.Get(device::bLength);
    if (length < device::Size)
        m_Findings.Shall(whole, device::bLength, "a device descriptor has at least 18 bytes");
    if (length > device::Size)
        m_Findings.Should(whole, device::bLength, "a device descriptor has 18 bytes and no more");
    m_At = device::Size;
    ReadSections();
    return true;
}

void Parser::ReadSections() {
    while (auto const header = Next()) {
        bool const last = m_Device.store.has_value();
        if (!last && header->Type() == DescriptorType::Configuration) {
            if (!ReadConfiguration(*header)) break;
        } else if (!last && header->Type() == DescriptorType::ObjectStore) {
            if (!ReadStore(*header)) break;
        } else {
            m_Findings.Shall(
                *header, any::bDescriptorType,
                "a configuration descriptor, a BOS descriptor behind the last configuration, or "
                "the end is expected here");
            m_Broken = true;
            break;
        }
    }
    m_Device.complete = !m_Broken;
}

bool Parser::ReadConfiguration(Descriptor const & header) {
    if (!IsReadable(header)) return false;
    auto & read = m_Device.configurations.emplace_back();
    read.descriptor = header;
    m_InAudioInterface = false;
    m_Previous = header.Type();
    m_Rejected.reset();
    read.complete = ReadBody([&](Descriptor const & descriptor) { Place(read, descriptor); });
    if (m_Broken) return false;
    if (!CheckTotal(header, configuration::wTotalLength)) read.complete = false;
    return true;
}

bool Parser::ReadStore(Descriptor const & header) {
    if (!IsReadable(header)) return false;
    auto & read = m_Device.store.emplace();
    read.descriptor = header;
    read.complete = ReadBody([&](Descriptor const & descriptor) {
        if (descriptor.Type() == DescriptorType::DeviceCapability)
            read.capabilities.push_back(descriptor);
        else
            m_Findings.Shall(
                descriptor, store::bDescriptorType,
                "a BOS descriptor is followed by device capability descriptors, type 0x10, alone");
    });
    if (m_Broken) return false;
    if (!CheckTotal(header, store::wTotalLength)) read.complete = false;
    return true;
}

// A section whose first descriptor is too short has no end that could be found.
bool Parser::IsReadable(Descriptor const & header) {
    if (!HasStandardLength(header)) m_Broken = true;
    return !m_Broken;
}

// Hands over the descriptors up to the next section. True: all of them could be read.
bool Parser::ReadBody(auto place) {
    bool complete = true;
    while (m_Bytes.size() - m_At < 2
           || !StartsSection(static_cast<DescriptorType>(m_Bytes[m_At + 1]))) {
        auto const descriptor = Next();
        if (!descriptor) break;
        if (HasStandardLength(*descriptor)) {
            place(*descriptor);
        } else {
            complete = false;
            m_Rejected = descriptor->Type();
        }
    }
    return complete && !m_Broken;
}

// The next descriptor. None at the end, or where a length cannot be followed.
std::optional<Descriptor> Parser::Next() {
    Descriptor rest{m_At, m_Bytes.subspan(m_At)};
    if (rest.bytes.empty()) return std::nullopt;
    std::size_t const length = rest.Get(any::bLength);
    if (length >= 2 && length <= rest.bytes.size()) {
        m_At += length;
        return Descriptor{rest.offset, rest.bytes.first(length)};
    }
    m_Findings.Shall(
        rest, any::bLength,
        length < 2 ? "a descriptor has at least its length and its type"
                   : Join(
                       "the recording ends before the descriptor does; bytes missing: ",
                       length - rest.bytes.size()));
    m_Broken = true;
    return std::nullopt;
}

// False: too short to be read as what it says that it is.
bool Parser::HasStandardLength(Descriptor const & descriptor) {
    auto const * const standard = FindStandardLength(descriptor.Type());
    if (standard == nullptr) return true;
    std::size_t const length = descriptor.bytes.size();
    if (length < standard->length) {
        m_Findings.Shall(
            descriptor, any::bLength,
            Join(standard->name, " has at least ", standard->length, " bytes"));
        return false;
    }
    bool const open = standard->type == DescriptorType::DeviceCapability
                      || (standard->type == DescriptorType::Endpoint && m_InAudioInterface);
    if (length > standard->length && !open)
        m_Findings.Should(
            descriptor, any::bLength,
            Join(standard->name, " has ", standard->length, " bytes; a host ignores the others"));
    return true;
}

// Compares a total length with what was read of its section. False: descriptors are missing.
bool Parser::CheckTotal(Descriptor const & header, Field const & total) {
    std::size_t const length = m_At - header.offset;
    std::size_t const said = header.Get(total);
    if (said != length)
        m_Findings.Shall(
            header, total,
            Join("says ", said, " bytes, the descriptors that are here have ", length));
    return said <= length;
}

void Parser::Place(Configuration & configuration, Descriptor const & descriptor) {
    switch (descriptor.Type()) {
    case DescriptorType::Interface:
        PlaceSetting(configuration, descriptor);
        break;
    case DescriptorType::Endpoint:
        PlaceEndpoint(configuration, descriptor);
        break;
    case DescriptorType::EndpointCompanion:
        PlaceCompanion(configuration, descriptor);
        break;
    case DescriptorType::IsochronousCompanion:
        PlaceIsochronousCompanion(configuration, descriptor);
        break;
    case DescriptorType::InterfaceAssociation:
        configuration.associations.push_back(descriptor);
        break;
    default:
        if (BelongsElsewhere(descriptor.Type()))
            m_Findings.Shall(
                descriptor, any::bDescriptorType,
                "a descriptor of this type is no part of a configuration");
    }
    m_Previous = descriptor.Type();
}

void Parser::PlaceSetting(Configuration & configuration, Descriptor const & descriptor) {
    m_Rejected.reset();
    configuration.settings.push_back({descriptor, {}});
    m_InAudioInterface = descriptor.Get(setting::bInterfaceClass) == AudioClass;
}

void Parser::PlaceEndpoint(Configuration & configuration, Descriptor const & descriptor) {
    if (m_Rejected == DescriptorType::Interface) return;
    m_Rejected.reset();
    if (configuration.settings.empty())
        m_Findings.Shall(
            descriptor, any::bDescriptorType,
            "an endpoint descriptor follows the interface descriptor that it belongs to");
    else
        configuration.settings.back().endpoints.push_back({descriptor, {}, {}});
}

void Parser::PlaceCompanion(Configuration & configuration, Descriptor const & descriptor) {
    if (m_Rejected) return;
    if (m_Previous != DescriptorType::Endpoint || configuration.settings.empty())
        m_Findings.Shall(
            descriptor, companion::bDescriptorType,
            "a companion descriptor follows immediately the endpoint descriptor that it belongs "
            "to");
    else
        configuration.settings.back().endpoints.back().companion = descriptor;
}

void Parser::PlaceIsochronousCompanion(
    Configuration & configuration, Descriptor const & descriptor) {
    if (m_Rejected) return;
    bool const follows = m_Previous == DescriptorType::EndpointCompanion
                         && !configuration.settings.empty()
                         && !configuration.settings.back().endpoints.empty();
    if (!follows)
        m_Findings.Shall(
            descriptor, isochronous::bDescriptorType,
            "it follows immediately the SuperSpeed companion descriptor of an endpoint");
    else
        configuration.settings.back().endpoints.back().isochronousCompanion = descriptor;
}

} // namespace

ParsedRecording ParseRecording(std::span<std::uint8_t const> bytes) { return Parser(bytes).Run(); }

} // namespace usb
