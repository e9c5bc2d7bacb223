// The conversions against ICU, on random text that is mostly broken.
//
// The seeds are fixed, so that a failure comes back.
#include <cstdint>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include "siblings/Keelbase.h"

namespace {

constexpr int Cases = 300'000;

// Bytes near the borders of the table of well-formed sequences, and whole sequences.
std::string HostileUtf8(std::mt19937 & random) {
    static constexpr unsigned char borders[] = {
        0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF, 0xE0,
        0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xF8, 0xFE, 0xFF};
    static constexpr char const * whole[] = {
        "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xED\xA0\x80", "\xEF\xBF\xBD"};
    std::string text;
    for (auto left = random() % 24; left != 0; --left) {
        switch (random() % 4) {
        case 0:
            text += whole[random() % std::size(whole)];
            break;
        case 1:
            text += static_cast<char>(random());
            break;
        default:
            text += static_cast<char>(borders[random() % std::size(borders)]);
        }
    }
    return text;
}

std::wstring HostileWide(std::mt19937 & random) {
    static constexpr std::uint32_t borders[] = {
        0x41,     0x7F,     0x80,       0x7FF,      0x800,     0xD7FF, 0xD800,
        0xDBFF,   0xDC00,   0xDFFF,     0xE000,     0xFFFD,    0xFFFF, 0x10000,
        0x10FFFF, 0x110000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    std::wstring text;
    for (auto left = random() % 24; left != 0; --left)
        text += static_cast<wchar_t>(
            random() % 4 == 0 ? random() % 0x120000 : borders[random() % std::size(borders)]);
    return text;
}

std::u32string IcuCodePoints(std::string const & utf8) {
    icu::UnicodeString const text = icu::UnicodeString::fromUTF8(utf8);
    std::u32string points;
    for (int at = 0; at < text.length(); at = text.moveIndex32(at, 1))
        points += static_cast<char32_t>(text.char32At(at));
    return points;
}

std::string IcuUtf8(std::wstring const & wide) {
    std::string utf8;
    for (wchar_t const unit : wide) {
        auto const point = static_cast<std::uint32_t>(unit);
        bool const valid = point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
        std::string one;
        icu::UnicodeString(static_cast<UChar32>(valid ? point : 0xFFFD)).toUTF8String(one);
        utf8 += one;
    }
    return utf8;
}

TEST(UnicodeOracleTest, WideTextAgreesWithIcu) {
    std::mt19937 random(20'261'120);
    for (int i = 0; i < Cases; ++i) {
        std::string const utf8 = HostileUtf8(random);
        std::u32string const expected = IcuCodePoints(utf8);
        ASSERT_EQ(*Utf8ToUtf16(utf8), std::wstring(expected.begin(), expected.end()))
            << testing::PrintToString(utf8);
    }
}

TEST(UnicodeOracleTest, Utf8AgreesWithIcu) {
    std::mt19937 random(20'261'121);
    for (int i = 0; i < Cases; ++i) {
        std::wstring const wide = HostileWide(random);
        ASSERT_EQ(*Utf16ToUtf8(wide), IcuUtf8(wide)) << testing::PrintToString(wide);
    }
}

} // namespace
