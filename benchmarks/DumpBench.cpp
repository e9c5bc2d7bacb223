// A byte dump of the test helper, beside a loop with a table of digits that knows its one format.
//
// The goal: at most 1.1 times the loop, for 64 bytes and for 4 KiB, in both of the usual formats.
#include <benchmark/benchmark.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "log/QNHelper.h"

namespace {

std::vector<unsigned char> Bytes(std::size_t size) {
    std::vector<unsigned char> bytes(size);
    for (std::size_t i = 0; i != size; ++i)
        bytes[i] = static_cast<unsigned char>(i * 37);
    return bytes;
}

struct Pairs {
    explicit Pairs(char const * digits) {
        for (int value = 0; value != 256; ++value) {
            text[2 * value] = digits[value / 16];
            text[2 * value + 1] = digits[value % 16];
        }
    }
    char text[512];
};

// "01 ab"
void LoopString(std::string & out, unsigned char const * bytes, std::size_t size) {
    static Pairs const pairs("0123456789abcdef");
    out.resize(3 * size - 1);
    char * to = out.data();
    for (std::size_t i = 0; i != size; ++i) {
        if (i != 0) *to++ = ' ';
        std::memcpy(to, pairs.text + 2 * bytes[i], 2);
        to += 2;
    }
}

// "0x01, 0xAB"
void LoopCode(std::string & out, unsigned char const * bytes, std::size_t size) {
    static Pairs const pairs("0123456789ABCDEF");
    out.resize(6 * size - 2);
    char * to = out.data();
    for (std::size_t i = 0; i != size; ++i) {
        if (i != 0) {
            std::memcpy(to, ", ", 2);
            to += 2;
        }
        std::memcpy(to, "0x", 2);
        std::memcpy(to + 2, pairs.text + 2 * bytes[i], 2);
        to += 4;
    }
}

void HelperString(std::string & out, unsigned char const * bytes, std::size_t size) {
    QNHelper::BytesToString(out, bytes, size, false);
}

void HelperCode(std::string & out, unsigned char const * bytes, std::size_t size) {
    QNHelper::BytesToCode(out, bytes, size, false);
}

using Dump = void(std::string &, unsigned char const *, std::size_t);

void Check(Dump * ours, Dump * loop, std::size_t size) {
    auto const bytes = Bytes(size);
    std::string a;
    std::string b;
    ours(a, bytes.data(), size);
    loop(b, bytes.data(), size);
    if (a != b) throw std::runtime_error("the dumps differ");
}

// Each dump into a text of its own, as callers have it.
void Time(benchmark::State & state, Dump * dump, std::size_t size) {
    auto const bytes = Bytes(size);
    for (auto _ : state) {
        std::string out;
        dump(out, bytes.data(), size);
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["goal"] = 1.1;
}

void Register(char const * topic, Dump * ours, Dump * loop) {
    for (std::size_t const size : {std::size_t{64}, std::size_t{4096}}) {
        Check(ours, loop, size);
        std::string const name = topic + std::to_string(size);
        benchmark::RegisterBenchmark(
            (name + "/limit").c_str(), [=](benchmark::State & state) { Time(state, loop, size); });
        benchmark::RegisterBenchmark(
            (name + "/morvex").c_str(), [=](benchmark::State & state) { Time(state, ours, size); });
    }
}

} // namespace

int main(int argc, char ** argv) {
    benchmark::Initialize(&argc, argv);
    Register("String", HelperString, LoopString);
    Register("Code", HelperCode, LoopCode);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
