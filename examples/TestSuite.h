// What a host and a test suite agree on: the suite is a shared library that lists its tests, the
// host opens, runs and closes them one by one.
//
// A suite derives from TestSuite and names its class once with MORVEX_TEST_SUITE. The host makes
// the object, uses it on the test thread alone, and deletes it before it unloads the library.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "log/CMXLog.h"
#include "log/TestStatus.h"
#include "platform/BaseTypes.h"

struct TestCase {
    std::string name;

    // True: the test passes or fails a device. False: set-up or a utility, which cannot fail.
    bool isActualTest = true;

    // Runs between the log's StartTest and StopTest and returns the status to close with, usually
    // `log.TestStatus()`. May throw std::exception; the host logs its text and closes the test.
    std::function<TEST_STATUS(CMXLog & log)> run;
};

class TestSuite {
public:
    virtual ~TestSuite() = default;

    // The suite's name as the host shows it, UTF-8.
    virtual std::string Name() const = 0;

    // The tests in running order, called once when the log stands. What the operator asked for is
    // in CAppState::GetIniArgs(), section "Suite". Throws std::exception whose text says what is
    // wrong, where, and what to do, when the suite cannot run.
    virtual std::vector<TestCase> Tests() = 0;
};

// Raised when this file changes in a way that a built suite would notice.
inline constexpr unsigned TestSuiteContract = 1;

using TestSuiteContractFunction = unsigned();
using TestSuiteFactoryFunction = TestSuite *();

#define MORVEX_TEST_SUITE(Class)                                                                   \
    extern "C" MORVEX_SYMBOL_EXPORT unsigned MorvexTestSuiteContract() {                           \
        return TestSuiteContract;                                                                  \
    }                                                                                              \
    extern "C" MORVEX_SYMBOL_EXPORT TestSuite * MorvexCreateTestSuite() { return new Class; }
