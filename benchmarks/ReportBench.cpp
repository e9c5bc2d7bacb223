// What the reports cost: a whole run of the host with log, journal and all reports, the page alone,
// and the memory that an entry takes.
//
// The limit is the bare writes of the same bytes, a write for each line as for each entry. The
// files lie in memory where the system has such a folder.
//
// The goals: a run of 1,000 tests with 100 entries each takes at most 2.0 times the bare writes; a
// page of 100,000 entries takes less than a second; an entry takes at most 200 bytes over its text.
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/HeapPeak.h"
#include "benchmarks/Scratch.h"
#include "siblings/QuillonReports.h"

namespace {

namespace fs = std::filesystem;

constexpr double HighestRatio = 2.0;
constexpr double PageNanoseconds = 1e9;
constexpr double EntryBytes = 200;
constexpr int Tests = 1000;
constexpr int Entries = 100;

std::string Contents(std::string const & file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// A write for each line.
void WriteLines(std::string const & file, std::string const & text) {
    int const target = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    for (std::string_view rest = text; !rest.empty();) {
        std::size_t const size = std::min(rest.find('\n'), rest.size() - 1) + 1;
        if (write(target, rest.data(), size) != static_cast<ssize_t>(size))
            throw std::runtime_error("cannot write");
        rest.remove_prefix(size);
    }
    close(target);
}

// The host as a child of its own, and everything that it wrote.
class WholeRun {
public:
    explicit WholeRun(Scratch const & scratch)
        : m_Files{scratch / "stderr", scratch / "log", scratch / "html", scratch / "xml", scratch / "jsonl"},
          m_Bare(scratch / "bare") {
        m_Command = std::string(QNEXE_FILE) + " --suite " + SUITE_FILE + " --log " + m_Files[1]
                    + " --report html:" + m_Files[2] + ",junit:" + m_Files[3] + ",json:"
                    + m_Files[4] + ",overwrite --set Suite.Tests=" + std::to_string(Tests)
                    + " --set Suite.Entries=" + std::to_string(Entries) + " 2>" + m_Files[0]
                    + " >/dev/null";
    }

    void Ours() const {
        fs::remove(m_Files[1]);
        if (std::system(m_Command.c_str()) != 0) throw std::runtime_error("the host failed");
    }

    void Remember() {
        Ours();
        for (std::string const & file : m_Files)
            m_Contents.push_back(Contents(file));
    }

    void Bare() const {
        for (std::string const & text : m_Contents)
            WriteLines(m_Bare, text);
    }

private:
    std::vector<std::string> m_Files;
    std::string m_Bare;
    std::string m_Command;
    std::vector<std::string> m_Contents;
};

std::string Text(int entry) {
    return "port 7 answers in state U0 after a while, round " + std::to_string(entry);
}

void WritePage(std::string const & file) {
    CTestSuiteLog suite;
    CReportSet reports(ReadReportRequest("html:" + file + ",overwrite"), {"bench", {}});
    suite.Listener(&reports);
    for (int test = 0; test < Tests; ++test) {
        CTestLog & log = suite.OpenTest(true, "Test " + std::to_string(test));
        for (int entry = 0; entry < Entries; ++entry)
            log.Write(TEST_STATUS_INFO, Text(entry).c_str(), nullptr);
        log.TestStatus(TEST_STATUS_SUCCESS);
        suite.CloseTest();
    }
    suite.Listener(nullptr);
    reports.End(suite, ERunVerdict::Passed);
    if (!reports.Problems().empty()) throw std::runtime_error(reports.Problems()[0]);
}

// The peak of a run of many entries less their texts, as bytes an entry; shown as nanoseconds.
void MeasureMemory(benchmark::State & state, Scratch const & scratch) {
    std::string const words = "html:" + scratch / "m.html" + ",junit:" + scratch / "m.xml"
                              + ",json:" + scratch / "m.jsonl" + ",overwrite";
    constexpr int entries = 200'000;
    std::string const text = Text(12345);
    for (auto _ : state) {
        double const peak = HeapPeakOf([&] {
            CTestSuiteLog suite;
            CReportSet reports(ReadReportRequest(words), {"bench", {}});
            suite.Listener(&reports);
            for (int entry = 0; entry < entries; ++entry) {
                if (entry % Entries == 0) suite.OpenTest(true, "a test");
                suite.CurrentTestLog()->Write(TEST_STATUS_INFO, text.c_str(), nullptr);
            }
            suite.Listener(nullptr);
            reports.End(suite, ERunVerdict::Failed);
        });
        state.SetIterationTime((peak / entries - static_cast<double>(text.size())) * 1e-9);
    }
    state.counters["goal_ns"] = EntryBytes;
}

template <typename Work>
benchmark::internal::Benchmark * Time(char const * name, double ratio, Work work) {
    return benchmark::RegisterBenchmark(
               name,
               [ratio, work](benchmark::State & state) {
                   for (auto _ : state)
                       work();
                   if (ratio != 0) state.counters["goal"] = ratio;
               })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

int RunAll(int argc, char ** argv) {
    benchmark::Initialize(&argc, argv);
    Scratch const scratch;
    WholeRun run(scratch);
    run.Remember();
    Time("Run of 100,000 entries/limit", 0, [&run] { run.Bare(); });
    Time("Run of 100,000 entries/ours", HighestRatio, [&run] { run.Ours(); });

    std::string const page = scratch / "page.html";
    WritePage(page);
    std::string const text = Contents(page);
    Time("Page of 100,000 entries/limit", 0, [&] { WriteLines(scratch / "bare", text); });
    benchmark::RegisterBenchmark(
        "Page of 100,000 entries/ours",
        [&page](benchmark::State & state) {
            for (auto _ : state)
                WritePage(page);
            state.counters["goal_ns"] = PageNanoseconds;
        })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(
        "Bytes an entry, over its text/ours",
        [&scratch](benchmark::State & state) { MeasureMemory(state, scratch); })
        ->UseManualTime()
        ->Iterations(1);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char ** argv) {
    try {
        return RunAll(argc, argv);
    } catch (std::exception const & error) {
        std::cout << "ReportBench: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
