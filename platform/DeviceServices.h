// Devices that come and go: the records that tell of them, asking for notifications to a window,
// and walking through the devices that are there.
//
// Off Windows the devices are those of USB: devices, hubs and host controllers. A notification
// reaches the window's procedure on the window's thread while that pumps; the operations themselves
// may be called from any thread.
#pragma once

#include <cstddef>

#include "platform/BaseTypes.h"
#include "platform/Registry.h"

#if defined(_WIN32)

#include <dbt.h>
#include <setupapi.h>

#else

using HDEVNOTIFY = void *;
using HDEVINFO = void *;

struct DEV_BROADCAST_HDR {
    DWORD dbch_size;
    DWORD dbch_devicetype;
    DWORD dbch_reserved;
};

struct DEV_BROADCAST_OEM {
    DWORD dbco_size;
    DWORD dbco_devicetype;
    DWORD dbco_reserved;
    DWORD dbco_identifier;
    DWORD dbco_suppfunc;
};

struct DEV_BROADCAST_VOLUME {
    DWORD dbcv_size;
    DWORD dbcv_devicetype;
    DWORD dbcv_reserved;
    DWORD dbcv_unitmask;
    WORD dbcv_flags;
};

struct DEV_BROADCAST_PORT_A {
    DWORD dbcp_size;
    DWORD dbcp_devicetype;
    DWORD dbcp_reserved;
    char dbcp_name[1];
};

struct DEV_BROADCAST_DEVICEINTERFACE_A {
    DWORD dbcc_size;
    DWORD dbcc_devicetype;
    DWORD dbcc_reserved;
    GUID dbcc_classguid;
    char dbcc_name[1];
};

struct DEV_BROADCAST_HANDLE {
    DWORD dbch_size;
    DWORD dbch_devicetype;
    DWORD dbch_reserved;
    HANDLE dbch_handle;
    HDEVNOTIFY dbch_hdevnotify;
    GUID dbch_eventguid;
    LONG dbch_nameoffset;
    BYTE dbch_data[1];
};

inline constexpr WPARAM DBT_DEVNODES_CHANGED = 0x0007;
inline constexpr WPARAM DBT_QUERYCHANGECONFIG = 0x0017;
inline constexpr WPARAM DBT_CONFIGCHANGED = 0x0018;
inline constexpr WPARAM DBT_CONFIGCHANGECANCELED = 0x0019;
inline constexpr WPARAM DBT_DEVICEARRIVAL = 0x8000;
inline constexpr WPARAM DBT_DEVICEQUERYREMOVE = 0x8001;
inline constexpr WPARAM DBT_DEVICEQUERYREMOVEFAILED = 0x8002;
inline constexpr WPARAM DBT_DEVICEREMOVEPENDING = 0x8003;
inline constexpr WPARAM DBT_DEVICEREMOVECOMPLETE = 0x8004;
inline constexpr WPARAM DBT_DEVICETYPESPECIFIC = 0x8005;
inline constexpr WPARAM DBT_CUSTOMEVENT = 0x8006;
inline constexpr WPARAM DBT_USERDEFINED = 0xFFFF;

inline constexpr DWORD DBT_DEVTYP_OEM = 0;
inline constexpr DWORD DBT_DEVTYP_VOLUME = 2;
inline constexpr DWORD DBT_DEVTYP_PORT = 3;
inline constexpr DWORD DBT_DEVTYP_DEVICEINTERFACE = 5;
inline constexpr DWORD DBT_DEVTYP_HANDLE = 6;

inline constexpr WORD DBTF_MEDIA = 0x0001;
inline constexpr WORD DBTF_NET = 0x0002;

inline constexpr DWORD DEVICE_NOTIFY_WINDOW_HANDLE = 0;
inline constexpr DWORD DEVICE_NOTIFY_ALL_INTERFACE_CLASSES = 4;

// Asks for WM_DEVICECHANGE with DBT_DEVICEARRIVAL and DBT_DEVICEREMOVECOMPLETE, each with a
// DEV_BROADCAST_DEVICEINTERFACE_A that is valid for the call, whenever a device of the class in the
// filter, or of any class with DEVICE_NOTIFY_ALL_INTERFACE_CLASSES, comes or goes. The filter is a
// DEV_BROADCAST_DEVICEINTERFACE_A and is not kept. The caller gives the handle to
// UnregisterDeviceNotification, also when the window has gone before.
//
// Null with ERROR_INVALID_PARAMETER for a window that is null or gone, a filter of another type and
// unknown flags; with ERROR_SERVICE_NOT_ACTIVE where no device manager runs; with
// ERROR_NOT_ENOUGH_MEMORY when the process may open no more descriptors.
MORVEX_PLATFORM_API HDEVNOTIFY
RegisterDeviceNotificationA(HANDLE recipient, void * filter, DWORD flags);

// No event is delivered any more when this returns, but for one that the window's thread is inside
// of. Zero with ERROR_INVALID_HANDLE.
MORVEX_PLATFORM_API BOOL UnregisterDeviceNotification(HDEVNOTIFY notification);

struct SP_DEVINFO_DATA {
    DWORD cbSize;
    GUID ClassGuid;
    DWORD DevInst;
    ULONG64 Reserved;
};

inline constexpr DWORD DIGCF_PRESENT = 0x02;
inline constexpr DWORD DIGCF_ALLCLASSES = 0x04;
inline constexpr DWORD DIGCF_DEVICEINTERFACE = 0x10;

inline constexpr DWORD SPDRP_DEVICEDESC = 0;
inline constexpr DWORD SPDRP_HARDWAREID = 1;

inline constexpr DWORD ERROR_INVALID_DATA = 13;
inline constexpr DWORD ERROR_SERVICE_NOT_ACTIVE = 1062;
inline constexpr DWORD ERROR_INVALID_USER_BUFFER = 1784;

inline HANDLE const INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(-1LL);

// The devices that are there now: those of a class, which is an interface class with
// DIGCF_DEVICEINTERFACE and the setup class of USB otherwise, or all with DIGCF_ALLCLASSES; of one
// bus, "USB" or "PCI", or of one instance id if `enumerator` is given. Devices that have gone are
// not remembered, so that DIGCF_PRESENT changes nothing. The list does not follow what happens
// later; the caller gives it to SetupDiDestroyDeviceInfoList.
//
// INVALID_HANDLE_VALUE with ERROR_INVALID_PARAMETER when there is neither a class nor
// DIGCF_ALLCLASSES.
MORVEX_PLATFORM_API HDEVINFO
SetupDiGetClassDevsA(GUID const * classGuid, char const * enumerator, HWND parent, DWORD flags);

// Zero with ERROR_INVALID_HANDLE.
MORVEX_PLATFORM_API BOOL SetupDiDestroyDeviceInfoList(HDEVINFO list);

// The device at `index`, from 0. Zero with ERROR_NO_MORE_ITEMS behind the last, with
// ERROR_INVALID_USER_BUFFER when `cbSize` is not that of the record, with ERROR_INVALID_HANDLE.
MORVEX_PLATFORM_API BOOL
SetupDiEnumDeviceInfo(HDEVINFO list, DWORD index, SP_DEVINFO_DATA * device);

// The device's instance id, as in "USB\VID_F1D0&PID_0001\4711". `size` and `required` (may be null)
// count bytes with the terminator. Zero with ERROR_INSUFFICIENT_BUFFER and `required` set,
// ERROR_INVALID_PARAMETER for a device that is not of the list, ERROR_INVALID_HANDLE.
MORVEX_PLATFORM_API BOOL SetupDiGetDeviceInstanceIdA(
    HDEVINFO list, SP_DEVINFO_DATA * device, char * id, DWORD size, DWORD * required);

// SPDRP_DEVICEDESC, one text (REG_SZ), or SPDRP_HARDWAREID, texts with an empty one behind the last
// (REG_MULTI_SZ). `type` and `required` may be null. Zero as SetupDiGetDeviceInstanceIdA, and with
// ERROR_INVALID_DATA for another property.
MORVEX_PLATFORM_API BOOL SetupDiGetDeviceRegistryPropertyA(
    HDEVINFO list, SP_DEVINFO_DATA * device, DWORD property, DWORD * type, BYTE * buffer,
    DWORD size, DWORD * required);

#endif

static_assert(sizeof(DEV_BROADCAST_HDR) == 12);
static_assert(sizeof(DEV_BROADCAST_OEM) == 20);
static_assert(sizeof(DEV_BROADCAST_VOLUME) == 20);
static_assert(sizeof(DEV_BROADCAST_PORT_A) == 16);
static_assert(sizeof(DEV_BROADCAST_DEVICEINTERFACE_A) == 32);
static_assert(sizeof(DEV_BROADCAST_HANDLE) == 56);
static_assert(offsetof(DEV_BROADCAST_VOLUME, dbcv_flags) == 16);
static_assert(offsetof(DEV_BROADCAST_PORT_A, dbcp_name) == 12);
static_assert(offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_classguid) == 12);
static_assert(offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name) == 28);
static_assert(offsetof(DEV_BROADCAST_HANDLE, dbch_handle) == 16);
static_assert(offsetof(DEV_BROADCAST_HANDLE, dbch_hdevnotify) == 24);
static_assert(offsetof(DEV_BROADCAST_HANDLE, dbch_eventguid) == 32);
static_assert(offsetof(DEV_BROADCAST_HANDLE, dbch_nameoffset) == 48);
static_assert(offsetof(DEV_BROADCAST_HANDLE, dbch_data) == 52);
static_assert(sizeof(SP_DEVINFO_DATA) == 32);
