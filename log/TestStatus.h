// The two number languages of an outcome, and how much of the log a run wants.
//
// TEST_STATUS is a set of bits that says how a test stands; TS_STATUS is the result code of a
// library function. All of it is plain data.
#pragma once

#include <cstdint>

using TEST_STATUS = std::uint32_t;

// No element: a log entry whose status could not be classified. Counted as unexpected.
inline constexpr TEST_STATUS TEST_STATUS_UNKNOWN = 0x00000000;
// Nothing has gone wrong: where every test starts. A valid return value, not a valid entry status.
inline constexpr TEST_STATUS TEST_STATUS_SUCCESS = 0x00000001;
// The entry was dropped by the run's level. Only ever an answer of the writing operations.
inline constexpr TEST_STATUS TEST_STATUS_NOT_LOGGED = 0x00000002;
inline constexpr TEST_STATUS TEST_STATUS_INFO = 0x04000000;
inline constexpr TEST_STATUS TEST_STATUS_INFORMATION = TEST_STATUS_INFO;
inline constexpr TEST_STATUS TEST_STATUS_WARNING = 0x08000000;
// An error of the test's own machinery, not a verdict on the device.
inline constexpr TEST_STATUS TEST_STATUS_ERROR = 0x20000000;
// The test could not run to its end.
inline constexpr TEST_STATUS TEST_STATUS_ABORT = 0x40000000;
// The device failed a true pass/fail test.
inline constexpr TEST_STATUS TEST_STATUS_FAIL = 0x80000000;

inline constexpr TEST_STATUS TEST_STATUS_VALID_MASK = 0xEC000003;
inline constexpr TEST_STATUS TEST_STATUS_INVALID_MASK = 0x13FFFFFC;

// Whether a word reads as passed.
//
// A warning makes any word pass, one with a failure too: 0x88000001 passes, 0x80000001 does not.
// A verdict on a device is therefore taken from recorded results, never from this.
constexpr bool TestStatusPasses(TEST_STATUS status) {
    // Deliberate: the warning stands alone. Pinned by TestStatusTest.WarningPassesBesideAFailure.
    if ((status & TEST_STATUS_WARNING) != 0) return true;
    constexpr TEST_STATUS good = TEST_STATUS_SUCCESS | TEST_STATUS_INFO;
    constexpr TEST_STATUS bad = TEST_STATUS_FAIL | TEST_STATUS_ABORT;
    return (status & good) != 0 && (status & bad) == 0;
}

// Zero is success; the top bit says failed, bit 30 warning, bit 28 aborted.
using TS_STATUS = std::uint32_t;

inline constexpr TS_STATUS TS_SUCCESS = 0x00000000;
inline constexpr TS_STATUS TS_FAILED = 0x80000000;
inline constexpr TS_STATUS TS_ABORTED = 0x90000000;
inline constexpr TS_STATUS TS_FILE_REOPEN_FAILED = 0x80001003;
inline constexpr TS_STATUS TS_NO_STREAM = 0x80001004;
inline constexpr TS_STATUS TS_WRITE_FAILED = 0x80001005;
inline constexpr TS_STATUS TS_DIALOG_BUSY = 0x80001007;
inline constexpr TS_STATUS TS_DIALOG_TIMED_OUT = 0x80005001;
inline constexpr TS_STATUS TS_NULL_RESULT = 0x80008008;
inline constexpr TS_STATUS TS_INVALID_BOUNDS = 0x80008009;

// The level of an entry, and of a run: an entry shows when its level is not above the run's.
// A run may also use 6 to 254, which lie between Diagnostic and Internal.
enum eQNLogVerbosity : std::uint8_t {
    Quiet = 0,
    Minimal = 1,
    Low = 2,
    Normal = 3,
    Verbose = 4,
    Diagnostic = 5,
    Internal = 255,
};

// The sink that a suite gets. Every other value is refused at start-up.
enum tagTS_LOG_TYPE : std::uint32_t {
    TS_LOG_CONSOLE = 1,
    TS_LOG_HTML = 4,
};
