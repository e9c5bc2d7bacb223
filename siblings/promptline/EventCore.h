// The waitable object behind a CMXGuiEvent. May be used from any thread.
#pragma once

#include <cstdint>

#include "platform/Synchronization.h"
#include "siblings/Promptline.h"

class CMXGuiEvent::Core {
public:
    explicit Core(bool signalled);
    Core(Core const &) = delete;
    Core & operator=(Core const &) = delete;
    ~Core();

    TS_STATUS Clear();
    TS_STATUS Signal();
    TS_STATUS Wait(std::uint32_t milliseconds);

private:
    HANDLE const m_Handle;
};
