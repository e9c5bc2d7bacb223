// What the argument store reads from a text, type by type; nothing stands for unreadable.
#pragma once

#include <limits>
#include <optional>

struct SignedCase {
    char const * stored;
    std::optional<long long> read;
};

inline constexpr long long highest = std::numeric_limits<long long>::max();
inline constexpr long long lowest = std::numeric_limits<long long>::min();

inline constexpr SignedCase signedCases[] = {
    // Decimal, with blanks and a sign in front.
    {"1", 1},
    {"42", 42},
    {"-5", -5},
    {"+5", 5},
    {" 7", 7},
    {"\t\n\v\f\r 7", 7},
    {" -7", -7},
    {" +7", 7},
    {"-0", 0},
    {"-007", -7},
    {" 010", 10},
    {"+0x10", 0},
    {" 0x10", 0},
    {"-0x10", 0},
    // Nothing that could be read.
    {"", std::nullopt},
    {" ", std::nullopt},
    {"\t\n", std::nullopt},
    {"-", std::nullopt},
    {"+", std::nullopt},
    {"--5", std::nullopt},
    {"+-5", std::nullopt},
    {"- 5", std::nullopt},
    {"x10", std::nullopt},
    {"abc", std::nullopt},
    {"yes", std::nullopt},
    {".5", std::nullopt},
    {"\xC2\xA0"
     "5",
     std::nullopt},
    {"\b5", std::nullopt},
    // What follows the number is not looked at.
    {"12abc", 12},
    {"12 34", 12},
    {"1.9", 1},
    {"1e3", 1},
    {"1,000", 1},
    {"-5-3", -5},
    {"9_", 9},
    // Octal.
    {"0", 0},
    {"00", 0},
    {"017", 15},
    {"07", 7},
    {"08", 0},
    {"09", 0},
    {"0178", 15},
    {"0 7", 0},
    {"0-7", 0},
    {"0abc", 0},
    {"0b11", 0},
    {"0777", 511},
    {"00x10", 0},
    // Hexadecimal.
    {"0x10", 16},
    {"0X1F", 31},
    {"0xff", 255},
    {"0xFf", 255},
    {"0x0", 0},
    {"0x00000000000000001", 1},
    {"0x1g", 1},
    {"0x1 2", 1},
    {"0x", std::nullopt},
    {"0X", std::nullopt},
    {"0xg", std::nullopt},
    {"0x-1", std::nullopt},
    {"0x 1", std::nullopt},
    {"0x0x5", 0},
    // The limits of 64 bits.
    {"9223372036854775806", highest - 1},
    {"9223372036854775807", highest},
    {"9223372036854775808", highest},
    {"18446744073709551615", highest},
    {"18446744073709551616", highest},
    {"99999999999999999999999", highest},
    {"-9223372036854775807", lowest + 1},
    {"-9223372036854775808", lowest},
    {"-9223372036854775809", lowest},
    {"-99999999999999999999999", lowest},
    {"99999999999999999999999abc", highest},
    {"0x7FFFFFFFFFFFFFFF", highest},
    {"0x8000000000000000", lowest},
    {"0xFFFFFFFFFFFFFFFF", -1},
    {"0x10000000000000000", -1},
    {"0xFFFFFFFFFFFFFFFFFFFF", -1},
    {"0777777777777777777777", highest},
    {"01000000000000000000000", lowest},
    {"01777777777777777777777", -1},
    {"02000000000000000000000", -1},
};

struct UnsignedCase {
    char const * stored;
    std::optional<unsigned long long> read;
};

inline constexpr UnsignedCase unsignedCases[] = {
    {"0", 0},
    {"1", 1},
    {"010", 10},
    {"08", 8},
    {"0x10", 0},
    {"0X10", 0},
    {"+3", 3},
    {" 3", 3},
    {"\r\n3", 3},
    {"12abc", 12},
    {"-1", 0xFFFFFFFFFFFFFFFF},
    {"-5", 0xFFFFFFFFFFFFFFFB},
    {" -0", 0},
    {"4294967297", 4294967297},
    {"9223372036854775808", 0x8000000000000000},
    {"18446744073709551615", 0xFFFFFFFFFFFFFFFF},
    {"18446744073709551616", 0xFFFFFFFFFFFFFFFF},
    {"-18446744073709551615", 1},
    {"-18446744073709551616", 0xFFFFFFFFFFFFFFFF},
    {"", std::nullopt},
    {" ", std::nullopt},
    {"-", std::nullopt},
    {"- 1", std::nullopt},
    {"x", std::nullopt},
    {"yes", std::nullopt},
};

struct BoolCase {
    char const * stored;
    std::optional<bool> read;
};

inline constexpr BoolCase boolCases[] = {
    {"yes", true},
    {"true", true},
    {"y", true},
    {"t", true},
    {"", true},
    {"1", true},
    {"2", true},
    {"12abc", true},
    {"-1", true},
    {"+1", true},
    {" 1", true},
    {"18446744073709551616", true},
    {"01", true},
    {"no", false},
    {"false", false},
    {"n", false},
    {"f", false},
    {"0", false},
    {"00", false},
    {"-0", false},
    {"0x10", false},
    {"0yes", false},
    {" 0", false},
    {" ", std::nullopt},
    {" yes", std::nullopt},
    {"yes ", std::nullopt},
    {"ye", std::nullopt},
    {"yess", std::nullopt},
    {"tru", std::nullopt},
    {"on", std::nullopt},
    {"off", std::nullopt},
    {"-", std::nullopt},
    {"x1", std::nullopt},
};

struct NarrowCase {
    char const * stored;
    long long bits;
};

inline constexpr NarrowCase narrowCases[] = {
    {"0", 0},
    {"127", 127},
    {"128", 128},
    {"255", 255},
    {"256", 256},
    {"300", 300},
    {"-1", -1},
    {"-129", -129},
    {"32768", 32768},
    {"65535", 65535},
    {"65536", 65536},
    {"2147483648", 2147483648},
    {"4294967295", 4294967295},
    {"4294967296", 4294967296},
    {"4294967297", 4294967297},
    {"0x12345678", 0x12345678},
    {"0x123456789ABCDEF0", 0x123456789ABCDEF0},
    {"010", 8},
    {" 010", 10},
    {"99999999999999999999999", highest},
    {"-99999999999999999999999", lowest},
    {"0xFFFFFFFFFFFFFFFF", -1},
};
