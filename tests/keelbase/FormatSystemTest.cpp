// FormatText against the system's own formatter, for what only Windows knows or decides so.
//
// That formatter lets hh pass unseen, has three digits in an exponent and names of its own for
// what is not finite; these are those of the C standard here and are not compared.
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"
#include "tests/keelbase/Formatting.h"

namespace {

template <typename... Values>
std::string System(char const * format, Values... values) {
    char text[512] = {};
    int const length = _snprintf(text, sizeof text - 1, format, values...);
    return length < 0 ? "failed" : std::string(text, static_cast<std::size_t>(length));
}

template <typename... Values>
void Compare(char const * format, Values... values) {
    EXPECT_EQ(Formatted(format, values...), System(format, values...)) << format;
}

TEST(FormatSystemTest, DirectivesWithoutALetterAgree) {
    Compare("Name offset=%l\n", 5L);
    Compare("%l\n%d", 5, 6);
    Compare("%y|%d", 5, 6);
    Compare("%5l|%d", 5, 6);
    Compare("%l%d", 5, 6);
    Compare("%l%%d", 5, 6);
    Compare("%.-5d|%d", 5, 6);
    Compare("%b|%d", 5, 6);
    Compare("%m|%d", 5, 6);
    Compare("%'d|%d", 5, 6);
    Compare("%$d|%d", 5, 6);
}

TEST(FormatSystemTest, FormatsThatEndInsideADirectiveAgree) {
    Compare("ab%", 5);
    Compare("ab%5", 5);
    Compare("ab%l", 5);
}

TEST(FormatSystemTest, LengthWordsAgree) {
    Compare("%I64d|%I64u|%I64X", -1LL, ~0ULL, ~0ULL);
    Compare("%I32d|%I32u", -1, ~0u);
    Compare("%Id|%Iu", -7LL, 7ULL);
    Compare("%lld|%zd|%jd|%td", -8LL, -9LL, -10LL, -11LL);
    Compare("%ld|%lu|%08lX", -1L, ~0UL, ~0UL);
    Compare("%hd|%hu|%hX", 70000, 70000, -1);
    Compare("%X|%u|%d", 0x1122334489ABCDEFULL, 0x1122334489ABCDEFULL, 0x1122334489ABCDEFULL);
    Compare("%0*X", 16, 0x1122334400C80064LL);
}

TEST(FormatSystemTest, NullTextsAndFillingAgree) {
    Compare(
        "%s|%.3s|%8s", static_cast<char *>(nullptr), static_cast<char *>(nullptr),
        static_cast<char *>(nullptr));
    Compare("%S", static_cast<wchar_t *>(nullptr));
    Compare("%05s|%-05s|%05c", "ab", "ab", 'x');
}

TEST(FormatSystemTest, PointersAgree) {
    void * const pointer = reinterpret_cast<void *>(0xABCDEF012345ULL);
    Compare("%p|%20p|%-20p|%#p|%020p", pointer, pointer, pointer, pointer, pointer);
    Compare("%p", static_cast<void *>(nullptr));
}

TEST(FormatSystemTest, NarrowAndWideTextsAgree) {
    Compare("%ws|%ls|%hs|%S", L"ab", L"cd", "ef", L"gh");
    Compare("%.2S|%.2ls|%5.1S|", L"abc", L"abc", L"xyz");
    Compare("%wc|%lc|%hc|%C|%c", L'a', L'b', 'c', L'd', 'e');
}

TEST(FormatSystemTest, FlagsAgree) {
    Compare("%0-5d|%-05d|%+5d|% d", 7, 7, 7, 7);
    Compare("%#x|%#X|%#o|%#x", 255, 255, 8, 0);
    Compare("%*d|%-*d|%.*d", -5, 1, -5, 2, -1, 3);
    Compare("%08.3f|%+.2f|%#.0f|%#g", 3.14159, 12345.678, 3.0, 1.0);
}

} // namespace
