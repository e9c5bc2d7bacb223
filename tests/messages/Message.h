// Messages for tests: owning pointers, and a message that counts its kind.
#pragma once

#include <atomic>
#include <memory>

#include "messages/CWindowsMessage.h"

using Message = std::unique_ptr<CWindowsMessage, void (*)(CWindowsMessage *)>;

// Counts how many of it live and how many have gone; any thread.
class CountedMessage : public CWindowsMessage {
public:
    CountedMessage(unsigned int code, unsigned long long wParam)
        : CWindowsMessage(nullptr, code, wParam, 0, nullptr) {}
    CountedMessage(CountedMessage const &) = delete;
    ~CountedMessage() override { ++gone; }

    static inline std::atomic<unsigned> gone = 0;
};

inline Message Counted(unsigned int code, unsigned long long wParam = 0) {
    return {new CountedMessage(code, wParam), DeleteWindowsMessageFromHeap};
}
