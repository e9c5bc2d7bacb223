// Conversions between UTF-8 and wide text, beside iconv and beside the least that the result
// costs: its allocation and one loop that widens or cuts each character.
//
// The goal: UTF-8 to wide takes at most 1.5 times that least for 20 ASCII characters, and 1.6 times
// for 4 KB.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "siblings/Keelbase.h"

namespace {

std::string Repeat(char const * words, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes)
        text += words;
    return text;
}

std::string Ascii(std::size_t bytes) {
    return Repeat("USB 3.2 Gen 2x2 hub, port status change. ", bytes).substr(0, bytes);
}

// One to four bytes a character, as in names from all over the world.
std::string Mixed(std::size_t bytes) {
    return Repeat("Gerät № 7 – прибор 試験 \U0001F50C ok ", bytes);
}

class Iconv {
public:
    Iconv(char const * to, char const * from) : m_Handle(iconv_open(to, from)) {}
    Iconv(Iconv const &) = delete;
    Iconv & operator=(Iconv const &) = delete;
    ~Iconv() { iconv_close(m_Handle); }

    template <typename To, typename From>
    std::unique_ptr<To> Convert(From const & from) {
        std::size_t const most = from.size() * 4;
        auto to = std::make_unique<To>(most, typename To::value_type{});
        auto * in = reinterpret_cast<char *>(const_cast<typename From::value_type *>(from.data()));
        auto * out = reinterpret_cast<char *>(to->data());
        std::size_t inLeft = from.size() * sizeof(typename From::value_type);
        std::size_t outLeft = most * sizeof(typename To::value_type);
        iconv(m_Handle, &in, &inLeft, &out, &outLeft);
        to->resize(most - outLeft / sizeof(typename To::value_type));
        return to;
    }

private:
    iconv_t m_Handle;
};

void Widen(benchmark::State & state, std::string const & text, double goal) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Utf8ToUtf16(text.c_str()));
    if (goal > 0)
        state.counters["goal"] = goal;
    else
        state.SetLabel("ahead of iconv");
}

void WidenLimit(benchmark::State & state, std::string const & text) {
    for (auto _ : state)
        benchmark::DoNotOptimize(std::make_unique<std::wstring>(text.begin(), text.end()));
}

void WidenIconv(benchmark::State & state, std::string const & text) {
    Iconv iconv("WCHAR_T", "UTF-8");
    for (auto _ : state)
        benchmark::DoNotOptimize(iconv.Convert<std::wstring>(text));
}

void Narrow(benchmark::State & state, std::wstring const & text) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Utf16ToUtf8(text.c_str()));
}

void NarrowLimit(benchmark::State & state, std::wstring const & text) {
    for (auto _ : state)
        benchmark::DoNotOptimize(std::make_unique<std::string>(text.begin(), text.end()));
}

void NarrowIconv(benchmark::State & state, std::wstring const & text) {
    Iconv iconv("UTF-8", "WCHAR_T");
    for (auto _ : state)
        benchmark::DoNotOptimize(iconv.Convert<std::string>(text));
}

void CheckThatAllAgree(std::string const & text, std::wstring const & wide) {
    if (*Iconv("WCHAR_T", "UTF-8").Convert<std::wstring>(text) == wide
        && *Iconv("UTF-8", "WCHAR_T").Convert<std::string>(wide) == *Utf16ToUtf8(wide.c_str()))
        return;
    throw std::runtime_error("the contenders convert to different texts");
}

// The least is that of ASCII, for which there is a goal; mixed text is only compared among those
// who convert it.
void Register(std::string const & topic, std::string const & text, double goal) {
    std::wstring const wide = *Utf8ToUtf16(text);
    CheckThatAllAgree(text, wide);
    std::string const widen = "Widen" + topic;
    std::string const narrow = "Narrow" + topic;
    benchmark::RegisterBenchmark((widen + "/Utf8ToUtf16").c_str(), Widen, text, goal);
    benchmark::RegisterBenchmark((widen + "/iconv").c_str(), WidenIconv, text);
    benchmark::RegisterBenchmark((narrow + "/Utf16ToUtf8").c_str(), Narrow, wide);
    benchmark::RegisterBenchmark((narrow + "/iconv").c_str(), NarrowIconv, wide);
    if (goal > 0) {
        benchmark::RegisterBenchmark((widen + "/limit").c_str(), WidenLimit, text);
        benchmark::RegisterBenchmark((narrow + "/limit").c_str(), NarrowLimit, wide);
    }
}

} // namespace

int main(int argc, char ** argv) {
    Register("Ascii20", Ascii(20), 1.5);
    Register("Ascii4096", Ascii(4096), 1.6);
    Register("Mixed20", Mixed(20), 0);
    Register("Mixed4096", Mixed(4096), 0);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
