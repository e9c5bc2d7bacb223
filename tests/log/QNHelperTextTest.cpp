// The test helper's static utilities: byte dumps, UUIDs and memory.
#include <gtest/gtest.h>

#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "log/QNHelper.h"
#include "platform/BaseTypes.h"
#include "siblings/Keelbase.h"

namespace {

constexpr unsigned char kTwoBytes[] = {0x01, 0xAB};

std::string Dump(
    std::vector<unsigned char> const & bytes, char const * format, char const * separator,
    std::string out = "", bool append = true) {
    QNHelper::BytesToString(out, bytes.data(), bytes.size(), format, separator, append);
    return out;
}

std::string TwoBytes(char const * format, char const * separator) {
    return Dump({0x01, 0xAB}, format, separator);
}

// As the rule has it, byte by byte.
std::string Expected(
    std::vector<unsigned char> const & bytes, char const * format, char const * separator,
    std::string out) {
    std::string const joined = std::string(separator) + format;
    for (unsigned char const byte : bytes)
        out += FormatText(
            nullptr, nullptr, FormatPadding{0, 0}, out.empty() ? format : joined.c_str(),
            static_cast<unsigned>(byte));
    return out;
}

std::vector<unsigned char> EveryByte() {
    std::vector<unsigned char> bytes(256);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    return bytes;
}

} // namespace

TEST(QNHelperTextTest, StringIsLowerCaseWithBlanks) {
    std::string out = "before";
    QNHelper::BytesToString(out, kTwoBytes, 2, false);
    EXPECT_EQ(out, "01 ab");
    QNHelper::BytesToString(out, kTwoBytes, 2, true);
    EXPECT_EQ(out, "01 ab 01 ab");
}

TEST(QNHelperTextTest, CodeIsUpperCaseWithPrefixesAndCommas) {
    std::string out;
    QNHelper::BytesToCode(out, kTwoBytes, 2, false);
    EXPECT_EQ(out, "0x01, 0xAB");
    out = "x";
    QNHelper::BytesToCode(out, kTwoBytes, 2, true);
    EXPECT_EQ(out, "x, 0x01, 0xAB");
}

TEST(QNHelperTextTest, WithoutBytesTheTextIsEmptiedUnlessItIsAppendedTo) {
    std::string out = "before";
    QNHelper::BytesToString(out, nullptr, 4, true);
    QNHelper::BytesToCode(out, kTwoBytes, 0, true);
    QNHelper::BytesToString(out, nullptr, 4, "%u", "-", true);
    EXPECT_EQ(out, "before");
    QNHelper::BytesToString(out, nullptr, 4, false);
    EXPECT_EQ(out, "");
    out = "before";
    QNHelper::BytesToCode(out, kTwoBytes, 0, false);
    EXPECT_EQ(out, "");
}

TEST(QNHelperTextTest, NullFormatAndNullSeparatorAreThoseOfTheShortForm) {
    EXPECT_EQ(TwoBytes(nullptr, nullptr), "01 ab");
    EXPECT_EQ(TwoBytes(nullptr, "-"), "01-ab");
    EXPECT_EQ(TwoBytes("%X", nullptr), "1 AB");
}

TEST(QNHelperTextTest, EmptySeparatorGivesAnUnbrokenText) {
    EXPECT_EQ(TwoBytes("%02X", ""), "01AB");
}

TEST(QNHelperTextTest, EveryFormatIsWrittenAsByteByByte) {
    auto const bytes = EveryByte();
    for (char const * const format :
         {"%02x", "%02X",   "0x%02X", "0x%02x", "<%02x>", "%02x;",  "byte %02X of many, many",
          "%x",   "%u",     "%d",     "%3u",    "%%%02x", "%02x%%", "%02x%02x",
          "%2x",  "%02",    "%",      "",       "plain",  "%c",     "%02hhX",
          "%s",   "\\x%02x"}) {
        for (char const * const separator :
             {"", " ", ", ", "%%", "%", "a separator of some length", "%u", "%0", "0x"}) {
            for (char const * const before : {"", "before"}) {
                SCOPED_TRACE(std::string(format) + '|' + separator + '|' + before);
                // No text stands behind a number.
                if (std::strcmp(format, "%s") == 0) continue;
                EXPECT_EQ(
                    Dump(bytes, format, separator, before),
                    Expected(bytes, format, separator, before));
            }
        }
    }
}

TEST(QNHelperTextTest, SeparatorStandsInFrontOnlyOfATextThatIsNotEmpty) {
    // The first byte gives nothing, so the second one is the first again.
    EXPECT_EQ(Dump({0x00, 0x41, 0x42}, "%c", "-"), "A-B");
}

TEST(QNHelperTextTest, EverySizeIsWrittenWhole) {
    auto const all = EveryByte();
    for (std::size_t size = 0; size != all.size(); ++size) {
        std::vector<unsigned char> const bytes(all.begin(), all.begin() + static_cast<long>(size));
        ASSERT_EQ(Dump(bytes, "%02x", " "), Expected(bytes, "%02x", " ", "")) << size;
        ASSERT_EQ(Dump(bytes, "0x%02X", ", "), Expected(bytes, "0x%02X", ", ", "")) << size;
    }
}

TEST(QNHelperTextTest, DumpIsNotIndented) {
    m_IndentLevel = 2;
    EXPECT_EQ(TwoBytes("%02x", " "), "01 ab");
    EXPECT_EQ(TwoBytes("%x", " "), "1 ab");
    m_IndentLevel = 0;
}

TEST(QNHelperTextTest, UuidIsUpperCaseInBraces) {
    _GUID const id = {0xa5dcbf10, 0x6530, 0x01d2, {0x90, 0x1f, 0x00, 0xc0, 0x4f, 0xb9, 0x51, 0xed}};
    char text[41];
    std::memset(text, '#', sizeof text);
    QNHelper::GetUUIDDisplayString(id, text);
    EXPECT_STREQ(text, "{A5DCBF10-6530-01D2-901F-00C04FB951ED}");
    EXPECT_EQ(text[39], '#');
}

TEST(QNHelperTextTest, UuidOfZeroesHasAllItsDigits) {
    char text[39];
    QNHelper::GetUUIDDisplayString(_GUID{}, text);
    EXPECT_STREQ(text, "{00000000-0000-0000-0000-000000000000}");
}

TEST(QNHelperTextTest, MemoryIsZeroedAndCanBeReleased) {
    auto * const memory = static_cast<unsigned char *>(QNHelper::AllocateMemory(64));
    ASSERT_NE(memory, nullptr);
    for (int i = 0; i != 64; ++i)
        ASSERT_EQ(memory[i], 0);
    std::memset(memory, 0xFF, 64);
    QNHelper::ReleaseMemory(memory);
}
