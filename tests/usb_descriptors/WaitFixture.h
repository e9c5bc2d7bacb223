// A host and its log around the suite's wait for a device.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "examples/TestSuite.h"
#include "log/CMXLog.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "settings/CIniArgs.h"
#include "siblings/QuillonLog.h"
#include "tests/platform/TestWindow.h"

using Lines = std::vector<std::string>;

// Keeps its entries, and lets a test act when one is written.
class ListeningLog : public CMXLog {
public:
    Lines m_Lines;
    std::function<void(std::string const & text)> m_OnEntry;

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const *) override;
};

// What lets a registration for devices succeed, as long as the result lives.
std::shared_ptr<void> MakeAnnouncingMachine();

class WaitFixture : public testing::Test {
protected:
    WaitFixture();
    ~WaitFixture() override;

    void Set(char const * key, std::string const & value) { m_Args.AddArg("Suite", key, value); }

    // Runs the suite's first test, which waits. `whenAsked` is called when the operator is asked to
    // plug in.
    TEST_STATUS Wait(std::function<void()> const & whenAsked);

    // As a driver does it: the record is only valid during the call.
    void Announce(WPARAM event, std::string const & name);

    CIniArgs m_Args;
    COutputBuffer m_Buffer;
    CTestSuiteLog m_Record;
    std::optional<ListeningLog> m_Log;
    std::optional<WindowThread> m_Host;
};
