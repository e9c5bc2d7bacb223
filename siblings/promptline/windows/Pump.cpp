// Time as the window's timer; typed input comes as messages.
#include "siblings/promptline/Pump.h"

namespace {

constexpr UINT_PTR Timer = 1;

} // namespace

struct Pump::Parts {
    HWND window = nullptr;
    bool isTicking = false;
};

Pump::Pump(HWND window) : m_Parts(std::make_unique<Parts>()) { m_Parts->window = window; }

Pump::~Pump() { Ticking(false); }

void Pump::Ticking(bool on) {
    if (m_Parts->isTicking == on) return;
    m_Parts->isTicking = on;
    if (on)
        SetTimer(m_Parts->window, Timer, TickMilliseconds, nullptr);
    else
        KillTimer(m_Parts->window, Timer);
}

void Pump::WatchInput(int, bool) {}

int Pump::Descriptor() const { return -1; }

Pump::Happened Pump::Take() { return {}; }

bool Pump::IsTick(UINT message) { return message == WM_TIMER; }
