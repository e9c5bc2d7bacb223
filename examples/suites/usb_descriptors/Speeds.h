// Which speeds a device can be running at, as far as its descriptors tell.
//
// A recording does not say at which speed it was made. What each field allows is a set of speeds;
// the device is right when some single speed is in all of them.
#pragma once

#include <cstdint>
#include <string>

#include "Recording.h"

namespace usb {

// A set of speeds, one bit each.
using SpeedSet = unsigned;

inline constexpr SpeedSet LowSpeed = 1;
inline constexpr SpeedSet FullSpeed = 2;
inline constexpr SpeedSet HighSpeed = 4;
inline constexpr SpeedSet SuperSpeed = 8; // Gen 1 and above

enum class TransferType : std::uint8_t { Control = 0, Isochronous = 1, Bulk = 2, Interrupt = 3 };

TransferType TransferTypeOf(Endpoint const & endpoint);
char const * NameOf(TransferType type);

// "low speed or full speed or high speed"; "no speed" for the empty set.
std::string NamesOf(SpeedSet speeds);

// By bcdUSB: high speed came with 2.0, and 3.0 and above is shown at SuperSpeed alone.
SpeedSet SpeedsOfVersion(Device const & device);

// By bcdUSB and bMaxPacketSize0; empty when the two contradict each other.
SpeedSet SpeedsOfDevice(Device const & device);

// By wMaxPacketSize, and in a companion bMaxBurst, for the endpoint's transfer type. Bits 15..13
// play no part below SuperSpeed.
SpeedSet SpeedsOfPacketSize(Endpoint const & endpoint);

// By bInterval for the endpoint's transfer type.
SpeedSet SpeedsOfInterval(Endpoint const & endpoint);

// At which speeds everything in the device is right.
SpeedSet SpeedsOfAll(Device const & device);

// What the standard allows for the type at each of the speeds, as text.
std::string PacketSizesAllowed(TransferType type, SpeedSet speeds);
std::string IntervalsAllowed(TransferType type, SpeedSet speeds);

} // namespace usb
