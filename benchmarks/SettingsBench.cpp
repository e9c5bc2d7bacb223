// A number read from the argument store, beside the least that it costs: two look-ups in sorted
// maps under names that are in lower case already, and the C library's conversion.
//
// The goal: at most 1.5 times that least, with names of up to 15 characters in mixed case.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "settings/CIniArgs.h"

namespace {

constexpr int sections = 8;
constexpr int keys = 16;

// Section and key of each value, numbered behind what they begin with.
std::vector<std::pair<std::string, std::string>> Names(char const * section, char const * key) {
    std::vector<std::pair<std::string, std::string>> names;
    for (int i = 0; i != sections * keys; ++i)
        names.emplace_back(
            section + std::to_string(i % sections), key + std::to_string(i / sections));
    return names;
}

void BareMaps(benchmark::State & state) {
    std::map<std::string, std::map<std::string, std::string>> maps;
    auto const names = Names("section", "setting_");
    for (auto const & [section, key] : names)
        maps[section][key] = std::to_string(maps.size() * 1000);
    std::size_t next = 0;
    for (auto _ : state) {
        auto const & [section, key] = names[next++ % names.size()];
        auto const values = maps.find(section);
        auto const value = values->second.find(key);
        benchmark::DoNotOptimize(std::strtoll(value->second.c_str(), nullptr, 10));
    }
}

void Store(benchmark::State & state) {
    CIniArgs args;
    auto const names = Names("Section", "Setting_");
    for (auto const & [section, key] : names)
        args.AddArg(section, key, std::to_string(section.size() * 1000));
    std::size_t next = 0;
    for (auto _ : state) {
        auto const & [section, key] = names[next++ % names.size()];
        long long value = 0;
        args.GetArg(section, key, value);
        benchmark::DoNotOptimize(value);
    }
    state.counters["goal"] = 1.5;
}

BENCHMARK(BareMaps)->Name("SignedRead/limit");
BENCHMARK(Store)->Name("SignedRead/morvex");

} // namespace

BENCHMARK_MAIN();
