// Texts, characters, and what a format does at its edges.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"
#include "tests/keelbase/Formatting.h"

namespace {

// An e with acute accent, the euro sign and an emoji: two, three and four bytes of UTF-8.
constexpr char Utf8[] = "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
constexpr wchar_t Wide[] = L"\u00E9\u20AC\U0001F600";

TEST(FormatTextTest, CopiesWhatIsNoDirective) {
    EXPECT_EQ(Formatted(""), "");
    EXPECT_EQ(Formatted("plain text, exactly"), "plain text, exactly");
    EXPECT_EQ(Formatted(L"plain text, exactly"), L"plain text, exactly");
    EXPECT_EQ(Formatted("\xC3\xA9 stays"), "\xC3\xA9 stays");
}

TEST(FormatTextTest, CopiesTextOfEachLengthAroundADirective) {
    for (std::size_t front = 0; front < 40; ++front) {
        for (std::size_t behind = 0; behind < 40; ++behind) {
            std::string const format = std::string(front, 'a') + "%u" + std::string(behind, 'b');
            std::string const text = std::string(front, 'a') + "7" + std::string(behind, 'b');
            ASSERT_EQ(Formatted(format.c_str(), 7u), text);
        }
    }
}

TEST(FormatTextTest, TwoPercentSignsAreOne) {
    EXPECT_EQ(Formatted("100%%"), "100%");
    EXPECT_EQ(Formatted("%%%u%%", 5u), "%5%");
    EXPECT_EQ(Formatted(L"%%"), L"%");
}

TEST(FormatTextTest, FormatsATypicalLine) {
    EXPECT_EQ(
        Formatted("Endpoint 0x%02X: wMaxPacketSize %u, %s", 0x81u, 512u, "high speed"),
        "Endpoint 0x81: wMaxPacketSize 512, high speed");
}

TEST(FormatTextTest, TakesItsWidthFromAValue) {
    EXPECT_EQ(
        Formatted("hWnd=%u,WPARAM=%0*X, LPARAM=%0*X.", 658194u, 16, 9ull, 16, 0x1122334400C80064ll),
        "hWnd=658194,WPARAM=0000000000000009, LPARAM=0000000000C80064.");
}

TEST(FormatTextTest, FormatsAGuid) {
    std::uint32_t const data1 = 0xA5DCBF10;
    std::uint16_t const data2 = 0x6530;
    std::uint8_t const byte = 0x0F;
    EXPECT_EQ(
        Formatted("{%08lX-%04hX-%02hhX%02hhX}", data1, data2, byte, std::uint8_t{0x1FF & 0xFF}),
        "{A5DCBF10-6530-0FFF}");
}

TEST(FormatTextTest, ADirectiveWithoutALetterGivesNothingAndTakesNoValue) {
    EXPECT_EQ(Formatted("Name offset=%l\n", 5), "Name offset=\n");
    EXPECT_EQ(Formatted("%l\n%d", 5, 6), "\n5");
    EXPECT_EQ(Formatted("%y|%d", 5, 6), "y|5");
    EXPECT_EQ(Formatted("%5l|%d", 5, 6), "|5");
    EXPECT_EQ(Formatted("%5%|%d", 5, 6), "|5");
    EXPECT_EQ(Formatted("%.-5d|%d", 5, 6), "-5d|5");
    EXPECT_EQ(Formatted("%$d|%m|%'d|%b|%Z|%d", 5), "$d|m|'d|b|Z|5");
    EXPECT_EQ(Formatted(L"Name offset=%l\n", 5), L"Name offset=\n");
}

TEST(FormatTextTest, AFormatMayEndInsideADirective) {
    for (char const * const format :
         {"ab%", "ab%5", "ab%-", "ab%.", "ab%.3", "ab%l", "ab%ll", "ab%hh", "ab%I", "ab%I64",
          "ab%w", "ab%*", "ab%.*", "ab%+ #-0"}) {
        SCOPED_TRACE(format);
        EXPECT_EQ(Formatted(format, 5, 6), "ab");
        EXPECT_EQ(Formatted(std::wstring(format, format + std::strlen(format)).c_str(), 5), L"ab");
    }
}

TEST(FormatTextTest, ADirectiveWithoutAValueGivesNothing) {
    EXPECT_EQ(Formatted("[%d|%s|%5u|%c|%f|%p]"), "[|||||]");
    EXPECT_EQ(Formatted("%u, %u", 1u), "1, ");
    EXPECT_EQ(Formatted("[%*d]", 4), "[]");
    EXPECT_EQ(Formatted("[%*s]"), "[]");
}

TEST(FormatTextTest, ValuesTooManyAreLeft) { EXPECT_EQ(Formatted("%u", 1u, 2u, "three"), "1"); }

TEST(FormatTextTest, CountingDirectiveTakesItsValueAndNeverWrites) {
    int counter = 42;
    EXPECT_EQ(Formatted("ab%ncd%u", &counter, 7u), "abcd7");
    EXPECT_EQ(counter, 42);
    EXPECT_EQ(Formatted("ab%hhn%lln"), "ab");
}

TEST(FormatTextTest, TextComesByItsOwnTypeWhateverTheDirective) {
    std::string const narrow = "narrow";
    std::wstring const wide = L"wide";
    CSafeString const safe("safe");
    for (char const * const format : {"%s", "%S", "%hs", "%ls", "%ws", "%hS", "%lS"}) {
        SCOPED_TRACE(format);
        std::wstring const wideFormat(format, format + std::strlen(format));
        EXPECT_EQ(Formatted(format, "narrow"), narrow);
        EXPECT_EQ(Formatted(format, narrow), narrow);
        EXPECT_EQ(Formatted(format, L"wide"), "wide");
        EXPECT_EQ(Formatted(format, wide), "wide");
        EXPECT_EQ(Formatted(format, safe), "safe");
        EXPECT_EQ(Formatted(wideFormat.c_str(), "narrow"), L"narrow");
        EXPECT_EQ(Formatted(wideFormat.c_str(), wide), wide);
    }
}

TEST(FormatTextTest, TextIsConvertedBetweenUtf8AndWide) {
    EXPECT_EQ(Formatted("<%s>", Wide), "<" + std::string(Utf8) + ">");
    EXPECT_EQ(Formatted(L"<%s>", Utf8), L"<" + std::wstring(Wide) + L">");
    EXPECT_EQ(Formatted("<%s>", Utf8), "<" + std::string(Utf8) + ">");
    EXPECT_EQ(Formatted(L"<%s>", Wide), L"<" + std::wstring(Wide) + L">");
    EXPECT_EQ(Formatted(L"<%s>", "a\xC3"), L"<a\uFFFD>");
    EXPECT_EQ(
        Formatted(
            "<%s>", L"a\xD800"
                    L"b"),
        "<a\xEF\xBF\xBD"
        "b>");
}

TEST(FormatTextTest, AnUntypedPointerPointsToTheTextThatTheDirectiveNames) {
    void const * const narrow = "narrow";
    void const * const wide = L"wide";
    unsigned char const bytes[] = "bytes";
    for (char const * const format : {"%s", "%hs", "%hS"})
        EXPECT_EQ(Formatted(format, narrow), "narrow") << format;
    for (char const * const format : {"%S", "%ls", "%ws"})
        EXPECT_EQ(Formatted(format, wide), "wide") << format;
    for (wchar_t const * const format : {L"%s", L"%ls", L"%ws"})
        EXPECT_EQ(Formatted(format, wide), L"wide");
    for (wchar_t const * const format : {L"%S", L"%hs"})
        EXPECT_EQ(Formatted(format, narrow), L"narrow");
    EXPECT_EQ(Formatted("%s", bytes), "bytes");
}

TEST(FormatTextTest, NullTextReadsAsNull) {
    char const * const narrow = nullptr;
    wchar_t const * const wide = nullptr;
    EXPECT_EQ(
        Formatted("%s|%S|%s|%s", narrow, narrow, wide, nullptr), "(null)|(null)|(null)|(null)");
    EXPECT_EQ(Formatted(L"%s|%S|%s", narrow, wide, nullptr), L"(null)|(null)|(null)");
    EXPECT_EQ(Formatted("[%8s|%-8s|%.3s]", narrow, narrow, narrow), "[  (null)|(null)  |(nu]");
}

TEST(FormatTextTest, WhatIsNoTextReadsAsNull) {
    EXPECT_EQ(Formatted("%s|%s|%s", 0, 1234, 1.5), "(null)|(null)|(null)");
}

TEST(FormatTextTest, WidthPadsText) {
    EXPECT_EQ(
        Formatted("[%5s|%-5s|%2s|%0-5s]", "abc", "abc", "abc", "abc"), "[  abc|abc  |abc|abc  ]");
    EXPECT_EQ(Formatted(L"[%5s|%-5s]", L"abc", L"abc"), L"[  abc|abc  ]");
    EXPECT_EQ(Formatted("[%*s|%*s]", 5, "abc", -5, "abc"), "[  abc|abc  ]");
}

TEST(FormatTextTest, ZerosPadTextAsWell) {
    EXPECT_EQ(Formatted("[%05s|%05c|%-05s]", "ab", 'x', "ab"), "[000ab|0000x|ab   ]");
}

TEST(FormatTextTest, WidthCountsCharactersOfTheResult) {
    EXPECT_EQ(Formatted("[%4s|%-4s]", L"\u00E9", L"\u00E9"), "[  \xC3\xA9|\xC3\xA9  ]");
    EXPECT_EQ(Formatted(L"[%3s|%-3s]", "\xC3\xA9", "\xC3\xA9"), L"[  \u00E9|\u00E9  ]");
}

TEST(FormatTextTest, PrecisionCountsCharactersOfTheSource) {
    EXPECT_EQ(
        Formatted("[%.2s|%5.2s|%.0s|%.s|%.9s]", "abc", "abc", "abc", "abc", "abc"),
        "[ab|   ab|||abc]");
    EXPECT_EQ(Formatted("[%.*s|%.*s]", 2, "abc", -1, "abc"), "[ab|abc]");
    EXPECT_EQ(Formatted("[%.2s]", L"\u00E9\u20AC!"), "[\xC3\xA9\xE2\x82\xAC]");
    EXPECT_EQ(Formatted(L"[%.2s]", Utf8), L"[\u00E9]");
    EXPECT_EQ(Formatted(L"[%.3s]", Utf8), L"[\u00E9\uFFFD]");
}

// The texts have no terminator, and lie at the end of their memory.
TEST(FormatTextTest, NothingBeyondThePrecisionIsRead) {
    std::vector<char> const narrow = {'a', 'b', 'c'};
    std::vector<wchar_t> const wide = {L'a', L'b', L'c'};
    EXPECT_EQ(Formatted("%.3s", narrow.data()), "abc");
    EXPECT_EQ(Formatted("%.3s", wide.data()), "abc");
    EXPECT_EQ(Formatted(L"%.3s", narrow.data()), L"abc");
    EXPECT_EQ(Formatted(L"%.*s", 3, wide.data()), L"abc");
}

TEST(FormatTextTest, CharactersComeAsNumbersOrAsTheirOwnType) {
    EXPECT_EQ(Formatted("%c%c%C", 'a', 98, 'c'), "abc");
    EXPECT_EQ(Formatted(L"%c%c%C", L'a', 98, 'c'), L"abc");
    EXPECT_EQ(Formatted("[%3c|%-3c|%.0c]", 'a', 'b', 'c'), "[  a|b  |c]");
    EXPECT_EQ(Formatted("%c", L'\u20AC'), "\xE2\x82\xAC");
    EXPECT_EQ(Formatted("%c", U'\U0001F600'), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Formatted(L"%c", U'\U0001F600'), L"\U0001F600");
}

TEST(FormatTextTest, ANumberIsOneCharacterInTheFormThatTheDirectiveNames) {
    EXPECT_EQ(Formatted("%c", 0x120AC & 0x1FF), "\xAC");
    EXPECT_EQ(Formatted("%hc", 0xE9), "\xE9");
    EXPECT_EQ(Formatted("%C%lc%wc", 0xE9, 0x20AC, 0xE9), "\xC3\xA9\xE2\x82\xAC\xC3\xA9");
    EXPECT_EQ(Formatted(L"%c%lc", 0x20AC, 0xE9), L"\u20AC\u00E9");
    EXPECT_EQ(Formatted(L"%hc%C", 'a', 'b'), L"ab");
}

TEST(FormatTextTest, AByteThatIsNoCharacterAloneIsReplacedInWideText) {
    EXPECT_EQ(Formatted(L"%c%hc", '\xE9', 0xE9), L"\uFFFD\uFFFD");
}

TEST(FormatTextTest, AZeroCharacterIsCounted) {
    EXPECT_EQ(Formatted("a%cb", 0), std::string("a\0b", 3));
    EXPECT_EQ(Formatted(L"a%cb", 0), std::wstring(L"a\0b", 3));
}

TEST(FormatTextTest, PointersHaveSixteenUpperCaseDigits) {
    auto const pointer = reinterpret_cast<void const *>(std::uintptr_t{0xABCDEF012345});
    EXPECT_EQ(Formatted("%p", pointer), "0000ABCDEF012345");
    EXPECT_EQ(Formatted("%p", nullptr), "0000000000000000");
    EXPECT_EQ(
        Formatted("[%18p|%-18p|%#p]", pointer, pointer, pointer),
        "[  0000ABCDEF012345|0000ABCDEF012345  |0X0000ABCDEF012345]");
    EXPECT_EQ(
        Formatted("[%020p|%.3p]", pointer, pointer), "[    0000ABCDEF012345|0000ABCDEF012345]");
    EXPECT_EQ(Formatted("%p", 0x1234567890ABCDEFull), "1234567890ABCDEF");
    EXPECT_EQ(Formatted(L"%p", pointer), L"0000ABCDEF012345");
}

TEST(FormatTextTest, AnEnormousWidthIsBounded) {
    EXPECT_EQ(Formatted("%99999999999999999999d", 7).size(), 1'000'000u);
    EXPECT_EQ(Formatted("%.99999999999999999999d", 7).size(), 1'000'000u);
    EXPECT_EQ(Formatted("%*d", -2147483647 - 1, 7).size(), 1'000'000u);
    EXPECT_EQ(Formatted("%99999999999s", "x").size(), 1'000'000u);
    EXPECT_EQ(Formatted("%.99999999999s", std::string(1'000'001, 'x')).size(), 1'000'001u);
    EXPECT_EQ(Formatted("%.99999999999f", 0.5).size(), 1'000'002u);
}

} // namespace
