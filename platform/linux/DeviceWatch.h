// The devices of USB that are there, and news of those that come and go.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/DeviceIdentity.h"
#include "platform/linux/Udev.h"

// In the order of their paths.
std::map<std::string, DeviceIdentity> ListDevices(udev * context);

struct DeviceEvent {
    bool isArrival;
    DeviceIdentity device;
};

// Belongs to one thread at a time.
class DeviceWatch {
public:
    // Listens to the machine's device manager. Null with ERROR_SERVICE_NOT_ACTIVE where none runs,
    // with ERROR_NOT_ENOUGH_MEMORY when no descriptor could be had.
    static std::unique_ptr<DeviceWatch> Open();

    // Readable while there may be news.
    int Descriptor() const;

    // The next event, in the order in which they happened; never waits. No value: none is there.
    std::optional<DeviceEvent> Next();

private:
    DeviceWatch(UdevContext context, UdevMonitor monitor);

    std::optional<DeviceEvent> EventOf(udev_device * device);
    DeviceEvent Arrival(std::string const & path, DeviceIdentity const & identity);
    std::optional<DeviceEvent> Removal(udev_device * device, std::string const & path);

    // The monitor goes before its context.
    UdevContext m_Context;
    UdevMonitor m_Monitor;

    // By their paths: what has gone can no longer be asked for its name.
    std::map<std::string, DeviceIdentity> m_Present;
};
