// The conversions between UTF-8 and wide text.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"

namespace {

constexpr bool WideIsUtf16 = sizeof(wchar_t) == 2;

std::wstring Widened(std::string const & text) { return *Utf8ToUtf16(text); }
std::string Narrowed(std::wstring const & text) { return *Utf16ToUtf8(text); }

// Wide text of units that no literal may hold.
std::wstring Units(std::vector<unsigned> const & units) {
    std::wstring text;
    for (unsigned const unit : units)
        text += static_cast<wchar_t>(unit);
    return text;
}

struct Pair {
    char const * utf8;
    wchar_t const * wide;
};

// The least and the greatest of each length, and the neighbours of the surrogates.
constexpr Pair WellFormed[] = {
    {"", L""},
    {"\x01\x7F", L"\x01\x7F"},
    {"\xC2\x80\xDF\xBF", L"\x80\x7FF"},
    {"\xE0\xA0\x80\xEF\xBF\xBF", L"\x800\xFFFF"},
    {"\xED\x9F\xBF\xEE\x80\x80", L"\xD7FF\xE000"},
    {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\U00010000\U0010FFFF"},
    {"Ger\xC3\xA4t \xE2\x82\xAC \xF0\x9F\x98\x80.", L"Ger\u00E4t \u20AC \U0001F600."}};

TEST(UnicodeTest, WellFormedTextGoesBothWays) {
    for (auto const & [utf8, wide] : WellFormed) {
        SCOPED_TRACE(utf8);
        EXPECT_EQ(Widened(utf8), wide);
        EXPECT_EQ(Narrowed(wide), utf8);
    }
}

TEST(UnicodeTest, EachFormOfTheOperationGivesTheSame) {
    std::string const utf8 = "\xC3\xA4!";
    std::wstring const wide = L"\u00E4!";
    EXPECT_EQ(*Utf8ToUtf16(utf8.c_str()), wide);
    EXPECT_EQ(*Utf8ToUtf16(utf8), wide);
    EXPECT_EQ(*Utf8ToUtf16(&utf8), wide);
    EXPECT_EQ(*Utf16ToUtf8(wide.c_str()), utf8);
    EXPECT_EQ(*Utf16ToUtf8(wide), utf8);
}

TEST(UnicodeTest, ANullPointerGivesANullResult) {
    EXPECT_EQ(Utf8ToUtf16(static_cast<char const *>(nullptr)), nullptr);
    EXPECT_EQ(Utf8ToUtf16(static_cast<std::string const *>(nullptr)), nullptr);
    EXPECT_EQ(Utf16ToUtf8(static_cast<wchar_t const *>(nullptr)), nullptr);
}

TEST(UnicodeTest, AnEmptyTextGivesAnEmptyResult) {
    ASSERT_NE(Utf8ToUtf16(""), nullptr);
    EXPECT_EQ(*Utf8ToUtf16(""), L"");
    EXPECT_EQ(*Utf16ToUtf8(L""), "");
}

TEST(UnicodeTest, InnerZerosAreKept) {
    EXPECT_EQ(Widened(std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(Narrowed(std::wstring(L"a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(Widened(std::string("\xC3\xA4\0b", 4)), std::wstring(L"\u00E4\0b", 3));
}

TEST(UnicodeTest, EachMaximalIllFormedPartIsReplacedOnce) {
    for (auto const & [utf8, wide] :
         {Pair{"\x80", L"\uFFFD"},
          {"\xBF\x80", L"\uFFFD\uFFFD"},
          {"\xC3", L"\uFFFD"},
          {"\xC3(", L"\uFFFD("},
          {"\xE2\x82", L"\uFFFD"},
          {"\xE2\x82(", L"\uFFFD("},
          {"\xF0\x9F\x98", L"\uFFFD"},
          {"\xF0\x9F\x98(", L"\uFFFD("},
          {"\xC0\xAF", L"\uFFFD\uFFFD"},
          {"\xC1\xBF", L"\uFFFD\uFFFD"},
          {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},
          {"\xE0\x9F\xBF", L"\uFFFD\uFFFD\uFFFD"},
          {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
          {"\xED\xBF\xBF", L"\uFFFD\uFFFD\uFFFD"},
          {"\xF0\x80\x80\xAF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
          {"\xF0\x8F\xBF\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
          {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
          {"\xF5\x80\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
          {"\xFE\xFF", L"\uFFFD\uFFFD"},
          {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
          {"a\xC3\xC3\xA4z", L"a\uFFFD\u00E4z"}}) {
        SCOPED_TRACE(utf8);
        EXPECT_EQ(Widened(utf8), wide);
    }
}

TEST(UnicodeTest, EachLoneSurrogateIsReplaced) {
    std::string const one = "\xEF\xBF\xBD";
    EXPECT_EQ(Narrowed(Units({0xD800})), one);
    EXPECT_EQ(Narrowed(Units({0xDFFF, 'a'})), one + "a");
    EXPECT_EQ(Narrowed(Units({'a', 0xDBFF, 'b'})), "a" + one + "b");
    EXPECT_EQ(Narrowed(Units({0xDC00, 0xD800})), one + one);
}

TEST(UnicodeTest, APairOfSurrogatesIsOneCharacterOnlyInUtf16) {
    std::string const one = "\xEF\xBF\xBD";
    EXPECT_EQ(
        Narrowed(Units({0xD83D, 0xDE00})),
        WideIsUtf16 ? std::string("\xF0\x9F\x98\x80") : one + one);
    EXPECT_EQ(
        Narrowed(Units({0xD83D, 0xD83D, 0xDE00, 0xDE00})),
        WideIsUtf16 ? one + "\xF0\x9F\x98\x80" + one : one + one + one + one);
}

TEST(UnicodeTest, WideValuesThatAreNoCodePointAreReplaced) {
    std::string const one = "\xEF\xBF\xBD";
    if constexpr (!WideIsUtf16) {
        EXPECT_EQ(Narrowed(Units({0x110000})), one);
        EXPECT_EQ(Narrowed(Units({0x7FFFFFFF, 0xFFFFFFFF, 'z'})), one + one + "z");
    }
    EXPECT_EQ(Narrowed(Units({0xFFFF})), "\xEF\xBF\xBF");
}

// The fast way for ASCII must see a character beyond it at each place.
TEST(UnicodeTest, OneCharacterBeyondAsciiIsSeenAtEachPlace) {
    for (std::size_t size : {1u, 7u, 8u, 9u, 31u, 64u, 127u, 128u, 129u, 300u}) {
        for (std::size_t place = 0; place < size; ++place) {
            std::string utf8(size, 'x');
            std::wstring wide(size, L'x');
            ASSERT_EQ(Widened(utf8), wide);
            ASSERT_EQ(Narrowed(wide), utf8);
            utf8.replace(place, 1, "\xC3\xA4");
            wide[place] = L'\u00E4';
            ASSERT_EQ(Widened(utf8), wide) << size << " " << place;
            ASSERT_EQ(Narrowed(wide), utf8) << size << " " << place;
        }
    }
}

TEST(UnicodeTest, EveryCodePointGoesThereAndBack) {
    for (unsigned point = 1; point <= 0x10FFFF; ++point) {
        if (point >= 0xD800 && point <= 0xDFFF) continue;
        std::wstring const wide =
            WideIsUtf16 && point > 0xFFFF
                ? Units({0xD800 + ((point - 0x10000) >> 10), 0xDC00 + (point & 0x3FF)})
                : Units({point});
        ASSERT_EQ(Widened(Narrowed(wide)), wide) << point;
    }
}

} // namespace
