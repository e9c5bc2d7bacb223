// One descriptor in a recording, its types and its fields as chapter 9 of the standard lists them.
//
// A descriptor borrows the bytes of its recording and is valid as long as they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace usb {

enum class DescriptorType : std::uint8_t {
    Device = 0x01,
    Configuration = 0x02,
    String = 0x03,
    Interface = 0x04,
    Endpoint = 0x05,
    DeviceQualifier = 0x06,
    OtherSpeedConfiguration = 0x07,
    InterfaceAssociation = 0x0B,
    ObjectStore = 0x0F,
    DeviceCapability = 0x10,
    EndpointCompanion = 0x30,
    IsochronousCompanion = 0x31,
};

// A field as the standard lists it.
struct Field {
    char const * rule; // section and name
    std::size_t at;    // distance from the descriptor's start
    int width;         // in bytes
    // The one edition that has the section; null where both number it alike.
    char const * standard = nullptr;
};

inline constexpr char const * Usb20 = "USB 2.0";
inline constexpr char const * Usb32 = "USB 3.2";

struct Descriptor {
    std::size_t offset = 0; // of bLength, from the start of the recording
    std::span<std::uint8_t const> bytes;

    DescriptorType Type() const { return static_cast<DescriptorType>(bytes[1]); }

    // The field's value; little-endian as on the bus. Bytes behind the end read as 0.
    std::uint32_t Get(Field const & field) const {
        std::uint32_t value = 0;
        for (std::size_t i = field.at + static_cast<std::size_t>(field.width); i-- != field.at;)
            value = value << 8 | (i < bytes.size() ? bytes[i] : 0u);
        return value;
    }
};

namespace any {
inline constexpr Field bLength{"9.5 bLength", 0, 1};
inline constexpr Field bDescriptorType{"9.4.3 bDescriptorType", 1, 1};
} // namespace any

namespace device {
inline constexpr std::size_t Size = 18;
inline constexpr Field bLength{"9.6.1 bLength", 0, 1};
inline constexpr Field bDescriptorType{"9.6.1 bDescriptorType", 1, 1};
inline constexpr Field bcdUSB{"9.6.1 bcdUSB", 2, 2};
inline constexpr Field bDeviceClass{"9.6.1 bDeviceClass", 4, 1};
inline constexpr Field bDeviceSubClass{"9.6.1 bDeviceSubClass", 5, 1};
inline constexpr Field bDeviceProtocol{"9.6.1 bDeviceProtocol", 6, 1};
inline constexpr Field bMaxPacketSize0{"9.6.1 bMaxPacketSize0", 7, 1};
inline constexpr Field idVendor{"9.6.1 idVendor", 8, 2};
inline constexpr Field idProduct{"9.6.1 idProduct", 10, 2};
inline constexpr Field bcdDevice{"9.6.1 bcdDevice", 12, 2};
inline constexpr Field bNumConfigurations{"9.6.1 bNumConfigurations", 17, 1};
} // namespace device

namespace configuration {
inline constexpr std::size_t Size = 9;
inline constexpr Field wTotalLength{"9.6.3 wTotalLength", 2, 2};
inline constexpr Field bNumInterfaces{"9.6.3 bNumInterfaces", 4, 1};
inline constexpr Field bConfigurationValue{"9.6.3 bConfigurationValue", 5, 1};
inline constexpr Field bmAttributes{"9.6.3 bmAttributes", 7, 1};
inline constexpr Field bMaxPower{"9.6.3 bMaxPower", 8, 1};
} // namespace configuration

namespace association {
inline constexpr std::size_t Size = 8;
inline constexpr Field bFirstInterface{"9.6.4 bFirstInterface", 2, 1, Usb32};
inline constexpr Field bInterfaceCount{"9.6.4 bInterfaceCount", 3, 1, Usb32};
inline constexpr Field bFunctionClass{"9.6.4 bFunctionClass", 4, 1, Usb32};
// The field of the device descriptor that the section speaks of.
inline constexpr Field bDeviceClass{"9.6.4 bDeviceClass", 4, 1, Usb32};
} // namespace association

namespace setting {
inline constexpr std::size_t Size = 9;
inline constexpr Field bInterfaceNumber{"9.6.5 bInterfaceNumber", 2, 1};
inline constexpr Field bAlternateSetting{"9.6.5 bAlternateSetting", 3, 1};
inline constexpr Field bNumEndpoints{"9.6.5 bNumEndpoints", 4, 1};
inline constexpr Field bInterfaceClass{"9.6.5 bInterfaceClass", 5, 1};
inline constexpr Field bInterfaceSubClass{"9.6.5 bInterfaceSubClass", 6, 1};
} // namespace setting

namespace endpoint {
inline constexpr std::size_t Size = 7;
inline constexpr Field bEndpointAddress{"9.6.6 bEndpointAddress", 2, 1};
inline constexpr Field bmAttributes{"9.6.6 bmAttributes", 3, 1};
inline constexpr Field wMaxPacketSize{"9.6.6 wMaxPacketSize", 4, 2};
inline constexpr Field bInterval{"9.6.6 bInterval", 6, 1};
// What other sections say of these fields: of endpoints that interfaces share, of companions, and
// of isochronous endpoints in alternate setting 0.
inline constexpr Field SharedAddress{"9.6.3 bEndpointAddress", 2, 1};
inline constexpr Field MissingCompanion{"9.6.7 bEndpointAddress", 2, 1, Usb32};
inline constexpr Field DefaultPayload{"5.6.3 wMaxPacketSize", 4, 2, Usb20};
} // namespace endpoint

namespace companion {
inline constexpr std::size_t Size = 6;
inline constexpr Field bDescriptorType{"9.6.7 bDescriptorType", 1, 1, Usb32};
inline constexpr Field bMaxBurst{"9.6.7 bMaxBurst", 2, 1, Usb32};
inline constexpr Field bmAttributes{"9.6.7 bmAttributes", 3, 1, Usb32};
inline constexpr Field wBytesPerInterval{"9.6.7 wBytesPerInterval", 4, 2, Usb32};
} // namespace companion

namespace isochronous {
inline constexpr std::size_t Size = 8;
inline constexpr Field bDescriptorType{"9.6.8 bDescriptorType", 1, 1, Usb32};
inline constexpr Field wReserved{"9.6.8 wReserved", 2, 2, Usb32};
} // namespace isochronous

namespace store {
inline constexpr std::size_t Size = 5;
inline constexpr Field bDescriptorType{"9.6.2 bDescriptorType", 1, 1, Usb32};
inline constexpr Field wTotalLength{"9.6.2 wTotalLength", 2, 2, Usb32};
inline constexpr Field bNumDeviceCaps{"9.6.2 bNumDeviceCaps", 4, 1, Usb32};
} // namespace store

namespace capability {
inline constexpr std::size_t Size = 3;
inline constexpr Field bDevCapabilityType{"9.6.2 bDevCapabilityType", 2, 1, Usb32};
} // namespace capability

} // namespace usb
