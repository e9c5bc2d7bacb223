// The smallest suite: one test, which passes unless it is told to expect another sum.
#include "app/CAppState.h"
#include "examples/TestSuite.h"
#include "settings/CIniArgs.h"

namespace {

TEST_STATUS CheckSum(CMXLog & log) {
    int expected = 4;
    CAppState::GetIniArgs().GetArg("Suite", "Expected", expected);
    log.Write(TEST_STATUS_INFO, "2 + 2 is %d", 2 + 2);
    if (2 + 2 != expected) log.Write(TEST_STATUS_FAIL, "It is not %d", expected);
    return log.TestStatus();
}

class SmallestSuite : public TestSuite {
public:
    std::string Name() const override { return "Smallest suite"; }
    std::vector<TestCase> Tests() override { return {{"A sum", true, CheckSum}}; }
};

} // namespace

MORVEX_TEST_SUITE(SmallestSuite)
