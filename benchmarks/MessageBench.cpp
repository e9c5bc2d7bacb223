// A window message's way to the test that waits for it, beside what it cannot do without.
//
// Handing over: a mutex and a ring of owning pointers, and setting an event that is set already, as
// it is for all messages but the first; behind a call, as whatever lies between the host that
// pushes and the suite that pops. Refusing: making a message and destroying it. Both may cost 1.15
// times as much.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "app/CAppState.h"
#include "messages/CWindowsMessage.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"

namespace {

using Message = std::unique_ptr<CWindowsMessage, void (*)(CWindowsMessage *)>;

Message Make(unsigned int code) { return ConstructWindowsMessageOnHeap(nullptr, code, 1, 2); }

class AppState {
public:
    explicit AppState(unsigned int filter) {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::SetMessageToFilter(filter);
    }
    AppState(AppState const &) = delete;
    AppState & operator=(AppState const &) = delete;
    ~AppState() {
        CAppState::ClearMessageToFilter();
        CAppState::CleanupAppState();
    }
};

class Ring {
public:
    [[gnu::noinline]] void Push(Message message) {
        std::scoped_lock const lock(m_Mutex);
        m_Slots[m_Last++ % m_Slots.size()] = std::move(message);
        SetEvent(m_Event);
    }
    [[gnu::noinline]] Message Pop() {
        std::scoped_lock const lock(m_Mutex);
        return std::move(m_Slots[m_First++ % m_Slots.size()]);
    }

private:
    static Message None() { return {nullptr, DeleteWindowsMessageFromHeap}; }

    std::mutex m_Mutex;
    std::array<Message, 4> m_Slots = {None(), None(), None(), None()};
    std::size_t m_First = 0;
    std::size_t m_Last = 0;
    HANDLE const m_Event = CreateEventA(nullptr, 1, 0, nullptr);
};

void RingHandOver(benchmark::State & state) {
    static Ring ring;
    auto message = Make(WM_DEVICECHANGE - 1);
    for (auto _ : state) {
        ring.Push(std::move(message));
        message = ring.Pop();
    }
}

void QueueHandOver(benchmark::State & state) {
    AppState const app(WM_DEVICECHANGE - 1);
    auto message = Make(WM_DEVICECHANGE - 1);
    for (auto _ : state) {
        CAppState::PushWindowsMessage(std::move(message));
        message = CAppState::PopWindowsMessage();
    }
    state.counters["goal"] = 1.15;
}

void MakeAndDestroy(benchmark::State & state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Make(WM_USER).get());
}

void Refuse(benchmark::State & state) {
    AppState const app(WM_DEVICECHANGE);
    for (auto _ : state)
        CAppState::PushWindowsMessage(Make(WM_USER));
    state.counters["goal"] = 1.15;
}

void SetASetEvent(benchmark::State & state) {
    HANDLE const event = CreateEventA(nullptr, 1, 1, nullptr);
    for (auto _ : state)
        SetEvent(event);
    CloseHandle(event);
}

BENCHMARK(RingHandOver)->Name("HandOver/limit");
BENCHMARK(QueueHandOver)->Name("HandOver/morvex");
BENCHMARK(SetASetEvent)->Name("HandOver/its event alone");
BENCHMARK(MakeAndDestroy)->Name("Refused/limit");
BENCHMARK(Refuse)->Name("Refused/morvex");

// A process with one thread locks and counts without care, as none does that has a window and a
// test.
class SecondThread {
public:
    SecondThread() : m_Thread([this] { WaitForSingleObject(m_End, INFINITE); }) {}
    SecondThread(SecondThread const &) = delete;
    SecondThread & operator=(SecondThread const &) = delete;
    ~SecondThread() {
        SetEvent(m_End);
        m_Thread.join();
        CloseHandle(m_End);
    }

private:
    HANDLE const m_End = CreateEventA(nullptr, 1, 0, nullptr);
    std::thread m_Thread;
};

} // namespace

int main(int argc, char ** argv) {
    SecondThread const window;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
