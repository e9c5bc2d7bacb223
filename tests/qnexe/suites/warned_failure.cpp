// A test with a failure and a warning, whose status word reads as passed.
#include "Suite.h"

namespace {

void FailWithAWarning(CMXLog & log) {
    log.Write(TEST_STATUS_WARNING, "port 1 is slow");
    log.Write(TEST_STATUS_FAIL, "no answer from port 1");
}

class WarnedFailureSuite : public TestSuite {
public:
    std::string Name() const override { return "warned failure"; }
    std::vector<TestCase> Tests() override { return {TrueTest("T1", FailWithAWarning)}; }
};

} // namespace

MORVEX_TEST_SUITE(WarnedFailureSuite)
