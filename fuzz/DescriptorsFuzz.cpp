// Any bytes as the recording of a USB device: parser and rules must end, and every finding must
// point into the recording.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "examples/suites/usb_descriptors/Recording.h"
#include "examples/suites/usb_descriptors/Rules.h"
#include "examples/suites/usb_descriptors/Speeds.h"

namespace {

void ExpectInside(std::vector<usb::Finding> const & findings, std::size_t size) {
    for (auto const & finding : findings)
        if (usb::ToText(finding).empty() || (finding.offset >= size && size != 0)) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
    auto const parsed = usb::ParseRecording({data, size});
    ExpectInside(parsed.findings, size);
    if (!parsed.device) return 0;
    usb::NamesOf(usb::SpeedsOfAll(*parsed.device));
    for (auto const & group : usb::RuleGroups())
        ExpectInside(group.check(*parsed.device), size);
    return 0;
}
