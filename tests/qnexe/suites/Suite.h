// What the small suites of these tests are made of.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "examples/TestSuite.h"
#include "log/CMXLog.h"

using Steps = std::function<void(CMXLog &)>;

// A test that closes with whatever its entries have made of the word.
inline TestCase TrueTest(std::string name, Steps steps) {
    return {std::move(name), true, [steps = std::move(steps)](CMXLog & log) {
                steps(log);
                return log.TestStatus();
            }};
}

inline TestCase Utility(std::string name, Steps steps) {
    TestCase test = TrueTest(std::move(name), std::move(steps));
    test.isActualTest = false;
    return test;
}

inline void Nothing(CMXLog &) {}

// Reaches whoever runs the host, past the log.
inline void Tell(std::string const & text) {
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}
