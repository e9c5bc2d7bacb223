// Verbs for tests of formatted text.
//
// Each test owns what they return.
#pragma once

#include <string>

#include "siblings/Keelbase.h"

// A text formatted without padding, up to the length that was reported, so that characters behind
// an inner zero count as well.
template <typename Character, typename... Values>
std::basic_string<Character> Formatted(Character const * format, Values const &... values) {
    CSimpleBuffer buffer;
    std::size_t length = 0;
    Character const * const text =
        FormatText(&length, &buffer, FormatPadding{0, 0}, format, values...);
    return std::basic_string<Character>(text, length - 1);
}
