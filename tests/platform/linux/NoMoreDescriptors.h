// For a scope the process may open no more descriptors; those it has stay usable.
#pragma once

#include <sys/resource.h>

class NoMoreDescriptors {
public:
    NoMoreDescriptors() {
        getrlimit(RLIMIT_NOFILE, &m_Before);
        rlimit const none{0, m_Before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    NoMoreDescriptors(NoMoreDescriptors const &) = delete;
    NoMoreDescriptors & operator=(NoMoreDescriptors const &) = delete;
    ~NoMoreDescriptors() { setrlimit(RLIMIT_NOFILE, &m_Before); }

private:
    rlimit m_Before;
};
