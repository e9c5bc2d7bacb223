// The list of devices.
#include "messages/CDevManager.h"

#include "platform/DeviceServices.h"

CDevManager::CDevManager(GUID const * classGuid, char const * enumerator, unsigned long flags)
    : m_DevInfo(SetupDiGetClassDevsA(classGuid, enumerator, nullptr, static_cast<DWORD>(flags))),
      m_ClassGuid(classGuid != nullptr ? *classGuid : GUID{}) {}

CDevManager::~CDevManager() {
    if (m_DevInfo != INVALID_HANDLE_VALUE) SetupDiDestroyDeviceInfoList(m_DevInfo);
}
