// CBasicFormattedString, the padding of texts, and where a text stands.
#include <cstring>
#include <string>
#include <thread>
#include <type_traits>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"

namespace {

constexpr FormatPadding NoPadding{0, 0};

class CBasicFormattedStringTest : public testing::Test {
protected:
    ~CBasicFormattedStringTest() override { m_IndentLevel = 0; }

    void IndentBy(std::uint32_t level) { m_IndentLevel = level; }
};

TEST_F(CBasicFormattedStringTest, HoldsTheFormattedText) {
    CBasicFormattedString<char> const text("Fails (%d); Aborts (%d)", 2, 0);
    EXPECT_STREQ(text, "Fails (2); Aborts (0)");
    CBasicFormattedString<wchar_t> const wide(L"Fails (%d); %s", 2, "end");
    EXPECT_STREQ(wide, L"Fails (2); end");
}

TEST_F(CBasicFormattedStringTest, AnUnformattedTextReadsAsEmpty) {
    CBasicFormattedString<char> const narrow;
    CBasicFormattedString<wchar_t> const wide;
    EXPECT_STREQ(narrow, "");
    EXPECT_STREQ(wide, L"");
}

TEST_F(CBasicFormattedStringTest, OwnsItsText) {
    CBasicFormattedString<char> const first("first %u", 1u);
    CBasicFormattedString<char> const second("second %u", 2u);
    FormatText(nullptr, nullptr, NoPadding, "third");
    EXPECT_STREQ(first, "first 1");
    EXPECT_STREQ(second, "second 2");
}

TEST_F(CBasicFormattedStringTest, ATextGivenAsFormatIsFormattedAgain) {
    CBasicFormattedString<char> const once("100%% of %u", 5u);
    EXPECT_STREQ(once, "100% of 5");
    CBasicFormattedString<char> const twice(static_cast<char const *>(once));
    EXPECT_STREQ(twice, "100f 5");
}

TEST_F(CBasicFormattedStringTest, IsAValueOfAnotherFormat) {
    CBasicFormattedString<char> const inner("inner %u", 1u);
    CBasicFormattedString<char> const outer("[%s]", inner);
    EXPECT_STREQ(outer, "[inner 1]");
}

TEST_F(CBasicFormattedStringTest, IsNotIndentedAtLoad) {
    EXPECT_EQ(m_IndentLevel, 0u);
    EXPECT_STREQ(CBasicFormattedString<char>("text"), "text");
}

TEST_F(CBasicFormattedStringTest, IsIndentedByTwiceTheLevel) {
    IndentBy(2);
    EXPECT_STREQ(CBasicFormattedString<char>("%s", "text"), "    text");
    EXPECT_STREQ(CBasicFormattedString<wchar_t>(L"%s", "text"), L"    text");
}

TEST_F(CBasicFormattedStringTest, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<CBasicFormattedString<char>>);
}

TEST(FormatPaddingTest, FillsInFrontOfTheText) {
    CSimpleBuffer buffer;
    std::size_t length = 0;
    EXPECT_STREQ(FormatText(&length, &buffer, FormatPadding{'.', 3}, "%u", 42u), "...42");
    EXPECT_EQ(length, 6u);
}

TEST(FormatPaddingTest, CountsInCharactersForWideText) {
    CSimpleBuffer buffer;
    std::size_t length = 0;
    EXPECT_STREQ(FormatText(&length, &buffer, FormatPadding{'.', 3}, L"%u", 42u), L"...42");
    EXPECT_EQ(length, 6u);
}

TEST(FormatPaddingTest, MayBeZeros) {
    CSimpleBuffer buffer;
    std::size_t length = 0;
    char const * const text = FormatText(&length, &buffer, FormatPadding{0, 2}, "ab");
    EXPECT_EQ(std::string(text, length), std::string("\0\0ab\0", 5));
}

TEST(FormatPaddingTest, WorksInTheThreadsBuffer) {
    std::size_t length = 0;
    char const * const text = FormatText(&length, nullptr, FormatPadding{'-', 4}, "%s", "end");
    EXPECT_STREQ(text, "----end");
    EXPECT_EQ(length, 8u);
}

TEST(FormatDestinationTest, LengthCountsTextAndTerminator) {
    std::size_t length = 99;
    FormatText(&length, nullptr, NoPadding, "");
    EXPECT_EQ(length, 1u);
    FormatText(&length, nullptr, NoPadding, "%s!", "four");
    EXPECT_EQ(length, 6u);
    FormatText(&length, nullptr, NoPadding, L"%s!", "four");
    EXPECT_EQ(length, 6u);
}

TEST(FormatDestinationTest, IsTheBufferThatIsGiven) {
    CSimpleBuffer buffer;
    char const * const text = FormatText(nullptr, &buffer, NoPadding, "%s", "given");
    EXPECT_EQ(text, buffer.Get());
    EXPECT_STREQ(text, "given");
}

TEST(FormatDestinationTest, IsTheThreadsBufferWithoutOne) {
    char const * const text = FormatText(nullptr, nullptr, NoPadding, "%s", "thread");
    EXPECT_EQ(text, GetFormatBuffer(1));
    EXPECT_STREQ(text, "thread");
}

TEST(FormatDestinationTest, AGivenBufferLeavesTheThreadsTextAlone) {
    char const * const kept = FormatText(nullptr, nullptr, NoPadding, "kept %u", 1u);
    CSimpleBuffer buffer;
    FormatText(nullptr, &buffer, NoPadding, "other %s", std::string(5000, 'x'));
    EXPECT_STREQ(kept, "kept 1");
}

TEST(FormatDestinationTest, GrowsWithEachLengthOfText) {
    for (std::size_t size = 0; size < 5000; size = size < 64 ? size + 1 : size * 11 / 10) {
        SCOPED_TRACE(size);
        std::string const text(size, 'x');
        EXPECT_EQ(FormatText(nullptr, nullptr, NoPadding, "<%s>", text), "<" + text + ">");
        CSimpleBuffer buffer;
        EXPECT_EQ(FormatText(nullptr, &buffer, NoPadding, text.c_str()), text);
        std::wstring const wide(size, L'x');
        EXPECT_EQ(FormatText(nullptr, nullptr, NoPadding, L"<%s>", wide), L"<" + wide + L">");
    }
}

TEST(FormatDestinationTest, AValueMayLieInTheThreadsBuffer) {
    char const * text = FormatText(nullptr, nullptr, NoPadding, "core");
    text = FormatText(nullptr, nullptr, NoPadding, "[%s|%s]", text, text + 1);
    EXPECT_STREQ(text, "[core|ore]");
}

TEST(FormatDestinationTest, ALongValueMayLieInTheThreadsBuffer) {
    std::string expected(700, 'x');
    char const * text = FormatText(nullptr, nullptr, NoPadding, expected.c_str());
    for (int i = 0; i < 5; ++i) {
        text = FormatText(nullptr, nullptr, NoPadding, "[%s|%s]", text, text);
        expected = "[" + expected + "|" + expected + "]";
        ASSERT_EQ(text, expected);
    }
}

TEST(FormatDestinationTest, TheFormatMayLieInTheThreadsBuffer) {
    char const * const format = FormatText(nullptr, nullptr, NoPadding, "<%%u %%s>");
    EXPECT_STREQ(FormatText(nullptr, nullptr, NoPadding, format, 7u, "seven"), "<7 seven>");
}

TEST(FormatDestinationTest, AValueMayLieInTheGivenBuffer) {
    CSimpleBuffer buffer;
    char const * text = FormatText(nullptr, &buffer, NoPadding, "core");
    std::string expected = "core";
    for (int i = 0; i < 12; ++i) {
        text = FormatText(nullptr, &buffer, NoPadding, "[%s|%s]", text, text);
        expected = "[" + expected + "|" + expected + "]";
        ASSERT_EQ(text, expected);
    }
}

TEST(FormatDestinationTest, EachThreadFormatsInItsOwnBuffer) {
    char const * const mine = FormatText(nullptr, nullptr, NoPadding, "mine %u", 1u);
    std::thread([&] {
        for (unsigned i = 0; i < 1000; ++i)
            EXPECT_EQ(
                FormatText(nullptr, nullptr, NoPadding, "theirs %u", i),
                "theirs " + std::to_string(i));
    }).join();
    EXPECT_STREQ(mine, "mine 1");
}

TEST(FormatDestinationTest, ANullFormatGivesAnEmptyText) {
    std::size_t length = 0;
    EXPECT_STREQ(FormatText(&length, nullptr, NoPadding, static_cast<char const *>(nullptr)), "");
    EXPECT_EQ(length, 1u);
}

} // namespace
