// Time and typed input behind one descriptor: a timerfd and the terminal in an epoll.
#include "siblings/promptline/Pump.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

struct Pump::Parts {
    int descriptor = epoll_create1(EPOLL_CLOEXEC);
    int timer = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    bool isTicking = false;

    bool Watch(int watched) const {
        epoll_event event = {};
        event.events = EPOLLIN;
        event.data.fd = watched;
        return epoll_ctl(descriptor, EPOLL_CTL_ADD, watched, &event) == 0;
    }

    ~Parts() {
        if (timer >= 0) close(timer);
        if (descriptor >= 0) close(descriptor);
    }
};

Pump::Pump(HWND) : m_Parts(std::make_unique<Parts>()) {
    if (m_Parts->timer < 0 || m_Parts->descriptor < 0 || !m_Parts->Watch(m_Parts->timer))
        throw std::system_error(errno, std::generic_category(), "no timer for the questions");
}

Pump::~Pump() = default;

void Pump::Ticking(bool on) {
    if (m_Parts->isTicking == on) return;
    m_Parts->isTicking = on;
    timespec const interval = {0, on ? long{TickMilliseconds} * 1'000'000 : 0};
    itimerspec const times = {interval, interval};
    timerfd_settime(m_Parts->timer, 0, &times, nullptr);
}

void Pump::WatchInput(int input, bool on) {
    if (on)
        m_Parts->Watch(input);
    else
        epoll_ctl(m_Parts->descriptor, EPOLL_CTL_DEL, input, nullptr);
}

int Pump::Descriptor() const { return m_Parts->descriptor; }

Pump::Happened Pump::Take() {
    epoll_event events[3];
    int const count = epoll_wait(m_Parts->descriptor, events, 3, 0);
    Happened happened;
    for (int i = 0; i < count; ++i) {
        std::uint64_t ticks;
        if (events[i].data.fd == m_Parts->timer)
            happened.tick = read(m_Parts->timer, &ticks, sizeof ticks) == sizeof ticks;
        else
            happened.input = true;
    }
    return happened;
}

bool Pump::IsTick(UINT) { return false; }
