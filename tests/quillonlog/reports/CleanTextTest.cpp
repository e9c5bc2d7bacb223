// What the reports make of texts that their formats cannot carry.
#include "siblings/quillonlog/reports/CleanText.h"

#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

struct Case {
    std::string text;
    std::string expected;
};

std::string Json(std::string_view text) {
    std::string out;
    CleanText::AppendJson(out, text);
    return out;
}

constexpr char Lost[] = "\xEF\xBF\xBD";

TEST(CleanTextTest, PlainTextStaysAsItIs) {
    std::string const text = "port 1: 100% [0x00FF] ~ \\ \xC3\xA4 \xE2\x82\xAC";
    EXPECT_EQ(CleanText::Markup(text), text);
    EXPECT_EQ(CleanText::Attribute(text), text);
    EXPECT_EQ(CleanText::Markup(""), "");
}

TEST(CleanTextTest, MarkupIsText) {
    EXPECT_EQ(
        CleanText::Markup("<b onclick=\"x('y')\">&amp;</noscript>]]>"),
        "&lt;b onclick=&quot;x(&#39;y&#39;)&quot;&gt;&amp;amp;&lt;/noscript&gt;]]&gt;");
}

TEST(CleanTextTest, ControlCharactersAreShown) {
    for (auto const & [text, expected] :
         {Case{std::string("\0", 1), "\\x00"},
          {"\x1B[31m", "\\x1B[31m"},
          {"\x7F", "\\x7F"},
          {"\xC2\x80\xC2\x9F", "\\x80\\x9F"},
          {"a\rb", "a\\x0Db"},
          {"\x0B\x0C", "\\x0B\\x0C"}})
        EXPECT_EQ(CleanText::Markup(text), expected);
    EXPECT_EQ(CleanText::Markup("\xC2\xA0"), "\xC2\xA0");
}

TEST(CleanTextTest, LineEndsAndTabsStayOrComeAsReferences) {
    EXPECT_EQ(CleanText::Markup("a\r\nb\nc\td"), "a\nb\nc\td");
    EXPECT_EQ(CleanText::Attribute("a\r\nb\nc\td"), "a&#10;b&#10;c&#9;d");
}

TEST(CleanTextTest, CharactersOfFourBytesStay) {
    EXPECT_EQ(CleanText::Markup("\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(CleanText::Markup("\xF4\x8F\xBF\xBD"), "\xF4\x8F\xBF\xBD");
    EXPECT_EQ(Json("\xF0\x9F\x98\x80"), "\"\xF0\x9F\x98\x80\"");
}

TEST(CleanTextTest, CodePointsThatAreNoCharactersAreShown) {
    for (auto const & [text, expected] :
         {Case{"\xEF\xBF\xBE", "\\u{FFFE}"},
          {"\xEF\xBF\xBF", "\\u{FFFF}"},
          {"\xEF\xB7\x90", "\\u{FDD0}"},
          {"\xEF\xB7\xAF", "\\u{FDEF}"},
          {"\xEF\xB7\xB0", "\xEF\xB7\xB0"},
          {"\xF0\x9F\xBF\xBE", "\\u{1FFFE}"},
          {"\xF4\x8F\xBF\xBF", "\\u{10FFFF}"}})
        EXPECT_EQ(CleanText::Markup(text), expected);
    EXPECT_EQ(CleanText::Markup("\xEF\xB7\x8F"), "\xEF\xB7\x8F");
}

TEST(CleanTextTest, EachIllFormedPartBecomesOneReplacement) {
    std::string const one = Lost;
    for (auto const & [text, expected] :
         {Case{"\x80", one},
          {"\xFF\xFE", one + one},
          {"\xC3", one},
          {"\xC3(", one + "("},
          {"\xC0\xAF", one + one},
          {"\xED\xA0\x80", one + one + one},
          {"\xE2\x82", one},
          {"\xE2\x82z", one + "z"},
          {"\xF0\x9F\x98", one},
          {"\xF4\x90\x80\x80", one + one + one + one},
          {"\xE0\x80\x80", one + one + one},
          {"\xF0\x80\x80\x80", one + one + one + one},
          {"\xF5\x80", one + one},
          {Lost, one}}) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(CleanText::Markup(text), expected);
        EXPECT_EQ(CleanText::Attribute(text), expected);
        EXPECT_EQ(Json(text), '"' + expected + '"');
    }
}

TEST(CleanTextTest, JsonCarriesEveryCharacterAndIsRead) {
    std::string const text("a\"\\\n\x01\0z<&>\xEF\xBF\xBE", 13);
    EXPECT_EQ(nlohmann::json::parse(Json(text)).get<std::string>(), text);
}

TEST(CleanTextTest, QuotesAndBackslashesOfJsonAreEscaped) {
    EXPECT_EQ(Json(""), "\"\"");
    EXPECT_EQ(Json("C:\\a \"b\" <c>\\"), "\"C:\\\\a \\\"b\\\" <c>\\\\\"");
}

TEST(CleanTextTest, CutKeepsWholeCharacters) {
    EXPECT_EQ(CleanText::Cut("abc", 3), "abc");
    EXPECT_EQ(CleanText::Cut("abcd", 3), "abc\xE2\x80\xA6");
    EXPECT_EQ(CleanText::Cut("a\xF0\x9F\x98\x80z", 4), "a\xE2\x80\xA6");
    EXPECT_EQ(CleanText::Cut("\x80\x80\x80", 2), "\xE2\x80\xA6");
}

} // namespace
