// The two number languages of an outcome, and the levels of the log.
#include "log/TestStatus.h"

#include <limits>
#include <type_traits>

#include <gtest/gtest.h>

#include "log/LogFixture.h"

static_assert(std::is_same_v<TEST_STATUS, std::uint32_t>);
static_assert(std::is_same_v<TS_STATUS, std::uint32_t>);
static_assert(std::is_same_v<std::underlying_type_t<eQNLogVerbosity>, std::uint8_t>);
static_assert(std::is_same_v<std::underlying_type_t<tagTS_LOG_TYPE>, std::uint32_t>);

TEST(TestStatusTest, ElementsHaveTheirBits) {
    EXPECT_EQ(TEST_STATUS_UNKNOWN, 0x00000000u);
    EXPECT_EQ(TEST_STATUS_SUCCESS, 0x00000001u);
    EXPECT_EQ(TEST_STATUS_NOT_LOGGED, 0x00000002u);
    EXPECT_EQ(TEST_STATUS_INFO, 0x04000000u);
    EXPECT_EQ(TEST_STATUS_INFORMATION, 0x04000000u);
    EXPECT_EQ(TEST_STATUS_WARNING, 0x08000000u);
    EXPECT_EQ(TEST_STATUS_ERROR, 0x20000000u);
    EXPECT_EQ(TEST_STATUS_ABORT, 0x40000000u);
    EXPECT_EQ(TEST_STATUS_FAIL, 0x80000000u);
}

TEST(TestStatusTest, MasksSplitTheWord) {
    EXPECT_EQ(TEST_STATUS_VALID_MASK, 0xEC000003u);
    EXPECT_EQ(TEST_STATUS_INVALID_MASK, 0x13FFFFFCu);
    EXPECT_EQ(TEST_STATUS_VALID_MASK | TEST_STATUS_INVALID_MASK, 0xFFFFFFFFu);
    EXPECT_EQ(TEST_STATUS_VALID_MASK & TEST_STATUS_INVALID_MASK, 0u);
}

TEST(TestStatusTest, ResultCodesHaveTheirNumbers) {
    EXPECT_EQ(TS_SUCCESS, 0x00000000u);
    EXPECT_EQ(TS_FAILED, 0x80000000u);
    EXPECT_EQ(TS_ABORTED, 0x90000000u);
    EXPECT_EQ(TS_FILE_REOPEN_FAILED, 0x80001003u);
    EXPECT_EQ(TS_NO_STREAM, 0x80001004u);
    EXPECT_EQ(TS_WRITE_FAILED, 0x80001005u);
    EXPECT_EQ(TS_DIALOG_BUSY, 0x80001007u);
    EXPECT_EQ(TS_DIALOG_TIMED_OUT, 0x80005001u);
    EXPECT_EQ(TS_NULL_RESULT, 0x80008008u);
    EXPECT_EQ(TS_INVALID_BOUNDS, 0x80008009u);
}

TEST(TestStatusTest, LevelsAndLogTypesHaveTheirNumbers) {
    EXPECT_EQ(Quiet, 0);
    EXPECT_EQ(Minimal, 1);
    EXPECT_EQ(Low, 2);
    EXPECT_EQ(Normal, 3);
    EXPECT_EQ(Verbose, 4);
    EXPECT_EQ(Diagnostic, 5);
    EXPECT_EQ(Internal, 255);
    EXPECT_EQ(TS_LOG_CONSOLE, 1u);
    EXPECT_EQ(TS_LOG_HTML, 4u);
}

TEST(TestStatusTest, AWordPassesWithoutTrouble) {
    for (TEST_STATUS const word :
         {0x00000001u, 0x04000000u, 0x04000001u, 0x24000000u, 0x20000001u, 0x00000003u,
          0x10000001u})
        EXPECT_TRUE(TestStatusPasses(word)) << Hex(word);
}

TEST(TestStatusTest, AWordWithTroubleOrWithoutSuccessDoesNotPass) {
    for (TEST_STATUS const word :
         {0x00000000u, 0x00000002u, 0x80000001u, 0x40000001u, 0xC0000001u, 0x84000001u, 0x44000000u,
          0x80000000u, 0x40000000u, 0x20000000u, 0x10000000u, 0x13FFFFFCu})
        EXPECT_FALSE(TestStatusPasses(word)) << Hex(word);
}

TEST(TestStatusTest, WarningPassesBesideAFailure) {
    for (TEST_STATUS const word :
         {0x08000000u, 0x08000001u, 0x88000001u, 0x88000000u, 0x48000000u, 0xEC000003u})
        EXPECT_TRUE(TestStatusPasses(word)) << Hex(word);
}

TEST(TestStatusTest, EachElementHasItsDefaultLevel) {
    struct Case {
        TEST_STATUS status;
        eQNLogVerbosity level;
    };
    for (auto const & [status, level] :
         {Case{0x80000000, Minimal},
          {0x40000000, Minimal},
          {0x20000000, Minimal},
          {0x08000000, Low},
          {0x04000000, Normal},
          {0x00000001, Normal},
          {0x00000002, Normal}})
        EXPECT_EQ(RecordingSink::GetDefaultLogVerbosity(status), level) << Hex(status);
}

TEST(TestStatusTest, AWordOfSeveralElementsOrOfNoneHasTheNormalLevel) {
    for (TEST_STATUS const status : {0xC0000000u, 0x88000000u, 0x80000001u, 0x28000000u, 0u})
        EXPECT_EQ(RecordingSink::GetDefaultLogVerbosity(status), Normal) << Hex(status);
}

class TranslateTestStatusTest : public LogTest {};

TEST_F(TranslateTestStatusTest, EachBitOfTheCodeAddsItsElement) {
    struct Case {
        TS_STATUS code;
        TEST_STATUS word;
    };
    for (auto const & [code, word] :
         {Case{0x90000000, 0xC0000001},
          {0x40000000, 0x08000001},
          {0x10000000, 0x40000001},
          {TS_NO_STREAM, 0x80000001},
          {0xD0000000, 0xC8000001},
          {0xFFFFFFFF, 0xC8000001},
          {0x2FFFFFFF, 0x00000001},
          {0x00000000, 0x00000001}}) {
        Log().ClearTestStatus();
        EXPECT_EQ(Log().TranslateTestStatus(code), word) << Hex(code);
        EXPECT_EQ(Log().TestStatus(), word) << Hex(code);
    }
}

TEST_F(TranslateTestStatusTest, CodesAddUp) {
    Log().TranslateTestStatus(0x40000000);
    Log().TranslateTestStatus(0);
    EXPECT_EQ(Log().TranslateTestStatus(0x10000000), 0x48000001u);
}

TEST_F(TranslateTestStatusTest, NothingIsWrittenOrCounted) {
    Watch();
    Log().TranslateTestStatus(0xD0000000);
    EXPECT_EQ(Seen(), Lines{"word C8000001"});
}
