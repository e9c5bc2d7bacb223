// Integers for d i u o x X p: the number that a directive sees, its prefix and its digits.
//
// Digits are written straight to where they belong, from the last to the first; so they are
// counted beforehand. The number 0 has no digit of its own: the zeros that a directive wants come
// in front of the digits.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "siblings/Keelbase.h"
#include "siblings/keelbase/FormatDirective.h"

namespace keelbase {

struct Decimal {
    static unsigned Count(std::uint64_t number) {
        if (number == 0) return 0;
        for (unsigned count = 1;; count += 4, number /= 10'000) {
            if (number < 10) return count;
            if (number < 100) return count + 1;
            if (number < 1'000) return count + 2;
            if (number < 10'000) return count + 3;
        }
    }

    template <typename Character>
    static void Write(std::uint64_t number, Character * end) {
        static constexpr char pairs[] = "00010203040506070809101112131415161718192021222324"
                                        "25262728293031323334353637383940414243444546474849"
                                        "50515253545556575859606162636465666768697071727374"
                                        "75767778798081828384858687888990919293949596979899";
        for (; number >= 100; number /= 100) {
            char const * const pair = pairs + number % 100 * 2;
            *--end = static_cast<Character>(pair[1]);
            *--end = static_cast<Character>(pair[0]);
        }
        if (number >= 10) {
            *--end = static_cast<Character>(pairs[number * 2 + 1]);
            *--end = static_cast<Character>(pairs[number * 2]);
        } else if (number != 0) {
            *--end = static_cast<Character>('0' + number);
        }
    }
};

template <unsigned Bits, char Ten>
struct PowerOfTwo {
    static unsigned Count(std::uint64_t number) {
        return (static_cast<unsigned>(std::bit_width(number)) + Bits - 1) / Bits;
    }

    template <typename Character>
    static void Write(std::uint64_t number, Character * end) {
        for (; number != 0; number >>= Bits) {
            auto const digit = static_cast<unsigned>(number & ((1u << Bits) - 1));
            *--end = static_cast<Character>(digit < 10 ? '0' + digit : Ten + (digit - 10));
        }
    }
};

using Octal = PowerOfTwo<3, 'a'>;
using LowerHexadecimal = PowerOfTwo<4, 'a'>;
using UpperHexadecimal = PowerOfTwo<4, 'A'>;

// What stands in front of the zeros and the digits.
class IntegerPrefix {
public:
    void Add(char character) { m_Text[m_Length++] = character; }
    std::size_t Length() const { return m_Length; }

    template <typename Character>
    Character * Write(Character * at) const {
        for (unsigned i = 0; i != m_Length; ++i)
            *at++ = static_cast<Character>(m_Text[i]);
        return at;
    }

private:
    char m_Text[2] = {};
    unsigned m_Length = 0;
};

inline unsigned BitsOf(LengthWord length) {
    switch (length) {
    case LengthWord::Char:
        return 8;
    case LengthWord::Short:
        return 16;
    case LengthWord::LongLong:
        return 64;
    default:
        return 32;
    }
}

// A value narrower than 32 bits counts as an int, as in every call without a prototype.
inline std::uint64_t UnsignedOf(Directive const & directive, FormatArgument const & value) {
    unsigned bits = BitsOf(directive.length);
    if (bits == 64 && value.GetBytes() < 8) bits = 32;
    return IntegerOf(value) & (~std::uint64_t{0} >> (64 - bits));
}

inline std::int64_t SignedOf(Directive const & directive, FormatArgument const & value) {
    unsigned const unused = 64 - BitsOf(directive.length);
    return static_cast<std::int64_t>(IntegerOf(value) << unused) >> unused;
}

inline IntegerPrefix SignOf(Directive const & directive, std::int64_t number) {
    IntegerPrefix prefix;
    if (number < 0)
        prefix.Add('-');
    else if (directive.Has(Directive::Plus))
        prefix.Add('+');
    else if (directive.Has(Directive::Blank))
        prefix.Add(' ');
    return prefix;
}

// `mark` is the letter of a hexadecimal prefix. A number that is 0 has none, an address always.
inline IntegerPrefix BaseOf(Directive const & directive, std::uint64_t number, char mark) {
    IntegerPrefix prefix;
    if (directive.Has(Directive::Alternate) && (number != 0 || directive.letter == 'p')) {
        prefix.Add('0');
        prefix.Add(mark);
    }
    return prefix;
}

// Every address is written with all of its digits.
inline constexpr int AddressDigits = 16;

// The digits that a directive wants at least.
inline unsigned WantedDigits(Directive const & directive) {
    if (directive.precision < 0) return 1;
    return static_cast<unsigned>(std::min(directive.precision, MostFill));
}

} // namespace keelbase
