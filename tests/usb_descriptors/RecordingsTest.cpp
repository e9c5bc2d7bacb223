// The recordings that come with the suite: the good ones have no fault, the faulty ones one each.
#include <gtest/gtest.h>

#include <map>

#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

std::map<std::string, FindingList> FindingsByName(char const * folder) {
    std::map<std::string, FindingList> all;
    for (auto const & entry : std::filesystem::directory_iterator(RecordingsFolder() / folder))
        all[entry.path().stem().string()] = FindingsIn(ReadFile(entry.path()));
    return all;
}

} // namespace

TEST(RecordingsTest, GoodOnesHaveNoFinding) {
    EXPECT_EQ(
        FindingsByName("good"), (std::map<std::string, FindingList>{
                                    {"full_speed_microphone", {}},
                                    {"high_speed_camera", {}},
                                    {"high_speed_composite", {}},
                                    {"high_speed_hub", {}},
                                    {"high_speed_storage", {}},
                                    {"low_speed_mouse", {}},
                                    {"super_speed_storage", {}},
                                }));
}

TEST(RecordingsTest, FaultyOnesHaveTheirOneFinding) {
    EXPECT_EQ(
        FindingsByName("faulty"),
        (std::map<std::string, FindingList>{
            {"association_beyond_interfaces",
             Fail(
                 "USB 3.2 9.6.4 bInterfaceCount", 30, 4, 1,
                 "from interface 0 on; interface 3 does not exist")},
            {"association_without_device_class",
             Warning(
                 "USB 3.2 9.6.4 bDeviceClass", 4, 0, 1,
                 "a device with interface associations should have the class, subclass and "
                 "protocol 0xEF, 0x02, 0x01")},
            {"bos_count", Fail(
                              "USB 3.2 9.6.2 bNumDeviceCaps", 143, 4, 1,
                              "says 4, the device capability descriptors here are 3")},
            {"bulk_packet_size",
             Fail(
                 "USB 2.0 9.6.6 wMaxPacketSize", 47, 320, 2,
                 "endpoint 0x02, bulk: takes 8, 16, 32 or 64 at full speed; 512 at high speed")},
            {"companion_missing",
             Fail(
                 "USB 3.2 9.6.7 bEndpointAddress", 51, 0x02, 1,
                 "no SuperSpeed endpoint companion descriptor follows the endpoint")},
            {"configuration_count", Fail(
                                        "USB 2.0 9.6.1 bNumConfigurations", 17, 2, 1,
                                        "says 2, the configuration descriptors here are 1")},
            {"configuration_reserved_bit",
             Fail("USB 2.0 9.6.3 bmAttributes", 25, 0x20, 1, "D7 is reserved and set to one")},
            {"device_release_not_decimal", Fail(
                                               "USB 2.0 9.6.1 bcdDevice", 12, 0x010A, 2,
                                               "each digit of a binary-coded decimal is 0 to 9")},
            {"empty", Fail(
                          "USB 2.0 9.6.1 bLength", 0, 0, 1,
                          "the recording has 0 bytes, a device descriptor alone has 18")},
            {"endpoint_count", Fail(
                                   "USB 2.0 9.6.5 bNumEndpoints", 47, 2, 1,
                                   "says 2, the endpoint descriptors here are 1")},
            {"endpoint_twice",
             Fail(
                 "USB 2.0 9.6.6 bEndpointAddress", 45, 0x81, 1,
                 "belongs to an earlier endpoint of this alternate setting already")},
            {"interface_number_gap",
             Fail(
                 "USB 2.0 9.6.5 bInterfaceNumber", 86, 3, 1,
                 "interfaces are numbered from 0 without a gap, 2 is missing")},
            {"interval_zero",
             Fail(
                 "USB 2.0 9.6.6 bInterval", 51, 0, 1,
                 "endpoint 0x81, interrupt: takes 10 to 255 at low speed; 1 to 255 at full "
                 "speed")},
            {"length_zero", Fail(
                                "USB 2.0 9.5 bLength", 36, 0, 1,
                                "a descriptor has at least its length and its type")},
            {"power_above_limit", Fail(
                                      "USB 2.0 7.2.1 bMaxPower", 26, 251, 1,
                                      "502 mA, a device draws at most 500 mA from the bus")},
            {"speeds_mixed", Fail(
                                 "USB 2.0 9.6.6 bInterval", 108, 32, 1,
                                 "endpoint 0x83, interrupt: right at full speed, but what comes "
                                 "before is right at high speed alone")},
            {"total_length", Fail(
                                 "USB 2.0 9.6.3 wTotalLength", 20, 25, 2,
                                 "says 25 bytes, the descriptors that are here have 32")},
            {"truncated", Fail(
                              "USB 2.0 9.5 bLength", 43, 7, 1,
                              "the recording ends before the descriptor does; bytes missing: 3")},
        }));
}
