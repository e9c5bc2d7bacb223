// Moments and lengths as the reports write them.
#include "siblings/quillonlog/reports/Stamp.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using Time = std::chrono::system_clock::time_point;

std::string Utc(Time time) {
    std::string text;
    AppendUtc(text, time);
    return text;
}

TEST(StampTest, MomentsAreUtc) {
    Time const time(1'794'000'001s + 7ms);
    EXPECT_EQ(Utc(time), "2026-11-06T21:20:01.007Z");
    EXPECT_EQ(UtcForPeople(time), "2026-11-06 21:20:01 UTC");
    EXPECT_EQ(UtcForJUnit(time), "2026-11-06T21:20:01");
    EXPECT_EQ(UtcForNames(time), "20261106-212001");
}

TEST(StampTest, PartsOfAMillisecondAreCut) {
    EXPECT_EQ(Utc(Time(1'709'164'799s + 999'999us)), "2024-02-28T23:59:59.999Z");
    EXPECT_EQ(Utc(Time(1'709'164'800s)), "2024-02-29T00:00:00.000Z");
}

TEST(StampTest, SecondsArePlainDecimals) {
    EXPECT_EQ(Seconds(0ns), "0.000");
    EXPECT_EQ(Seconds(1'999'999ns), "0.001");
    EXPECT_EQ(Seconds(12'345ms), "12.345");
    EXPECT_EQ(Seconds(1'000'000s), "1000000.000");
    EXPECT_EQ(Seconds(-5s), "0.000");
}

TEST(StampTest, LengthsForPeopleAreShort) {
    EXPECT_EQ(LengthForPeople(59'999ms), "59.999 s");
    EXPECT_EQ(LengthForPeople(200s), "3 min 20 s");
    EXPECT_EQ(LengthForPeople(7500s), "2 h 5 min");
}

} // namespace
