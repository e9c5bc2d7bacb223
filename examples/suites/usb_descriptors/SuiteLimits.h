// What a run of the suite is limited to, read from an XML file that is checked against its schema.
//
// Belongs to the test thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

struct SuiteLimits {
    // "04f3:0c7e", or "04f3" for every product; none: all devices.
    std::vector<std::string> devices;
    // Names of groups of rules; none: all of them.
    std::vector<std::string> groups;
    // How long after the first test another may begin.
    std::optional<std::chrono::seconds> run;

    bool HasDevice(std::string const & id) const;
    bool HasGroup(std::string const & name) const;
};

// The limits in the file that setting Limits of section Suite names, or in suite.xml of the suite's
// folder (setting Folder), where the schema suite.xsd is as well; no limits when there is neither.
// Throws std::runtime_error, whose text has file, line, column and reason, for a file that cannot
// be read or is not valid.
SuiteLimits ReadSuiteLimits();
