// What wakes the window's thread for the dialogs' sake besides messages: time, and typed input.
//
// One implementation a platform; for the window's thread.
#pragma once

#include <memory>

#include "platform/Messaging.h"

class Pump {
public:
    static constexpr unsigned TickMilliseconds = 100;

    // Time is told to `window` as WM_TIMER where the system has timers for windows. Throws
    // std::runtime_error when the system refuses.
    explicit Pump(HWND window);
    Pump(Pump const &) = delete;
    Pump & operator=(Pump const &) = delete;
    ~Pump();

    // Whether time is told at all.
    void Ticking(bool on);

    // Whether `input`, which tells of a terminal, is watched; off also for one that is not.
    void WatchInput(int input, bool on);

    // Readable when either has happened; -1 where messages tell it.
    int Descriptor() const;

    // Takes what has happened.
    struct Happened {
        bool tick = false;
        bool input = false;
    };
    Happened Take();

    // Whether a message to the window tells that time has passed.
    static bool IsTick(UINT message);

private:
    struct Parts;
    std::unique_ptr<Parts> m_Parts;
};
