// The rules of the interface descriptor: each kept and broken.
#include <gtest/gtest.h>

#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

TestDevice Hub(std::size_t which, Field const & field, std::uint32_t value) {
    return TestDevice("high_speed_hub").Set(DescriptorType::Interface, which, field, value);
}

TestDevice Mouse(Field const & field, std::uint32_t value) {
    return TestDevice("low_speed_mouse").Set(DescriptorType::Interface, 0, field, value);
}

} // namespace

TEST(InterfaceRulesTest, NumbersCountFromZeroWithoutAGap) {
    EXPECT_EQ(
        FindingsIn(Mouse(setting::bInterfaceNumber, 1)),
        Fail(
            "USB 2.0 9.6.5 bInterfaceNumber", 29, 1, 1,
            "interfaces are numbered from 0 without a gap, 0 is missing"));
    EXPECT_EQ(
        FindingsIn(TestDevice("high_speed_composite")
                       .Set(DescriptorType::Interface, 2, setting::bInterfaceNumber, 5)),
        Fail(
            "USB 2.0 9.6.5 bInterfaceNumber", 86, 5, 1,
            "interfaces are numbered from 0 without a gap, 2 is missing"));
}

TEST(InterfaceRulesTest, NumbersMayComeInAnyOrder) {
    EXPECT_EQ(
        FindingsIn(TestDevice("high_speed_composite")
                       .Set(DescriptorType::Interface, 0, setting::bInterfaceNumber, 1)
                       .Set(DescriptorType::Interface, 1, setting::bInterfaceNumber, 0)),
        FindingList());
}

TEST(InterfaceRulesTest, AlternateSettingZeroExists) {
    EXPECT_EQ(
        FindingsIn(Mouse(setting::bAlternateSetting, 1)),
        Fail(
            "USB 2.0 9.6.5 bAlternateSetting", 30, 1, 1,
            "interface 0 has no alternate setting 0, which is its default"));
}

TEST(InterfaceRulesTest, AlternateSettingIsThereOnce) {
    EXPECT_EQ(
        FindingsIn(Hub(1, setting::bAlternateSetting, 0)),
        Fail(
            "USB 2.0 9.6.5 bAlternateSetting", 46, 0, 1,
            "selects an earlier alternate setting of interface 0 already"));
}

TEST(InterfaceRulesTest, AlternateSettingsShouldHaveNoGap) {
    EXPECT_EQ(FindingsIn(Hub(1, setting::bAlternateSetting, 1)), FindingList());
    EXPECT_EQ(
        FindingsIn(Hub(1, setting::bAlternateSetting, 3)),
        Warning(
            "USB 2.0 9.6.5 bAlternateSetting", 46, 3, 1,
            "alternate settings should count up without a gap, 1 of interface 0 is missing"));
}

TEST(InterfaceRulesTest, CountOfEndpointsIsThatOfTheDescriptors) {
    for (std::uint32_t const count : {0u, 2u})
        EXPECT_EQ(
            FindingsIn(Hub(0, setting::bNumEndpoints, count)),
            Fail(
                "USB 2.0 9.6.5 bNumEndpoints", 31, count, 1,
                "says " + std::to_string(count) + ", the endpoint descriptors here are 1"));
}

TEST(InterfaceRulesTest, ClassZeroIsReserved) {
    EXPECT_EQ(
        FindingsIn(Mouse(setting::bInterfaceClass, 0)
                       .Set(DescriptorType::Interface, 0, setting::bInterfaceSubClass, 0)),
        Fail(
            "USB 2.0 9.6.5 bInterfaceClass", 32, 0, 1,
            "zero is reserved for future standardization"));
}

TEST(InterfaceRulesTest, ClassZeroHasSubclassZero) {
    EXPECT_EQ(
        FindingsIn(Mouse(setting::bInterfaceClass, 0)),
        Fail(
            "USB 2.0 9.6.5 bInterfaceClass", 32, 0, 1,
            "zero is reserved for future standardization")
            + Fail(
                "USB 2.0 9.6.5 bInterfaceSubClass", 33, 1, 1,
                "is zero when bInterfaceClass is zero"));
}
