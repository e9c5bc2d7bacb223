// Device events: the copy of the record, and its fields as text.
#include "messages/CWMDeviceChange.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "log/QNHelper.h"
#include "platform/DeviceServices.h"

namespace {

struct Name {
    std::uint64_t value;
    char const * name;
};

constexpr Name EventNames[] = {
    {DBT_DEVNODES_CHANGED, "DBT_DEVNODES_CHANGED"},
    {DBT_QUERYCHANGECONFIG, "DBT_QUERYCHANGECONFIG"},
    {DBT_CONFIGCHANGED, "DBT_CONFIGCHANGED"},
    {DBT_CONFIGCHANGECANCELED, "DBT_CONFIGCHANGECANCELED"},
    {DBT_DEVICEARRIVAL, "DBT_DEVICEARRIVAL"},
    {DBT_DEVICEQUERYREMOVE, "DBT_DEVICEQUERYREMOVE"},
    {DBT_DEVICEQUERYREMOVEFAILED, "DBT_DEVICEQUERYREMOVEFAILED"},
    {DBT_DEVICEREMOVEPENDING, "DBT_DEVICEREMOVEPENDING"},
    {DBT_DEVICEREMOVECOMPLETE, "DBT_DEVICEREMOVECOMPLETE"},
    {DBT_DEVICETYPESPECIFIC, "DBT_DEVICETYPESPECIFIC"},
    {DBT_CUSTOMEVENT, "DBT_CUSTOMEVENT"},
    {DBT_USERDEFINED, "DBT_USERDEFINED"},
};

constexpr Name TypeNames[] = {
    {DBT_DEVTYP_OEM, "DBT_DEVTYP_OEM"},
    {DBT_DEVTYP_VOLUME, "DBT_DEVTYP_VOLUME"},
    {DBT_DEVTYP_PORT, "DBT_DEVTYP_PORT"},
    {DBT_DEVTYP_DEVICEINTERFACE, "DBT_DEVTYP_DEVICEINTERFACE"},
    {DBT_DEVTYP_HANDLE, "DBT_DEVTYP_HANDLE"},
};

struct ClassName {
    GUID guid;
    char const * name;
};

constexpr ClassName ClassNames[] = {
    {{0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}}, "USB Device"},
    {{0xF18A0E88, 0xC30C, 0x11D0, {0x88, 0x15, 0x00, 0xA0, 0xC9, 0x06, 0xBE, 0xD8}}, "USB Hub"},
    {{0x3ABF6F2D, 0x71C4, 0x462A, {0x8A, 0x92, 0x1E, 0x68, 0x61, 0xE6, 0xAF, 0x27}},
     "USB Host Controller"},
};

// A dump shows so many bytes at most, however long the record says it is.
constexpr std::uint32_t ShownAtMost = 100;

// A dump begins behind the fixed fields but is as long as the whole record, and a record may be
// shorter than its fixed fields. So the copy is followed by zeros, as many as may be read beyond
// it.
constexpr std::size_t ReadBeyond = sizeof(DEV_BROADCAST_HANDLE) + ShownAtMost;

template <std::size_t Count>
char const * Find(Name const (&names)[Count], std::uint64_t value, char const * unknown) {
    for (Name const & entry : names)
        if (entry.value == value) return entry.name;
    return unknown;
}

template <typename... Values>
std::string Format(char const * format, Values const &... values) {
    return std::string(CBasicFormattedString<char>(format, values...));
}

template <typename Record>
Record & As(unsigned char * record) {
    return *reinterpret_cast<Record *>(record);
}

std::string TextOf(GUID const & guid) {
    char text[39];
    QNHelper::GetUUIDDisplayString(guid, text);
    return text;
}

std::string NoteOf(GUID const & guid) {
    for (ClassName const & known : ClassNames)
        if (std::memcmp(&known.guid, &guid, sizeof guid) == 0)
            return std::string(" (") + known.name + ")";
    return "";
}

std::string GetDataDumpStr(char const * label, unsigned char const * data, std::uint32_t length) {
    std::string const head =
        Format("      %s: %lu byte%s\n", label, length, length == 1 ? "" : "s");
    // Deliberate: the parenthesis stays open.
    // Pinned by CWMDeviceChangeTextTest.DumpShowsOneHundredBytesAtMost.
    std::string const middle =
        length > ShownAtMost ? Format(" (first %lu byte%s", ShownAtMost, "s") : std::string();
    std::string bytes;
    QNHelper::BytesToString(bytes, data, std::min(length, ShownAtMost), "%02x", " ", false);
    return head + Format("      %s%s: %s\n", label, middle, bytes);
}

std::string GetBroadcastHeaderStr(unsigned char * record) {
    auto const & header = As<DEV_BROADCAST_HDR>(record);
    return Format(
        "    Device event struct length=%u, type=%s\n", header.dbch_size,
        Find(TypeNames, header.dbch_devicetype, "<unknown device type>"));
}

std::string DescribeOem(DEV_BROADCAST_OEM const & oem) {
    return Format("    id=%u, function=0x%X\n", oem.dbco_identifier, oem.dbco_suppfunc);
}

// Deliberate: all 32 bits are drives; behind Z stand the characters that follow it.
// Pinned by CWMDeviceChangeTextTest.EveryBitOfTheUnitMaskIsADrive.
std::string DriveLetters(std::uint32_t mask) {
    std::string letters;
    for (int bit = 0; bit != 32; ++bit) {
        if ((mask >> bit & 1) == 0) continue;
        if (!letters.empty()) letters += ", ";
        letters += static_cast<char>('A' + bit);
    }
    return letters;
}

std::string DescribeVolume(DEV_BROADCAST_VOLUME const & volume) {
    bool const ofMedia = (volume.dbcv_flags & DBTF_MEDIA) != 0;
    bool const ofNetwork = (volume.dbcv_flags & DBTF_NET) != 0;
    return Format("    Unit mask=0x%08X, flags=0x%04X\n", volume.dbcv_unitmask, volume.dbcv_flags)
           + "      Drive letters:  " + DriveLetters(volume.dbcv_unitmask) + "\n"
           + Format(
               "      %s\n",
               ofMedia ? "Change affects media in drive" : "Change affects physical device")
           + Format("      Volume %s a network drive\n", ofNetwork ? "is" : "is not");
}

std::string DescribePort(DEV_BROADCAST_PORT_A const & port) {
    return Format("    Name=%s\n", static_cast<char const *>(port.dbcp_name));
}

std::string DescribeInterface(DEV_BROADCAST_DEVICEINTERFACE_A const & device) {
    // Deliberate: the line of the name has no line feed.
    // Pinned by CWMDeviceChangeTextTest.ArrivalOfAUsbDeviceIsFourLinesWithoutAFinalLineFeed.
    return Format(
               "      Device Interface class GUID: %s%s\n", TextOf(device.dbcc_classguid),
               NoteOf(device.dbcc_classguid))
           + Format("      Device name: %s", static_cast<char const *>(device.dbcc_name));
}

std::string DescribeCustomEvent(DEV_BROADCAST_HANDLE const & handle) {
    // Deliberate: the offset's directive has no conversion, and the record's size is taken for the
    // data's. Pinned by CWMDeviceChangeTextTest.CustomEventOfAHandleTellsItsGuidAndItsData and
    // CWMDeviceChangeTextTest.DataOfACustomEventIsAsLongAsTheWholeRecord.
    return Format("      Event GUID: %s\n", TextOf(handle.dbch_eventguid))
           + Format("      Name offset=%l\n", handle.dbch_nameoffset)
           + GetDataDumpStr("data field", handle.dbch_data, handle.dbch_size);
}

// Deliberate: of both handles the low 32 bits show.
// Pinned by CWMDeviceChangeTextTest.HandlesShowTheirLow32Bits.
std::string DescribeHandle(DEV_BROADCAST_HANDLE const & handle, std::uint64_t event) {
    std::string text =
        Format("      Device Handle=%u\n", reinterpret_cast<std::uintptr_t>(handle.dbch_handle))
        + Format(
            "      Device Notification Handle=0x%0*X\n", 16,
            reinterpret_cast<std::uintptr_t>(handle.dbch_hdevnotify));
    if (event == DBT_CUSTOMEVENT) text += DescribeCustomEvent(handle);
    return text;
}

std::string DescribeFields(unsigned char * record, std::uint64_t event) {
    std::uint32_t const type = As<DEV_BROADCAST_HDR>(record).dbch_devicetype;
    switch (type) {
    case DBT_DEVTYP_OEM:
        return DescribeOem(As<DEV_BROADCAST_OEM>(record));
    case DBT_DEVTYP_VOLUME:
        return DescribeVolume(As<DEV_BROADCAST_VOLUME>(record));
    case DBT_DEVTYP_PORT:
        return DescribePort(As<DEV_BROADCAST_PORT_A>(record));
    case DBT_DEVTYP_DEVICEINTERFACE:
        return DescribeInterface(As<DEV_BROADCAST_DEVICEINTERFACE_A>(record));
    case DBT_DEVTYP_HANDLE:
        return DescribeHandle(As<DEV_BROADCAST_HANDLE>(record), event);
    default:
        return Format("    <Unknown device type: %u>\n", type);
    }
}

std::string GetBroadcastDetailsStr(unsigned char * record, std::uint64_t event) {
    if (record == nullptr) return "<NULL pointer: no device broadcast info.>\n";
    return GetBroadcastHeaderStr(record) + DescribeFields(record, event);
}

std::string DescribeUserDefined(unsigned char * record) {
    auto const & header = As<DEV_BROADCAST_HDR>(record);
    return GetBroadcastHeaderStr(record)
           + GetDataDumpStr(
               "user defined data", record + sizeof header,
               header.dbch_size - static_cast<std::uint32_t>(sizeof header));
}

std::string DescribeWhatFollows(std::uint64_t event, unsigned char * record) {
    switch (event) {
    case DBT_DEVICEARRIVAL:
    case DBT_DEVICEQUERYREMOVE:
    case DBT_DEVICEQUERYREMOVEFAILED:
    case DBT_DEVICEREMOVEPENDING:
    case DBT_DEVICEREMOVECOMPLETE:
    case DBT_DEVICETYPESPECIFIC:
    case DBT_CUSTOMEVENT:
        return GetBroadcastDetailsStr(record, event);
    case DBT_DEVNODES_CHANGED:
    case DBT_QUERYCHANGECONFIG:
    case DBT_CONFIGCHANGED:
    case DBT_CONFIGCHANGECANCELED:
        return "";
    case DBT_USERDEFINED:
        return DescribeUserDefined(record);
    default:
        // Deliberate: of the event the low 32 bits show, twice.
        // Pinned by CWMDeviceChangeTextTest.UnknownEventAbove32BitsShowsItsLowOnes.
        return Format("    <Unknown event: %u (%Xh)>\n", event, event);
    }
}

std::string GetEventDetailsStr(CWMDeviceChange const & message) {
    std::uint64_t const event = message.WParam();
    return std::string("  Event: ") + Find(EventNames, event, "<unknown event>") + "\n"
           + DescribeWhatFollows(event, message.DBTBuffer());
}

// The size is believed as it stands.
unsigned char * CopyOf(void const * record) {
    std::uint32_t size = 0;
    std::memcpy(&size, record, sizeof size);
    auto * const copy = new unsigned char[size + ReadBeyond];
    std::memcpy(copy, record, size);
    std::memset(copy + size, 0, ReadBeyond);
    return copy;
}

} // namespace

CWMDeviceChange::CWMDeviceChange(
    HWND const window, unsigned int message, unsigned long long wParam, long long lParam)
    : CWindowsMessage(window, message, wParam, lParam, "WM_DEVICECHANGE") {
    if (lParam != 0) m_DBTBuffer = CopyOf(reinterpret_cast<void const *>(lParam));
}

// Deliberate: source and copy share the record.
// Pinned by CWMDeviceChangeTest.CopySharesTheRecordOfItsSource.
CWMDeviceChange::CWMDeviceChange(CWMDeviceChange const & other) = default;

CWMDeviceChange::~CWMDeviceChange() { delete[] m_DBTBuffer; }

CSafeString CWMDeviceChange::GetDetailsStr() const {
    return CSafeString(GetEventDetailsStr(*this).c_str());
}

bool CWMDeviceChange::DevType(unsigned long & type) const {
    if (m_DBTBuffer == nullptr) return false;
    type = As<DEV_BROADCAST_HDR>(m_DBTBuffer).dbch_devicetype;
    return true;
}

GUID * CWMDeviceChange::DevInterfaceGuid() const {
    unsigned long type = 0;
    if (!DevType(type) || type != DBT_DEVTYP_DEVICEINTERFACE) return nullptr;
    return &As<DEV_BROADCAST_DEVICEINTERFACE_A>(m_DBTBuffer).dbcc_classguid;
}

char * CWMDeviceChange::DevInterfaceDevName() const {
    if (DevInterfaceGuid() == nullptr) return nullptr;
    return As<DEV_BROADCAST_DEVICEINTERFACE_A>(m_DBTBuffer).dbcc_name;
}
