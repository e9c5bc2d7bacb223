// The rules of the configuration descriptor: each kept and broken.
#include <gtest/gtest.h>

#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

constexpr Field DevicePower{"", 8, 1};

TestDevice Changed(std::string const & good, Field const & field, std::uint32_t value) {
    return TestDevice(good).Set(DescriptorType::Configuration, 0, field, value);
}

// A second configuration: an interface without endpoints.
TestDevice WithSecondConfiguration(std::uint8_t value) {
    return TestDevice("low_speed_mouse")
        .Set(DescriptorType::Device, 0, device::bNumConfigurations, 2)
        .Append({9, 2, 0, 0, 1, value, 0, 0x80, 50})
        .Append({9, 4, 0, 0, 0, 0xFF, 0, 0, 0});
}

} // namespace

TEST(ConfigurationRulesTest, CountOfInterfacesIsThatOfTheNumbers) {
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_hub", configuration::bNumInterfaces, 2)),
        Fail(
            "USB 2.0 9.6.3 bNumInterfaces", 22, 2, 1,
            "says 2, the interfaces described here are 1"));
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_hub", configuration::bNumInterfaces, 0)),
        Fail(
            "USB 2.0 9.6.3 bNumInterfaces", 22, 0, 1,
            "a configuration has one or more interfaces"));
}

TEST(ConfigurationRulesTest, ValueIsNotZero) {
    EXPECT_EQ(
        FindingsIn(Changed("low_speed_mouse", configuration::bConfigurationValue, 0)),
        Fail(
            "USB 2.0 9.6.3 bConfigurationValue", 23, 0, 1,
            "zero selects no configuration, but returns the device to the Address state (9.4.7)"));
    EXPECT_EQ(
        FindingsIn(Changed("low_speed_mouse", configuration::bConfigurationValue, 255)),
        FindingList());
}

TEST(ConfigurationRulesTest, ValueSelectsOneConfiguration) {
    EXPECT_EQ(FindingsIn(WithSecondConfiguration(2)), FindingList());
    EXPECT_EQ(
        FindingsIn(WithSecondConfiguration(1)),
        Fail(
            "USB 2.0 9.6.3 bConfigurationValue", 57, 1, 1,
            "selects an earlier configuration of the device already"));
}

TEST(ConfigurationRulesTest, ReservedAttributesAreAsTheStandardSetsThem) {
    EXPECT_EQ(
        FindingsIn(Changed("low_speed_mouse", configuration::bmAttributes, 0xE0)), FindingList());
    EXPECT_EQ(
        FindingsIn(Changed("low_speed_mouse", configuration::bmAttributes, 0x60)),
        Fail("USB 2.0 9.6.3 bmAttributes", 25, 0x60, 1, "D7 is reserved and set to one"));
    for (std::uint32_t const bit : {0x01u, 0x02u, 0x04u, 0x08u, 0x10u})
        EXPECT_EQ(
            FindingsIn(Changed("low_speed_mouse", configuration::bmAttributes, 0x80 | bit)),
            Fail(
                "USB 2.0 9.6.3 bmAttributes", 25, 0x80 | bit, 1,
                "D4..0 are reserved and reset to zero"));
}

TEST(ConfigurationRulesTest, EachReservedAttributeIsAFindingOfItsOwn) {
    EXPECT_EQ(
        FindingsIn(Changed("low_speed_mouse", configuration::bmAttributes, 0x10)),
        Fail("USB 2.0 9.6.3 bmAttributes", 25, 0x10, 1, "D7 is reserved and set to one")
            + Fail(
                "USB 2.0 9.6.3 bmAttributes", 25, 0x10, 1, "D4..0 are reserved and reset to zero"));
}

TEST(ConfigurationRulesTest, PowerIsAtMostFiveUnitLoads) {
    EXPECT_EQ(FindingsIn(Changed("low_speed_mouse", DevicePower, 250)), FindingList());
    EXPECT_EQ(
        FindingsIn(Changed("low_speed_mouse", DevicePower, 251)),
        Fail(
            "USB 2.0 7.2.1 bMaxPower", 26, 251, 1,
            "502 mA, a device draws at most 500 mA from the bus"));
}

TEST(ConfigurationRulesTest, PowerIsAtMostSixUnitLoadsAtSuperSpeed) {
    auto const storage = [](std::uint32_t version, std::uint32_t power) {
        return Changed("super_speed_storage", DevicePower, power)
            .Set(DescriptorType::Device, 0, device::bcdUSB, version);
    };
    EXPECT_EQ(FindingsIn(storage(0x0310, 112)), FindingList());
    EXPECT_EQ(
        FindingsIn(storage(0x0310, 113)),
        Fail(
            "USB 3.2 11.4.1 bMaxPower", 26, 113, 1,
            "904 mA, a device draws at most 900 mA from the bus"));
    EXPECT_EQ(FindingsIn(storage(0x0320, 187)), FindingList());
    EXPECT_EQ(
        FindingsIn(storage(0x0320, 188)),
        Fail(
            "USB 3.2 11.4.1 bMaxPower", 26, 188, 1,
            "1504 mA, a device draws at most 1500 mA from the bus"));
}

TEST(ConfigurationRulesTest, SelfPoweredDeviceShouldDrawOneUnitLoad) {
    EXPECT_EQ(FindingsIn(Changed("high_speed_hub", DevicePower, 50)), FindingList());
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_hub", DevicePower, 51)),
        Warning(
            "USB 2.0 7.2.1 bMaxPower", 26, 51, 1,
            "102 mA, a self-powered device should draw at most one unit load (100 mA) from the "
            "bus"));
    EXPECT_EQ(
        FindingsIn(Changed("high_speed_hub", DevicePower, 251)),
        Fail(
            "USB 2.0 7.2.1 bMaxPower", 26, 251, 1,
            "502 mA, a device draws at most 500 mA from the bus"));
}

TEST(ConfigurationRulesTest, SelfPoweredUnitLoadIsLargerAtSuperSpeed) {
    auto const storage = [](std::uint32_t version, std::uint32_t power) {
        return Changed("super_speed_storage", DevicePower, power)
            .Set(DescriptorType::Configuration, 0, configuration::bmAttributes, 0xC0)
            .Set(DescriptorType::Device, 0, device::bcdUSB, version);
    };
    EXPECT_EQ(FindingsIn(storage(0x0300, 18)), FindingList());
    EXPECT_EQ(
        FindingsIn(storage(0x0300, 19)),
        Warning(
            "USB 3.2 11.4.1 bMaxPower", 26, 19, 1,
            "152 mA, a self-powered device should draw at most one unit load (150 mA) from the "
            "bus"));
    EXPECT_EQ(FindingsIn(storage(0x0320, 31)), FindingList());
    EXPECT_EQ(
        FindingsIn(storage(0x0320, 32)),
        Warning(
            "USB 3.2 11.4.1 bMaxPower", 26, 32, 1,
            "256 mA, a self-powered device should draw at most one unit load (250 mA) from the "
            "bus"));
}
