// The small languages of the settings' options, read into plain values.
//
// A word that does not fit gives nothing; WhatIsWrong... tells the user why.
#pragma once

#include <optional>
#include <string>
#include <vector>

struct Setting {
    std::string section;
    std::string key;
    std::string value;

    bool operator==(Setting const &) const = default;
};

// "section.key=value". The section ends at the last dot in front of the equals sign; the value may
// hold anything and may be empty.
std::optional<Setting> ReadSetting(std::string const & word);
std::string WhatIsWrongWithSetting(std::string const & word);

// What is known of the device under test; what was not named is not there.
struct DeviceWords {
    std::optional<std::string> tid;
    std::optional<std::string> testBed;
    std::optional<std::string> room;
    std::optional<std::string> comments;

    bool operator==(DeviceWords const &) const = default;
};

// "tid=...,testbed=...,room=...,comments=..." in any order, names in any case. A comma that no name
// follows belongs to the value. An empty word names nothing.
std::optional<DeviceWords> ReadDevice(std::string const & word);
std::string WhatIsWrongWithDevice(std::string const & word);
