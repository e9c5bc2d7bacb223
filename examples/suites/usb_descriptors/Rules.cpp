// The table of rule groups.
#include "Rules.h"

#include <algorithm>

namespace usb {

bool HasAssociations(Device const & device) {
    return std::ranges::any_of(
        device.configurations, [](auto const & read) { return !read.associations.empty(); });
}

bool HasStore(Device const & device) { return device.store.has_value(); }

std::span<RuleGroup const> RuleGroups() {
    static constexpr RuleGroup groups[] = {
        {"Device descriptor", nullptr, CheckDevice},
        {"Configuration descriptors", nullptr, CheckConfigurations},
        {"Interface descriptors", nullptr, CheckInterfaces},
        {"Endpoint descriptors", nullptr, CheckEndpoints},
        {"Interface association descriptors", HasAssociations, CheckAssociations},
        {"BOS descriptors", HasStore, CheckStore},
    };
    return groups;
}

} // namespace usb
