// Device events: the copy of the record and what is read from it.
#include "messages/CWMDeviceChange.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "messages/Bytes.h"

namespace {

CWMDeviceChange Event(unsigned long long event, Bytes const & record) {
    return CWMDeviceChange(nullptr, 0x219, event, record.Address());
}

CWMDeviceChange WithoutRecord(unsigned long long event) {
    return CWMDeviceChange(nullptr, 0x219, event, 0);
}

} // namespace

TEST(CWMDeviceChangeTest, MessageWithoutARecordHasNothingToRead) {
    auto const message = WithoutRecord(0x8000);
    unsigned long type = 77;
    EXPECT_EQ(message.DBTBuffer(), nullptr);
    EXPECT_FALSE(message.DevType(type));
    EXPECT_EQ(type, 77u);
    EXPECT_EQ(message.DevInterfaceGuid(), nullptr);
    EXPECT_EQ(message.DevInterfaceDevName(), nullptr);
}

TEST(CWMDeviceChangeTest, EventTypeIsTheLow32BitsOfTheEvent) {
    EXPECT_EQ(WithoutRecord(0x8000).EventType(), 0x8000u);
    EXPECT_EQ(WithoutRecord(0xABCDEF0180000004).EventType(), 0x80000004ul);
    EXPECT_EQ(WithoutRecord(0xABCDEF0180000004).WParam(), 0xABCDEF0180000004ull);
}

TEST(CWMDeviceChangeTest, CodeIsTakenAsGivenAndTheNameIsThatOfTheClass) {
    CWMDeviceChange const message(nullptr, 0x10, 7, 0);
    EXPECT_EQ(message.MessageCode(), 0x10u);
    EXPECT_EQ(
        std::string(message.GetDescriptionStr().get()),
        "\n0x0010 (WM_DEVICECHANGE) message received: hWnd=0,WPARAM=0000000000000007, "
        "LPARAM=0000000000000000.");
}

TEST(CWMDeviceChangeTest, RecordIsCopiedWholeAndOutlivesItsSource) {
    std::optional<Bytes> record = InterfaceRecord("\\\\?\\USB#VID_F1D0");
    auto const bytes = record->All();
    auto const message = Event(0x8000, *record);
    record.reset();
    ASSERT_NE(message.DBTBuffer(), nullptr);
    EXPECT_EQ(std::memcmp(message.DBTBuffer(), bytes.data(), bytes.size()), 0);
}

TEST(CWMDeviceChangeTest, AnyEventWithAnAddressIsReadAsARecord) {
    auto const record = VolumeRecord(1, 0);
    auto const message = Event(0x1A, record);
    unsigned long type = 0;
    EXPECT_TRUE(message.DevType(type));
    EXPECT_EQ(type, 2u);
}

TEST(CWMDeviceChangeTest, InterfaceTellsItsClassAndItsName) {
    auto const message = Event(0x8004, InterfaceRecord("\\\\?\\USB#VID_F1D0"));
    unsigned long type = 0;
    EXPECT_TRUE(message.DevType(type));
    EXPECT_EQ(type, 5u);
    GUID const expected = {
        0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
    ASSERT_NE(message.DevInterfaceGuid(), nullptr);
    EXPECT_EQ(std::memcmp(message.DevInterfaceGuid(), &expected, sizeof expected), 0);
    EXPECT_STREQ(message.DevInterfaceDevName(), "\\\\?\\USB#VID_F1D0");
    EXPECT_EQ(
        static_cast<void *>(message.DevInterfaceGuid()),
        static_cast<void *>(message.DBTBuffer() + 12));
    EXPECT_EQ(
        static_cast<void *>(message.DevInterfaceDevName()),
        static_cast<void *>(message.DBTBuffer() + 28));
}

TEST(CWMDeviceChangeTest, OtherTypesHaveNeitherClassNorName) {
    for (std::uint32_t const type : {0u, 1u, 2u, 3u, 4u, 6u, 7u, 0xFFFFFFFFu}) {
        auto const record =
            Bytes(type).Put(std::uint64_t{0}).Put(std::uint64_t{0}).Put(std::uint64_t{0});
        auto const message = Event(0x8000, record);
        unsigned long seen = 77;
        EXPECT_TRUE(message.DevType(seen));
        EXPECT_EQ(seen, type);
        EXPECT_EQ(message.DevInterfaceGuid(), nullptr);
        EXPECT_EQ(message.DevInterfaceDevName(), nullptr);
    }
}

TEST(CWMDeviceChangeTest, NameEndsWithTheRecord) {
    auto record = InterfaceRecord("a long name");
    record.Cut(28 + 6);
    auto const message = Event(0x8000, record);
    EXPECT_STREQ(message.DevInterfaceDevName(), "a long");
    EXPECT_STREQ(Event(0x8000, InterfaceRecord("x").Cut(28)).DevInterfaceDevName(), "");
}

TEST(CWMDeviceChangeTest, FieldsBeyondTheStatedSizeAreNotRead) {
    auto record = InterfaceRecord("name");
    record.SayItHas(16);
    auto const message = Event(0x8000, record);
    GUID const expected = {0xA5DCBF10, 0, 0, {}};
    EXPECT_EQ(std::memcmp(message.DevInterfaceGuid(), &expected, sizeof expected), 0);
    EXPECT_STREQ(message.DevInterfaceDevName(), "");
}

TEST(CWMDeviceChangeTest, RecordShorterThanAHeaderHasTheTypeZero) {
    for (std::uint32_t const size : {0u, 1u, 4u}) {
        auto record = VolumeRecord(1, 0);
        record.SayItHas(size);
        auto const message = Event(0x8000, record);
        unsigned long type = 77;
        EXPECT_TRUE(message.DevType(type));
        EXPECT_EQ(type, 0u);
    }
}

TEST(CWMDeviceChangeTest, CopySharesTheRecordOfItsSource) {
    auto const record = InterfaceRecord("name");
    alignas(CWMDeviceChange) unsigned char place[sizeof(CWMDeviceChange)];
    auto const source = std::make_unique<CWMDeviceChange>(nullptr, 0x219, 0x8000, record.Address());
    auto * const copy = new (place) CWMDeviceChange(*source);
    EXPECT_EQ(copy->DBTBuffer(), source->DBTBuffer());
    EXPECT_EQ(copy->EventType(), 0x8000u);
    EXPECT_STREQ(copy->GetDetailsStr().get(), source->GetDetailsStr().get());
    // Only one of the two may be destroyed; the other's own text goes by hand.
    static_cast<CWindowsMessage *>(copy)->CWindowsMessage::~CWindowsMessage();
}
