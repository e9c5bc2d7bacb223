// A flag that other threads and an event loop can wait for: the flag is kept beside an eventfd, so
// that asking, and setting what is set already, cost no system call.
//
// There is no lock: the owner calls Set and Reset under its own.
#pragma once

class Signal {
public:
    Signal();
    Signal(Signal const &) = delete;
    Signal & operator=(Signal const &) = delete;
    ~Signal();

    // False: the process may open no more descriptors; nothing else may be called.
    bool IsOpen() const { return m_Descriptor >= 0; }

    bool IsSet() const { return m_IsSet; }
    void Set();
    void Reset();

    // Readable while the flag is set.
    int Descriptor() const { return m_Descriptor; }

private:
    int m_Descriptor;
    bool m_IsSet = false;
};
