// The words in front of the entries of a text log.
//
// Pure. For hosts that file entries as the console's log does.
#pragma once

#include <string_view>

#include "log/TestStatus.h"

// Eight characters for one element of a status word; empty for anything else.
constexpr std::string_view StatusWord(TEST_STATUS status) {
    switch (status) {
    case TEST_STATUS_FAIL:
        return "FAIL    ";
    case TEST_STATUS_ABORT:
        return "ABORT   ";
    case TEST_STATUS_WARNING:
        return "WARNING ";
    case TEST_STATUS_INFO:
        return "INFO    ";
    case TEST_STATUS_ERROR:
        return "ERROR   ";
    default:
        return "";
    }
}
