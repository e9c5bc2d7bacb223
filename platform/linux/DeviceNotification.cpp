// Notifications of devices, as a source of messages behind the window's queue.
#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/DeviceServices.h"
#include "platform/linux/DeviceWatch.h"
#include "platform/linux/MessageQueue.h"
#include "platform/linux/NumberTable.h"
#include "platform/linux/Windows.h"

namespace {

// The record as it is sent, as long as the name needs.
class InterfaceRecord {
public:
    explicit InterfaceRecord(DeviceIdentity const & device) {
        auto const name = device.InterfaceName();
        constexpr auto fixed = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
        m_Bytes.resize(fixed + name.size() + 1);
        DEV_BROADCAST_DEVICEINTERFACE_A record = {};
        record.dbcc_size = static_cast<DWORD>(m_Bytes.size());
        record.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        record.dbcc_classguid = device.interfaceClass;
        std::memcpy(m_Bytes.data(), &record, fixed);
        std::memcpy(m_Bytes.data() + fixed, name.c_str(), name.size() + 1);
    }

    LPARAM Address() const { return reinterpret_cast<LPARAM>(m_Bytes.data()); }

private:
    std::vector<unsigned char> m_Bytes;
};

class Notification : public MessageSource {
public:
    // No class: all of them.
    Notification(
        std::shared_ptr<Window> const & window, std::unique_ptr<DeviceWatch> watch,
        std::optional<GUID> const & interfaceClass)
        : MessageSource(window), m_Watch(std::move(watch)), m_Class(interfaceClass) {}

    int Descriptor() const override { return m_Watch->Descriptor(); }

    void Serve() override {
        while (auto const event = Next()) {
            InterfaceRecord const record(event->device);
            auto const & window = *Target();
            window.procedure(
                window.handle, WM_DEVICECHANGE,
                event->isArrival ? DBT_DEVICEARRIVAL : DBT_DEVICEREMOVECOMPLETE, record.Address());
        }
    }

    // Any thread.
    void End() {
        std::scoped_lock const lock(m_Mutex);
        m_IsEnded = true;
    }

private:
    bool IsWanted(DeviceIdentity const & device) const {
        return !m_Class || *m_Class == device.interfaceClass;
    }

    // No lock is held while the procedure runs, so that it may end the notification.
    std::optional<DeviceEvent> Next() {
        std::scoped_lock const lock(m_Mutex);
        while (!m_IsEnded && !Target()->isGone) {
            auto event = m_Watch->Next();
            if (!event || IsWanted(event->device)) {
                return event;
            }
        }
        return std::nullopt;
    }

    std::unique_ptr<DeviceWatch> const m_Watch;
    std::optional<GUID> const m_Class;
    std::mutex m_Mutex;
    bool m_IsEnded = false;
};

// Never destroyed: statics of other libraries may end their notifications while the process ends.
NumberTable<Notification> & Table() {
    static auto & table = *new NumberTable<Notification>(0, 4);
    return table;
}

HDEVNOTIFY Refuse(DWORD error) {
    SetLastError(error);
    return nullptr;
}

bool IsAcceptable(void const * filter, DWORD flags) {
    if (filter == nullptr || (flags & ~DEVICE_NOTIFY_ALL_INTERFACE_CLASSES) != 0) {
        return false;
    }
    auto const & header = *static_cast<DEV_BROADCAST_HDR const *>(filter);
    return header.dbch_devicetype == DBT_DEVTYP_DEVICEINTERFACE
           && header.dbch_size >= offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
}

std::optional<GUID> WantedClass(void const * filter, DWORD flags) {
    if ((flags & DEVICE_NOTIFY_ALL_INTERFACE_CLASSES) != 0) {
        return std::nullopt;
    }
    return static_cast<DEV_BROADCAST_DEVICEINTERFACE_A const *>(filter)->dbcc_classguid;
}

} // namespace

HDEVNOTIFY RegisterDeviceNotificationA(HANDLE recipient, void * filter, DWORD flags) {
    auto const window = LookUpWindow(static_cast<HWND>(recipient));
    if (!window || !IsAcceptable(filter, flags)) {
        return Refuse(ERROR_INVALID_PARAMETER);
    }
    auto watch = DeviceWatch::Open();
    if (!watch) {
        return nullptr;
    }
    auto const notification =
        std::make_shared<Notification>(window, std::move(watch), WantedClass(filter, flags));
    if (DWORD const error = window->queue->Attach(notification)) {
        return Refuse(error);
    }
    return reinterpret_cast<HDEVNOTIFY>(Table().Add(notification));
}

BOOL UnregisterDeviceNotification(HDEVNOTIFY handle) {
    auto const notification = Table().Remove(reinterpret_cast<std::uintptr_t>(handle));
    if (!notification) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    notification->End();
    notification->Target()->queue->Detach(*notification);
    return TRUE;
}
