// The road of formatted text to the host's window, beside the bare steps that it cannot do without.
//
// An entry is a format change, a text and a restore: its limit is three records added to a table
// and one text widened, under one lock. The goal is 1.4 times that. An update of the display that
// falls into the interval may cost 1.2 times one look at the clock. Taking the table out may not
// cost more for a long table than for a short one.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "app/CAppState.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "platform/Messaging.h"
#include "siblings/Keelbase.h"

namespace {

// What comes in between two updates of the display.
constexpr int kBatch = 128;

std::string Line(std::size_t bytes) { return std::string(bytes - 2, 'x') + "\r\n"; }

CFormatInfo const & Look() {
    static CFormatInfo const look(0x0000FFul, true, 700);
    return look;
}

// Times `add` in batches; `drain` empties the table outside the timing, as the host's thread does.
template <typename Add, typename Drain>
void InBatches(benchmark::State & state, Add add, Drain drain) {
    while (state.KeepRunningBatch(kBatch)) {
        for (int i = 0; i < kBatch; ++i)
            add();
        state.PauseTiming();
        drain();
        state.ResumeTiming();
    }
}

void Entry(benchmark::State & state, std::string const & line) {
    COutputBuffer buffer;
    InBatches(
        state,
        [&] {
            buffer.AddFormat(Look());
            buffer.AddItem(line, nullptr);
            buffer.RemoveFormat(1);
        },
        [&] { COutputBuffer::DeleteDataTable(buffer.GetText()); });
    state.counters["goal"] = 1.4;
}

void BareEntry(benchmark::State & state, std::string const & line) {
    CLockMgr lock;
    COutputBuffer::DataTable table;
    InBatches(
        state,
        [&] {
            CLockScope const scope(lock);
            table.push_back({nullptr, Look()});
            table.push_back({new std::wstring(std::move(*Utf8ToUtf16(line))), CFormatInfo()});
            table.push_back({nullptr, CFormatInfo(COutputBuffer::GetDefaultFormat())});
        },
        [&] {
            for (auto const & entry : table)
                delete entry.first;
            table = COutputBuffer::DataTable();
        });
}

// Many small pieces that join into one text.
void PlainText(benchmark::State & state, std::string const & piece) {
    COutputBuffer buffer;
    InBatches(
        state, [&] { buffer.AddText(piece); },
        [&] { COutputBuffer::DeleteDataTable(buffer.GetText()); });
}

void BarePlainText(benchmark::State & state, std::string const & piece) {
    CLockMgr lock;
    std::wstring text;
    InBatches(
        state,
        [&] {
            CLockScope const scope(lock);
            text += *Utf8ToUtf16(piece);
        },
        [&] { text = std::wstring(); });
}

// The table is cold, whatever its length: a walk through another one stands before each hand-over.
void HandOver(benchmark::State & state) {
    COutputBuffer buffer;
    COutputBuffer other;
    for (auto _ : state) {
        state.PauseTiming();
        for (std::int64_t i = 0; i < state.range(0); ++i)
            buffer.AddItem(std::string("text"), Look());
        for (int i = 0; i < 10'000; ++i)
            other.AddItem(std::string("text"), Look());
        state.ResumeTiming();
        auto * const table = buffer.GetText();
        state.PauseTiming();
        COutputBuffer::DeleteDataTable(table);
        other.Clear();
        state.ResumeTiming();
    }
}

// Within the interval: nothing is sent.
void Update(benchmark::State & state) {
    CUIUpdate::SendUpdate(false);
    for (auto _ : state)
        CUIUpdate::SendUpdate(false);
    state.counters["goal"] = 1.2;
}

void Clock(benchmark::State & state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(GetTickCount64());
}

void RegisterAll() {
    for (std::size_t const bytes : {20, 80, 400}) {
        std::string const line = Line(bytes);
        std::string const topic = "Entry of " + std::to_string(bytes) + " bytes/";
        benchmark::RegisterBenchmark((topic + "limit").c_str(), BareEntry, line);
        benchmark::RegisterBenchmark((topic + "ours").c_str(), Entry, line);
    }
    std::string const piece(20, 'x');
    benchmark::RegisterBenchmark("Plain text of 20 bytes/limit", BarePlainText, piece);
    benchmark::RegisterBenchmark("Plain text of 20 bytes/ours", PlainText, piece);
    benchmark::RegisterBenchmark("Hand-over/entries", HandOver)
        ->Arg(1)
        ->Arg(10'000)
        ->Iterations(50);
    benchmark::RegisterBenchmark("Update within the interval/limit", Clock);
    benchmark::RegisterBenchmark("Update within the interval/ours", Update);
}

} // namespace

int main(int argc, char ** argv) {
    CAppState::InitAppState(ApplicationFamilyDefault);
    // Longer than any run: the first update is posted, every other one is dropped.
    CAppState::QNMinimumDisplayUpdateTime(3'600'000);
    CUIUpdate::GetUIUpdate();
    COutputBuffer::InitializeDefaultFormatInfo(CFormatInfo().format);
    benchmark::Initialize(&argc, argv);
    RegisterAll();
    benchmark::RunSpecifiedBenchmarks();
    CUIUpdate::FreeUIUpdate();
    CAppState::CleanupAppState();
    return 0;
}
