// How bytes become a tree of descriptors, and what is found when they do not.
#include <gtest/gtest.h>

#include <initializer_list>

#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

Bytes First(Bytes bytes, std::size_t count) {
    bytes.resize(count);
    return bytes;
}

Bytes Joined(Bytes first, Bytes const & second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace

TEST(RecordingTest, TreeHoldsTheDescriptorsAtTheirOffsets) {
    Bytes const bytes = ReadGood("super_speed_storage");
    auto const parsed = ParseRecording(bytes);
    ASSERT_TRUE(parsed.device);
    EXPECT_TRUE(parsed.device->complete);
    ASSERT_EQ(parsed.device->configurations.size(), 1u);
    auto const & read = parsed.device->configurations.front();
    EXPECT_EQ(read.descriptor.offset, 18u);
    EXPECT_TRUE(read.complete);
    ASSERT_EQ(read.settings.size(), 2u);
    ASSERT_EQ(read.settings[1].endpoints.size(), 4u);
    EXPECT_EQ(read.settings[1].endpoints[0].descriptor.offset, 71u);
    EXPECT_EQ(read.settings[1].endpoints[0].companion->offset, 78u);
    EXPECT_FALSE(read.settings[1].endpoints[0].isochronousCompanion);
    ASSERT_TRUE(parsed.device->store);
    ASSERT_EQ(parsed.device->store->capabilities.size(), 3u);
    EXPECT_EQ(parsed.device->store->capabilities[2].bytes.size(), 20u);
}

TEST(RecordingTest, FieldsAreLittleEndianAndEndWithTheDescriptor) {
    Bytes const bytes{5, 0x0F, 0x34, 0x12, 0xFF};
    Descriptor const descriptor{0, bytes};
    EXPECT_EQ(descriptor.Get(store::wTotalLength), 0x1234u);
    EXPECT_EQ(descriptor.Get({"", 3, 4}), 0xFF12u);
    EXPECT_EQ(descriptor.Get({"", 7, 2}), 0u);
}

TEST(RecordingTest, TextOfAFindingNamesRuleOffsetAndValue) {
    EXPECT_EQ(
        ToText({Severity::Shall, "USB 2.0 9.6.3 wTotalLength", 20, 0x19, 2, "says 25 bytes"}),
        "USB 2.0 9.6.3 wTotalLength at offset 0x0014 is 0x0019: says 25 bytes");
    EXPECT_EQ(
        ToText({Severity::Should, "USB 2.0 9.5 bLength", 0x12345, 0xA, 1, "text"}),
        "USB 2.0 9.5 bLength at offset 0x12345 is 0x0A: text");
}

TEST(RecordingTest, EmptyRecordingIsOneFinding) {
    EXPECT_FALSE(ParseRecording({}).device);
    EXPECT_EQ(
        FindingsIn(Bytes()), Fail(
                                 "USB 2.0 9.6.1 bLength", 0, 0, 1,
                                 "the recording has 0 bytes, a device descriptor alone has 18"));
}

TEST(RecordingTest, RecordingShorterThanADeviceDescriptorIsOneFinding) {
    EXPECT_EQ(
        FindingsIn(First(ReadGood("super_speed_storage"), 17)),
        Fail(
            "USB 3.2 9.6.1 bLength", 0, 18, 1,
            "the recording has 17 bytes, a device descriptor alone has 18"));
}

TEST(RecordingTest, RecordingAboveTheLimitIsOneFinding) {
    Bytes const mouse = ReadGood("low_speed_mouse");
    EXPECT_EQ(
        FindingsIn(First(mouse, MaximumRecordingSize + 1)),
        Fail(
            "USB 2.0 9.6.1 bLength", 0, 18, 1,
            "the recording is larger than 1048576 bytes and was not read"));
    EXPECT_EQ(
        FindingsIn(First(mouse, MaximumRecordingSize)),
        Fail("USB 2.0 9.5 bLength", 52, 0, 1, "a descriptor has at least its length and its type"));
}

TEST(RecordingTest, RecordingBeginsWithADeviceDescriptor) {
    EXPECT_EQ(
        FindingsIn(TestDevice("low_speed_mouse")
                       .Set(DescriptorType::Device, 0, device::bDescriptorType, 0x02)),
        Fail(
            "USB 2.0 9.6.1 bDescriptorType", 1, 2, 1,
            "a recording begins with a device descriptor, type 0x01; this is none"));
}

TEST(RecordingTest, DeviceDescriptorHasEighteenBytes) {
    auto const mouse = [](std::uint32_t length) {
        return TestDevice("low_speed_mouse")
            .Set(DescriptorType::Device, 0, device::bLength, length);
    };
    EXPECT_EQ(
        FindingsIn(mouse(17)),
        Fail("USB 2.0 9.6.1 bLength", 0, 17, 1, "a device descriptor has at least 18 bytes"));
    EXPECT_EQ(
        FindingsIn(mouse(19)),
        Warning("USB 2.0 9.6.1 bLength", 0, 19, 1, "a device descriptor has 18 bytes and no more"));
}

TEST(RecordingTest, DeviceDescriptorAloneLacksItsConfigurations) {
    EXPECT_EQ(
        FindingsIn(First(ReadGood("low_speed_mouse"), 18)),
        Fail(
            "USB 2.0 9.6.1 bNumConfigurations", 17, 1, 1,
            "says 1, the configuration descriptors here are 0"));
}

TEST(RecordingTest, LengthBelowTwoEndsTheWalk) {
    for (std::uint32_t const length : {0u, 1u})
        EXPECT_EQ(
            FindingsIn(TestDevice("high_speed_composite")
                           .Set(DescriptorType::Endpoint, 1, any::bLength, length)),
            Fail(
                "USB 2.0 9.5 bLength", 70, length, 1,
                "a descriptor has at least its length and its type"));
}

TEST(RecordingTest, LengthPastTheEndEndsTheWalk) {
    EXPECT_EQ(
        FindingsIn(
            TestDevice("low_speed_mouse").Set(DescriptorType::Endpoint, 0, any::bLength, 255)),
        Fail(
            "USB 2.0 9.5 bLength", 45, 255, 1,
            "the recording ends before the descriptor does; bytes missing: 248"));
}

TEST(RecordingTest, LoneByteAtTheEndIsNoDescriptor) {
    EXPECT_EQ(
        FindingsIn(Joined(ReadGood("low_speed_mouse"), {2})),
        Fail(
            "USB 2.0 9.5 bLength", 52, 2, 1,
            "the recording ends before the descriptor does; bytes missing: 1"));
}

TEST(RecordingTest, CutBetweenDescriptorsShowsInTheTotalLength) {
    EXPECT_EQ(
        FindingsIn(First(ReadGood("high_speed_storage"), 43)),
        Fail(
            "USB 2.0 9.6.3 wTotalLength", 20, 32, 2,
            "says 32 bytes, the descriptors that are here have 25"));
}

TEST(RecordingTest, TotalLengthIsThatOfTheDescriptors) {
    for (std::uint32_t const total : {0u, 9u, 31u, 33u, 65535u})
        EXPECT_EQ(
            FindingsIn(
                TestDevice("high_speed_storage")
                    .Set(DescriptorType::Configuration, 0, configuration::wTotalLength, total)),
            Fail(
                "USB 2.0 9.6.3 wTotalLength", 20, total, 2,
                "says " + std::to_string(total) + " bytes, the descriptors that are here have 32"));
}

TEST(RecordingTest, ConfigurationAboveSixtyFourKilobytesHasAWrongTotalLength) {
    TestDevice storage("high_speed_storage");
    Bytes vendor(255, 0);
    vendor[0] = 255;
    vendor[1] = 0x41;
    Bytes recording = storage.Recording();
    for (int i = 0; i < 257; ++i)
        recording = Joined(std::move(recording), vendor);
    EXPECT_EQ(
        FindingsIn(recording), Fail(
                                   "USB 2.0 9.6.3 wTotalLength", 20, 32, 2,
                                   "says 32 bytes, the descriptors that are here have 65567"));
}

TEST(RecordingTest, TotalLengthOfTheStoreIsThatOfItsCapabilities) {
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .Set(DescriptorType::ObjectStore, 0, store::wTotalLength, 41)),
        Fail(
            "USB 3.2 9.6.2 wTotalLength", 141, 41, 2,
            "says 41 bytes, the descriptors that are here have 42"));
    EXPECT_EQ(
        FindingsIn(First(ReadGood("super_speed_storage"), 161)),
        Fail(
            "USB 3.2 9.6.2 wTotalLength", 141, 42, 2,
            "says 42 bytes, the descriptors that are here have 22"));
}

TEST(RecordingTest, ShortDescriptorIsRejectedAndTheWalkGoesOn) {
    auto const replaced = [](char const * good, DescriptorType type, Bytes const & bytes) {
        return TestDevice(good).Replace(type, 0, bytes);
    };
    EXPECT_EQ(
        FindingsIn(replaced("high_speed_storage", DescriptorType::Endpoint, {6, 5, 0x81, 2, 0, 2})),
        Fail("USB 2.0 9.5 bLength", 36, 6, 1, "an endpoint descriptor has at least 7 bytes"));
    EXPECT_EQ(
        FindingsIn(
            replaced("low_speed_mouse", DescriptorType::Interface, {8, 4, 0, 0, 1, 3, 1, 2})),
        Fail("USB 2.0 9.5 bLength", 27, 8, 1, "an interface descriptor has at least 9 bytes"));
    EXPECT_EQ(
        FindingsIn(replaced(
            "high_speed_composite", DescriptorType::InterfaceAssociation,
            {7, 0x0B, 0, 2, 2, 2, 1})),
        Fail(
            "USB 2.0 9.5 bLength", 27, 7, 1,
            "an interface association descriptor has at least 8 bytes"));
    EXPECT_EQ(
        FindingsIn(replaced("super_speed_storage", DescriptorType::DeviceCapability, {2, 0x10})),
        Fail(
            "USB 3.2 9.5 bLength", 144, 2, 1,
            "a device capability descriptor has at least 3 bytes"));
}

TEST(RecordingTest, WhatBelongsToARejectedDescriptorGoesWithIt) {
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .Replace(DescriptorType::Interface, 1, {8, 4, 0, 1, 4, 8, 6, 0x62})),
        Fail("USB 3.2 9.5 bLength", 62, 8, 1, "an interface descriptor has at least 9 bytes"));
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .Replace(DescriptorType::Endpoint, 1, {6, 5, 0x02, 2, 0, 4})),
        Fail("USB 3.2 9.5 bLength", 49, 6, 1, "an endpoint descriptor has at least 7 bytes"));
}

TEST(RecordingTest, ShortConfigurationOrStoreEndsTheWalk) {
    EXPECT_EQ(
        FindingsIn(Joined(First(ReadGood("low_speed_mouse"), 18), {8, 2, 8, 0, 0, 1, 0, 0x80})),
        Fail("USB 2.0 9.5 bLength", 18, 8, 1, "a configuration descriptor has at least 9 bytes"));
    EXPECT_EQ(
        FindingsIn(Joined(ReadGood("low_speed_mouse"), {4, 0x0F, 4, 0})),
        Fail("USB 2.0 9.5 bLength", 52, 4, 1, "a BOS descriptor has at least 5 bytes"));
}

TEST(RecordingTest, LongDescriptorIsAWarning) {
    EXPECT_EQ(
        FindingsIn(TestDevice("low_speed_mouse")
                       .Replace(DescriptorType::Endpoint, 0, {8, 5, 0x81, 3, 4, 0, 10, 0})),
        Warning(
            "USB 2.0 9.5 bLength", 45, 8, 1,
            "an endpoint descriptor has 7 bytes; a host ignores the others"));
}

TEST(RecordingTest, AudioInterfacesHaveLongEndpointDescriptors) {
    EXPECT_EQ(FindingsIn(ReadGood("full_speed_microphone")), FindingList());
    EXPECT_EQ(
        FindingsIn(TestDevice("full_speed_microphone")
                       .Set(DescriptorType::Interface, 2, setting::bInterfaceClass, 0xFF)),
        Warning(
            "USB 2.0 9.5 bLength", 102, 9, 1,
            "an endpoint descriptor has 7 bytes; a host ignores the others"));
}

TEST(RecordingTest, EndpointBelongsToAnInterface) {
    EXPECT_EQ(
        FindingsIn(TestDevice("high_speed_storage")
                       .InsertBehind(DescriptorType::Configuration, 0, {7, 5, 0x83, 2, 0, 2, 0})),
        Fail(
            "USB 2.0 9.4.3 bDescriptorType", 28, 5, 1,
            "an endpoint descriptor follows the interface descriptor that it belongs to"));
}

TEST(RecordingTest, CompanionFollowsItsEndpointImmediately) {
    auto const text =
        "a companion descriptor follows immediately the endpoint descriptor that it belongs to";
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .InsertBehind(DescriptorType::Interface, 0, {6, 0x30, 0, 0, 0, 0})),
        Fail("USB 3.2 9.6.7 bDescriptorType", 37, 0x30, 1, text));
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .InsertBehind(DescriptorType::EndpointCompanion, 0, {6, 0x30, 0, 0, 0, 0})),
        Fail("USB 3.2 9.6.7 bDescriptorType", 50, 0x30, 1, text));
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage")
                       .InsertBehind(DescriptorType::Configuration, 0, {6, 0x30, 0, 0, 0, 0})),
        Fail("USB 3.2 9.6.7 bDescriptorType", 28, 0x30, 1, text));
}

TEST(RecordingTest, IsochronousCompanionFollowsACompanionImmediately) {
    auto const text = "it follows immediately the SuperSpeed companion descriptor of an endpoint";
    Bytes const bytes{8, 0x31, 0, 0, 0, 0, 0, 0};
    for (auto const type : {DescriptorType::Configuration, DescriptorType::Interface}) {
        std::size_t const offset = type == DescriptorType::Configuration ? 27 : 36;
        EXPECT_EQ(
            FindingsIn(TestDevice("super_speed_storage").InsertBehind(type, 0, bytes)),
            Fail("USB 3.2 9.6.8 bDescriptorType", offset + 1, 0x31, 1, text));
    }
}

TEST(RecordingTest, ConfigurationHoldsNoDescriptorOfAnotherRequest) {
    for (std::uint8_t const type :
         std::initializer_list<std::uint8_t>{0x01, 0x03, 0x06, 0x07, 0x10})
        EXPECT_EQ(
            FindingsIn(TestDevice("low_speed_mouse")
                           .InsertBehind(DescriptorType::Interface, 0, {3, type, 0})),
            Fail(
                "USB 2.0 9.4.3 bDescriptorType", 37, type, 1,
                "a descriptor of this type is no part of a configuration"));
}

TEST(RecordingTest, DescriptorsOfClassesAndVendorsAreLeftAlone) {
    for (std::uint8_t const type :
         std::initializer_list<std::uint8_t>{0x08, 0x21, 0x29, 0x41, 0xFF})
        EXPECT_EQ(
            FindingsIn(TestDevice("low_speed_mouse")
                           .InsertBehind(DescriptorType::Interface, 0, {2, type})),
            FindingList());
}

TEST(RecordingTest, StoreHoldsCapabilitiesAlone) {
    EXPECT_EQ(
        FindingsIn(TestDevice("super_speed_storage").Append({2, 0x41})),
        Fail(
            "USB 3.2 9.6.2 bDescriptorType", 182, 0x41, 1,
            "a BOS descriptor is followed by device capability descriptors, type 0x10, alone"));
}

TEST(RecordingTest, SectionsComeInOrder) {
    auto const text = "a configuration descriptor, a BOS descriptor behind the last configuration, "
                      "or the end is expected here";
    Bytes const device = First(ReadGood("low_speed_mouse"), 18);
    EXPECT_EQ(
        FindingsIn(Joined(device, {2, 0x04})),
        Fail("USB 2.0 9.4.3 bDescriptorType", 19, 4, 1, text));
    EXPECT_EQ(
        FindingsIn(Joined(ReadGood("super_speed_storage"), {5, 0x0F, 5, 0, 0})),
        Fail("USB 3.2 9.4.3 bDescriptorType", 182, 0x0F, 1, text));
    EXPECT_EQ(
        FindingsIn(Joined(ReadGood("super_speed_storage"), {9, 2, 9, 0, 1, 2, 0, 0x80, 0})),
        Fail("USB 3.2 9.4.3 bDescriptorType", 182, 0x02, 1, text));
}

TEST(RecordingTest, ConfigurationsAreReadOneByOne) {
    EXPECT_EQ(
        FindingsIn(TestDevice("low_speed_mouse")
                       .Set(DescriptorType::Device, 0, device::bNumConfigurations, 2)
                       .Append({9, 2, 0, 0, 1, 2, 0, 0x80, 50})
                       .Append({9, 4, 0, 0, 0, 0xFF, 0, 0, 0})),
        FindingList());
}
