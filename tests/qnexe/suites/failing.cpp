// A test that fails, and behind it one that passes.
#include "Suite.h"

namespace {

void Fail(CMXLog & log) { log.Write(TEST_STATUS_FAIL, "no answer from port 1"); }

class FailingSuite : public TestSuite {
public:
    std::string Name() const override { return "failing"; }
    std::vector<TestCase> Tests() override {
        return {TrueTest("T1", Fail), TrueTest("T2", Nothing)};
    }
};

} // namespace

MORVEX_TEST_SUITE(FailingSuite)
