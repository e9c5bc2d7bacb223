// From a device's properties to its published names.
#include "platform/linux/DeviceIdentity.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "platform/linux/Udev.h"

namespace {

constexpr GUID USB_DEVICE_CLASS = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
constexpr GUID USB_HUB_CLASS = {
    0xF18A0E88, 0xC30C, 0x11D0, {0x88, 0x15, 0x00, 0xA0, 0xC9, 0x06, 0xBE, 0xD8}};
constexpr GUID USB_CONTROLLER_CLASS = {
    0x3ABF6F2D, 0x71C4, 0x462A, {0x8A, 0x92, 0x1E, 0x68, 0x61, 0xE6, 0xAF, 0x27}};

// bDeviceClass of a hub.
constexpr unsigned HUB = 9;

// Serial bus controller, USB: the first digits of a PCI class as the kernel writes it.
constexpr std::string_view PCI_CLASS_OF_USB = "C03";

constexpr std::size_t LONGEST_SERIAL = 126;

template <typename... Values>
std::string Print(char const * format, Values... values) {
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

// Empty: there is none.
std::string_view Property(udev_device * device, char const * name) {
    char const * const value = udev_device_get_property_value(device, name);
    return value ? value : "";
}

std::string_view Attribute(udev_device * device, char const * name) {
    char const * const value = udev_device_get_sysattr_value(device, name);
    return value ? value : "";
}

// A file is a line with blanks around numbers, a property is padded with zeros.
unsigned Number(std::string_view text) {
    unsigned number = 0;
    std::sscanf(std::string(text).c_str(), "%u", &number);
    return number;
}

// The files at a device's path may be those of the next device on the same port, or gone.
bool HasItsFiles(udev_device * device) {
    auto const number = Property(device, "DEVNUM");
    return !number.empty() && Number(number) == Number(Attribute(device, "devnum"));
}

std::string_view Serial(udev_device * device) {
    auto const told = Property(device, "ID_SERIAL_SHORT");
    return told.empty() && HasItsFiles(device) ? Attribute(device, "serial") : told;
}

// Characters that would end a part of the name, or that names do not have.
bool IsUsable(std::string_view serial) {
    return !serial.empty() && serial.size() <= LONGEST_SERIAL
           && std::all_of(serial.begin(), serial.end(), [](char c) {
                  return c > ' ' && c < 0x7F && std::strchr(",#\\/", c) == nullptr;
              });
}

bool IsRootHub(std::string_view sysname) { return sysname.substr(0, 3) == "usb"; }

// Where the device is plugged in: "0&1&1.2". The bus of a root hub has no port of its own.
std::string Place(udev_device * device) {
    std::string_view const sysname = udev_device_get_sysname(device);
    auto const dash = sysname.find('-');
    auto const port = dash == std::string_view::npos ? "0" : sysname.substr(dash + 1);
    return Print("0&%u&", Number(Property(device, "BUSNUM"))) + std::string(port);
}

std::string Instance(udev_device * device) {
    auto const serial = Serial(device);
    return IsUsable(serial) ? std::string(serial) : Place(device);
}

std::string Described(std::string_view text, char const * otherwise) {
    return text.empty() ? otherwise : std::string(text);
}

std::optional<DeviceIdentity> IdentifyUsb(udev_device * device) {
    unsigned vendor = 0;
    unsigned product = 0;
    unsigned release = 0;
    std::string const ids(Property(device, "PRODUCT"));
    if (std::sscanf(ids.c_str(), "%x/%x/%x", &vendor, &product, &release) != 3) {
        return std::nullopt;
    }
    bool const isHub =
        Number(Property(device, "TYPE")) == HUB || IsRootHub(udev_device_get_sysname(device));
    auto const kind = Print("USB\\VID_%04X&PID_%04X", vendor, product);
    auto const told = HasItsFiles(device) ? Attribute(device, "product") : std::string_view{};
    return DeviceIdentity{
        isHub ? USB_HUB_CLASS : USB_DEVICE_CLASS,
        kind + "\\" + Instance(device),
        {kind + Print("&REV_%04X", release), kind},
        Described(told, isHub ? "USB Hub" : "USB Device")};
}

std::optional<DeviceIdentity> IdentifyController(udev_device * device) {
    if (Property(device, "PCI_CLASS").substr(0, PCI_CLASS_OF_USB.size()) != PCI_CLASS_OF_USB) {
        return std::nullopt;
    }
    unsigned vendor = 0;
    unsigned product = 0;
    unsigned maker = 0;
    unsigned board = 0;
    std::sscanf(std::string(Property(device, "PCI_ID")).c_str(), "%x:%x", &vendor, &product);
    std::sscanf(std::string(Property(device, "PCI_SUBSYS_ID")).c_str(), "%x:%x", &maker, &board);
    auto const chip = Print("PCI\\VEN_%04X&DEV_%04X", vendor, product);
    auto const kind = chip + Print("&SUBSYS_%04X%04X", board, maker);
    return DeviceIdentity{
        USB_CONTROLLER_CLASS,
        kind + "\\" + udev_device_get_sysname(device),
        {kind, chip},
        Described(Property(device, "ID_MODEL_FROM_DATABASE"), "USB Host Controller")};
}

} // namespace

bool operator==(GUID const & left, GUID const & right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

std::string DeviceIdentity::InterfaceName() const {
    std::string name = "\\\\?\\" + instanceId;
    std::replace(name.begin() + 4, name.end(), '\\', '#');
    auto const & guid = interfaceClass;
    name += Print("#{%08x-%04x-%04x-", guid.Data1, guid.Data2, guid.Data3);
    for (std::size_t i = 0; i != std::size(guid.Data4); ++i) {
        name += Print(i == 2 ? "-%02x" : "%02x", guid.Data4[i]);
    }
    return name + "}";
}

std::optional<DeviceIdentity> IdentifyDevice(udev_device * device) {
    auto const * const subsystem = udev_device_get_subsystem(device);
    auto const * const type = udev_device_get_devtype(device);
    if (subsystem == nullptr) {
        return std::nullopt;
    }
    if (std::strcmp(subsystem, PCI_SUBSYSTEM) == 0) {
        return IdentifyController(device);
    }
    bool const isUsb = std::strcmp(subsystem, USB_SUBSYSTEM) == 0 && type != nullptr
                       && std::strcmp(type, USB_DEVICE_TYPE) == 0;
    return isUsb ? IdentifyUsb(device) : std::nullopt;
}
