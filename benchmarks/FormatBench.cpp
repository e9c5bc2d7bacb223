// One log line formatted by FormatText, beside the C library and std::to_chars in the same run.
//
// The goal: at most 45 ns for the typical line into the thread's format buffer, and not slower
// than one snprintf.
#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>

#include "siblings/Keelbase.h"

namespace {

constexpr char Line[] = "Endpoint 0x%02X: wMaxPacketSize %u, %s";
constexpr char Speed[] = "high speed";
constexpr FormatPadding NoPadding{0, 0};

// The values come from memory, so that no line is formatted when it is compiled.
struct Values {
    unsigned endpoint = 0x81;
    unsigned size = 512;
    char const * speed = Speed;
    double seconds = 3.25;
};

void Line_FormatText(benchmark::State & state) {
    Values values;
    for (auto _ : state) {
        benchmark::DoNotOptimize(values);
        benchmark::DoNotOptimize(FormatText(
            nullptr, nullptr, NoPadding, Line, values.endpoint, values.size, values.speed));
        benchmark::ClobberMemory();
    }
    state.counters["goal_ns"] = 45;
    state.SetLabel("ahead of snprintf");
}
BENCHMARK(Line_FormatText)->Name("FormatLine/FormatText");

void Line_Snprintf(benchmark::State & state) {
    Values values;
    char text[256];
    for (auto _ : state) {
        benchmark::DoNotOptimize(values);
        benchmark::DoNotOptimize(
            std::snprintf(text, sizeof text, Line, values.endpoint, values.size, values.speed));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Line_Snprintf)->Name("FormatLine/snprintf");

// What the C library needs to do the same work: measure, then write.
void Line_SnprintfMeasuredFirst(benchmark::State & state) {
    Values values;
    char text[256];
    for (auto _ : state) {
        benchmark::DoNotOptimize(values);
        int const length =
            std::snprintf(nullptr, 0, Line, values.endpoint, values.size, values.speed);
        benchmark::DoNotOptimize(std::snprintf(
            text, static_cast<std::size_t>(length) + 1, Line, values.endpoint, values.size,
            values.speed));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Line_SnprintfMeasuredFirst)->Name("FormatLine/snprintf-twice");

char * Append(char * at, char const * text) {
    std::size_t const length = std::strlen(text);
    return static_cast<char *>(std::memcpy(at, text, length)) + length;
}

void AssembleLine(char * text, std::size_t size, Values const & values) {
    char * at = Append(text, "Endpoint 0x");
    at = std::to_chars(at, text + size, values.endpoint, 16).ptr;
    at = Append(at, ": wMaxPacketSize ");
    at = std::to_chars(at, text + size, values.size).ptr;
    at = Append(at, ", ");
    at = Append(at, values.speed);
    *at = '\0';
}

// The line assembled by hand: what no formatter can undercut by much.
void Line_ToChars(benchmark::State & state) {
    Values values;
    char text[256];
    for (auto _ : state) {
        benchmark::DoNotOptimize(values);
        AssembleLine(text, sizeof text, values);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Line_ToChars)->Name("FormatLine/limit");

void Line_FormattedString(benchmark::State & state) {
    Values values;
    for (auto _ : state) {
        benchmark::DoNotOptimize(values);
        CBasicFormattedString<char> const text(Line, values.endpoint, values.size, values.speed);
        benchmark::DoNotOptimize(static_cast<char const *>(text));
    }
}
BENCHMARK(Line_FormattedString)->Name("FormatLine/CBasicFormattedString");

void Line_FormatTextWide(benchmark::State & state) {
    Values values;
    for (auto _ : state) {
        benchmark::DoNotOptimize(values);
        benchmark::DoNotOptimize(FormatText(
            nullptr, nullptr, NoPadding, L"Endpoint 0x%02X: wMaxPacketSize %u, %s", values.endpoint,
            values.size, values.speed));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Line_FormatTextWide)->Name("FormatLine/FormatText-wide");

void Floating_FormatText(benchmark::State & state) {
    Values values;
    for (auto _ : state) {
        benchmark::DoNotOptimize(values);
        benchmark::DoNotOptimize(FormatText(nullptr, nullptr, NoPadding, "%.3f", values.seconds));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Floating_FormatText)->Name("FormatFloating/FormatText");

void Floating_Snprintf(benchmark::State & state) {
    Values values;
    char text[64];
    for (auto _ : state) {
        benchmark::DoNotOptimize(values);
        benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%.3f", values.seconds));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Floating_Snprintf)->Name("FormatFloating/snprintf");

// A text far beyond a line, as a dump is.
std::string const Dump(4096, 'x');

void Long_FormatText(benchmark::State & state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(FormatText(nullptr, nullptr, NoPadding, "dump: %s\n", Dump));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Long_FormatText)->Name("FormatLong/FormatText");

void Long_Snprintf(benchmark::State & state) {
    std::string text(Dump.size() + 64, '\0');
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            std::snprintf(text.data(), text.size(), "dump: %s\n", Dump.c_str()));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Long_Snprintf)->Name("FormatLong/snprintf");

void Long_Copy(benchmark::State & state) {
    std::string text(Dump.size() + 64, '\0');
    for (auto _ : state) {
        *Append(text.data(), Dump.c_str()) = '\0';
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Long_Copy)->Name("FormatLong/limit");

bool AllWriteTheSame() {
    Values const values;
    char assembled[256];
    char printed[256];
    AssembleLine(assembled, sizeof assembled, values);
    std::snprintf(printed, sizeof printed, Line, values.endpoint, values.size, values.speed);
    CBasicFormattedString<char> const formatted(Line, values.endpoint, values.size, values.speed);
    char const * const text = formatted;
    return std::strcmp(text, printed) == 0 && std::strcmp(text, assembled) == 0;
}

} // namespace

int main(int argc, char ** argv) {
    if (!AllWriteTheSame()) {
        std::fputs("FormatBench: the contenders write different lines\n", stderr);
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
