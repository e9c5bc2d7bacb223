// Floating values for a A e E f F g G, in the parts that zeros go between.
//
// Nothing here depends on the locale, keeps state or fails.
#pragma once

#include <cstddef>
#include <string_view>

#include "siblings/Keelbase.h"
#include "siblings/keelbase/FormatDirective.h"

namespace keelbase {

// Enough for each precision that changes the digits of a `double`.
inline constexpr std::size_t FloatingRoom = 1600;

// Written in this order. The texts lie in the room that was given, or are constants.
struct FloatingParts {
    std::string_view prefix; // sign and base
    std::string_view digits;
    std::size_t zeros = 0; // of the precision, behind the digits
    std::string_view exponent;
    bool isFinite = false; // a name instead of digits is never padded with zeros

    std::size_t Length() const { return prefix.size() + digits.size() + zeros + exponent.size(); }
};

FloatingParts SplitFloating(
    Directive const & directive, FormatArgument const & value, char (&room)[FloatingRoom]);

} // namespace keelbase
