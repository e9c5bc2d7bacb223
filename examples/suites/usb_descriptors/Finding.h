// What a rule found wrong in a device's descriptors: plain data, and its one-line form for the log.
//
// Made by the parser and the rules; compared whole in tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Descriptor.h"

namespace usb {

// How the standard words the rule: a device must follow a "shall" and is advised by a "should".
enum class Severity { Shall, Should };

struct Finding {
    Severity severity;
    std::string rule;    // standard, section and field: "USB 2.0 9.6.6 wMaxPacketSize"
    std::size_t offset;  // of the field, from the start of the recording
    std::uint32_t value; // of the field as it stands there
    int width;           // of the field, in bytes
    std::string text;    // what is wrong with it

    bool operator==(Finding const &) const = default;
};

// "USB 2.0 9.6.6 wMaxPacketSize at offset 0x001F is 0x0140: endpoint 0x81: ..."
std::string ToText(Finding const & finding);

// Collects what rules find in the descriptors of one device.
class Findings {
public:
    // `standard` names the edition that speaks of the device, Usb20 or Usb32.
    explicit Findings(char const * standard) : m_Standard(standard) {}

    // Notes that `field` of `descriptor` breaks its rule. `descriptor` holds the whole field.
    void Shall(Descriptor const & descriptor, Field const & field, std::string text);
    void Should(Descriptor const & descriptor, Field const & field, std::string text);

    std::vector<Finding> Take() { return std::move(m_List); }

private:
    void
    Add(Severity severity, Descriptor const & descriptor, Field const & field, std::string text);

    char const * m_Standard;
    std::vector<Finding> m_List;
};

} // namespace usb
