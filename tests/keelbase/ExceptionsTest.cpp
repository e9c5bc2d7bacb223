// The exceptions and ThrowQNRunTime.
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"

namespace {

// The text of the exception that a call throws, as the type given.
template <typename Exception, typename Call>
std::string Thrown(Call call) {
    try {
        call();
    } catch (Exception const & exception) {
        return exception.what();
    }
    return "nothing was thrown";
}

TEST(ExceptionsTest, CarryTheirText) {
    EXPECT_STREQ(CQNRunTimeException("run").what(), "run");
    EXPECT_STREQ(CQNDOMDocException("document").what(), "document");
}

TEST(ExceptionsTest, HaveNoTextByDefault) {
    EXPECT_STREQ(CQNRunTimeException().what(), "");
    EXPECT_STREQ(CQNDOMDocException().what(), "");
}

TEST(ExceptionsTest, ReadANullTextAsNone) {
    EXPECT_STREQ(CQNRunTimeException(nullptr).what(), "");
    EXPECT_STREQ(CQNDOMDocException(nullptr).what(), "");
}

TEST(ExceptionsTest, KeepTheirTextWhenCopied) {
    CQNRunTimeException const original("kept");
    CQNRunTimeException const copy(original);
    EXPECT_STREQ(copy.what(), "kept");
}

TEST(ExceptionsTest, AreCaughtAsEachOfTheirBases) {
    auto const run = [] { throw CQNRunTimeException("run"); };
    EXPECT_EQ(Thrown<CQNException>(run), "run");
    EXPECT_EQ(Thrown<std::runtime_error>(run), "run");
    auto const document = [] { throw CQNDOMDocException("document"); };
    EXPECT_EQ(Thrown<CQNException>(document), "document");
    EXPECT_EQ(Thrown<std::runtime_error>(document), "document");
}

TEST(ExceptionsTest, AreTwoSeparateKinds) {
    EXPECT_FALSE((std::is_base_of_v<CQNRunTimeException, CQNDOMDocException>));
    EXPECT_FALSE((std::is_base_of_v<CQNDOMDocException, CQNRunTimeException>));
}

TEST(ThrowQNRunTimeTest, ThrowsTheTextOfItsFormat) {
    EXPECT_EQ(
        Thrown<CQNRunTimeException>([] { ThrowQNRunTime("Test Aborted by user."); }),
        "Test Aborted by user.");
}

// The exception thrown inside the library is the type that this module catches.
TEST(ThrowQNRunTimeTest, ThrowsAcrossTheModuleBorder) {
    EXPECT_EQ(Thrown<CQNException>([] { ThrowQNRunTime("border"); }), "border");
    EXPECT_EQ(Thrown<std::exception>([] { ThrowQNRunTime("border"); }), "border");
}

TEST(ThrowQNRunTimeTest, FormatsOneValue) {
    EXPECT_EQ(
        Thrown<CQNRunTimeException>(
            [] { ThrowQNRunTime("Unrecognized return code: (status = 0x%08X).", 0x10000000u); }),
        "Unrecognized return code: (status = 0x10000000).");
}

TEST(ThrowQNRunTimeTest, FormatsWithoutValuesToo) {
    EXPECT_EQ(Thrown<CQNRunTimeException>([] { ThrowQNRunTime("100%% %u."); }), "100% .");
}

TEST(ThrowQNRunTimeTest, AnEmptyOrNullFormatGivesNoText) {
    for (char const * const format : {static_cast<char const *>(nullptr), ""}) {
        EXPECT_EQ(Thrown<CQNRunTimeException>([&] { ThrowQNRunTime(format); }), "");
        EXPECT_EQ(Thrown<CQNRunTimeException>([&] { ThrowQNRunTime(format, 5); }), "");
    }
}

TEST(ThrowQNRunTimeTest, TakesNoPadding) {
    m_IndentLevel = 3;
    EXPECT_EQ(Thrown<CQNRunTimeException>([] { ThrowQNRunTime("flush"); }), "flush");
    m_IndentLevel = 0;
}

} // namespace
