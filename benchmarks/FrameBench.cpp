// The application frame's hot paths: polling a stopwatch, beside one bare read of the clock, and
// the start and end of a suite.
#include <benchmark/benchmark.h>

#include "app/CAppState.h"
#include "app/CPrecisionTimer.h"
#include "app/Common.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "settings/CIniArgs.h"
#include "siblings/QuillonLog.h"

namespace {

constexpr double HighestRatio = 1.06;
constexpr double SuiteNanoseconds = 5e6;

long long Count() {
    LARGE_INTEGER count;
    QueryPerformanceCounter(&count);
    return count.QuadPart;
}

// The count is used, as whoever reads a clock uses it: it has to come back out of memory.
void BareRead(benchmark::State & state) {
    long long used = 0;
    for (auto _ : state)
        used ^= Count();
    benchmark::DoNotOptimize(used);
}

template <auto Read>
void ReadTimer(benchmark::State & state) {
    CPrecisionTimer timer(0xFFFFFFFF);
    timer.Start();
    for (auto _ : state)
        benchmark::DoNotOptimize((timer.*Read)());
    state.counters["goal"] = HighestRatio;
}

// What a suite needs around it.
class Surroundings {
public:
    Surroundings() {
        CHARFORMAT2A look = {};
        look.cbSize = sizeof look;
        COutputBuffer::InitializeDefaultFormatInfo(look);
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::SetIniArgs(m_Args);
        CAppState::TestSuiteLog(&m_Suite);
        CUIUpdate::GetUIUpdate()->SetOutputBuffer(&m_Buffer);
    }
    ~Surroundings() {
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }
    Surroundings(Surroundings const &) = delete;
    Surroundings & operator=(Surroundings const &) = delete;

    COutputBuffer m_Buffer;

private:
    CIniArgs m_Args;
    CTestSuiteLog m_Suite;
};

// The record of a suite grows, and so each round has its own.
void StartAndEnd(benchmark::State & state) {
    for (auto _ : state) {
        state.PauseTiming();
        {
            Surroundings surroundings;
            CMXLog * log = nullptr;
            CMXUserInput * input = nullptr;
            state.ResumeTiming();
            TS_STATUS const result = Common_InitTestSuite(
                log, TS_LOG_HTML, input, nullptr, &surroundings.m_Buffer, false, nullptr, true);
            Common_EndTestSuite(log, input);
            state.PauseTiming();
            if (result != TS_SUCCESS) state.SkipWithError("the suite did not start");
        }
        state.ResumeTiming();
    }
    state.counters["goal_ns"] = SuiteNanoseconds;
}

BENCHMARK(BareRead)->Name("Timer polled/limit");
BENCHMARK(ReadTimer<&CPrecisionTimer::Expired>)->Name("Timer polled/Expired");
BENCHMARK(ReadTimer<&CPrecisionTimer::GetTime>)->Name("Timer polled/GetTime");
BENCHMARK(StartAndEnd)->Name("Suite started and ended/morvex")->Iterations(200);

} // namespace

BENCHMARK_MAIN();
