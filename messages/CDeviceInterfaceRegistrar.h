// Lets the system tell the application's main window of devices that come and go, for a scope.
//
// The window must be set in CAppState before. The notifications reach its procedure on its own
// thread, whichever thread registers.
#pragma once

#include "app/Export.h"
#include "platform/BaseTypes.h"

class MORVEX_API CDeviceInterfaceRegistrar {
public:
    // Every device interface of every class.
    CDeviceInterfaceRegistrar();

    // Interfaces of one class.
    explicit CDeviceInterfaceRegistrar(GUID const & classGuid);

    CDeviceInterfaceRegistrar(CDeviceInterfaceRegistrar const &) = delete;

    // Deliberate: both objects then share one registration, and both end it.
    CDeviceInterfaceRegistrar & operator=(CDeviceInterfaceRegistrar const & other);

    ~CDeviceInterfaceRegistrar();

    // False: the system refused.
    bool IsValid() const { return m_Notification != nullptr; }

private:
    void * m_Notification;
};
