// Drives a suite: opens, runs and closes its tests one by one, whatever they throw.
//
// For the test thread, between the making of the log and its end. Log and suite record are the
// caller's.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "examples/TestSuite.h"
#include "siblings/QuillonLog.h"

class TestEngine {
public:
    TestEngine(CTestSuiteLog & suite, CMXLog & log) : m_Suite(suite), m_Log(log) {}

    // Runs the tests in order. When the operator has asked for an abort, the test that is running
    // is closed as aborted by the user at its next update, and those after it are not opened.
    void Run(std::vector<TestCase> const & tests);

private:
    static void ShowProgress(std::size_t done, std::size_t all, std::string const & name);
    void RunTest(TestCase const & test);
    void Open(TestCase const & test);
    TEST_STATUS RunSteps(TestCase const & test);
    TEST_STATUS Guard(TestCase const & test);
    void WriteUnanswered();
    void Close(TEST_STATUS status);

    CTestSuiteLog & m_Suite;
    CMXLog & m_Log;
};
