// Critical sections, events, sleeping and the high-resolution counter on POSIX threads.
#include "platform/Synchronization.h"

#include <memory>
#include <mutex>
#include <utility>

#include <sched.h>
#include <time.h>
#include <unistd.h>

#include "platform/linux/Deadline.h"
#include "platform/linux/Handles.h"
#include "platform/linux/Signal.h"

namespace {

// Coarser than the clock: callers multiply a difference of counts by 1000 in 64 bits.
constexpr long long COUNTS_PER_SECOND = 10'000'000;
constexpr long NANOSECONDS_PER_COUNT = 100;

class Event : public HandleObject {
public:
    Event(bool manualReset, bool initiallySet) : m_ManualReset(manualReset) {
        if (initiallySet && m_Signal.IsOpen()) {
            m_Signal.Set();
        }
    }

    bool IsOpen() const { return m_Signal.IsOpen(); }
    int Descriptor() const { return m_Signal.Descriptor(); }

    void Set() {
        std::scoped_lock const lock(m_Mutex);
        m_Signal.Set();
    }

    void Reset() {
        std::scoped_lock const lock(m_Mutex);
        m_Signal.Reset();
    }

    DWORD Wait(DWORD milliseconds) override {
        Deadline const deadline(milliseconds);
        pollfd readable{m_Signal.Descriptor(), POLLIN, 0};
        do {
            if (Take()) {
                return WAIT_OBJECT_0;
            }
        } while (deadline.Poll(&readable, 1));
        return WAIT_TIMEOUT;
    }

private:
    // Of all that were woken one alone finds an auto-reset event still set.
    bool Take() {
        std::scoped_lock const lock(m_Mutex);
        bool const wasSet = m_Signal.IsSet();
        if (wasSet && !m_ManualReset) {
            m_Signal.Reset();
        }
        return wasSet;
    }

    bool const m_ManualReset;
    std::mutex m_Mutex;
    Signal m_Signal;
};

HANDLE Refuse(DWORD error) {
    SetLastError(error);
    return nullptr;
}

timespec AsTimespec(DWORD milliseconds) {
    return {milliseconds / 1000, static_cast<long>(milliseconds % 1000) * 1'000'000};
}

} // namespace

HANDLE
CreateEventA(_SECURITY_ATTRIBUTES *, BOOL manualReset, BOOL initiallySet, char const * name) {
    if (name != nullptr) {
        return Refuse(ERROR_INVALID_PARAMETER);
    }
    auto event = std::make_shared<Event>(manualReset != FALSE, initiallySet != FALSE);
    return event->IsOpen() ? AddHandle(std::move(event)) : Refuse(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL SetEvent(HANDLE event) {
    auto const found = FindHandleAs<Event>(event);
    if (!found) {
        return FALSE;
    }
    found->Set();
    return TRUE;
}

BOOL ResetEvent(HANDLE event) {
    auto const found = FindHandleAs<Event>(event);
    if (!found) {
        return FALSE;
    }
    found->Reset();
    return TRUE;
}

void Sleep(DWORD milliseconds) {
    if (milliseconds == 0) {
        sched_yield();
        return;
    }
    timespec left = AsTimespec(milliseconds);
    do {
        while (clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) != 0) {
        }
    } while (milliseconds == INFINITE);
}

BOOL QueryPerformanceCounter(LARGE_INTEGER * count) {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    count->QuadPart = now.tv_sec * COUNTS_PER_SECOND + now.tv_nsec / NANOSECONDS_PER_COUNT;
    return TRUE;
}

BOOL QueryPerformanceFrequency(LARGE_INTEGER * countsPerSecond) {
    countsPerSecond->QuadPart = COUNTS_PER_SECOND;
    return TRUE;
}

DWORD GetCurrentThreadId() {
    thread_local DWORD const id = static_cast<DWORD>(gettid());
    return id;
}

int MorvexEventDescriptor(HANDLE event) {
    auto const found = FindHandleAs<Event>(event);
    return found ? found->Descriptor() : -1;
}
