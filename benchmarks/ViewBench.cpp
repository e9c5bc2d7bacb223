// The host's terminal view under a run that writes as fast as it can.
//
// The goal is 100,000 entries a second, 10,000 ns each: once for the showing alone, beside the bare
// write of the same bytes, and once for a test thread that logs, opens tests and warns while the
// window thread shows it all on a terminal, beside the same thread in front of a host that drops
// the text.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include <pty.h>
#include <unistd.h>

#include "app/CAppState.h"
#include "examples/QNExe/HostWindow.h"
#include "examples/QNExe/view/FormattedView.h"
#include "examples/QNExe/view/TableReader.h"
#include "examples/QNExe/view/TerminalText.h"
#include "examples/QNExe/view/TerminalView.h"
#include "log/CHTMLMXLog.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"

namespace {

constexpr double kNanosecondsAnEntry = 10'000;
constexpr int kEntriesATable = 256;

struct CloseFile {
    void operator()(std::FILE * file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

File Nowhere() { return File(std::fopen("/dev/null", "wb")); }

std::string Line(std::size_t bytes) { return std::string(bytes - 2, 'x') + "\r\n"; }

void Fill(COutputBuffer & buffer, std::string const & line) {
    CFormatInfo const look(0x0000FFul, true, 700);
    for (int i = 0; i < kEntriesATable; ++i) {
        buffer.AddFormat(look);
        buffer.AddItem(line, nullptr);
        buffer.RemoveFormat(1);
    }
}

TerminalView::Settings Colored() {
    return {.styled = true, .progress = true, .columns = [] { return std::size_t(80); }};
}

// From the table that the library hands over to the bytes that the terminal takes.
void Show(benchmark::State & state, std::string const & line) {
    COutputBuffer buffer;
    Fill(buffer, line);
    auto * const table = buffer.GetText();
    File const nowhere = Nowhere();
    TableReader reader;
    TerminalView view(nowhere.get(), Colored());
    while (state.KeepRunningBatch(kEntriesATable))
        view.Show(reader.Read(*table));
    COutputBuffer::DeleteDataTable(table);
    state.counters["goal_ns"] = kNanosecondsAnEntry;
}

void BareShow(benchmark::State & state, std::string const & line) {
    COutputBuffer buffer;
    Fill(buffer, line);
    auto * const table = buffer.GetText();
    std::string const bytes = TerminalText(TableReader().Read(*table), true);
    COutputBuffer::DeleteDataTable(table);
    File const nowhere = Nowhere();
    while (state.KeepRunningBatch(kEntriesATable)) {
        std::fwrite(bytes.data(), 1, bytes.size(), nowhere.get());
        std::fflush(nowhere.get());
    }
}

// A window thread that serves the window of the host, as in a run.
class WindowThread {
public:
    explicit WindowThread(FormattedView * view) : m_Thread([this, view] { Run(view); }) {
        m_Ready.wait(nullptr);
    }
    WindowThread(WindowThread const &) = delete;
    WindowThread & operator=(WindowThread const &) = delete;
    ~WindowThread() {
        m_Ready.load()->End();
        m_Thread.join();
    }

    HWND Handle() const { return m_Ready.load()->Handle(); }

private:
    void Run(FormattedView * view) {
        HostWindow window(view);
        m_Ready = &window;
        m_Ready.notify_all();
        window.Serve();
    }

    std::atomic<HostWindow *> m_Ready = nullptr;
    std::thread m_Thread;
};

constexpr int kEntriesATest = 1000;

// Opens a test: two updates wait for the window. Its line of progress is shown beneath the log.
void OpenTest(CUIUpdate & update, int number) {
    update.ProgressRange(1'000'000);
    update.ProgressPosition(number);
    update.ProgressLabel("f1d0:0001 Configuration descriptors");
    CUIUpdate::DoUpdate(true);
    CUIUpdate::DoUpdate(true);
}

// One entry in eight is a warning, which is formatted.
void Enter(CMXLog & log, int number) {
    if (number % 8 == 0)
        log.Write(TEST_STATUS_WARNING, Quiet, "Descriptor 12 of 40: length disagrees");
    else
        log.Write(TEST_STATUS_INFO, Quiet, "Descriptor 12 of 40: length agrees");
}

// What one entry costs the test thread, which waits for the window like that of a real run.
void Run(benchmark::State & state, FormattedView * view) {
    COutputBuffer buffer;
    WindowThread const window(view);
    CUIUpdate * const update = CUIUpdate::GetUIUpdate(window.Handle());
    update->SetOutputBuffer(&buffer);
    CHTMLMXLog log(&buffer);
    int number = 0;
    for (auto _ : state) {
        if (number % kEntriesATest == 0) OpenTest(*update, number / kEntriesATest);
        Enter(log, number++);
    }
    update->DoUpdate(true);
    update->SetOutputBuffer(nullptr);
    CUIUpdate::FreeUIUpdate();
}

// A terminal whose other end reads and forgets.
class Terminal {
public:
    Terminal() {
        int program = -1;
        winsize const size{24, 80, 0, 0};
        if (openpty(&m_Person, &program, nullptr, nullptr, &size) != 0) std::abort();
        m_Stream.reset(fdopen(program, "wb"));
        m_Reader = std::thread([this] { Read(); });
    }
    Terminal(Terminal const &) = delete;
    Terminal & operator=(Terminal const &) = delete;
    ~Terminal() {
        m_Stream.reset();
        m_Reader.join();
        close(m_Person);
    }

    std::FILE * Stream() const { return m_Stream.get(); }

private:
    void Read() const {
        char bytes[65536];
        while (read(m_Person, bytes, sizeof bytes) > 0) {
        }
    }

    int m_Person = -1;
    File m_Stream;
    std::thread m_Reader;
};

void RunAndShow(benchmark::State & state) {
    Terminal const terminal;
    FormattedView view(terminal.Stream());
    Run(state, &view);
    state.counters["goal_ns"] = kNanosecondsAnEntry;
}

void RunAndDrop(benchmark::State & state) { Run(state, nullptr); }

void RegisterAll() {
    for (std::size_t const bytes : {80, 400}) {
        std::string const line = Line(bytes);
        std::string const topic = "Shown entry of " + std::to_string(bytes) + " bytes/";
        benchmark::RegisterBenchmark((topic + "limit").c_str(), BareShow, line);
        benchmark::RegisterBenchmark((topic + "ours").c_str(), Show, line);
    }
    // Real time: the test thread waits for the window at the start of each test.
    benchmark::RegisterBenchmark("Entry of a shown run/limit", RunAndDrop)->UseRealTime();
    benchmark::RegisterBenchmark("Entry of a shown run/ours", RunAndShow)->UseRealTime();
}

} // namespace

int main(int argc, char ** argv) {
    setenv("TERM", "xterm-256color", 1);
    unsetenv("NO_COLOR");
    unsetenv("CLICOLOR");
    CAppState::InitAppState(ApplicationFamilyDefault);
    COutputBuffer::InitializeDefaultFormatInfo(CFormatInfo().format);
    benchmark::Initialize(&argc, argv);
    RegisterAll();
    benchmark::RunSpecifiedBenchmarks();
    CAppState::CleanupAppState();
    return 0;
}
