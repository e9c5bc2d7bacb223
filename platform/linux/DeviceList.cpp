// Lists of the devices that are there.
#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <strings.h>

#include "platform/DeviceServices.h"
#include "platform/linux/DeviceWatch.h"
#include "platform/linux/NumberTable.h"

namespace {

// The setup class of USB: controllers, hubs and devices alike.
constexpr GUID USB_SETUP_CLASS = {
    0x36FC9E60, 0xC465, 0x11CF, {0x80, 0x56, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};

using DeviceList = std::vector<DeviceIdentity>;

// Never destroyed: statics of other libraries may free their lists while the process ends.
NumberTable<DeviceList const> & Table() {
    static auto & table = *new NumberTable<DeviceList const>(0, 4);
    return table;
}

BOOL Refuse(DWORD error) {
    SetLastError(error);
    return FALSE;
}

std::shared_ptr<DeviceList const> FindList(HDEVINFO list) {
    auto found = Table().Find(reinterpret_cast<std::uintptr_t>(list));
    if (!found) {
        SetLastError(ERROR_INVALID_HANDLE);
    }
    return found;
}

struct Selection {
    // Null: all.
    GUID const * classGuid;
    bool byInterface;
    char const * enumerator;

    bool Admits(DeviceIdentity const & device) const {
        bool const ofClass =
            classGuid == nullptr
            || *classGuid == (byInterface ? device.interfaceClass : USB_SETUP_CLASS);
        return ofClass && (enumerator == nullptr || IsEnumeratedBy(device.instanceId));
    }

    // Names of buses and ids match in any case.
    bool IsEnumeratedBy(std::string const & instanceId) const {
        auto const bus = instanceId.substr(0, instanceId.find('\\'));
        return strcasecmp(bus.c_str(), enumerator) == 0
               || strcasecmp(instanceId.c_str(), enumerator) == 0;
    }
};

DeviceList Select(Selection const & selection) {
    DeviceList selected;
    UdevContext const context(udev_new());
    if (!context) {
        return selected;
    }
    for (auto const & [path, device] : ListDevices(context.get())) {
        if (selection.Admits(device)) {
            selected.push_back(device);
        }
    }
    return selected;
}

// A device of the list by the number that its record bears, counted from 1. Null with the last
// error.
std::shared_ptr<DeviceIdentity const> FindDevice(HDEVINFO handle, SP_DEVINFO_DATA const * device) {
    auto const list = FindList(handle);
    if (!list) {
        return nullptr;
    }
    if (device == nullptr || device->DevInst == 0 || device->DevInst > list->size()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    return {list, &(*list)[device->DevInst - 1]};
}

BOOL Give(std::string const & bytes, void * buffer, DWORD size, DWORD * required) {
    if (required != nullptr) {
        *required = static_cast<DWORD>(bytes.size());
    }
    if (buffer == nullptr || size < bytes.size()) {
        return Refuse(ERROR_INSUFFICIENT_BUFFER);
    }
    std::memcpy(buffer, bytes.data(), bytes.size());
    return TRUE;
}

std::string WithTerminator(std::string const & text) { return text + '\0'; }

std::string Joined(std::vector<std::string> const & texts) {
    std::string joined;
    for (auto const & text : texts) {
        joined += WithTerminator(text);
    }
    return WithTerminator(joined);
}

} // namespace

HDEVINFO
SetupDiGetClassDevsA(GUID const * classGuid, char const * enumerator, HWND, DWORD flags) {
    bool const all = (flags & DIGCF_ALLCLASSES) != 0;
    if (classGuid == nullptr && !all) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }
    bool const byInterface = (flags & DIGCF_DEVICEINTERFACE) != 0;
    auto const list = std::make_shared<DeviceList const>(
        Select({all ? nullptr : classGuid, byInterface, enumerator}));
    return reinterpret_cast<HDEVINFO>(Table().Add(list));
}

BOOL SetupDiDestroyDeviceInfoList(HDEVINFO list) {
    auto const removed = Table().Remove(reinterpret_cast<std::uintptr_t>(list));
    return removed ? TRUE : Refuse(ERROR_INVALID_HANDLE);
}

BOOL SetupDiEnumDeviceInfo(HDEVINFO handle, DWORD index, SP_DEVINFO_DATA * device) {
    auto const list = FindList(handle);
    if (!list) {
        return FALSE;
    }
    if (device == nullptr || device->cbSize != sizeof *device) {
        return Refuse(ERROR_INVALID_USER_BUFFER);
    }
    if (index >= list->size()) {
        return Refuse(ERROR_NO_MORE_ITEMS);
    }
    device->ClassGuid = USB_SETUP_CLASS;
    device->DevInst = index + 1;
    device->Reserved = 0;
    return TRUE;
}

BOOL SetupDiGetDeviceInstanceIdA(
    HDEVINFO list, SP_DEVINFO_DATA * device, char * id, DWORD size, DWORD * required) {
    auto const found = FindDevice(list, device);
    return found ? Give(WithTerminator(found->instanceId), id, size, required) : FALSE;
}

BOOL SetupDiGetDeviceRegistryPropertyA(
    HDEVINFO list, SP_DEVINFO_DATA * device, DWORD property, DWORD * type, BYTE * buffer,
    DWORD size, DWORD * required) {
    auto const found = FindDevice(list, device);
    if (!found) {
        return FALSE;
    }
    if (property != SPDRP_DEVICEDESC && property != SPDRP_HARDWAREID) {
        return Refuse(ERROR_INVALID_DATA);
    }
    bool const isText = property == SPDRP_DEVICEDESC;
    if (type != nullptr) {
        *type = isText ? REG_SZ : REG_MULTI_SZ;
    }
    auto const bytes = isText ? WithTerminator(found->description) : Joined(found->hardwareIds);
    return Give(bytes, buffer, size, required);
}
