// Switches the trace provider on for a test and keeps the records that it sends.
#pragma once

#include <string>
#include <vector>

#include "app/TraceProvider.h"

class TraceSession {
public:
    // Enables the flag alone. One session at a time.
    explicit TraceSession(TraceFlag flag);
    ~TraceSession();
    TraceSession(TraceSession const &) = delete;
    TraceSession & operator=(TraceSession const &) = delete;

    // What came since the last call: flags of the record, its number, its text up to and with the
    // terminator, shown as a final "|".
    static std::vector<std::string> Take();
};
