// Listening to libudev.
#include "platform/linux/DeviceWatch.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/DeviceServices.h"

namespace {

// Room for the events that come while the window's thread does not pump.
constexpr int RECEIVE_BUFFER = 16 << 20;

// The manager tells of a device when it is ready to be used; the kernel alone does so before.
bool HasManager(udev * context) {
    UdevQueue const queue(udev_queue_new(context));
    return queue && udev_queue_get_udev_is_active(queue.get()) != 0;
}

bool Enable(udev_monitor * monitor) {
    udev_monitor_filter_add_match_subsystem_devtype(monitor, USB_SUBSYSTEM, USB_DEVICE_TYPE);
    udev_monitor_filter_add_match_subsystem_devtype(monitor, PCI_SUBSYSTEM, nullptr);
    // A smaller buffer does as well, if more is not allowed.
    udev_monitor_set_receive_buffer_size(monitor, RECEIVE_BUFFER);
    return udev_monitor_enable_receiving(monitor) >= 0;
}

UdevMonitor Listen(udev * context) {
    if (!HasManager(context)) {
        SetLastError(ERROR_SERVICE_NOT_ACTIVE);
        return nullptr;
    }
    errno = 0;
    UdevMonitor monitor(udev_monitor_new_from_netlink(context, "udev"));
    if (!monitor || !Enable(monitor.get())) {
        SetLastError(
            errno == EMFILE || errno == ENFILE ? ERROR_NOT_ENOUGH_MEMORY
                                               : ERROR_SERVICE_NOT_ACTIVE);
        return nullptr;
    }
    return monitor;
}

UdevDevice DeviceAt(udev * context, char const * path) {
    return UdevDevice(path ? udev_device_new_from_syspath(context, path) : nullptr);
}

} // namespace

std::map<std::string, DeviceIdentity> ListDevices(udev * context) {
    std::map<std::string, DeviceIdentity> devices;
    UdevEnumerate const enumerate(udev_enumerate_new(context));
    if (!enumerate) {
        return devices;
    }
    udev_enumerate_add_match_subsystem(enumerate.get(), USB_SUBSYSTEM);
    udev_enumerate_add_match_subsystem(enumerate.get(), PCI_SUBSYSTEM);
    udev_enumerate_scan_devices(enumerate.get());
    for (auto * entry = udev_enumerate_get_list_entry(enumerate.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        auto const * const path = udev_list_entry_get_name(entry);
        auto const device = DeviceAt(context, path);
        if (auto identity = device ? IdentifyDevice(device.get()) : std::nullopt) {
            devices.emplace(path, std::move(*identity));
        }
    }
    return devices;
}

DeviceWatch::DeviceWatch(UdevContext context, UdevMonitor monitor)
    : m_Context(std::move(context)), m_Monitor(std::move(monitor)) {
    // After the monitor has begun to listen: what comes in between is seen twice, never missed.
    m_Present = ListDevices(m_Context.get());
}

std::unique_ptr<DeviceWatch> DeviceWatch::Open() {
    UdevContext context(udev_new());
    if (!context) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    auto monitor = Listen(context.get());
    if (!monitor) {
        return nullptr;
    }
    return std::unique_ptr<DeviceWatch>(new DeviceWatch(std::move(context), std::move(monitor)));
}

int DeviceWatch::Descriptor() const { return udev_monitor_get_fd(m_Monitor.get()); }

std::optional<DeviceEvent> DeviceWatch::Next() {
    while (UdevDevice const device{udev_monitor_receive_device(m_Monitor.get())}) {
        if (auto event = EventOf(device.get())) {
            return event;
        }
    }
    return std::nullopt;
}

std::optional<DeviceEvent> DeviceWatch::EventOf(udev_device * device) {
    auto const * const named = udev_device_get_action(device);
    std::string_view const action = named ? named : "";
    std::string const path = udev_device_get_syspath(device);
    if (action == "remove") {
        return Removal(device, path);
    }
    auto const identity = action == "add" ? IdentifyDevice(device) : std::nullopt;
    return identity ? std::optional(Arrival(path, *identity)) : std::nullopt;
}

DeviceEvent DeviceWatch::Arrival(std::string const & path, DeviceIdentity const & identity) {
    m_Present.insert_or_assign(path, identity);
    return {true, identity};
}

std::optional<DeviceEvent> DeviceWatch::Removal(udev_device * device, std::string const & path) {
    if (auto const node = m_Present.extract(path)) {
        return DeviceEvent{false, node.mapped()};
    }
    auto identity = IdentifyDevice(device);
    return identity ? std::optional(DeviceEvent{false, *identity}) : std::nullopt;
}
