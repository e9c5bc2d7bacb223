// The rules of the endpoint companions: each kept and broken.
#include <gtest/gtest.h>

#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

constexpr unsigned Control = 0;
constexpr unsigned Isochronous = 1;
constexpr unsigned Interrupt = 3;

// The storage device, whose last endpoint is of another type, with its companion's fields.
struct Last {
    unsigned type;
    std::uint32_t packetSize;
    std::uint32_t burst;
    std::uint32_t attributes;
    std::uint32_t bytes;
};

TestDevice Storage(Last const & last) {
    return TestDevice("super_speed_storage")
        .Set(DescriptorType::Endpoint, 5, endpoint::bmAttributes, last.type)
        .Set(DescriptorType::Endpoint, 5, endpoint::wMaxPacketSize, last.packetSize)
        .Set(DescriptorType::Endpoint, 5, endpoint::bInterval, last.type == Control ? 0 : 1)
        .Set(DescriptorType::EndpointCompanion, 5, companion::bMaxBurst, last.burst)
        .Set(DescriptorType::EndpointCompanion, 5, companion::bmAttributes, last.attributes)
        .Set(DescriptorType::EndpointCompanion, 5, companion::wBytesPerInterval, last.bytes);
}

TestDevice Bulk(Field const & field, std::uint32_t value) {
    return TestDevice("super_speed_storage")
        .Set(DescriptorType::EndpointCompanion, 0, field, value);
}

} // namespace

TEST(CompanionRulesTest, EveryEndpointHasOneAtSuperSpeed) {
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage").Remove(DescriptorType::EndpointCompanion, 0)),
        Fail(
            "USB 3.2 9.6.7 bEndpointAddress", 38, 0x81, 1,
            "no SuperSpeed endpoint companion descriptor follows the endpoint"));
}

TEST(CompanionRulesTest, NoEndpointHasOneBelowSuperSpeed) {
    EXPECT_EQ(
        FindingsIn(TestDevice("low_speed_mouse")
                       .InsertBehind(DescriptorType::Endpoint, 0, {6, 0x30, 0, 0, 0, 0})),
        Fail(
            "USB 3.2 9.6.7 bDescriptorType", 53, 0x30, 1,
            "a companion is for SuperSpeed, which bcdUSB excludes"));
}

TEST(CompanionRulesTest, BurstIsAtMostSixteenPackets) {
    EXPECT_EQ(FindingsIn(Bulk(companion::bMaxBurst, 15)), FindingList());
    EXPECT_EQ(
        FindingsIn(Bulk(companion::bMaxBurst, 16)),
        Fail("USB 3.2 9.6.7 bMaxBurst", 45, 16, 1, "is 0 to 15"));
}

TEST(CompanionRulesTest, ControlEndpointHasNoBurst) {
    EXPECT_EQ(FindingsIn(Storage({Control, 512, 0, 0, 0})), FindingList());
    EXPECT_EQ(
        FindingsIn(Storage({Control, 512, 1, 0, 0})),
        Fail("USB 3.2 9.6.7 bMaxBurst", 131, 1, 1, "is 0 for a control endpoint"));
}

TEST(CompanionRulesTest, StreamsAreAtMostTwoToTheSixteenth) {
    EXPECT_EQ(FindingsIn(Bulk(companion::bmAttributes, 16)), FindingList());
    EXPECT_EQ(
        FindingsIn(Bulk(companion::bmAttributes, 17)),
        Fail("USB 3.2 9.6.7 bmAttributes", 46, 17, 1, "MaxStreams (bits 4..0) is 0 to 16"));
    for (std::uint32_t const bit : {0x20u, 0x40u, 0x80u})
        EXPECT_EQ(
            FindingsIn(Bulk(companion::bmAttributes, bit)),
            Fail(
                "USB 3.2 9.6.7 bmAttributes", 46, bit, 1,
                "bits 7..5 are reserved and set to zero for a bulk endpoint"));
}

TEST(CompanionRulesTest, InterruptAndControlAttributesAreReserved) {
    EXPECT_EQ(FindingsIn(Storage({Interrupt, 1024, 0, 0, 1024})), FindingList());
    EXPECT_EQ(
        FindingsIn(Storage({Interrupt, 1024, 0, 1, 1024})),
        Fail(
            "USB 3.2 9.6.7 bmAttributes", 132, 1, 1,
            "is reserved and zero for interrupt endpoints"));
    EXPECT_EQ(
        FindingsIn(Storage({Control, 512, 0, 0x80, 0})),
        Fail(
            "USB 3.2 9.6.7 bmAttributes", 132, 0x80, 1,
            "is reserved and zero for control endpoints"));
}

TEST(CompanionRulesTest, MultIsAtMostTwo) {
    EXPECT_EQ(FindingsIn(Storage({Isochronous, 0, 0, 0, 0})), FindingList());
    auto const last = [](std::uint32_t burst, std::uint32_t attributes) {
        // An isochronous endpoint with a payload belongs in another alternate setting than 0.
        return Storage({Isochronous, 1024, burst, attributes, 1024});
    };
    EXPECT_EQ(FindingsIn(last(1, 2)), FindingList());
    EXPECT_EQ(
        FindingsIn(last(1, 3)),
        Fail("USB 3.2 9.6.7 bmAttributes", 132, 3, 1, "Mult (bits 1..0) is at most 2"));
    EXPECT_EQ(
        FindingsIn(last(0, 1)), Fail(
                                    "USB 3.2 9.6.7 bmAttributes", 132, 1, 1,
                                    "Mult (bits 1..0) is zero when bMaxBurst is zero"));
    EXPECT_EQ(
        FindingsIn(last(1, 0x44)),
        Fail(
            "USB 3.2 9.6.7 bmAttributes", 132, 0x44, 1,
            "bits 6..2 are reserved and set to zero for an isochronous endpoint"));
}

TEST(CompanionRulesTest, BytesPerIntervalAreForPeriodicEndpoints) {
    EXPECT_EQ(
        FindingsIn(Bulk(companion::wBytesPerInterval, 1)),
        Fail(
            "USB 3.2 9.6.7 wBytesPerInterval", 47, 1, 2,
            "is reserved and zero for bulk endpoints"));
}

TEST(CompanionRulesTest, BytesPerIntervalFitTheBursts) {
    EXPECT_EQ(FindingsIn(Storage({Interrupt, 64, 0, 0, 64})), FindingList());
    EXPECT_EQ(
        FindingsIn(Storage({Interrupt, 64, 0, 0, 65})),
        Fail(
            "USB 3.2 9.6.7 wBytesPerInterval", 133, 65, 2,
            "65 bytes, its packets and bursts carry at most 64 in a service interval"));
    EXPECT_EQ(FindingsIn(Storage({Isochronous, 1024, 15, 2, 49152})), FindingList());
    EXPECT_EQ(
        FindingsIn(Storage({Isochronous, 1024, 15, 2, 49153})),
        Fail(
            "USB 3.2 9.6.7 wBytesPerInterval", 133, 49153, 2,
            "49153 bytes, its packets and bursts carry at most 49152 in a service interval"));
}

TEST(CompanionRulesTest, IsochronousCompanionFollowsWhenPromised) {
    auto const promised = Storage({Isochronous, 1024, 15, 0x80, 1});
    EXPECT_EQ(
        FindingsIn(promised),
        Fail(
            "USB 3.2 9.6.7 bmAttributes", 132, 0x80, 1,
            "bit 7 promises an isochronous endpoint companion, which does not follow"));
    EXPECT_EQ(
        FindingsIn(TestDevice(promised).InsertBehind(
            DescriptorType::EndpointCompanion, 5, {8, 0x31, 0, 0, 0, 0, 1, 0})),
        FindingList());
    EXPECT_EQ(
        FindingsIn(TestDevice(promised).InsertBehind(
            DescriptorType::EndpointCompanion, 5, {8, 0x31, 0, 1, 0, 0, 1, 0})),
        Fail("USB 3.2 9.6.8 wReserved", 137, 0x0100, 2, "is reserved and zero"));
}

TEST(CompanionRulesTest, BytesPerIntervalIsOneBesideAnIsochronousCompanion) {
    EXPECT_EQ(
        FindingsIn(
            Storage({Isochronous, 1024, 15, 0x80, 2})
                .InsertBehind(DescriptorType::EndpointCompanion, 5, {8, 0x31, 0, 0, 0, 0, 1, 0})),
        Fail(
            "USB 3.2 9.6.7 wBytesPerInterval", 133, 2, 2,
            "is 1 when an isochronous endpoint companion says the number of bytes"));
}
