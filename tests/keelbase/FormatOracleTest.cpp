// FormatText against the C library, on random directives that the C standard defines.
//
// The seeds are fixed, so that a failure comes back. Each random format is also formatted in its
// wide form, which has to give the same text.
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"
#include "tests/keelbase/Formatting.h"

namespace {

constexpr int Cases = 100'000;

template <typename... Values>
std::string Expected(std::string const & format, Values... values) {
    int const length = std::snprintf(nullptr, 0, format.c_str(), values...);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), values...);
    text.pop_back();
    return text;
}

std::wstring Widened(std::string const & text) { return {text.begin(), text.end()}; }

class FormatOracleTest : public testing::Test {
protected:
    bool Chance(unsigned oneOf) { return m_Random() % oneOf == 0; }

    std::string Literal() {
        std::string text;
        for (unsigned left = static_cast<unsigned>(m_Random() % 12); left != 0; --left)
            text += static_cast<char>('a' + m_Random() % 26);
        return Chance(20) ? text + "%%" : text;
    }

    std::string Flags(char const * allowed) {
        std::string flags;
        for (; *allowed != '\0'; ++allowed)
            if (Chance(4)) flags += *allowed;
        return flags;
    }

    std::string Width() { return Chance(2) ? "" : std::to_string(1 + m_Random() % 30); }

    std::string Precision(unsigned most) {
        if (Chance(2)) return "";
        return Chance(8) ? "." : "." + std::to_string(m_Random() % most);
    }

    char OneOf(char const * letters) { return letters[m_Random() % std::strlen(letters)]; }

    // A directive between two literals.
    std::string
    Format(char const * flags, unsigned mostPrecision, char const * word, char const * letters) {
        std::string format = Literal() + "%" + Flags(flags) + Width() + Precision(mostPrecision);
        return format + word + OneOf(letters) + Literal();
    }

    // Numbers of each length, close to the ends and to zero more often than chance has it.
    long long Number() {
        auto const number = static_cast<long long>(m_Random() >> (m_Random() % 64));
        switch (m_Random() % 8) {
        case 0:
            return 0;
        case 1:
            return -1;
        case 2:
            return LLONG_MIN;
        case 3:
            return INT_MIN;
        default:
            return Chance(2) ? number : -(number >> 1);
        }
    }

    double Floating() {
        switch (m_Random() % 6) {
        case 0:
            return static_cast<double>(Number());
        case 1:
            return static_cast<double>(static_cast<int>(m_Random())) / 1000;
        case 2:
            return static_cast<double>(m_Random() % 100'000) / 8;
        default: {
            // Each bit pattern is a number, an infinity or a NaN.
            std::uint64_t const bits = m_Random();
            double number;
            std::memcpy(&number, &bits, sizeof number);
            return number;
        }
        }
    }

    template <typename... Values>
    void Compare(std::string const & format, Values... values) {
        std::string const expected = Expected(format, values...);
        ASSERT_EQ(Formatted(format.c_str(), values...), expected) << format;
        ASSERT_EQ(Formatted(Widened(format).c_str(), values...), Widened(expected)) << format;
    }

    std::mt19937_64 m_Random{20'261'120};
};

// Flags that the standard leaves undefined for a conversion are not asked for.
TEST_F(FormatOracleTest, SignedNumbersAgree) {
    for (int i = 0; i < Cases && !HasFatalFailure(); ++i) {
        long long const number = Number();
        Compare(Format("-+ 0", 30, "", "di"), static_cast<int>(number));
        Compare(Format("-+ 0", 30, "ll", "di"), number);
        Compare(Format("-+ 0", 30, Chance(2) ? "h" : "hh", "di"), static_cast<int>(number));
    }
}

TEST_F(FormatOracleTest, UnsignedNumbersAgree) {
    for (int i = 0; i < Cases && !HasFatalFailure(); ++i) {
        auto const number = static_cast<unsigned long long>(Number());
        Compare(Format("-0", 30, "", "u"), static_cast<unsigned>(number));
        Compare(Format("-#0", 30, "", "oxX"), static_cast<unsigned>(number));
        Compare(Format("-#0", 30, Chance(2) ? "ll" : "j", "oxX"), number);
        Compare(Format("-0", 30, Chance(2) ? "h" : "hh", "uoxX"), static_cast<unsigned>(number));
    }
}

TEST_F(FormatOracleTest, FloatingValuesAgree) {
    for (int i = 0; i < Cases && !HasFatalFailure(); ++i)
        Compare(Format("-+ #0", Chance(50) ? 1500 : 25, "", "eEfFgG"), Floating());
}

// Without a precision the standard leaves the leading digit open; it is compared where the two
// libraries choose alike, and read back elsewhere.
TEST_F(FormatOracleTest, HexadecimalFloatingValuesAgree) {
    for (int i = 0; i < Cases && !HasFatalFailure(); ++i) {
        double const number = Floating();
        if (std::fpclassify(number) == FP_SUBNORMAL) {
            std::string const text = Formatted("%a", number);
            ASSERT_EQ(std::strtod(text.c_str(), nullptr), number) << text;
        } else {
            Compare(Format("-+ #0", 20, "", "aA"), number);
        }
    }
}

TEST_F(FormatOracleTest, TextsAgree) {
    for (int i = 0; i < Cases && !HasFatalFailure(); ++i) {
        std::string const text = Literal() + Literal();
        Compare(Format("-", 30, "", "s"), text.c_str());
        Compare(Format("-", 1, "", "c"), 1 + static_cast<int>(m_Random() % 127));
    }
}

TEST_F(FormatOracleTest, WidthAndPrecisionFromValuesAgree) {
    for (int i = 0; i < Cases && !HasFatalFailure(); ++i) {
        int const width = static_cast<int>(m_Random() % 60) - 30;
        int const precision = static_cast<int>(m_Random() % 30) - 5;
        auto const number = static_cast<int>(Number());
        Compare("%" + Flags("-+ 0") + "*d|%.*s", width, number, precision, "some text");
        Compare("%" + Flags("-#0") + "*.*X", width, precision, static_cast<unsigned>(number));
    }
}

TEST_F(FormatOracleTest, WholeLinesAgree) {
    for (int i = 0; i < Cases && !HasFatalFailure(); ++i) {
        std::string const text = Literal();
        std::string const format = Format("-+ 0", 20, "", "di") + Format("-", 20, "", "s")
                                   + Format("-#0", 20, "ll", "xXo") + Format("-+ 0", 12, "", "feg");
        Compare(
            format, static_cast<int>(Number()), text.c_str(),
            static_cast<unsigned long long>(Number()), Floating());
    }
}

} // namespace
