// The log sink that discards everything.
//
// Entries are merged and counted as in any log. Tests are not: starting and stopping one does
// nothing, so there are no start lines, no verdict entries and no summary. It belongs to the thread
// that runs the test.
#pragma once

#include <cstdint>

#include "app/Export.h"
#include "log/CMXLog.h"

class MORVEX_API CDummyMXLog : public CMXLog {
public:
    CDummyMXLog();
    ~CDummyMXLog() override;

    using CMXLog::StartTest;
    using CMXLog::StopTest;

    TS_STATUS Clear() override;

    // Returns 0, which is not TEST_STATUS_SUCCESS, without waiting.
    TEST_STATUS StartTest(char const * name, unsigned long delay) override;

    // Returns its argument; the word and the record stay as they are.
    TEST_STATUS StopTest(TEST_STATUS status) override;

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * format) override;

private:
    // Part of the object's layout; nothing reads them.
    [[maybe_unused]] std::uint32_t m_Value = 0;
    [[maybe_unused]] void * m_Pointer = nullptr;
};
