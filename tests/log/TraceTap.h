// Switches the trace provider on for its log flag and hands each record to the test.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

class TraceTap {
public:
    using Receiver = std::function<void(std::uint16_t number, std::string const & text)>;

    // One tap at a time. The text comes without its terminator; a record of another shape than
    // one terminated text comes with a note of that.
    explicit TraceTap(Receiver receiver);
    ~TraceTap();
    TraceTap(TraceTap const &) = delete;
    TraceTap & operator=(TraceTap const &) = delete;
};
