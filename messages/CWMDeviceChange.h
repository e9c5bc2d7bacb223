// A device event: what happened to which device, with a copy of the system's record.
//
// It owns the copy. One owner at a time, no lock, as CWindowsMessage.
#pragma once

#include "app/Export.h"
#include "messages/CWindowsMessage.h"
#include "platform/BaseTypes.h"

class MORVEX_API CWMDeviceChange : public CWindowsMessage {
public:
    // Copies the record at `lParam`, as long as its first 32-bit word says, whatever the event is;
    // 0 gives an object without a record. The code is taken as given; the name is
    // "WM_DEVICECHANGE". Throws std::bad_alloc.
    CWMDeviceChange(
        HWND const window, unsigned int message, unsigned long long wParam, long long lParam);

    // Deliberate: a copy shares the record with its source and both release it, so a copy must not
    // be destroyed beside its source.
    CWMDeviceChange(CWMDeviceChange const & other);
    ~CWMDeviceChange() override;

    // The event in the words of the system's headers, then the record's fields in lines. The line
    // of a device's name has no final line feed, every other line has one. An event of the value
    // DBT_USERDEFINED must have a record.
    CSafeString GetDetailsStr() const override;

    // The low 32 bits of the event.
    unsigned long EventType() const { return static_cast<std::uint32_t>(m_WParam); }

    // The record; null without one. What the accessors point to lives as long as the object. A
    // field that the record is too short for reads as zero, and a name ends with the record at the
    // latest.
    unsigned char * DBTBuffer() const { return m_DBTBuffer; }

    // False, `type` untouched: there is no record.
    bool DevType(unsigned long & type) const;

    // Class and name of a device interface; null without a record or with one of another type.
    GUID * DevInterfaceGuid() const;
    char * DevInterfaceDevName() const;

private:
    unsigned char * m_DBTBuffer = nullptr;
};
