// The rules of the endpoint descriptor: each kept and broken, at each speed.
#include <gtest/gtest.h>

#include "examples/suites/usb_descriptors/Speeds.h"
#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

constexpr unsigned Control = 0;
constexpr unsigned Isochronous = 1;
constexpr unsigned Bulk = 2;
constexpr unsigned Interrupt = 3;

TestDevice
Changed(std::string const & good, std::size_t which, Field const & field, std::uint32_t value) {
    return TestDevice(good).Set(DescriptorType::Endpoint, which, field, value);
}

SpeedSet SizesOf(unsigned type, std::uint32_t packetSize) {
    Bytes const bytes{
        7,
        5,
        0x81,
        static_cast<std::uint8_t>(type),
        static_cast<std::uint8_t>(packetSize),
        static_cast<std::uint8_t>(packetSize >> 8),
        1};
    return SpeedsOfPacketSize({{0, bytes}, {}, {}});
}

SpeedSet SizesOfBurst(unsigned type, std::uint32_t packetSize) {
    Bytes const bytes{
        7,
        5,
        0x81,
        static_cast<std::uint8_t>(type),
        static_cast<std::uint8_t>(packetSize),
        static_cast<std::uint8_t>(packetSize >> 8),
        1};
    Bytes const burst{6, 0x30, 1, 0, 0, 0};
    return SpeedsOfPacketSize({{0, bytes}, Descriptor{7, burst}, {}}) & SuperSpeed;
}

SpeedSet IntervalsOf(unsigned type, std::uint8_t interval) {
    Bytes const bytes{7, 5, 0x81, static_cast<std::uint8_t>(type), 8, 0, interval};
    return SpeedsOfInterval({{0, bytes}, {}, {}});
}

} // namespace

TEST(EndpointRulesTest, PacketSizesByTypeAndSpeed) {
    constexpr SpeedSet lowFull = LowSpeed | FullSpeed;
    struct Case {
        unsigned type;
        std::uint32_t packetSize;
        SpeedSet speeds;
    };
    for (auto const & [type, packetSize, speeds] : {
             Case{Control, 8, lowFull},
             {Control, 16, FullSpeed},
             {Control, 64, FullSpeed | HighSpeed},
             {Control, 512, SuperSpeed},
             {Control, 0, 0},
             {Control, 128, 0},
             {Bulk, 4, 0},
             {Bulk, 8, FullSpeed},
             {Bulk, 24, 0},
             {Bulk, 32, FullSpeed},
             {Bulk, 64, FullSpeed},
             {Bulk, 256, 0},
             {Bulk, 512, HighSpeed},
             {Bulk, 0x0800 | 512, 0},
             {Bulk, 1024, SuperSpeed},
             {Interrupt, 0, lowFull},
             {Interrupt, 8, lowFull | HighSpeed | SuperSpeed},
             {Interrupt, 9, FullSpeed | HighSpeed | SuperSpeed},
             {Interrupt, 64, FullSpeed | HighSpeed | SuperSpeed},
             {Interrupt, 65, HighSpeed | SuperSpeed},
             {Interrupt, 1024, HighSpeed | SuperSpeed},
             {Interrupt, 1025, 0},
             {Interrupt, 0x0800 | 512, 0},
             {Interrupt, 0x0800 | 513, HighSpeed},
             {Interrupt, 0x1000 | 682, 0},
             {Interrupt, 0x1000 | 683, HighSpeed},
             {Interrupt, 0x1000 | 1024, HighSpeed},
             {Interrupt, 0x1800 | 1024, 0},
             {Isochronous, 0, FullSpeed | HighSpeed | SuperSpeed},
             {Isochronous, 1023, FullSpeed | HighSpeed | SuperSpeed},
             {Isochronous, 1024, HighSpeed | SuperSpeed},
             {Isochronous, 1025, 0},
             {Isochronous, 0x0800, 0},
             {Isochronous, 0x0800 | 513, HighSpeed},
             {Isochronous, 0x1000 | 1024, HighSpeed},
         }) {
        SCOPED_TRACE(testing::Message() << "type " << type << " size " << packetSize);
        EXPECT_EQ(NamesOf(SizesOf(type, packetSize)), NamesOf(speeds));
    }
}

TEST(EndpointRulesTest, BurstsTakeFullPackets) {
    for (unsigned const type : {Isochronous, Interrupt}) {
        EXPECT_EQ(SizesOfBurst(type, 1024), SuperSpeed);
        EXPECT_EQ(SizesOfBurst(type, 1023), 0u);
        EXPECT_EQ(SizesOfBurst(type, 0), 0u);
    }
}

TEST(EndpointRulesTest, IntervalsByTypeAndSpeed) {
    struct Case {
        unsigned type;
        std::uint8_t interval;
        SpeedSet speeds;
    };
    for (auto const & [type, interval, speeds] : {
             Case{Control, 0, LowSpeed | FullSpeed | HighSpeed | SuperSpeed},
             {Bulk, 255, FullSpeed | HighSpeed | SuperSpeed},
             {Isochronous, 0, 0},
             {Isochronous, 1, FullSpeed | HighSpeed | SuperSpeed},
             {Isochronous, 16, FullSpeed | HighSpeed | SuperSpeed},
             {Isochronous, 17, 0},
             {Interrupt, 0, 0},
             {Interrupt, 1, FullSpeed | HighSpeed | SuperSpeed},
             {Interrupt, 10, LowSpeed | FullSpeed | HighSpeed | SuperSpeed},
             {Interrupt, 16, LowSpeed | FullSpeed | HighSpeed | SuperSpeed},
             {Interrupt, 17, LowSpeed | FullSpeed},
             {Interrupt, 255, LowSpeed | FullSpeed},
         }) {
        SCOPED_TRACE(testing::Message() << "type " << type << " interval " << int{interval});
        EXPECT_EQ(NamesOf(IntervalsOf(type, interval)), NamesOf(speeds));
    }
}

TEST(EndpointRulesTest, NamesOfSpeedsReadAsAList) {
    EXPECT_EQ(NamesOf(0), "no speed");
    EXPECT_EQ(NamesOf(HighSpeed), "high speed");
    EXPECT_EQ(
        NamesOf(LowSpeed | FullSpeed | HighSpeed | SuperSpeed),
        "low speed or full speed or high speed or SuperSpeed");
}

TEST(EndpointRulesTest, SpeedsOfGoodRecordingsAreThoseOfTheirNames) {
    struct Case {
        char const * good;
        SpeedSet speeds;
    };
    for (auto const & [good, speeds] : {
             Case{"low_speed_mouse", LowSpeed | FullSpeed},
             {"full_speed_microphone", FullSpeed},
             {"high_speed_storage", HighSpeed},
             {"high_speed_hub", FullSpeed | HighSpeed},
             {"high_speed_composite", HighSpeed},
             {"high_speed_camera", HighSpeed},
             {"super_speed_storage", SuperSpeed},
         }) {
        SCOPED_TRACE(good);
        Bytes const bytes = ReadGood(good);
        EXPECT_EQ(NamesOf(SpeedsOfAll(*ParseRecording(bytes).device)), NamesOf(speeds));
    }
}

TEST(EndpointRulesTest, PacketSizeFitsTheTransferType) {
    EXPECT_EQ(
        FindingsIn(Changed("low_speed_mouse", 0, endpoint::wMaxPacketSize, 65)),
        Fail(
            "USB 2.0 9.6.6 wMaxPacketSize", 49, 65, 2,
            "endpoint 0x81, interrupt: takes 0 to 8 at low speed; 0 to 64 at full speed"));
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_camera", 2, endpoint::wMaxPacketSize, 0x0801)),
        Fail(
            "USB 2.0 9.6.6 wMaxPacketSize", 94, 0x0801, 2,
            "endpoint 0x81, isochronous: takes 0 to 1023 at full speed; 0 to 1024, at least 513 "
            "with 1 and 683 with 2 additional transactions at high speed"));
    EXPECT_EQ(
        FindingsIn(Changed("super_speed_storage", 0, endpoint::wMaxPacketSize, 512)),
        Fail(
            "USB 3.2 9.6.6 wMaxPacketSize", 40, 512, 2,
            "endpoint 0x81, bulk: takes 1024 at SuperSpeed"));
}

TEST(EndpointRulesTest, ReservedBitsOfThePacketSizeAreZero) {
    for (std::uint32_t const bit : {0x2000u, 0x4000u, 0x8000u})
        EXPECT_EQ(
            FindingsIn(Changed("high_speed_storage", 0, endpoint::wMaxPacketSize, bit | 512)),
            Fail(
                "USB 2.0 9.6.6 wMaxPacketSize", 40, bit | 512, 2,
                "endpoint 0x81, bulk: bits 15..13 are reserved and set to zero"));
}

TEST(EndpointRulesTest, IntervalFitsTheTransferType) {
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_camera", 1, endpoint::bInterval, 17)),
        Fail(
            "USB 2.0 9.6.6 bInterval", 80, 17, 1,
            "endpoint 0x81, isochronous: takes 1 to 16 at full speed; 1 to 16 at high speed"));
}

TEST(EndpointRulesTest, IntervalFitsTheSpeedOfThePacketSize) {
    EXPECT_EQ(
        FindingsIn(TestDevice("high_speed_hub")
                       .Set(DescriptorType::Endpoint, 0, endpoint::wMaxPacketSize, 100)
                       .Set(DescriptorType::Endpoint, 0, endpoint::bInterval, 17)),
        Fail(
            "USB 2.0 9.6.6 bInterval", 42, 17, 1,
            "endpoint 0x81, interrupt: takes 1 to 16 at high speed, for which alone its "
            "wMaxPacketSize is right"));
}

TEST(EndpointRulesTest, OneSpeedIsRightForAllPacketSizes) {
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_storage", 1, endpoint::wMaxPacketSize, 64)),
        Fail(
            "USB 2.0 9.6.6 wMaxPacketSize", 47, 64, 2,
            "endpoint 0x02, bulk: right at full speed, but what comes before is right at high "
            "speed alone"));
    EXPECT_EQ(
        FindingsIn(TestDevice("high_speed_storage")
                       .Set(DescriptorType::Endpoint, 0, endpoint::wMaxPacketSize, 64)
                       .Set(DescriptorType::Endpoint, 1, endpoint::wMaxPacketSize, 64)),
        FindingList());
}

TEST(EndpointRulesTest, OneSpeedIsRightForAllIntervals) {
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_composite", 3, endpoint::bInterval, 17)),
        Fail(
            "USB 2.0 9.6.6 bInterval", 108, 17, 1,
            "endpoint 0x83, interrupt: right at full speed, but what comes before is "
            "right at high speed alone"));
}

TEST(EndpointRulesTest, BulkIntervalShouldBeZeroAtSuperSpeed) {
    EXPECT_EQ(
        FindingsIn(Changed("super_speed_storage", 0, endpoint::bInterval, 1)),
        Warning(
            "USB 3.2 9.6.6 bInterval", 42, 1, 1,
            "endpoint 0x81, bulk: the field is reserved and should be zero"));
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_storage", 0, endpoint::bInterval, 255)), FindingList());
}

TEST(EndpointRulesTest, NotificationsComeAtLongIntervalsAtSuperSpeed) {
    auto const storage = [](std::uint32_t attributes, std::uint32_t interval) {
        return TestDevice("super_speed_storage")
            .Set(DescriptorType::Endpoint, 5, endpoint::bmAttributes, attributes)
            .Set(DescriptorType::Endpoint, 5, endpoint::bInterval, interval);
    };
    EXPECT_EQ(FindingsIn(storage(0x13, 8)), FindingList());
    EXPECT_EQ(FindingsIn(storage(0x03, 7)), FindingList());
    EXPECT_EQ(
        FindingsIn(storage(0x13, 7)),
        Fail(
            "USB 3.2 9.6.6 bInterval", 128, 7, 1,
            "endpoint 0x04, interrupt: takes 8 to 16 for notifications"));
}

TEST(EndpointRulesTest, ReservedBitsOfTheAddressAreZero) {
    for (std::uint32_t const bit : {0x10u, 0x20u, 0x40u})
        EXPECT_EQ(
            FindingsIn(Changed("low_speed_mouse", 0, endpoint::bEndpointAddress, 0x81 | bit)),
            Fail(
                "USB 2.0 9.6.6 bEndpointAddress", 47, 0x81 | bit, 1,
                "bits 6..4 are reserved and reset to zero"));
}

TEST(EndpointRulesTest, EndpointZeroHasNoDescriptor) {
    for (std::uint32_t const address : {0x00u, 0x80u})
        EXPECT_EQ(
            FindingsIn(Changed("low_speed_mouse", 0, endpoint::bEndpointAddress, address)),
            Fail(
                "USB 2.0 9.6.6 bEndpointAddress", 47, address, 1,
                "there is never a descriptor for endpoint zero"));
}

TEST(EndpointRulesTest, AddressIsThereOnceInASetting) {
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_storage", 1, endpoint::bEndpointAddress, 0x81)),
        Fail(
            "USB 2.0 9.6.6 bEndpointAddress", 45, 0x81, 1,
            "belongs to an earlier endpoint of this alternate setting already"));
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_storage", 1, endpoint::bEndpointAddress, 0x01)),
        FindingList());
}

TEST(EndpointRulesTest, InterfacesShareNoEndpoint) {
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_composite", 3, endpoint::bEndpointAddress, 0x81)),
        Fail(
            "USB 2.0 9.6.3 bEndpointAddress", 104, 0x81, 1,
            "is used by interface 0 already; interfaces of a configuration share no endpoint"));
}

TEST(EndpointRulesTest, ConfigurationsMayShareEndpoints) {
    EXPECT_EQ(
        FindingsIn(TestDevice("low_speed_mouse")
                       .Set(DescriptorType::Device, 0, device::bNumConfigurations, 2)
                       .Append({9, 2, 0, 0, 2, 2, 0, 0x80, 50})
                       .Append({9, 4, 0, 0, 0, 0xFF, 0, 0, 0})
                       .Append({9, 4, 1, 0, 1, 0xFF, 0, 0, 0})
                       .Append({7, 5, 0x81, 3, 8, 0, 10})),
        FindingList());
}

TEST(EndpointRulesTest, ReservedAttributesAreZero) {
    for (std::uint32_t const bit : {0x04u, 0x08u, 0x10u, 0x20u, 0x40u, 0x80u})
        EXPECT_EQ(
            FindingsIn(Changed("high_speed_storage", 0, endpoint::bmAttributes, Bulk | bit)),
            Fail(
                "USB 2.0 9.6.6 bmAttributes", 39, Bulk | bit, 1,
                "endpoint 0x81, bulk: bits 0xFC are reserved and reset to zero"));
    EXPECT_EQ(
        FindingsIn(Changed("low_speed_mouse", 0, endpoint::bmAttributes, 0x13)),
        Fail(
            "USB 2.0 9.6.6 bmAttributes", 48, 0x13, 1,
            "endpoint 0x81, interrupt: bits 0xFC are reserved and reset to zero"));
}

TEST(EndpointRulesTest, IsochronousAttributesHaveAMeaning) {
    for (std::uint32_t const attributes : {0x01u, 0x0Du, 0x11u, 0x25u})
        EXPECT_EQ(
            FindingsIn(Changed("high_speed_camera", 1, endpoint::bmAttributes, attributes)),
            FindingList());
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_camera", 1, endpoint::bmAttributes, 0x31)),
        Fail(
            "USB 2.0 9.6.6 bmAttributes", 77, 0x31, 1,
            "endpoint 0x81, isochronous: usage type 3 (bits 5..4) is reserved"));
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_camera", 1, endpoint::bmAttributes, 0x41)),
        Fail(
            "USB 2.0 9.6.6 bmAttributes", 77, 0x41, 1,
            "endpoint 0x81, isochronous: bits 0xC0 are reserved and reset to zero"));
}

TEST(EndpointRulesTest, InterruptAttributesHaveAMeaningAtSuperSpeed) {
    auto const storage = [](std::uint32_t attributes) {
        return TestDevice("super_speed_storage")
            .Set(DescriptorType::Endpoint, 5, endpoint::bmAttributes, attributes)
            .Set(DescriptorType::Endpoint, 5, endpoint::bInterval, 16);
    };
    EXPECT_EQ(FindingsIn(storage(0x13)), FindingList());
    for (std::uint32_t const usage : {2u, 3u})
        EXPECT_EQ(
            FindingsIn(storage(usage << 4 | 3)),
            Fail(
                "USB 3.2 9.6.6 bmAttributes", 125, usage << 4 | 3, 1,
                "endpoint 0x04, interrupt: usage type " + std::to_string(usage)
                    + " (bits 5..4) is reserved"));
    EXPECT_EQ(
        FindingsIn(storage(0x07)),
        Fail(
            "USB 3.2 9.6.6 bmAttributes", 125, 0x07, 1,
            "endpoint 0x04, interrupt: bits 0xCC are reserved and reset to zero"));
}

TEST(EndpointRulesTest, IsochronousEndpointHasNoPayloadByDefault) {
    auto const camera = TestDevice("high_speed_camera")
                            .Set(DescriptorType::Interface, 1, setting::bAlternateSetting, 3)
                            .Set(DescriptorType::Interface, 2, setting::bAlternateSetting, 0)
                            .Set(DescriptorType::Interface, 3, setting::bAlternateSetting, 1);
    auto const gap = Warning(
        "USB 2.0 9.6.5 bAlternateSetting", 59, 3, 1,
        "alternate settings should count up without a gap, 2 of interface 1 is missing");
    EXPECT_EQ(
        FindingsIn(camera),
        gap
            + Fail(
                "USB 2.0 5.6.3 wMaxPacketSize", 78, 512, 2,
                "endpoint 0x81, isochronous: has no payload in alternate setting 0, the default"));
    EXPECT_EQ(
        FindingsIn(
            TestDevice(camera).Set(DescriptorType::Endpoint, 1, endpoint::wMaxPacketSize, 0)),
        gap);
}

TEST(EndpointRulesTest, IsochronousPayloadByDefaultWasFreeBeforeTwoPointZero) {
    EXPECT_EQ(
        FindingsIn(TestDevice("full_speed_microphone")
                       .Set(DescriptorType::Interface, 1, setting::bAlternateSetting, 1)
                       .Set(DescriptorType::Interface, 2, setting::bAlternateSetting, 0)),
        FindingList());
}
