// One descriptor for everything that wakes a thread's pump: the signal of its queue, and the
// descriptors of other sources of messages.
//
// There is no lock: the owner calls everything under its own.
#pragma once

#include "platform/linux/Signal.h"

class WakeSet {
public:
    WakeSet();
    WakeSet(WakeSet const &) = delete;
    WakeSet & operator=(WakeSet const &) = delete;
    ~WakeSet();

    // False: the process may open no more descriptors; nothing else may be called.
    bool IsOpen() const { return m_IsOpen; }

    // Set while the queue itself has something.
    Signal & OfQueue() { return m_Signal; }

    // Readable while the signal is set or an added descriptor is readable.
    int Descriptor() const { return m_Descriptor; }

    // False: the system refused.
    bool Add(int descriptor);
    void Remove(int descriptor);

private:
    Signal m_Signal;
    int m_Descriptor;
    bool m_IsOpen;
};
