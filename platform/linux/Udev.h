// Owners of libudev's objects. An object, and all that was made from the same context, belongs to
// one thread at a time.
#pragma once

#include <memory>

#include <libudev.h>

template <auto Release>
struct UdevRelease {
    template <typename Object>
    void operator()(Object * object) const {
        Release(object);
    }
};

using UdevContext = std::unique_ptr<udev, UdevRelease<&udev_unref>>;
using UdevDevice = std::unique_ptr<udev_device, UdevRelease<&udev_device_unref>>;
using UdevEnumerate = std::unique_ptr<udev_enumerate, UdevRelease<&udev_enumerate_unref>>;
using UdevMonitor = std::unique_ptr<udev_monitor, UdevRelease<&udev_monitor_unref>>;
using UdevQueue = std::unique_ptr<udev_queue, UdevRelease<&udev_queue_unref>>;

// The subsystems whose devices have an identity: devices and hubs, host controllers.
inline constexpr char USB_SUBSYSTEM[] = "usb";
inline constexpr char USB_DEVICE_TYPE[] = "usb_device";
inline constexpr char PCI_SUBSYSTEM[] = "pci";
