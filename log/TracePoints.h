// The numbers under which the log's texts appear in the trace, for the library's own use.
#pragma once

#include <cstdint>

#include "app/TraceProvider.h"

namespace TracePoints {

inline constexpr std::uint16_t kEntry = 10;
inline constexpr std::uint16_t kStartLine = 11;
inline constexpr std::uint16_t kDroppedOwnEntry = 12;
inline constexpr std::uint16_t kStopLine = 13;
inline constexpr std::uint16_t kDuration = 14;
inline constexpr std::uint16_t kHeldBackText = 15;
inline constexpr std::uint16_t kClosing = 16;
inline constexpr std::uint16_t kSummary = 17;
inline constexpr std::uint16_t kResults = 18;

inline void Send(std::uint16_t number, char const * text) {
    if (TraceProvider::IsOn(TraceFlag::Log)) TraceProvider::Send(TraceFlag::Log, number, text);
}

} // namespace TracePoints
