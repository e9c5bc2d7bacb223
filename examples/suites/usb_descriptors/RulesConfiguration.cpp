// Rules of the configuration descriptor: USB 2.0 and USB 3.2 9.6.3.
#include "Rules.h"

#include <set>

#include "Text.h"

namespace usb {
namespace {

// What a device may draw from the bus: a unit load is 100 mA below SuperSpeed, 150 mA on one lane
// and, since 3.2, 250 mA on two; the most is five or six of them.
struct PowerBudget {
    Field field;
    unsigned unit; // of bMaxPower, in mA
    unsigned unitLoad;
    unsigned most;
};

constexpr Field Power20{"7.2.1 bMaxPower", 8, 1};
constexpr Field Power32{"11.4.1 bMaxPower", 8, 1};

PowerBudget BudgetOf(Device const & device) {
    std::uint32_t const version = device.descriptor.Get(device::bcdUSB);
    // A recording does not tell the lanes: what two lanes allow is allowed.
    if (version >= 0x0320) return {Power32, 8, 250, 1500};
    if (version >= 0x0300) return {Power32, 8, 150, 900};
    return {Power20, 2, 100, 500};
}

std::size_t CountInterfaces(Configuration const & read) {
    std::set<std::uint32_t> numbers;
    for (auto const & each : read.settings)
        numbers.insert(each.descriptor.Get(setting::bInterfaceNumber));
    return numbers.size();
}

void CheckCount(Findings & findings, Configuration const & read) {
    std::size_t const said = read.descriptor.Get(configuration::bNumInterfaces);
    std::size_t const found = CountInterfaces(read);
    if (said == 0)
        findings.Shall(
            read.descriptor, configuration::bNumInterfaces,
            "a configuration has one or more interfaces");
    else if (read.complete && said != found)
        findings.Shall(
            read.descriptor, configuration::bNumInterfaces,
            Join("says ", said, ", the interfaces described here are ", found));
}

void CheckValue(Findings & findings, Configuration const & read, std::set<std::uint32_t> & used) {
    std::uint32_t const value = read.descriptor.Get(configuration::bConfigurationValue);
    if (value == 0)
        findings.Shall(
            read.descriptor, configuration::bConfigurationValue,
            "zero selects no configuration, but returns the device to the Address state (9.4.7)");
    else if (!used.insert(value).second)
        findings.Shall(
            read.descriptor, configuration::bConfigurationValue,
            "selects an earlier configuration of the device already");
}

void CheckAttributes(Findings & findings, Configuration const & read) {
    std::uint32_t const attributes = read.descriptor.Get(configuration::bmAttributes);
    if ((attributes & 0x80) == 0)
        findings.Shall(
            read.descriptor, configuration::bmAttributes, "D7 is reserved and set to one");
    if ((attributes & 0x1F) != 0)
        findings.Shall(
            read.descriptor, configuration::bmAttributes, "D4..0 are reserved and reset to zero");
}

void CheckPower(Findings & findings, Configuration const & read, PowerBudget const & budget) {
    bool const selfPowered = (read.descriptor.Get(configuration::bmAttributes) & 0x40) != 0;
    unsigned const drawn = read.descriptor.Get(configuration::bMaxPower) * budget.unit;
    if (drawn > budget.most)
        findings.Shall(
            read.descriptor, budget.field,
            Join(drawn, " mA, a device draws at most ", budget.most, " mA from the bus"));
    // No more than a warning: 9.6.3 lets a configuration use both sources.
    else if (selfPowered && drawn > budget.unitLoad)
        findings.Should(
            read.descriptor, budget.field,
            Join(
                drawn, " mA, a self-powered device should draw at most one unit load (",
                budget.unitLoad, " mA) from the bus"));
}

} // namespace

std::vector<Finding> CheckConfigurations(Device const & device) {
    Findings findings(device.Standard());
    std::set<std::uint32_t> used;
    for (auto const & read : device.configurations) {
        CheckCount(findings, read);
        CheckValue(findings, read, used);
        CheckAttributes(findings, read);
        CheckPower(findings, read, BudgetOf(device));
    }
    return findings.Take();
}

} // namespace usb
