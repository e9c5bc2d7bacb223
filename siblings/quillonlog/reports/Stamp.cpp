// Writes moments and lengths of time.
#include "siblings/quillonlog/reports/Stamp.h"

#include <algorithm>
#include <cstdint>

namespace {

using namespace std::chrono;

// Padded with zeros on the left; higher digits are cut.
void AppendDigits(std::string & out, std::int64_t value, int digits) {
    std::int64_t unit = 1;
    for (int i = 1; i < digits; ++i)
        unit *= 10;
    for (; unit != 0; unit /= 10)
        out += static_cast<char>('0' + value / unit % 10);
}

struct Parts {
    year_month_day day;
    hh_mm_ss<milliseconds> time;
};

Parts PartsOf(system_clock::time_point time) {
    auto const millis = floor<milliseconds>(time);
    auto const day = floor<days>(millis);
    return {year_month_day(day), hh_mm_ss<milliseconds>(millis - day)};
}

void AppendDay(std::string & out, year_month_day const & day, char const * between) {
    AppendDigits(out, static_cast<int>(day.year()), 4);
    out += between;
    AppendDigits(out, static_cast<unsigned>(day.month()), 2);
    out += between;
    AppendDigits(out, static_cast<unsigned>(day.day()), 2);
}

void AppendTime(std::string & out, hh_mm_ss<milliseconds> const & time, char const * between) {
    AppendDigits(out, time.hours().count(), 2);
    out += between;
    AppendDigits(out, time.minutes().count(), 2);
    out += between;
    AppendDigits(out, time.seconds().count(), 2);
}

std::string
Utc(system_clock::time_point time, char const * inDay, char const * between, char const * inTime,
    char const * end) {
    auto const [day, clock] = PartsOf(time);
    std::string text;
    AppendDay(text, day, inDay);
    text += between;
    AppendTime(text, clock, inTime);
    return text += end;
}

std::string Pair(std::int64_t value, std::int64_t unit, char const * large, char const * small) {
    return std::to_string(value / unit) + large + std::to_string(value % unit) + small;
}

} // namespace

void AppendUtc(std::string & out, system_clock::time_point time) {
    auto const [day, clock] = PartsOf(time);
    AppendDay(out, day, "-");
    out += 'T';
    AppendTime(out, clock, ":");
    out += '.';
    AppendDigits(out, clock.subseconds().count(), 3);
    out += 'Z';
}

std::string UtcForPeople(system_clock::time_point time) { return Utc(time, "-", " ", ":", " UTC"); }

std::string UtcForJUnit(system_clock::time_point time) { return Utc(time, "-", "T", ":", ""); }

std::string UtcForNames(system_clock::time_point time) { return Utc(time, "", "-", "", ""); }

void AppendSeconds(std::string & out, nanoseconds length) {
    auto const millis = std::max<std::int64_t>(floor<milliseconds>(length).count(), 0);
    out += std::to_string(millis / 1000);
    out += '.';
    AppendDigits(out, millis % 1000, 3);
}

std::string Seconds(nanoseconds length) {
    std::string text;
    AppendSeconds(text, length);
    return text;
}

std::string LengthForPeople(nanoseconds length) {
    std::int64_t const whole = floor<seconds>(length).count();
    if (whole >= 3600) return Pair(whole / 60, 60, " h ", " min");
    if (whole >= 60) return Pair(whole, 60, " min ", " s");
    return Seconds(length) + " s";
}
