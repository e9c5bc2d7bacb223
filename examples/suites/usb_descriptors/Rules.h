// The rules of chapter 9 by the descriptor that they speak of: descriptors in, findings out.
//
// Pure functions: they log nothing, keep nothing and never fail. Counts are compared only where the
// descriptors could be read to their end, so that one fault in the bytes is one finding.
#pragma once

#include <span>
#include <vector>

#include "Finding.h"
#include "Recording.h"

namespace usb {

std::vector<Finding> CheckDevice(Device const & device);
std::vector<Finding> CheckConfigurations(Device const & device);
std::vector<Finding> CheckInterfaces(Device const & device);
std::vector<Finding> CheckEndpoints(Device const & device);
std::vector<Finding> CheckAssociations(Device const & device);
std::vector<Finding> CheckStore(Device const & device);

bool HasAssociations(Device const & device);
bool HasStore(Device const & device);

// One test's worth of rules.
struct RuleGroup {
    char const * name;
    bool (*applies)(Device const & device); // null: to every device
    std::vector<Finding> (*check)(Device const & device);
};

// In the order in which they run.
std::span<RuleGroup const> RuleGroups();

} // namespace usb
