// The rules of the interface association descriptor: each kept and broken.
#include <gtest/gtest.h>

#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

TestDevice Composite(Field const & field, std::uint32_t value) {
    return TestDevice("high_speed_composite")
        .Set(DescriptorType::InterfaceAssociation, 0, field, value);
}

// One more association, in front of the third interface: the keyboard.
TestDevice WithSecond(std::uint8_t first, std::uint8_t count) {
    return TestDevice("high_speed_composite")
        .InsertBehind(DescriptorType::Endpoint, 2, {8, 0x0B, first, count, 0x03, 0, 0, 0});
}

} // namespace

TEST(AssociationRulesTest, EveryInterfaceOfTheRangeExists) {
    EXPECT_EQ(FindingsIn(Composite(association::bInterfaceCount, 3)), FindingList());
    EXPECT_EQ(
        FindingsIn(Composite(association::bInterfaceCount, 255)),
        Fail(
            "USB 3.2 9.6.4 bInterfaceCount", 30, 255, 1,
            "from interface 0 on; interface 3 does not exist"));
    EXPECT_EQ(
        FindingsIn(Composite(association::bFirstInterface, 255)),
        Fail(
            "USB 3.2 9.6.4 bInterfaceCount", 30, 2, 1,
            "from interface 255 on; interface 255 does not exist"));
}

TEST(AssociationRulesTest, RangeIsNotEmpty) {
    EXPECT_EQ(
        FindingsIn(Composite(association::bInterfaceCount, 0)),
        Fail(
            "USB 3.2 9.6.4 bInterfaceCount", 30, 0, 1,
            "associates no interface with the function"));
}

TEST(AssociationRulesTest, RangeShouldBeOfTwoOrMore) {
    EXPECT_EQ(
        FindingsIn(Composite(association::bInterfaceCount, 1)),
        Warning(
            "USB 3.2 9.6.4 bInterfaceCount", 30, 1, 1,
            "an association should be of two or more interfaces"));
}

TEST(AssociationRulesTest, InterfaceShouldBelongToOneAssociation) {
    EXPECT_EQ(
        FindingsIn(WithSecond(2, 1)), Warning(
                                          "USB 3.2 9.6.4 bInterfaceCount", 87, 1, 1,
                                          "an association should be of two or more interfaces"));
    EXPECT_EQ(
        FindingsIn(WithSecond(2, 1).Set(
            DescriptorType::InterfaceAssociation, 0, association::bInterfaceCount, 3)),
        Warning(
            "USB 3.2 9.6.4 bInterfaceCount", 87, 1, 1,
            "an association should be of two or more interfaces")
            + Warning(
                "USB 3.2 9.6.4 bFirstInterface", 86, 2, 1,
                "interface 2 belongs to an earlier association already"));
}

TEST(AssociationRulesTest, DescriptorComesBeforeItsInterfaces) {
    EXPECT_EQ(
        FindingsIn(WithSecond(1, 2).Set(
            DescriptorType::InterfaceAssociation, 0, association::bInterfaceCount, 1)),
        Warning(
            "USB 3.2 9.6.4 bInterfaceCount", 30, 1, 1,
            "an association should be of two or more interfaces")
            + Fail(
                "USB 3.2 9.6.4 bFirstInterface", 86, 1, 1,
                "is located before its interfaces, but interface 1 came earlier"));
}

TEST(AssociationRulesTest, OtherInterfacesMayComeBeforeTheDescriptor) {
    EXPECT_EQ(
        FindingsIn(
            WithSecond(0, 1)
                .Set(DescriptorType::InterfaceAssociation, 0, association::bFirstInterface, 1)
                .Set(DescriptorType::Interface, 0, setting::bInterfaceNumber, 1)
                .Set(DescriptorType::Interface, 1, setting::bInterfaceNumber, 2)
                .Set(DescriptorType::Interface, 2, setting::bInterfaceNumber, 0)),
        Warning(
            "USB 3.2 9.6.4 bInterfaceCount", 87, 1, 1,
            "an association should be of two or more interfaces"));
}

TEST(AssociationRulesTest, FunctionClassIsNotZero) {
    EXPECT_EQ(
        FindingsIn(Composite(association::bFunctionClass, 0)),
        Fail("USB 3.2 9.6.4 bFunctionClass", 31, 0, 1, "a value of zero is not allowed"));
}

TEST(AssociationRulesTest, DeviceShouldHaveTheMultiInterfaceClass) {
    for (auto const & field :
         {device::bDeviceClass, device::bDeviceSubClass, device::bDeviceProtocol}) {
        auto const changed =
            TestDevice("high_speed_composite").Set(DescriptorType::Device, 0, field, 0x77);
        EXPECT_EQ(
            FindingsIn(changed),
            Warning(
                "USB 3.2 9.6.4 bDeviceClass", 4, changed.Recording()[4], 1,
                "a device with interface associations should have the class, subclass and protocol "
                "0xEF, 0x02, 0x01"));
    }
}

TEST(AssociationRulesTest, DeviceWithoutAssociationsHasNoSuchTest) {
    EXPECT_TRUE(HasAssociations(*ParseRecording(ReadGood("high_speed_composite")).device));
    EXPECT_FALSE(HasAssociations(*ParseRecording(ReadGood("low_speed_mouse")).device));
}
