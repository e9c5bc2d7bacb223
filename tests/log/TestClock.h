// A system clock that stands still until the test moves it.
//
// It starts at 17:08:36 on November 14, 2026, by whatever local time the machine has.
#pragma once

#include <chrono>
#include <ctime>
#include <string>

#include "platform/Wrap.h"

// std::chrono::system_clock::now, as the linker knows it.
extern "C" std::chrono::system_clock::time_point _ZNSt6chrono3_V212system_clock3nowEv() noexcept;
MORVEX_WRAPPED(_ZNSt6chrono3_V212system_clock3nowEv)

class TestClock {
public:
    using time_point = std::chrono::system_clock::time_point;

    TestClock() {
        std::tm local{};
        local.tm_year = 2026 - 1900;
        local.tm_mon = 10;
        local.tm_mday = 14;
        local.tm_hour = 17;
        local.tm_min = 8;
        local.tm_sec = 36;
        local.tm_isdst = -1;
        m_Now = std::chrono::system_clock::from_time_t(std::mktime(&local));
    }

    void Advance(unsigned int seconds) { m_Now += std::chrono::seconds(seconds); }
    time_point Now() const { return m_Now; }

private:
    time_point m_Now;
    Diversion<time_point()> const m_Diversion{
        wrapped__ZNSt6chrono3_V212system_clock3nowEv, [this] { return m_Now; }};
};

// A time in the form in which the log shows it.
inline std::string TimeText(TestClock::time_point time) {
    static constexpr char const * months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::time_t const seconds = std::chrono::system_clock::to_time_t(time);
    std::tm const local = *std::localtime(&seconds);
    auto const two = [](int number) {
        return std::string{
            static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
    };
    return std::string(months[local.tm_mon]) + ' ' + two(local.tm_mday) + ", "
           + std::to_string(local.tm_year + 1900) + " - " + two(local.tm_hour) + ':'
           + two(local.tm_min) + ':' + two(local.tm_sec);
}
