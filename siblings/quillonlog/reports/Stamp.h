// Moments of a run, and how the reports write them.
//
// Pure.
#pragma once

#include <chrono>
#include <string>

// The same moment on the clock of the world and on one that never goes back.
struct Moment {
    std::chrono::system_clock::time_point utc{};
    std::chrono::steady_clock::time_point steady{};

    static Moment Now() {
        return {std::chrono::system_clock::now(), std::chrono::steady_clock::now()};
    }
};

// "2026-11-21T18:52:38.123Z"
void AppendUtc(std::string & out, std::chrono::system_clock::time_point time);

// The same to the second, for people ("2026-11-21 18:52:38 UTC"), for JUnit ("2026-11-21T18:52:38")
// and for names of files ("20261121-185238").
std::string UtcForPeople(std::chrono::system_clock::time_point time);
std::string UtcForJUnit(std::chrono::system_clock::time_point time);
std::string UtcForNames(std::chrono::system_clock::time_point time);

// Seconds as a plain decimal with three places; what lies before zero counts as zero.
void AppendSeconds(std::string & out, std::chrono::nanoseconds length);
std::string Seconds(std::chrono::nanoseconds length);

// "0.012 s", "3 min 20 s", "2 h 5 min"
std::string LengthForPeople(std::chrono::nanoseconds length);
