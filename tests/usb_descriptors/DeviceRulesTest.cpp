// The rules of the device descriptor: each in a device that keeps it and in one that breaks it.
#include <gtest/gtest.h>

#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

TestDevice Mouse(Field const & field, std::uint32_t value) {
    return TestDevice("low_speed_mouse").Set(DescriptorType::Device, 0, field, value);
}

TestDevice Storage(Field const & field, std::uint32_t value) {
    return TestDevice("high_speed_storage").Set(DescriptorType::Device, 0, field, value);
}

TestDevice SuperStorage(Field const & field, std::uint32_t value) {
    return TestDevice("super_speed_storage").Set(DescriptorType::Device, 0, field, value);
}

} // namespace

TEST(DeviceRulesTest, ReleasesAreBinaryCodedDecimals) {
    auto const text = "each digit of a binary-coded decimal is 0 to 9";
    EXPECT_EQ(FindingsIn(Mouse(device::bcdUSB, 0x0101)), FindingList());
    EXPECT_EQ(
        FindingsIn(Mouse(device::bcdUSB, 0x011A)),
        Fail("USB 2.0 9.6.1 bcdUSB", 2, 0x011A, 2, text));
    EXPECT_EQ(FindingsIn(Mouse(device::bcdDevice, 0x9999)), FindingList());
    for (std::uint32_t const release : {0x000Au, 0x00A0u, 0x0A00u, 0xA000u})
        EXPECT_EQ(
            FindingsIn(Mouse(device::bcdDevice, release)),
            Fail("USB 2.0 9.6.1 bcdDevice", 12, release, 2, text));
}

TEST(DeviceRulesTest, ClassZeroHasSubclassZero) {
    EXPECT_EQ(
        FindingsIn(Mouse(device::bDeviceSubClass, 0x01)),
        Fail("USB 2.0 9.6.1 bDeviceSubClass", 5, 1, 1, "is zero when bDeviceClass is zero"));
    EXPECT_EQ(
        FindingsIn(Mouse(device::bDeviceSubClass, 0x01)
                       .Set(DescriptorType::Device, 0, device::bDeviceClass, 0xFF)),
        FindingList());
}

TEST(DeviceRulesTest, ClassZeroShouldHaveProtocolZero) {
    EXPECT_EQ(
        FindingsIn(Mouse(device::bDeviceProtocol, 0x02)),
        Warning(
            "USB 2.0 9.6.1 bDeviceProtocol", 6, 2, 1,
            "has no meaning when bDeviceClass is zero, and should be zero"));
    EXPECT_EQ(
        FindingsIn(Mouse(device::bDeviceProtocol, 0x02)
                       .Set(DescriptorType::Device, 0, device::bDeviceClass, 0x02)),
        FindingList());
}

TEST(DeviceRulesTest, ControlPacketSizeIsOneOfFour) {
    for (std::uint32_t const size : {8u, 16u, 32u, 64u})
        EXPECT_EQ(FindingsIn(Mouse(device::bMaxPacketSize0, size)), FindingList());
    for (std::uint32_t const size : {0u, 7u, 9u, 24u, 128u, 255u})
        EXPECT_EQ(
            FindingsIn(Mouse(device::bMaxPacketSize0, size)),
            Fail("USB 2.0 9.6.1 bMaxPacketSize0", 7, size, 1, "is 8, 16, 32 or 64"));
}

TEST(DeviceRulesTest, ControlPacketSizeIsAnExponentAtSuperSpeed) {
    EXPECT_EQ(FindingsIn(SuperStorage(device::bMaxPacketSize0, 9)), FindingList());
    for (std::uint32_t const size : {0u, 8u, 64u})
        EXPECT_EQ(
            FindingsIn(SuperStorage(device::bMaxPacketSize0, size)),
            Fail(
                "USB 3.2 9.6.1 bMaxPacketSize0", 7, size, 1,
                "is 9 (2 to the power of 9 bytes) at SuperSpeed, which bcdUSB says"));
}

TEST(DeviceRulesTest, ControlPacketSizeTakesPartInTheSpeed) {
    EXPECT_EQ(
        FindingsIn(Storage(device::bMaxPacketSize0, 8)),
        Fail(
            "USB 2.0 9.6.6 wMaxPacketSize", 0x28, 512, 2,
            "endpoint 0x81, bulk: takes 8, 16, 32 or 64 at full speed")
            + Fail(
                "USB 2.0 9.6.6 wMaxPacketSize", 0x2F, 512, 2,
                "endpoint 0x02, bulk: takes 8, 16, 32 or 64 at full speed"));
}

TEST(DeviceRulesTest, HighSpeedCameWithTwoPointZero) {
    EXPECT_EQ(
        FindingsIn(Storage(device::bcdUSB, 0x0110)),
        Fail(
            "USB 2.0 9.6.6 wMaxPacketSize", 0x28, 512, 2,
            "endpoint 0x81, bulk: takes 8, 16, 32 or 64 at full speed")
            + Fail(
                "USB 2.0 9.6.6 wMaxPacketSize", 0x2F, 512, 2,
                "endpoint 0x02, bulk: takes 8, 16, 32 or 64 at full speed"));
    EXPECT_EQ(FindingsIn(Storage(device::bcdUSB, 0x0210)), FindingList());
}

TEST(DeviceRulesTest, CountOfConfigurationsIsThatOfTheDescriptors) {
    EXPECT_EQ(
        FindingsIn(Mouse(device::bNumConfigurations, 2)),
        Fail(
            "USB 2.0 9.6.1 bNumConfigurations", 17, 2, 1,
            "says 2, the configuration descriptors here are 1"));
    EXPECT_EQ(
        FindingsIn(Mouse(device::bNumConfigurations, 0)),
        Fail(
            "USB 2.0 9.6.1 bNumConfigurations", 17, 0, 1,
            "a device has one or more configurations"));
}
