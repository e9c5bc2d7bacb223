// The decoder of UTF-8 and of wide text, and the conversions of the contract on top of it.
//
// UTF-8 follows the table of well-formed byte sequences of the Unicode standard: only the second
// byte has a range that depends on the first, so a sequence is read by its length and the bounds
// of that byte, and an ill-formed one ends before the first byte that does not fit.
#include "siblings/keelbase/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "siblings/Keelbase.h"

namespace keelbase {
namespace {

constexpr char32_t Replacement = 0xFFFD;
constexpr char32_t LastCodePoint = 0x10FFFF;

constexpr bool IsAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }
constexpr bool IsAscii(wchar_t unit) { return static_cast<char32_t>(unit) < 0x80; }
constexpr bool IsSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }
[[maybe_unused]] constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
[[maybe_unused]] constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// What a lead byte promises: the bytes that follow, its own bits, the bounds of the second byte.
struct Lead {
    int follow;
    char32_t bits;
    unsigned char low;
    unsigned char high;
};

constexpr Lead ReadLead(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF) return {1, byte & 0x1Fu, 0x80, 0xBF};
    if (byte == 0xE0) return {2, 0, 0xA0, 0xBF};
    if (byte == 0xED) return {2, 0xD, 0x80, 0x9F};
    if (byte >= 0xE1 && byte <= 0xEF) return {2, byte & 0xFu, 0x80, 0xBF};
    if (byte == 0xF0) return {3, 0, 0x90, 0xBF};
    if (byte >= 0xF1 && byte <= 0xF3) return {3, byte & 7u, 0x80, 0xBF};
    if (byte == 0xF4) return {3, 4, 0x80, 0x8F};
    return {0, Replacement, 0, 0};
}

// Reads one code point of at least one byte and moves behind it.
char32_t TakeCodePoint(char const *& at, char const * end) {
    auto const first = static_cast<unsigned char>(*at++);
    if (first < 0x80) return first;
    Lead lead = ReadLead(first);
    for (int left = lead.follow; left > 0; --left) {
        if (at == end) return Replacement;
        auto const byte = static_cast<unsigned char>(*at);
        if (byte < lead.low || byte > lead.high) return Replacement;
        ++at;
        lead = {0, (lead.bits << 6) | (byte & 0x3Fu), 0x80, 0xBF};
    }
    return lead.bits;
}

char32_t TakeCodePoint(wchar_t const *& at, wchar_t const * end) {
    auto const unit = static_cast<char32_t>(*at++);
    if constexpr (WideIsUtf16) {
        if (IsHighSurrogate(unit) && at != end && IsLowSurrogate(static_cast<char32_t>(*at)))
            return 0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(*at++) - 0xDC00);
    }
    return IsSurrogate(unit) || unit > LastCodePoint ? Replacement : unit;
}

constexpr char Trail(char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); }

} // namespace

bool IsAscii(char const * text, std::size_t bytes) {
    constexpr std::size_t step = 128;
    for (; bytes >= step; text += step, bytes -= step) {
        unsigned char merged = 0;
        for (std::size_t i = 0; i != step; ++i)
            merged = static_cast<unsigned char>(merged | static_cast<unsigned char>(text[i]));
        if (merged >= 0x80) return false;
    }
    std::uint64_t word = 0;
    for (; bytes >= sizeof word; text += sizeof word, bytes -= sizeof word) {
        std::memcpy(&word, text, sizeof word);
        if ((word & 0x8080808080808080u) != 0) return false;
    }
    return std::all_of(text, text + bytes, [](char byte) { return IsAscii(byte); });
}

bool IsAscii(wchar_t const * text, std::size_t units) {
    constexpr std::size_t step = 32;
    for (; units >= step; text += step, units -= step) {
        char32_t merged = 0;
        for (std::size_t i = 0; i != step; ++i)
            merged |= static_cast<char32_t>(text[i]);
        if (merged >= 0x80) return false;
    }
    return std::all_of(text, text + units, [](wchar_t unit) { return IsAscii(unit); });
}

std::size_t WideFromUtf8(char const * text, std::size_t bytes, wchar_t * out) {
    char const * const end = text + bytes;
    wchar_t * at = out;
    while (text != end) {
        if (IsAscii(*text))
            *at++ = static_cast<wchar_t>(*text++);
        else
            at = PutCodePoint(TakeCodePoint(text, end), at);
    }
    return static_cast<std::size_t>(at - out);
}

std::size_t Utf8FromWide(wchar_t const * text, std::size_t units, char * out) {
    wchar_t const * const end = text + units;
    char * at = out;
    while (text != end) {
        if (IsAscii(*text))
            *at++ = static_cast<char>(*text++);
        else
            at = PutCodePoint(TakeCodePoint(text, end), at);
    }
    return static_cast<std::size_t>(at - out);
}

// Without a branch, so that compilers turn it into vector code. A pair of surrogates takes four
// bytes, two less than the two would take as lone ones.
std::size_t MeasureUtf8(wchar_t const * text, std::size_t units) {
    std::size_t bytes = units;
    std::size_t pairs = 0;
    for (std::size_t i = 0; i != units; ++i) {
        auto const unit = static_cast<char32_t>(text[i]);
        bytes += (unit >= 0x80 ? 1u : 0u) + (unit >= 0x800 ? 1u : 0u);
        if constexpr (WideIsUtf16)
            pairs += i != 0 && IsLowSurrogate(unit)
                             && IsHighSurrogate(static_cast<char32_t>(text[i - 1]))
                         ? 1
                         : 0;
        else
            bytes += unit - 0x10000 <= LastCodePoint - 0x10000 ? 1 : 0;
    }
    return bytes - 2 * pairs;
}

char * PutCodePoint(char32_t point, char * out) {
    if (IsSurrogate(point) || point > LastCodePoint) point = Replacement;
    if (point < 0x80) {
        *out++ = static_cast<char>(point);
        return out;
    }
    if (point < 0x800) {
        *out++ = static_cast<char>(0xC0 | (point >> 6));
    } else {
        if (point < 0x10000) {
            *out++ = static_cast<char>(0xE0 | (point >> 12));
        } else {
            *out++ = static_cast<char>(0xF0 | (point >> 18));
            *out++ = Trail(point >> 12);
        }
        *out++ = Trail(point >> 6);
    }
    *out++ = Trail(point);
    return out;
}

wchar_t * PutCodePoint(char32_t point, wchar_t * out) {
    if (point > LastCodePoint) point = Replacement;
    if (WideIsUtf16 && point >= 0x10000) {
        *out++ = static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
        *out++ = static_cast<wchar_t>(0xDC00 + (point & 0x3FF));
    } else {
        *out++ = static_cast<wchar_t>(point);
    }
    return out;
}

} // namespace keelbase

namespace {

// The plain case, ASCII alone, is one copy into storage of the right size. Everything else is
// decoded in place; the text has at most as many characters as the source has bytes.
std::unique_ptr<std::wstring> Widen(char const * text, std::size_t bytes) {
    if (keelbase::IsAscii(text, bytes)) return std::make_unique<std::wstring>(text, text + bytes);
    auto wide = std::make_unique<std::wstring>(bytes, L'\0');
    wide->resize(keelbase::WideFromUtf8(text, bytes, wide->data()));
    return wide;
}

std::unique_ptr<std::string> Narrow(wchar_t const * text, std::size_t units) {
    if (keelbase::IsAscii(text, units)) return std::make_unique<std::string>(text, text + units);
    auto narrow = std::make_unique<std::string>(keelbase::MeasureUtf8(text, units), '\0');
    keelbase::Utf8FromWide(text, units, narrow->data());
    return narrow;
}

// The deleter belongs to this library, so that a text is freed where it was allocated.
WideText Give(std::unique_ptr<std::wstring> text) {
    return WideText(text.release(), [](std::wstring const * owned) { delete owned; });
}

NarrowText Give(std::unique_ptr<std::string> text) {
    return NarrowText(text.release(), [](std::string const * owned) { delete owned; });
}

} // namespace

WideText Utf8ToUtf16(char const * text) {
    return text != nullptr ? Give(Widen(text, std::strlen(text))) : nullptr;
}

WideText Utf8ToUtf16(std::string const & text) { return Give(Widen(text.data(), text.size())); }

WideText Utf8ToUtf16(std::string const * text) {
    return text != nullptr ? Utf8ToUtf16(*text) : nullptr;
}

NarrowText Utf16ToUtf8(wchar_t const * text) {
    return text != nullptr ? Give(Narrow(text, std::char_traits<wchar_t>::length(text))) : nullptr;
}

NarrowText Utf16ToUtf8(std::wstring const & text) { return Give(Narrow(text.data(), text.size())); }
