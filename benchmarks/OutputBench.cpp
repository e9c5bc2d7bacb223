// The road of formatted text to the host's window, beside the bare steps that it cannot do without.
//
// An entry is a format change, a text and a restore: its limit is three records added to a table
// and one text widened, under one lock. The goal is 1.4 times that. An update of the display that
// falls into the interval may cost 1.2 times one look at the clock. Taking the table out may not
// cost more for a long table than for a short one.
#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
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

constexpr int kLongTable = 10'000;

void AddEntries(COutputBuffer & buffer, int count) {
    for (int i = 0; i < count; ++i)
        buffer.AddItem(std::string("text"), Look());
}

// Takes tables of so many entries out, one for each buffer in turn, so that what is timed is many
// hand-overs and hardly any look at the clock. The memory is as cold for short tables as for long
// ones: entries of another buffer make up the difference.
void HandOver(benchmark::State & state, int entries) {
    constexpr std::size_t tables = 64;
    std::array<COutputBuffer, tables> buffers;
    std::array<COutputBuffer::DataTable *, tables> taken;
    COutputBuffer other;
    while (state.KeepRunningBatch(tables)) {
        state.PauseTiming();
        for (auto & buffer : buffers) {
            AddEntries(buffer, entries);
            AddEntries(other, kLongTable - entries);
        }
        state.ResumeTiming();
        for (std::size_t i = 0; i < tables; ++i)
            taken[i] = buffers[i].GetText();
        state.PauseTiming();
        for (auto * const table : taken)
            COutputBuffer::DeleteDataTable(table);
        other.Clear();
        state.ResumeTiming();
    }
    if (entries == kLongTable) state.counters["goal"] = 1.5;
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
    // The filling takes a hundred times as long as what is timed.
    benchmark::RegisterBenchmark("Hand-over of 10000 entries beside one/limit", HandOver, 1)
        ->Iterations(256);
    benchmark::RegisterBenchmark("Hand-over of 10000 entries beside one/ours", HandOver, kLongTable)
        ->Iterations(256);
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
