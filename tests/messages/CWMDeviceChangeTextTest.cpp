// Device events as text.
#include <gtest/gtest.h>

#include <string>

#include "messages/Bytes.h"
#include "messages/CWMDeviceChange.h"
#include "siblings/Keelbase.h"

namespace {

std::string Details(unsigned long long event, long long record) {
    return CWMDeviceChange(nullptr, 0x219, event, record).GetDetailsStr().get();
}

std::string Details(unsigned long long event, Bytes const & record) {
    return Details(event, record.Address());
}

std::string Arrival(Bytes const & record) { return Details(0x8000, record); }

// The lines in front of the fields.
std::string Header(std::size_t size, std::string const & type) {
    return "  Event: DBT_DEVICEARRIVAL\n    Device event struct length=" + std::to_string(size)
           + ", type=" + type + "\n";
}

std::string Dump(std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i != bytes; ++i)
        text += i == 0 ? "5a" : " 5a";
    return text;
}

// A record of `length` user defined bytes.
std::string UserDefined(std::size_t length) {
    return Details(0xFFFF, Bytes(1).Put(std::string(length, '\x5A')));
}

std::string UserHeader(std::size_t length) {
    return "  Event: DBT_USERDEFINED\n    Device event struct length=" + std::to_string(length + 12)
           + ", type=<unknown device type>\n";
}

} // namespace

TEST(CWMDeviceChangeTextTest, EventsWithoutARecordAreOneLine) {
    struct Case {
        unsigned long long event;
        char const * text;
    };
    auto const record = VolumeRecord(1, 0);
    for (auto const & [event, text] :
         {Case{0x07, "  Event: DBT_DEVNODES_CHANGED\n"},
          {0x17, "  Event: DBT_QUERYCHANGECONFIG\n"},
          {0x18, "  Event: DBT_CONFIGCHANGED\n"},
          {0x19, "  Event: DBT_CONFIGCHANGECANCELED\n"}}) {
        EXPECT_EQ(Details(event, 0), text);
        EXPECT_EQ(Details(event, record), text);
    }
}

TEST(CWMDeviceChangeTextTest, EventsThatNeedARecordSayThatThereIsNone) {
    struct Case {
        unsigned long long event;
        char const * name;
    };
    for (auto const & [event, name] :
         {Case{0x8000, "DBT_DEVICEARRIVAL"},
          {0x8001, "DBT_DEVICEQUERYREMOVE"},
          {0x8002, "DBT_DEVICEQUERYREMOVEFAILED"},
          {0x8003, "DBT_DEVICEREMOVEPENDING"},
          {0x8004, "DBT_DEVICEREMOVECOMPLETE"},
          {0x8005, "DBT_DEVICETYPESPECIFIC"},
          {0x8006, "DBT_CUSTOMEVENT"}})
        EXPECT_EQ(
            Details(event, 0),
            std::string("  Event: ") + name + "\n<NULL pointer: no device broadcast info.>\n");
}

TEST(CWMDeviceChangeTextTest, UnknownEventsShowTheirNumberTwice) {
    EXPECT_EQ(Details(0x8007, 0), "  Event: <unknown event>\n    <Unknown event: 32775 (8007h)>\n");
    EXPECT_EQ(Details(0x1A, 0), "  Event: <unknown event>\n    <Unknown event: 26 (1Ah)>\n");
    EXPECT_EQ(
        Details(0x8007, VolumeRecord(1, 0)),
        "  Event: <unknown event>\n    <Unknown event: 32775 (8007h)>\n");
}

TEST(CWMDeviceChangeTextTest, UnknownEventAbove32BitsShowsItsLowOnes) {
    EXPECT_EQ(Details(0x100000007, 0), "  Event: <unknown event>\n    <Unknown event: 7 (7h)>\n");
    EXPECT_EQ(
        Details(0x100008000, VolumeRecord(1, 0)),
        "  Event: <unknown event>\n    <Unknown event: 32768 (8000h)>\n");
}

TEST(CWMDeviceChangeTextTest, ArrivalOfAUsbDeviceIsFourLinesWithoutAFinalLineFeed) {
    EXPECT_EQ(
        Arrival(InterfaceRecord("\\\\?\\USB#VID_F1D0&PID_0001#4711")),
        Header(28 + 31, "DBT_DEVTYP_DEVICEINTERFACE")
            + "      Device Interface class GUID: {A5DCBF10-6530-11D2-901F-00C04FB951ED} "
              "(USB Device)\n"
              "      Device name: \\\\?\\USB#VID_F1D0&PID_0001#4711");
}

TEST(CWMDeviceChangeTextTest, KnownClassesHaveTheirNames) {
    auto const hub =
        Bytes(5)
            .Guid(0xF18A0E88, 0xC30C, 0x11D0, {0x88, 0x15, 0x00, 0xA0, 0xC9, 0x06, 0xBE, 0xD8})
            .Put(std::uint32_t{0});
    auto const controller =
        Bytes(5)
            .Guid(0x3ABF6F2D, 0x71C4, 0x462A, {0x8A, 0x92, 0x1E, 0x68, 0x61, 0xE6, 0xAF, 0x27})
            .Put(std::uint32_t{0});
    EXPECT_EQ(
        Arrival(hub),
        Header(32, "DBT_DEVTYP_DEVICEINTERFACE")
            + "      Device Interface class GUID: {F18A0E88-C30C-11D0-8815-00A0C906BED8} "
              "(USB Hub)\n      Device name: ");
    EXPECT_EQ(
        Arrival(controller),
        Header(32, "DBT_DEVTYP_DEVICEINTERFACE")
            + "      Device Interface class GUID: {3ABF6F2D-71C4-462A-8A92-1E6861E6AF27} "
              "(USB Host Controller)\n      Device name: ");
}

TEST(CWMDeviceChangeTextTest, UnknownClassHasNoNote) {
    auto const record =
        Bytes(5)
            .Guid(0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xEE})
            .Put(std::string("name\0", 5));
    EXPECT_EQ(
        Arrival(record),
        Header(33, "DBT_DEVTYP_DEVICEINTERFACE")
            + "      Device Interface class GUID: {A5DCBF10-6530-11D2-901F-00C04FB951EE}\n"
              "      Device name: name");
}

TEST(CWMDeviceChangeTextTest, OemShowsItsNumberAndItsFunction) {
    EXPECT_EQ(
        Arrival(Bytes(0).Put(std::uint32_t{4000000000}).Put(std::uint32_t{0xABC})),
        Header(20, "DBT_DEVTYP_OEM") + "    id=4000000000, function=0xABC\n");
}

TEST(CWMDeviceChangeTextTest, VolumeShowsItsDrives) {
    EXPECT_EQ(
        Arrival(VolumeRecord(0x5, 0)), Header(20, "DBT_DEVTYP_VOLUME")
                                           + "    Unit mask=0x00000005, flags=0x0000\n"
                                             "      Drive letters:  A, C\n"
                                             "      Change affects physical device\n"
                                             "      Volume is not a network drive\n");
}

TEST(CWMDeviceChangeTextTest, FlagsOfAVolumeAreReadOneByOne) {
    auto const tail = [](std::uint16_t flags) {
        std::string const text = Arrival(VolumeRecord(0, flags));
        return text.substr(text.find("flags="));
    };
    EXPECT_EQ(
        tail(1), "flags=0x0001\n      Drive letters:  \n      Change affects media in drive\n"
                 "      Volume is not a network drive\n");
    EXPECT_EQ(
        tail(2), "flags=0x0002\n      Drive letters:  \n      Change affects physical device\n"
                 "      Volume is a network drive\n");
    EXPECT_EQ(
        tail(0xFFFF), "flags=0xFFFF\n      Drive letters:  \n      Change affects media in drive\n"
                      "      Volume is a network drive\n");
}

TEST(CWMDeviceChangeTextTest, EveryBitOfTheUnitMaskIsADrive) {
    std::string const text = Arrival(VolumeRecord(0xFFFFFFFF, 0));
    EXPECT_NE(
        text.find("      Drive letters:  A, B, C, D, E, F, G, H, I, J, K, L, M, N, O, P, Q, R, S, "
                  "T, U, V, W, X, Y, Z, [, \\, ], ^, _, `\n"),
        std::string::npos)
        << text;
}

TEST(CWMDeviceChangeTextTest, PortShowsItsName) {
    EXPECT_EQ(
        Arrival(Bytes(3).Put(std::string("COM3\0", 5))),
        Header(17, "DBT_DEVTYP_PORT") + "    Name=COM3\n");
    EXPECT_EQ(
        Arrival(Bytes(3).Put(std::string("COM3"))),
        Header(16, "DBT_DEVTYP_PORT") + "    Name=COM3\n");
}

TEST(CWMDeviceChangeTextTest, UnknownTypeShowsItsNumber) {
    EXPECT_EQ(
        Arrival(Bytes(1)), Header(12, "<unknown device type>") + "    <Unknown device type: 1>\n");
    EXPECT_EQ(
        Arrival(Bytes(4294967295)),
        Header(12, "<unknown device type>") + "    <Unknown device type: 4294967295>\n");
}

TEST(CWMDeviceChangeTextTest, HandlesShowTheirLow32Bits) {
    EXPECT_EQ(
        Arrival(HandleRecord(0x100000010, 0xF00000ABCDEF01)),
        Header(52, "DBT_DEVTYP_HANDLE")
            + "      Device Handle=16\n"
              "      Device Notification Handle=0x00000000ABCDEF01\n");
}

TEST(CWMDeviceChangeTextTest, CustomEventOfAHandleTellsItsGuidAndItsData) {
    auto const record = HandleRecord(1, 2).Put(std::uint32_t{0x04030201});
    CBasicFormattedString<char> const offset("      Name offset=%l\n", -1);
    std::string const zeros = " 00 00 00 00 00 00 00 00 00 00 00 00 00";
    EXPECT_EQ(
        Details(0x8006, record), "  Event: DBT_CUSTOMEVENT\n"
                                 "    Device event struct length=56, type=DBT_DEVTYP_HANDLE\n"
                                 "      Device Handle=1\n"
                                 "      Device Notification Handle=0x0000000000000002\n"
                                 "      Event GUID: {01234567-89AB-CDEF-0102-030405060708}\n"
                                     + std::string(offset)
                                     + "      data field: 56 bytes\n"
                                       "      data field: 01 02 03 04"
                                     + zeros + zeros + zeros + zeros + "\n");
    EXPECT_EQ(std::string(offset), "      Name offset=\n");
}

TEST(CWMDeviceChangeTextTest, DataOfACustomEventIsAsLongAsTheWholeRecord) {
    auto const record = HandleRecord(1, 2).Put(std::string(49, '\x5A'));
    std::string const text = Details(0x8006, record);
    std::string zeros;
    for (int i = 0; i != 51; ++i)
        zeros += " 00";
    EXPECT_EQ(
        text.substr(text.find("      data field: 101")),
        "      data field: 101 bytes\n      data field (first 100 bytes: " + Dump(49) + zeros
            + "\n");
}

TEST(CWMDeviceChangeTextTest, OtherEventsOfAHandleShowNoData) {
    auto const record = HandleRecord(1, 2).Put(std::uint32_t{0x04030201});
    EXPECT_EQ(Arrival(record).find("Event GUID"), std::string::npos);
}

TEST(CWMDeviceChangeTextTest, DumpOfOneByteSaysByte) {
    EXPECT_EQ(
        UserDefined(1),
        UserHeader(1) + "      user defined data: 1 byte\n      user defined data: 5a\n");
    EXPECT_EQ(
        UserDefined(2),
        UserHeader(2) + "      user defined data: 2 bytes\n      user defined data: 5a 5a\n");
}

TEST(CWMDeviceChangeTextTest, DumpWithoutBytesIsEmpty) {
    EXPECT_EQ(
        UserDefined(0),
        UserHeader(0) + "      user defined data: 0 bytes\n      user defined data: \n");
}

TEST(CWMDeviceChangeTextTest, DumpShowsOneHundredBytesAtMost) {
    EXPECT_EQ(
        UserDefined(100),
        UserHeader(100)
            + "      user defined data: 100 bytes\n      user defined data: " + Dump(100) + "\n");
    EXPECT_EQ(
        UserDefined(101), UserHeader(101)
                              + "      user defined data: 101 bytes\n"
                                "      user defined data (first 100 bytes: "
                              + Dump(100) + "\n");
    EXPECT_EQ(
        UserDefined(5000), UserHeader(5000)
                               + "      user defined data: 5000 bytes\n"
                                 "      user defined data (first 100 bytes: "
                               + Dump(100) + "\n");
}

TEST(CWMDeviceChangeTextTest, UserDefinedRecordOfAKnownTypeShowsItsNameAndItsBytes) {
    EXPECT_EQ(
        Details(0xFFFF, Bytes(5).Put(std::uint8_t{0xAB})),
        "  Event: DBT_USERDEFINED\n"
        "    Device event struct length=13, type=DBT_DEVTYP_DEVICEINTERFACE\n"
        "      user defined data: 1 byte\n"
        "      user defined data: ab\n");
}

TEST(CWMDeviceChangeTextTest, UserDefinedRecordShorterThanAHeaderCountsFromBelow) {
    auto record = Bytes(1);
    record.SayItHas(11);
    std::string const text = Details(0xFFFF, record);
    EXPECT_NE(text.find("      user defined data: 4294967295 bytes\n"), std::string::npos);
    EXPECT_NE(text.find(" (first 100 bytes: 00 00"), std::string::npos);
}

TEST(CWMDeviceChangeTextTest, NameCutByTheSizeEndsThere) {
    auto record = InterfaceRecord("a long name");
    record.SayItHas(28 + 6);
    std::string const text = Arrival(record);
    EXPECT_EQ(text.substr(text.find("Device name: ")), "Device name: a long");
}
