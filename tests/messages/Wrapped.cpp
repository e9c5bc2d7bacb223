// The platform operations that this program's tests divert.
#include "platform/DeviceServices.h"
#include "platform/Synchronization.h"
#include "platform/Wrap.h"

MORVEX_WRAP_API(void, EnterCriticalSection, (CRITICAL_SECTION * section), (section))
MORVEX_WRAP_API(void, LeaveCriticalSection, (CRITICAL_SECTION * section), (section))
MORVEX_WRAP_API(BOOL, SetEvent, (HANDLE event), (event))
MORVEX_WRAP_API(
    HDEVNOTIFY, RegisterDeviceNotificationA, (HANDLE recipient, void * filter, DWORD flags),
    (recipient, filter, flags))
MORVEX_WRAP_API(BOOL, UnregisterDeviceNotification, (HDEVNOTIFY notification), (notification))
MORVEX_WRAP_API(
    HDEVINFO, SetupDiGetClassDevsA,
    (GUID const * classGuid, char const * enumerator, HWND parent, DWORD flags),
    (classGuid, enumerator, parent, flags))
MORVEX_WRAP_API(BOOL, SetupDiDestroyDeviceInfoList, (HDEVINFO list), (list))
