// Times as text.
#include <chrono>
#include <ctime>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"

namespace {

using Clock = std::chrono::system_clock;

Clock::time_point Second(std::time_t second) { return Clock::from_time_t(second); }

std::string LocalText(char const * format, std::time_t second) {
    char text[256];
    return std::string(text, std::strftime(text, sizeof text, format, std::localtime(&second)));
}

constexpr std::time_t SomeTime = 1'795'158'245;

TEST(TimeToStringTest, ShowsLocalTime) {
    char const * const format = "%b %d, %Y - %H:%M:%S";
    EXPECT_EQ(TimeToString(format, Second(SomeTime)).get(), LocalText(format, SomeTime));
}

TEST(TimeToStringTest, DropsWhatIsFinerThanASecond) {
    using namespace std::chrono_literals;
    EXPECT_STREQ(TimeToString("%S", Second(SomeTime) + 900ms).get(), "05");
}

TEST(TimeToStringTest, GivesATextOfAnyLength) {
    std::string format;
    std::string expected;
    std::string const year = LocalText("%Y", SomeTime);
    for (int i = 0; i < 3000; ++i) {
        format += "%Y";
        expected += year;
    }
    EXPECT_EQ(TimeToString(format.c_str(), Second(SomeTime)).get(), expected);
}

TEST(TimeToStringTest, AnEmptyOrNullFormatGivesAnEmptyText) {
    EXPECT_TRUE(TimeToString("", Second(SomeTime)).empty());
    EXPECT_TRUE(TimeToString(nullptr, Second(SomeTime)).empty());
}

TEST(TimeToStringTest, KeepsBlanksAtTheEnd) {
    EXPECT_STREQ(TimeToString("%% ", Second(SomeTime)).get(), "% ");
}

TEST(TimeToStringTest, ServesThreadsTogether) {
    char const * const format = "%Y-%m-%d %H:%M:%S";
    std::vector<std::string> expected;
    for (std::time_t day = 0; day < 200; ++day)
        expected.push_back(LocalText(format, SomeTime + day * 86'477));
    auto const check = [&] {
        for (std::size_t day = 0; day < expected.size(); ++day) {
            Clock::time_point const time =
                Second(SomeTime + static_cast<std::time_t>(day) * 86'477);
            EXPECT_EQ(TimeToString(format, time).get(), expected[day]);
        }
    };
    std::thread other(check);
    check();
    other.join();
}

} // namespace
