// The registration for device notifications.
#include "messages/CDeviceInterfaceRegistrar.h"

#include "app/CAppState.h"
#include "platform/DeviceServices.h"

namespace {

void * Register(GUID const & classGuid, DWORD flags) {
    DEV_BROADCAST_DEVICEINTERFACE_A filter = {};
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = classGuid;
    return RegisterDeviceNotificationA(CAppState::MainWindowHandle(), &filter, flags);
}

} // namespace

CDeviceInterfaceRegistrar::CDeviceInterfaceRegistrar()
    : m_Notification(
        Register(GUID{}, DEVICE_NOTIFY_WINDOW_HANDLE | DEVICE_NOTIFY_ALL_INTERFACE_CLASSES)) {}

CDeviceInterfaceRegistrar::CDeviceInterfaceRegistrar(GUID const & classGuid)
    : m_Notification(Register(classGuid, DEVICE_NOTIFY_WINDOW_HANDLE)) {}

// Deliberate: the handle is shared. Pinned by
// CDeviceInterfaceRegistrarTest.AssignmentSharesTheHandle.
CDeviceInterfaceRegistrar &
CDeviceInterfaceRegistrar::operator=(CDeviceInterfaceRegistrar const & other) = default;

CDeviceInterfaceRegistrar::~CDeviceInterfaceRegistrar() {
    if (m_Notification != nullptr) UnregisterDeviceNotification(m_Notification);
}
