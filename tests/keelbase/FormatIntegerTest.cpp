// Integers: their cut to the width that a directive names, and their digits.
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"
#include "tests/keelbase/Formatting.h"

namespace {

enum class Level : std::uint8_t { Internal = 255 };
enum Plain { Negative = -1 };

TEST(FormatIntegerTest, WithoutALengthWordWrites32Bits) {
    std::uint64_t const number = 0x1122334489ABCDEF;
    EXPECT_EQ(Formatted("%X", number), "89ABCDEF");
    EXPECT_EQ(Formatted("%x", number), "89abcdef");
    EXPECT_EQ(Formatted("%u", number), "2309737967");
    EXPECT_EQ(Formatted("%d", number), "-1985229329");
    EXPECT_EQ(Formatted("%o", number), "21152746757");
    EXPECT_EQ(Formatted("%016X", number), "0000000089ABCDEF");
    EXPECT_EQ(Formatted(L"%X", number), L"89ABCDEF");
}

TEST(FormatIntegerTest, ALongIs32BitsWideEverywhere) {
    long const number = -1;
    EXPECT_EQ(
        Formatted("%lX|%lu|%ld|%li", number, number, number, number), "FFFFFFFF|4294967295|-1|-1");
    EXPECT_EQ(Formatted("%lu", std::uint64_t{0x100000005}), "5");
    EXPECT_EQ(Formatted("%I32u|%I32d", std::uint64_t{0x1FFFFFFFF}, -1), "4294967295|-1");
}

TEST(FormatIntegerTest, LengthWordsFor64BitsKeepAll) {
    std::uint64_t const number = 0xFEDCBA9876543210;
    for (char const * const word : {"ll", "I64", "j", "z", "t", "I", "L"}) {
        SCOPED_TRACE(word);
        auto const format = [&](char letter) { return std::string("%") + word + letter; };
        EXPECT_EQ(Formatted(format('X').c_str(), number), "FEDCBA9876543210");
        EXPECT_EQ(Formatted(format('u').c_str(), number), "18364758544493064720");
        EXPECT_EQ(Formatted(format('d').c_str(), number), "-81985529216486896");
    }
}

TEST(FormatIntegerTest, LengthWordsForFewerBitsCut) {
    EXPECT_EQ(Formatted("%hX|%hu|%hd", 0x12345, 70000, 70000), "2345|4464|4464");
    EXPECT_EQ(Formatted("%hd|%hhd|%hhd", 0xFFFF, 0xFF, 200), "-1|-1|-56");
    EXPECT_EQ(Formatted("%hhX|%hhu", 0x1FF, -1), "FF|255");
    EXPECT_EQ(Formatted("%02hhX%02hhX", 0x0Fu, -2), "0FFE");
}

TEST(FormatIntegerTest, ANarrowerTypeKeepsItsOwnWidth) {
    EXPECT_EQ(Formatted("%llX|%llu", -1, -1), "FFFFFFFF|4294967295");
    EXPECT_EQ(Formatted("%lld|%lld", -1, 0xFFFFFFFFu), "-1|4294967295");
    EXPECT_EQ(
        Formatted("%X|%u", static_cast<signed char>(-1), static_cast<short>(-1)),
        "FFFFFFFF|4294967295");
    EXPECT_EQ(Formatted("%d|%X", std::uint8_t{255}, std::uint16_t{65535}), "255|FFFF");
}

TEST(FormatIntegerTest, TakesTruthValuesCharactersAndEnumerators) {
    EXPECT_EQ(Formatted("%d%u", true, false), "10");
    EXPECT_EQ(Formatted("%d|%u", 'A', L'A'), "65|65");
    EXPECT_EQ(Formatted("%u|%d", Level::Internal, Negative), "255|-1");
}

TEST(FormatIntegerTest, TakesTheWholePartOfAFloatingValue) {
    EXPECT_EQ(Formatted("%d|%d|%u", 3.99, -3.99, 3.5f), "3|-3|3");
    EXPECT_EQ(Formatted("%lld", 1e300), "9223372036854775807");
    EXPECT_EQ(Formatted("%lld", -1e300), "-9223372036854775808");
    EXPECT_EQ(Formatted("%d", std::numeric_limits<double>::quiet_NaN()), "0");
}

TEST(FormatIntegerTest, TakesTheAddressOfAText) {
    char const * const text = "CMFCDialogMXUserInput::GetInteger";
    auto const address = reinterpret_cast<std::uintptr_t>(text);
    EXPECT_EQ(Formatted("%u", text), std::to_string(static_cast<std::uint32_t>(address)));
    EXPECT_EQ(Formatted("%llu", text), std::to_string(address));
    EXPECT_EQ(
        Formatted("MIN=%u, MAX=%u.", text, 3u, 9u),
        "MIN=" + std::to_string(static_cast<std::uint32_t>(address)) + ", MAX=3.");
}

TEST(FormatIntegerTest, WritesTheEndsOfEachRange) {
    EXPECT_EQ(Formatted("%d", std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(Formatted("%lld", std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(Formatted("%llu", std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(
        Formatted("%llo", std::numeric_limits<std::uint64_t>::max()), "1777777777777777777777");
}

TEST(FormatIntegerTest, WritesEachNumberOfDigits) {
    std::string digits;
    std::uint64_t number = 0;
    for (unsigned count = 1; count <= 19; ++count) {
        number = number * 10 + count % 10;
        digits += static_cast<char>('0' + count % 10);
        EXPECT_EQ(Formatted("%llu", number), digits);
    }
}

TEST(FormatIntegerTest, WritesTheNeighboursOfPowers) {
    for (std::uint64_t const base : {2u, 8u, 10u, 16u}) {
        std::uint64_t power = base;
        for (; power <= std::numeric_limits<std::uint64_t>::max() / base; power *= base)
            for (std::uint64_t const number : {power - 1, power, power + 1})
                ASSERT_EQ(Formatted("%llu", number), std::to_string(number));
    }
}

TEST(FormatIntegerTest, FlagsChooseSignAndFilling) {
    EXPECT_EQ(Formatted("%+d|% d|%+ d|%+d", 5, 5, 5, -5), "+5| 5|+5|-5");
    EXPECT_EQ(Formatted("%+u|% x", 5u, 5u), "5|5");
    EXPECT_EQ(
        Formatted("[%5d|%-5d|%05d|%-05d|%+05d]", 42, 42, 42, 42, 42),
        "[   42|42   |00042|42   |+0042]");
    EXPECT_EQ(Formatted("[%05d|%5d|%-5d]", -42, -42, -42), "[-0042|  -42|-42  ]");
}

TEST(FormatIntegerTest, PrecisionAsksForDigits) {
    EXPECT_EQ(
        Formatted("[%.5d|%8.5d|%-8.5d|%08.5d]", 42, 42, 42, 42),
        "[00042|   00042|00042   |   00042]");
    EXPECT_EQ(Formatted("[%.0d|%.0x|%.d|%5.0d]", 0, 0, 0, 0), "[|||     ]");
    EXPECT_EQ(Formatted("[%.*d|%.*d]", 4, 7, -4, 7), "[0007|7]");
}

TEST(FormatIntegerTest, AlternateFormShowsTheBase) {
    EXPECT_EQ(Formatted("%#x|%#X|%#o", 255, 255, 8), "0xff|0XFF|010");
    EXPECT_EQ(Formatted("%#x|%#X|%#o|%#.0o", 0, 0, 0, 0), "0|0|0|0");
    EXPECT_EQ(
        Formatted("[%#08x|%#8x|%-#8x|%#.4x]", 255, 255, 255, 255),
        "[0x0000ff|    0xff|0xff    |0x00ff]");
    EXPECT_EQ(Formatted("[%#05o|%#.4o|%#.2o]", 8, 8, 8), "[00010|0010|010]");
    EXPECT_EQ(Formatted("%#d|%#u", 7, 7), "7|7");
}

TEST(FormatIntegerTest, WideTextIsTheSame) {
    EXPECT_EQ(
        Formatted(L"[%08lX|%-6d|%+d|%#o|%hhX]", -1, 42, 7, 8, 0x1FF),
        L"[FFFFFFFF|42    |+7|010|FF]");
}

} // namespace
