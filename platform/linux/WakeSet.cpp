// The descriptors behind one epoll descriptor.
#include "platform/linux/WakeSet.h"

#include <sys/epoll.h>
#include <unistd.h>

WakeSet::WakeSet()
    : m_Descriptor(epoll_create1(EPOLL_CLOEXEC)),
      m_IsOpen(m_Descriptor >= 0 && m_Signal.IsOpen() && Add(m_Signal.Descriptor())) {}

WakeSet::~WakeSet() {
    if (m_Descriptor >= 0) {
        close(m_Descriptor);
    }
}

bool WakeSet::Add(int descriptor) {
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.fd = descriptor;
    return epoll_ctl(m_Descriptor, EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void WakeSet::Remove(int descriptor) {
    epoll_ctl(m_Descriptor, EPOLL_CTL_DEL, descriptor, nullptr);
}
