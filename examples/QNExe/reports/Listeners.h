// Several listeners of one suite, told in the order in which they were added.
#pragma once

#include <vector>

#include "siblings/QuillonLog.h"

class Listeners : public CTestSuiteListener {
public:
    // It stays the caller's. Before anything is told.
    void Add(CTestSuiteListener & listener) { m_All.push_back(&listener); }
    void AddAny(CTestSuiteListener * listener) {
        if (listener != nullptr) Add(*listener);
    }

    void EntryWritten(CTestLog const & test, CTestLogEntry const & entry) override {
        for (auto * const each : m_All)
            each->EntryWritten(test, entry);
    }
    void TestOpened(CTestLog const & test, std::string const & name) override {
        for (auto * const each : m_All)
            each->TestOpened(test, name);
    }
    void TestClosed(CTestLog const & test) override {
        for (auto * const each : m_All)
            each->TestClosed(test);
    }
    void PromptAdded(CTestPrompt const & prompt) override {
        for (auto * const each : m_All)
            each->PromptAdded(prompt);
    }
    void DeviceEventAdded(CTestDeviceEvent const & event) override {
        for (auto * const each : m_All)
            each->DeviceEventAdded(event);
    }

private:
    std::vector<CTestSuiteListener *> m_All;
};
