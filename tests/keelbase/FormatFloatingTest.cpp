// Floating values.
#include <clocale>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"
#include "tests/keelbase/Formatting.h"

namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();

TEST(FormatFloatingTest, HasSixDigitsBehindThePoint) {
    EXPECT_EQ(Formatted("%f|%e|%g", 3.25, 3.25, 3.25), "3.250000|3.250000e+00|3.25");
    EXPECT_EQ(Formatted("%F|%E|%G", 1e10, 1e10, 1e10), "10000000000.000000|1.000000E+10|1E+10");
    EXPECT_EQ(Formatted(L"%f", 3.25), L"3.250000");
}

TEST(FormatFloatingTest, AnExponentHasAtLeastTwoDigits) {
    EXPECT_EQ(Formatted("%e|%e|%g", 1.0, 1e100, 1e-5), "1.000000e+00|1.000000e+100|1e-05");
}

TEST(FormatFloatingTest, RoundsToThePrecision) {
    EXPECT_EQ(Formatted("%.0f|%.0f|%.0f|%.1f", 0.5, 1.5, 2.5, 0.25), "0|2|2|0.2");
    EXPECT_EQ(Formatted("%.3f|%.2e|%.3g", 3.14159, 31415.9, 31415.9), "3.142|3.14e+04|3.14e+04");
    EXPECT_EQ(Formatted("%.*f|%.*f", 1, 2.55, -1, 2.5), "2.5|2.500000");
}

TEST(FormatFloatingTest, FlagsChooseSignAndFilling) {
    EXPECT_EQ(
        Formatted("[%8.3f|%-8.3f|%08.3f|%+.1f|% .1f]", 3.14159, 3.14159, 3.14159, 2.0, 2.0),
        "[   3.142|3.142   |0003.142|+2.0| 2.0]");
    EXPECT_EQ(Formatted("[%08.3f|%8.1f]", -3.14159, -0.0), "[-003.142|    -0.0]");
}

TEST(FormatFloatingTest, AlternateFormKeepsPointAndZeros) {
    EXPECT_EQ(
        Formatted("%#.0f|%#.0e|%#g|%#.3g|%#g", 3.0, 3.0, 1.0, 1e10, 0.0),
        "3.|3.e+00|1.00000|1.00e+10|0.00000");
    EXPECT_EQ(
        Formatted("%#g|%#g|%#g|%#.0g", 123456.0, 999999.5, 0.0001, 2.0),
        "123456.|1.00000e+06|0.000100000|2.");
}

TEST(FormatFloatingTest, NamesWhatIsNotFinite) {
    EXPECT_EQ(
        Formatted("%f|%F|%e|%G|%a", Infinite, Infinite, -Infinite, -Infinite, Infinite),
        "inf|INF|-inf|-INF|inf");
    EXPECT_EQ(Formatted("%f|%F|%+f", NoNumber, NoNumber, Infinite), "nan|NAN|+inf");
    EXPECT_EQ(Formatted("[%06f|%-6f]", Infinite, NoNumber), "[   inf|nan   ]");
}

TEST(FormatFloatingTest, HexadecimalIsExact) {
    EXPECT_EQ(Formatted("%a|%A|%a", 1.5, 1.5, 0.0), "0x1.8p+0|0X1.8P+0|0x0p+0");
    EXPECT_EQ(Formatted("%.3a|%.0a|%+a", 1.5, 1.0, 1.5), "0x1.800p+0|0x1p+0|+0x1.8p+0");
    EXPECT_EQ(Formatted("[%012a|%12a]", 1.5, -1.5), "[0x00001.8p+0|   -0x1.8p+0]");
}

TEST(FormatFloatingTest, LongPrecisionsAddZeros) {
    std::string const zeros(1499, '0');
    EXPECT_EQ(Formatted("%.1500f", 0.5), "0.5" + zeros);
    EXPECT_EQ(Formatted("%.1500e", 0.5), "5." + zeros + "0e-01");
    EXPECT_EQ(Formatted("%#.1501g", 5.0), "5." + zeros + "0");
}

TEST(FormatFloatingTest, WritesTheEndsOfTheRange) {
    EXPECT_EQ(Formatted("%.0f", std::numeric_limits<double>::max()).size(), 309u);
    EXPECT_EQ(Formatted("%g", std::numeric_limits<double>::denorm_min()), "4.94066e-324");
    EXPECT_EQ(Formatted("%.1100f", std::numeric_limits<double>::max()).size(), 1410u);
}

TEST(FormatFloatingTest, TakesEachNumber) {
    EXPECT_EQ(
        Formatted("%.1f|%.1f|%.1f", 5, -5, 18446744073709551615ull),
        "5.0|-5.0|18446744073709551616.0");
    EXPECT_EQ(Formatted("%.2f|%.2f|%Lg", 1.5f, 2.5L, 3.5L), "1.50|2.50|3.5");
}

TEST(FormatFloatingTest, ThePointStaysInEveryLocale) {
    for (char const * const name : {"de_DE.UTF-8", "de_DE", "German_Germany.1252", "fr_FR.UTF-8"})
        if (std::setlocale(LC_ALL, name) != nullptr) break;
    EXPECT_EQ(Formatted("%.2f|%g", 1234.5, 0.5), "1234.50|0.5");
    std::setlocale(LC_ALL, "C");
}

} // namespace
