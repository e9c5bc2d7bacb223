// Any bytes as the record of any device event: it must be read, described and released without
// leaving it, and a name must end inside it.
//
// The first byte chooses the event, the rest is the record, as long as it says.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <vector>

#include "messages/CWMDeviceChange.h"

namespace {

constexpr unsigned long long Events[] = {0x0007, 0x0017, 0x0018, 0x0019, 0x8000,
                                         0x8001, 0x8002, 0x8003, 0x8004, 0x8005,
                                         0x8006, 0x8007, 0xFFFF, 0x001A, 0x100008000};

constexpr std::size_t NameAt = 28;

void Require(bool holds) {
    if (!holds) std::abort();
}

void ReadInterface(CWMDeviceChange const & message, std::size_t size) {
    char const * const name = message.DevInterfaceDevName();
    Require((name == nullptr) == (message.DevInterfaceGuid() == nullptr));
    if (name == nullptr) return;
    std::size_t const room = size > NameAt ? size - NameAt : 0;
    Require(std::strlen(name) <= room);
}

void ReadMessage(unsigned long long event, std::vector<std::uint8_t> const & record) {
    CWMDeviceChange const message(
        nullptr, 0x219, event, reinterpret_cast<long long>(record.data()));
    unsigned long type = 0;
    Require(message.DevType(type));
    Require(std::memcmp(message.DBTBuffer(), record.data(), record.size()) == 0);
    ReadInterface(message, record.size());
    Require(std::strncmp(message.GetDetailsStr().get(), "  Event: ", 9) == 0);
    Require(!message.GetDescriptionStr().empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
    if (size < 5) return 0;
    std::vector<std::uint8_t> record(data + 1, data + size);
    auto const stated = static_cast<std::uint32_t>(record.size());
    std::memcpy(record.data(), &stated, sizeof stated);
    ReadMessage(Events[data[0] % std::size(Events)], record);
    return 0;
}
