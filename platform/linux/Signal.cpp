// The flag beside its eventfd.
#include "platform/linux/Signal.h"

#include <sys/eventfd.h>
#include <unistd.h>

Signal::Signal() : m_Descriptor(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

Signal::~Signal() {
    if (IsOpen()) {
        close(m_Descriptor);
    }
}

void Signal::Set() {
    if (!m_IsSet) {
        m_IsSet = true;
        eventfd_write(m_Descriptor, 1);
    }
}

void Signal::Reset() {
    if (m_IsSet) {
        m_IsSet = false;
        eventfd_t count;
        eventfd_read(m_Descriptor, &count);
    }
}
