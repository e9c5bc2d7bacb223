// What an entry to the log costs: beside the bare system calls that carry the same bytes, and
// beside spdlog doing the same work.
//
// Every contender first writes a few entries, and the program ends if their bytes differ. The files
// lie in memory where the system has such a folder.
//
// The goals: an entry that is written takes at most 1.20 times the bare calls and no longer than
// spdlog with a flush for each entry; one that the level drops takes at most 2 ns.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include "app/CAppState.h"
#include "benchmarks/Scratch.h"
#include "log/CConsoleOutMXLog.h"
#include "log/CRawTextMXLog.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "settings/CIniArgs.h"
#include "siblings/QuillonLog.h"

namespace {

namespace fs = std::filesystem;
using Files = std::vector<fs::path>;

constexpr int kChecked = 3;

// What a log needs around it.
class Surroundings {
public:
    Surroundings() {
        CAppState::InitAppState(EApplicationFamily{});
        CAppState::SetIniArgs(m_Args);
        CAppState::TestSuiteLog(&m_Suite);
        COutputBuffer::InitializeDefaultFormatInfo(CHARFORMAT2A{});
        CUIUpdate::GetUIUpdate()->SetOutputBuffer(&m_Buffer);
    }
    ~Surroundings() {
        CUIUpdate::FreeUIUpdate();
        CAppState::TestSuiteLog(nullptr);
        CAppState::CleanupAppState();
    }
    Surroundings(Surroundings const &) = delete;
    Surroundings & operator=(Surroundings const &) = delete;

private:
    CIniArgs m_Args;
    CTestSuiteLog m_Suite;
    COutputBuffer m_Buffer;
};

int OpenToAppend(fs::path const & file) {
    int const descriptor = open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0600);
    if (descriptor < 0) throw std::runtime_error("cannot open " + file.string());
    return descriptor;
}

void PutAll(int descriptor, std::string const & line) {
    if (write(descriptor, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
        std::abort();
}

std::string BytesOf(fs::path const & file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void Empty(Files const & files) {
    for (auto const & file : files)
        fs::resize_file(file, 0);
}

template <typename Operation>
void CheckBytes(
    std::string const & name, std::string const & line, Files const & files, Operation operation) {
    Empty(files);
    std::string expected;
    for (int i = 0; i < kChecked; ++i) {
        operation();
        expected += line;
    }
    for (auto const & file : files) {
        if (BytesOf(file) != expected)
            throw std::runtime_error(name + ": wrong bytes in " + file.string());
    }
}

bool IsOurs(std::string const & name) { return name.ends_with("/ours"); }

// Times `operation`, which must append `line` to each of `files`.
template <typename Operation>
void Time(
    std::string const & name, std::string const & line, Files const & files, Operation operation) {
    CheckBytes(name, line, files, operation);
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State & state) mutable {
        Empty(files);
        for (auto _ : state)
            operation();
        if (!IsOurs(name)) return;
        state.counters["goal"] = 1.2;
        state.SetLabel("ahead of spdlog");
    })->Iterations(4000);
}

template <typename Operation>
void TimeDropped(std::string const & name, Operation operation) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State & state) mutable {
        for (auto _ : state) {
            operation();
            benchmark::ClobberMemory();
        }
        if (IsOurs(name)) state.counters["goal_ns"] = 2;
    })->Iterations(1000000);
}

spdlog::sink_ptr FileSink(fs::path const & file, std::string const & pattern) {
    auto sink = std::make_shared<spdlog::sinks::basic_file_sink_st>(file.string());
    sink->set_pattern(pattern);
    return sink;
}

spdlog::sink_ptr ErrorSink(std::string const & pattern) {
    auto sink = std::make_shared<spdlog::sinks::stderr_sink_st>();
    sink->set_pattern(pattern);
    return sink;
}

spdlog::logger * Keep(std::vector<spdlog::sink_ptr> const & sinks) {
    static std::vector<std::shared_ptr<spdlog::logger>> kept;
    kept.push_back(std::make_shared<spdlog::logger>("bench", sinks.begin(), sinks.end()));
    kept.back()->flush_on(spdlog::level::trace);
    return kept.back().get();
}

void TimeFile(
    std::string const & group, std::string const & text, Scratch const & scratch,
    CRawTextMXLog & log, fs::path const & logFile) {
    std::string const line = text + "\n";
    fs::path const bareFile = scratch / "bare";
    fs::path const peerFile = scratch / "peer";
    int const bare = OpenToAppend(bareFile);
    spdlog::logger * const peer = Keep({FileSink(peerFile, "%v")});
    Time(group + "/limit", line, {bareFile}, [=] { PutAll(bare, line); });
    Time(group + "/ours", line, {logFile}, [&log, text] {
        log.Write(TEST_STATUS_INFO, "%s", text);
    });
    Time(group + "/spdlog", line, {peerFile}, [=] { peer->info("{}", text); });
}

void TimeConsole(
    std::string const & group, std::string const & text, Scratch const & scratch, CMXLog & log,
    fs::path const & logFile, fs::path const & errorFile) {
    std::string const line = "INFO    " + text + "\n";
    fs::path const bareFile = scratch / "bare";
    fs::path const peerFile = scratch / "peer";
    int const bare = OpenToAppend(bareFile);
    spdlog::logger * const peer = Keep({ErrorSink("INFO    %v"), FileSink(peerFile, "INFO    %v")});
    Time(group + "/limit", line, {errorFile, bareFile}, [=] {
        PutAll(STDERR_FILENO, line);
        PutAll(bare, line);
    });
    Time(group + "/ours", line, {errorFile, logFile}, [&log, text] {
        log.Write(TEST_STATUS_INFO, "%s", text);
    });
    Time(group + "/spdlog", line, {errorFile, peerFile}, [=] { peer->info("{}", text); });
}

void TimeDroppedEntries(CMXLog & log, Scratch const & scratch) {
    spdlog::logger * const peer = Keep({FileSink(scratch / "peer", "%v")});
    int value = 0;
    TimeDropped("Dropped entry/ours", [&log, value]() mutable {
        benchmark::DoNotOptimize(log.Write(TEST_STATUS_INFO, Verbose, "%s %d", "text", ++value));
    });
    TimeDropped("Dropped entry/spdlog", [=]() mutable { peer->debug("{} {}", "text", ++value); });
}

fs::path RedirectStandardError(fs::path const & file) {
    if (dup2(OpenToAppend(file), STDERR_FILENO) < 0) throw std::runtime_error("no standard error");
    return file;
}

int RunAll(int argc, char ** argv) {
    benchmark::Initialize(&argc, argv);

    Scratch const scratch;
    Surroundings const surroundings;
    fs::path const errorFile = RedirectStandardError(scratch / "stderr");
    fs::path const rawFile = scratch / "raw";
    fs::path const consoleFile = scratch / "console";
    CRawTextMXLog raw(rawFile.c_str());
    CConsoleOutMXLog console(consoleFile.c_str());

    TimeFile("Entry of 60 bytes to the file", std::string(60, 'x'), scratch, raw, rawFile);
    TimeFile("Entry of 1024 bytes to the file", std::string(1024, 'x'), scratch, raw, rawFile);
    TimeConsole(
        "Entry of 60 bytes to console and file", std::string(60, 'x'), scratch, console,
        consoleFile, errorFile);
    TimeConsole(
        "Entry of 1024 bytes to console and file", std::string(1024, 'x'), scratch, console,
        consoleFile, errorFile);
    TimeDroppedEntries(raw, scratch);

    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char ** argv) {
    try {
        return RunAll(argc, argv);
    } catch (std::exception const & error) {
        std::cout << "LogBench: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
