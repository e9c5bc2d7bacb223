// The tables of packet sizes and intervals by speed and transfer type, and what follows from them.
#include "Speeds.h"

#include <bit>

#include "Text.h"

namespace usb {
namespace {

// wMaxPacketSize in its parts, and what it depends on.
struct PacketSize {
    unsigned size;  // bits 10..0; at SuperSpeed all bits
    unsigned extra; // additional transactions a microframe, bits 12..11
    bool burst;     // bMaxBurst of the companion is not 0
};

bool UpTo8(PacketSize const & packet) { return packet.extra == 0 && packet.size <= 8; }
bool UpTo64(PacketSize const & packet) { return packet.extra == 0 && packet.size <= 64; }
bool UpTo1023(PacketSize const & packet) { return packet.extra == 0 && packet.size <= 1023; }

bool Is8(PacketSize const & packet) { return packet.extra == 0 && packet.size == 8; }
bool Is64(PacketSize const & packet) { return packet.extra == 0 && packet.size == 64; }
bool Is512(PacketSize const & packet) { return packet.extra == 0 && packet.size == 512; }
bool Is1024(PacketSize const & packet) { return packet.extra == 0 && packet.size == 1024; }

bool Is8To64(PacketSize const & packet) {
    return UpTo64(packet) && packet.size >= 8 && std::has_single_bit(packet.size);
}

// USB 2.0 table 9-14: the more transactions, the larger each must be; 3 additional are reserved.
bool IsHighBandwidth(PacketSize const & packet) {
    constexpr unsigned least[] = {1, 513, 683};
    return packet.extra <= 2 && packet.size >= least[packet.extra] && packet.size <= 1024;
}

// Alternate setting 0 of an isochronous endpoint claims no bandwidth.
bool IsHighBandwidthOrNone(PacketSize const & packet) {
    return IsHighBandwidth(packet) || (packet.extra == 0 && packet.size == 0);
}

bool IsBurst(PacketSize const & packet) {
    return packet.burst ? packet.size == 1024 : packet.size >= 1 && packet.size <= 1024;
}

bool IsBurstOrNone(PacketSize const & packet) {
    return IsBurst(packet) || (!packet.burst && packet.size == 0);
}

struct PacketSizeRow {
    TransferType type;
    SpeedSet speed;
    bool (*allows)(PacketSize const & packet);
    char const * text;
};

using enum TransferType;

// USB 2.0 5.5.3, 5.6.3, 5.7.3, 5.8.3 and 9.6.6; USB 3.2 9.6.6. A type without a row is not
// available at that speed.
constexpr PacketSizeRow PacketSizes[] = {
    {Control, LowSpeed, Is8, "8"},
    {Control, FullSpeed, Is8To64, "8, 16, 32 or 64"},
    {Control, HighSpeed, Is64, "64"},
    {Control, SuperSpeed, Is512, "512"},
    {Isochronous, FullSpeed, UpTo1023, "0 to 1023"},
    {Isochronous, HighSpeed, IsHighBandwidthOrNone,
     "0 to 1024, at least 513 with 1 and 683 with 2 additional transactions"},
    {Isochronous, SuperSpeed, IsBurstOrNone, "0 to 1024, with bursts 1024"},
    {Bulk, FullSpeed, Is8To64, "8, 16, 32 or 64"},
    {Bulk, HighSpeed, Is512, "512"},
    {Bulk, SuperSpeed, Is1024, "1024"},
    {Interrupt, LowSpeed, UpTo8, "0 to 8"},
    {Interrupt, FullSpeed, UpTo64, "0 to 64"},
    {Interrupt, HighSpeed, IsHighBandwidth,
     "1 to 1024, at least 513 with 1 and 683 with 2 additional transactions"},
    {Interrupt, SuperSpeed, IsBurst, "1 to 1024, with bursts 1024"},
};

struct IntervalRow {
    TransferType type;
    SpeedSet speed;
    unsigned least;
    unsigned most;
};

// USB 2.0 5.6.4, 5.7.4 and 9.6.6; USB 3.2 9.6.6. For control and bulk endpoints the field says
// nothing, or a NAK rate of any value.
constexpr IntervalRow Intervals[] = {
    {Control, LowSpeed, 0, 255},      {Control, FullSpeed, 0, 255},
    {Control, HighSpeed, 0, 255},     {Control, SuperSpeed, 0, 255},
    {Isochronous, FullSpeed, 1, 16},  {Isochronous, HighSpeed, 1, 16},
    {Isochronous, SuperSpeed, 1, 16}, {Bulk, FullSpeed, 0, 255},
    {Bulk, HighSpeed, 0, 255},        {Bulk, SuperSpeed, 0, 255},
    {Interrupt, LowSpeed, 10, 255},   {Interrupt, FullSpeed, 1, 255},
    {Interrupt, HighSpeed, 1, 16},    {Interrupt, SuperSpeed, 1, 16},
};

PacketSize PacketSizeOf(Endpoint const & endpoint, SpeedSet speed) {
    unsigned const field = endpoint.descriptor.Get(endpoint::wMaxPacketSize);
    if (speed != SuperSpeed) return {field & 0x07FF, field >> 11 & 3, false};
    return {field, 0, endpoint.companion && endpoint.companion->Get(companion::bMaxBurst) != 0};
}

char const * NameOfOne(SpeedSet speed) {
    switch (speed) {
    case LowSpeed:
        return "low speed";
    case FullSpeed:
        return "full speed";
    case HighSpeed:
        return "high speed";
    default:
        return "SuperSpeed";
    }
}

void Append(std::string & list, char const * separator, std::string const & item) {
    if (!list.empty()) list += separator;
    list += item;
}

} // namespace

TransferType TransferTypeOf(Endpoint const & endpoint) {
    return static_cast<TransferType>(endpoint.descriptor.Get(endpoint::bmAttributes) & 3);
}

char const * NameOf(TransferType type) {
    constexpr char const * names[] = {"control", "isochronous", "bulk", "interrupt"};
    return names[static_cast<std::size_t>(type)];
}

std::string NamesOf(SpeedSet speeds) {
    std::string names;
    for (SpeedSet const speed : {LowSpeed, FullSpeed, HighSpeed, SuperSpeed})
        if ((speeds & speed) != 0) Append(names, " or ", NameOfOne(speed));
    return names.empty() ? "no speed" : names;
}

SpeedSet SpeedsOfVersion(Device const & device) {
    std::uint32_t const version = device.descriptor.Get(device::bcdUSB);
    if (version >= 0x0300) return SuperSpeed;
    return LowSpeed | FullSpeed | (version >= 0x0200 ? HighSpeed : 0);
}

SpeedSet SpeedsOfDevice(Device const & device) {
    SpeedSet const version = SpeedsOfVersion(device);
    switch (device.descriptor.Get(device::bMaxPacketSize0)) {
    case 8:
        return version & (LowSpeed | FullSpeed);
    case 16:
    case 32:
        return version & FullSpeed;
    case 64:
        return version & (FullSpeed | HighSpeed);
    case 9:
        return version & SuperSpeed; // an exponent of 2 there
    default:
        return 0;
    }
}

SpeedSet SpeedsOfPacketSize(Endpoint const & endpoint) {
    SpeedSet speeds = 0;
    for (auto const & row : PacketSizes)
        if (row.type == TransferTypeOf(endpoint) && row.allows(PacketSizeOf(endpoint, row.speed)))
            speeds |= row.speed;
    return speeds;
}

SpeedSet SpeedsOfInterval(Endpoint const & endpoint) {
    unsigned const interval = endpoint.descriptor.Get(endpoint::bInterval);
    SpeedSet speeds = 0;
    for (auto const & row : Intervals)
        if (row.type == TransferTypeOf(endpoint) && interval >= row.least && interval <= row.most)
            speeds |= row.speed;
    return speeds;
}

SpeedSet SpeedsOfAll(Device const & device) {
    SpeedSet speeds = SpeedsOfDevice(device);
    for (auto const & read : device.configurations)
        for (auto const & each : read.settings)
            for (auto const & one : each.endpoints)
                speeds &= SpeedsOfPacketSize(one) & SpeedsOfInterval(one);
    return speeds;
}

std::string PacketSizesAllowed(TransferType type, SpeedSet speeds) {
    std::string text;
    for (auto const & row : PacketSizes)
        if (row.type == type && (speeds & row.speed) != 0)
            Append(text, "; ", Join(row.text, " at ", NameOfOne(row.speed)));
    return text;
}

std::string IntervalsAllowed(TransferType type, SpeedSet speeds) {
    std::string text;
    for (auto const & row : Intervals)
        if (row.type == type && (speeds & row.speed) != 0)
            Append(text, "; ", Join(row.least, " to ", row.most, " at ", NameOfOne(row.speed)));
    return text;
}

} // namespace usb
