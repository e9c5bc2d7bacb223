// Critical sections: a flag that costs two atomic operations while nobody else wants in, and a wait
// of the system's only when somebody does.
#include "platform/Synchronization.h"

namespace {

constexpr int FREE = 0;
constexpr int HELD = 1;
constexpr int WANTED = 2;

// Its address tells the threads apart.
thread_local char const t_Self = 0;

void Hold(CRITICAL_SECTION & section) { section.holder.store(&t_Self, std::memory_order_relaxed); }

// Waiting and waking stand apart, so that the usual way in and out has nothing to save.
[[gnu::noinline]] void EnterLate(CRITICAL_SECTION & section) {
    // Who has waited cannot know that nobody else does, and so leaves the section as wanted.
    while (section.state.exchange(WANTED, std::memory_order_acquire) != FREE) {
        section.state.wait(WANTED, std::memory_order_relaxed);
    }
    Hold(section);
}

[[gnu::noinline]] void WakeNext(CRITICAL_SECTION & section) { section.state.notify_one(); }

} // namespace

void InitializeCriticalSection(CRITICAL_SECTION * section) {
    section->state.store(FREE, std::memory_order_relaxed);
    section->holder.store(nullptr, std::memory_order_relaxed);
    section->depth = 0;
}

void EnterCriticalSection(CRITICAL_SECTION * section) {
    if (section->holder.load(std::memory_order_relaxed) == &t_Self) {
        ++section->depth;
        return;
    }
    int found = FREE;
    if (!section->state.compare_exchange_strong(found, HELD, std::memory_order_acquire)) {
        return EnterLate(*section);
    }
    Hold(*section);
}

void LeaveCriticalSection(CRITICAL_SECTION * section) {
    if (section->depth != 0) {
        --section->depth;
        return;
    }
    section->holder.store(nullptr, std::memory_order_relaxed);
    if (section->state.exchange(FREE, std::memory_order_release) == WANTED) {
        WakeNext(*section);
    }
}

void DeleteCriticalSection(CRITICAL_SECTION *) {}
