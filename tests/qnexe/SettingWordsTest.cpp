// The words of the settings' options.
#include "examples/QNExe/settings/SettingWords.h"

#include <gtest/gtest.h>

namespace {

std::optional<Setting> Made(char const * section, char const * key, char const * value) {
    return Setting{section, key, value};
}

TEST(SettingWordsTest, ASettingIsSectionKeyAndValue) {
    EXPECT_EQ(ReadSetting("Suite.Ports=4"), Made("Suite", "Ports", "4"));
    EXPECT_EQ(ReadSetting("a.b=c=d.e"), Made("a", "b", "c=d.e"));
    EXPECT_EQ(ReadSetting("a.b.c=d"), Made("a.b", "c", "d"));
    EXPECT_EQ(ReadSetting("a.b="), Made("a", "b", ""));
    EXPECT_EQ(ReadSetting(" a . b = c "), Made(" a ", " b ", " c "));
}

TEST(SettingWordsTest, WhatIsNoSettingIsTold) {
    for (char const * const word : {"", "a", "a.b", "a=b", ".b=c", "a.=c", "=", ".=", "a=b.c"}) {
        SCOPED_TRACE(word);
        EXPECT_EQ(ReadSetting(word), std::nullopt);
        EXPECT_EQ(
            WhatIsWrongWithSetting(word),
            '"' + std::string(word) + "\" is no setting: give section.key=value");
    }
    EXPECT_EQ(WhatIsWrongWithSetting("a.b=c"), "");
}

TEST(SettingWordsTest, ADeviceHasUpToFourNamedWords) {
    DeviceWords device;
    device.tid = "1234";
    device.testBed = "Bed 7";
    EXPECT_EQ(ReadDevice("tid=1234,testbed=Bed 7"), device);
    EXPECT_EQ(ReadDevice("TestBed=Bed 7,TID=1234"), device);
    device.room = "";
    device.comments = "one, two, a=b";
    EXPECT_EQ(ReadDevice("room=,comments=one, two, a=b,tid=1234,testbed=Bed 7"), device);
    EXPECT_EQ(ReadDevice(""), DeviceWords{});
}

TEST(SettingWordsTest, WhatIsNoDeviceIsTold) {
    for (char const * const word : {"x", "tid", "id=5", "tid=1,tid=2", ",tid=1", "tid =1"}) {
        SCOPED_TRACE(word);
        EXPECT_EQ(ReadDevice(word), std::nullopt);
        EXPECT_EQ(
            WhatIsWrongWithDevice(word).substr(0, std::string(word).size() + 16),
            '"' + std::string(word) + "\" is no device:");
    }
    EXPECT_EQ(WhatIsWrongWithDevice("tid=1"), "");
}

} // namespace
