// The plain record of a test's outcome.
#include "log/CMXTestInfo.h"

#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

static_assert(!std::is_polymorphic_v<CMXTestInfo>);
static_assert(sizeof(CMXTestInfo) == sizeof(std::string) + 4 * 4 + 2 * 8);

namespace {

// Longer than any string keeps in itself.
std::string const kName = "the name of a test that is longer than any small string";

CMXTestInfo Filled() {
    CMXTestInfo info;
    info.m_TestName = kName;
    info.m_TestStatus = 0x80000001;
    info.m_FailureCount = 2;
    info.m_AbortCount = 3;
    info.m_WarningCount = 4;
    info.m_StartTime = 0x1'0000'0005;
    info.m_StopTime = 0x1'0000'0006;
    return info;
}

void ExpectNumbers(CMXTestInfo const & info) {
    EXPECT_EQ(info.m_TestStatus, 0x80000001u);
    EXPECT_EQ(info.m_FailureCount, 2u);
    EXPECT_EQ(info.m_AbortCount, 3u);
    EXPECT_EQ(info.m_WarningCount, 4u);
    EXPECT_EQ(info.m_StartTime, 0x1'0000'0005u);
    EXPECT_EQ(info.m_StopTime, 0x1'0000'0006u);
}

void ExpectFilled(CMXTestInfo const & info) {
    EXPECT_EQ(info.m_TestName, kName);
    ExpectNumbers(info);
}

void ExpectMovedFrom(CMXTestInfo const & info) {
    EXPECT_EQ(info.m_TestName, "");
    ExpectNumbers(info);
}

} // namespace

TEST(CMXTestInfoTest, ACopyTakesAllMembersAndLeavesTheSource) {
    CMXTestInfo const source = Filled();
    CMXTestInfo const copy(source);
    ExpectFilled(copy);
    ExpectFilled(source);
}

TEST(CMXTestInfoTest, CopyAssignmentTakesAllMembersAndLeavesTheSource) {
    CMXTestInfo const source = Filled();
    CMXTestInfo target;
    target = source;
    ExpectFilled(target);
    ExpectFilled(source);
}

TEST(CMXTestInfoTest, AMoveEmptiesTheNameOfTheSourceAndKeepsItsNumbers) {
    CMXTestInfo source = Filled();
    CMXTestInfo const target(std::move(source));
    ExpectFilled(target);
    ExpectMovedFrom(source);
}

TEST(CMXTestInfoTest, MoveAssignmentEmptiesTheNameOfTheSourceAndKeepsItsNumbers) {
    CMXTestInfo source = Filled();
    CMXTestInfo target;
    target.m_TestName = "another name, for which there has to be room on the heap as well";
    target = std::move(source);
    ExpectFilled(target);
    ExpectMovedFrom(source);
}

TEST(CMXTestInfoTest, AShortNameLeavesTheSourceToo) {
    CMXTestInfo source = Filled();
    source.m_TestName = "T1";
    CMXTestInfo target;
    target = std::move(source);
    EXPECT_EQ(target.m_TestName, "T1");
    ExpectMovedFrom(source);
}
