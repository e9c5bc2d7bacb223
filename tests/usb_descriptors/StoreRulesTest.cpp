// The rules of the BOS descriptor and its device capabilities: each kept and broken.
#include <gtest/gtest.h>

#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

// The capabilities of the storage device, in their order.
constexpr std::size_t Extension = 0;
constexpr std::size_t Speed = 1;
constexpr std::size_t Container = 2;

TestDevice Storage(std::size_t capability, Field const & field, std::uint32_t value) {
    return TestDevice("super_speed_storage")
        .Set(DescriptorType::DeviceCapability, capability, field, value);
}

// With one more capability.
TestDevice With(Bytes const & capability) {
    return TestDevice("super_speed_storage")
        .Append(capability)
        .Set(DescriptorType::ObjectStore, 0, store::bNumDeviceCaps, 4);
}

Bytes SuperSpeedPlus(std::uint8_t length, std::uint8_t count) {
    Bytes bytes{length, 0x10, 0x0A, 0, count, 0, 0, 0, 0, 0x11, 0, 0};
    bytes.resize(length);
    return bytes;
}

Bytes Sized(std::uint8_t length, std::uint8_t type) {
    Bytes bytes{length, 0x10, type};
    bytes.resize(length);
    return bytes;
}

} // namespace

TEST(StoreRulesTest, CountOfCapabilitiesIsThatOfTheDescriptors) {
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .Set(DescriptorType::ObjectStore, 0, store::bNumDeviceCaps, 2)),
        Fail(
            "USB 3.2 9.6.2 bNumDeviceCaps", 143, 2, 1,
            "says 2, the device capability descriptors here are 3"));
}

TEST(StoreRulesTest, SuperSpeedDeviceHasItsTwoCapabilities) {
    auto const without = [](std::size_t capability) {
        return TestDevice("super_speed_storage")
            .Remove(DescriptorType::DeviceCapability, capability)
            .Set(DescriptorType::ObjectStore, 0, store::bNumDeviceCaps, 2);
    };
    EXPECT_EQ(
        FindingsIn(without(Extension)),
        Fail(
            "USB 3.2 9.6.2 bNumDeviceCaps", 143, 2, 1,
            "a SuperSpeed device has a USB 2.0 Extension (type 0x02)"));
    EXPECT_EQ(
        FindingsIn(without(Speed)),
        Fail(
            "USB 3.2 9.6.2 bNumDeviceCaps", 143, 2, 1,
            "a SuperSpeed device has a SuperSpeed USB Device Capability (type 0x03)"));
    EXPECT_EQ(FindingsIn(without(Container)), FindingList());
}

TEST(StoreRulesTest, SlowerDeviceNeedsNoCapability) {
    EXPECT_EQ(
        FindingsIn(TestDevice("high_speed_storage").Append({5, 0x0F, 0, 0, 0})), FindingList());
}

TEST(StoreRulesTest, CapabilityIsAsLongAsItsTypeAsks) {
    struct Case {
        std::uint8_t type;
        std::uint8_t least;
        char const * name;
    };
    for (auto const & [type, least, name] : {
             Case{0x04, 20, "a Container ID"},
             {0x05, 20, "a Platform Descriptor"},
             {0x0A, 16, "a SuperSpeedPlus USB Device Capability"},
         }) {
        SCOPED_TRACE(name);
        EXPECT_EQ(FindingsIn(With(Sized(least, type))), FindingList());
        auto const shorter = static_cast<std::uint8_t>(least - 1);
        EXPECT_EQ(
            FindingsIn(With(Sized(shorter, type))),
            Fail(
                "USB 3.2 9.5 bLength", 181, shorter, 1,
                std::string(name) + " has at least " + std::to_string(least) + " bytes"));
    }
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .Replace(DescriptorType::DeviceCapability, Extension, Sized(6, 0x02))),
        Fail("USB 3.2 9.5 bLength", 144, 6, 1, "a USB 2.0 Extension has at least 7 bytes"));
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .Replace(DescriptorType::DeviceCapability, Speed, Sized(9, 0x03))),
        Fail(
            "USB 3.2 9.5 bLength", 151, 9, 1,
            "a SuperSpeed USB Device Capability has at least 10 bytes"));
    EXPECT_EQ(FindingsIn(With(Sized(3, 0x0B))), FindingList());
    EXPECT_EQ(FindingsIn(With(Sized(3, 0x77))), FindingList());
}

TEST(StoreRulesTest, ReservedBitsAreZero) {
    struct Case {
        std::size_t capability;
        Field field;
        std::uint32_t value;
        std::size_t offset;
        char const * text;
    };
    constexpr Field extension{"9.6.2.1 bmAttributes", 3, 4};
    for (auto const & [capability, field, value, offset, text] : {
             Case{Extension, extension, 3, 147, "bits 0xFFFF0001 are reserved and zero"},
             {Extension, extension, 0x00010002, 147, "bits 0xFFFF0001 are reserved and zero"},
             {Speed, {"9.6.2.2 bmAttributes", 3, 1}, 1, 154, "bits 0xFD are reserved and zero"},
             {Speed,
              {"9.6.2.2 wSpeedsSupported", 4, 2},
              0x001E,
              155,
              "bits 0xFFF0 are reserved and zero"},
             {Container, {"9.6.2.3 bReserved", 3, 1}, 1, 164, "bits 0xFF are reserved and zero"},
         })
        EXPECT_EQ(
            FindingsIn(Storage(capability, field, value)),
            Fail(std::string("USB 3.2 ") + field.rule, offset, value, field.width, text));
    EXPECT_EQ(FindingsIn(Storage(Extension, extension, 0x0000FFFE)), FindingList());
    EXPECT_EQ(FindingsIn(Storage(Speed, {"", 3, 1}, 0x02)), FindingList());
}

TEST(StoreRulesTest, ReservedFieldsOfSuperSpeedPlusAreZero) {
    auto const with = [](std::size_t at) {
        Bytes bytes = SuperSpeedPlus(16, 0);
        bytes[at] |= 0x80;
        return With(bytes);
    };
    EXPECT_EQ(
        FindingsIn(with(3)),
        Fail("USB 3.2 9.6.2.5 bReserved", 184, 0x80, 1, "bits 0xFF are reserved and zero"));
    EXPECT_EQ(
        FindingsIn(with(5)), Fail(
                                 "USB 3.2 9.6.2.5 bmAttributes", 185, 0x8000, 4,
                                 "bits 0xFFFFFE00 are reserved and zero"));
    EXPECT_EQ(
        FindingsIn(with(8)), Fail(
                                 "USB 3.2 9.6.2.5 wFunctionalitySupport", 189, 0x1180, 2,
                                 "bits 0x00F0 are reserved and zero"));
    EXPECT_EQ(
        FindingsIn(with(11)),
        Fail("USB 3.2 9.6.2.5 wReserved", 191, 0x8000, 2, "bits 0xFFFF are reserved and zero"));
    EXPECT_EQ(
        FindingsIn(With({20, 0x10, 0x05, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})),
        Fail("USB 3.2 9.6.2.4 bReserved", 184, 1, 1, "bits 0xFF are reserved and zero"));
}

TEST(StoreRulesTest, SuperSpeedPlusIsAsLongAsItsCountAsks) {
    EXPECT_EQ(FindingsIn(With(SuperSpeedPlus(20, 1))), FindingList());
    EXPECT_EQ(
        FindingsIn(With(SuperSpeedPlus(19, 1))),
        Fail(
            "USB 3.2 9.5 bLength", 181, 19, 1,
            "bmAttributes counts 2 sublink speed attributes, which makes 20 bytes"));
}

TEST(StoreRulesTest, SuperSpeedDeviceManagesLinkPower) {
    EXPECT_EQ(
        FindingsIn(Storage(Extension, {"", 3, 4}, 0)),
        Fail(
            "USB 3.2 9.6.2.1 bmAttributes", 147, 0, 4,
            "bit 1 (link power management) is set in a SuperSpeed device"));
    EXPECT_EQ(
        FindingsIn(TestDevice("high_speed_storage")
                       .Append({5, 0x0F, 0, 0, 1})
                       .Append({7, 0x10, 0x02, 0, 0, 0, 0})),
        FindingList());
}

TEST(StoreRulesTest, LowestFunctionalSpeedIsSupported) {
    constexpr Field field{"9.6.2.2 bFunctionalitySupport", 6, 1};
    EXPECT_EQ(FindingsIn(Storage(Speed, field, 3)), FindingList());
    for (std::uint32_t const speed : {0u, 4u, 255u})
        EXPECT_EQ(
            FindingsIn(Storage(Speed, field, speed)),
            Fail(
                "USB 3.2 9.6.2.2 bFunctionalitySupport", 157, speed, 1,
                "is the number of a bit that is set in wSpeedsSupported (0x000E)"));
}

TEST(StoreRulesTest, ExitLatenciesHaveALimit) {
    constexpr Field u1{"9.6.2.2 bU1DevExitLat", 7, 1};
    constexpr Field u2{"9.6.2.2 wU2DevExitLat", 8, 2};
    EXPECT_EQ(FindingsIn(Storage(Speed, u1, 0x0A)), FindingList());
    EXPECT_EQ(
        FindingsIn(Storage(Speed, u1, 0x0B)),
        Fail("USB 3.2 9.6.2.2 bU1DevExitLat", 158, 0x0B, 1, "values above 0x0A are reserved"));
    EXPECT_EQ(FindingsIn(Storage(Speed, u2, 0x07FF)), FindingList());
    EXPECT_EQ(
        FindingsIn(Storage(Speed, u2, 0x0800)),
        Fail("USB 3.2 9.6.2.2 wU2DevExitLat", 159, 0x0800, 2, "values above 0x07FF are reserved"));
}

TEST(StoreRulesTest, DeviceWithoutStoreHasNoSuchTest) {
    EXPECT_TRUE(HasStore(*ParseRecording(ReadGood("super_speed_storage")).device));
    EXPECT_FALSE(HasStore(*ParseRecording(ReadGood("low_speed_mouse")).device));
}
