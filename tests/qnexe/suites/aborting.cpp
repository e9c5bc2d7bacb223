// A test that gives up by its return value.
#include "Suite.h"

namespace {

class AbortingSuite : public TestSuite {
public:
    std::string Name() const override { return "aborting"; }
    std::vector<TestCase> Tests() override {
        return {{"T1", true, [](CMXLog &) { return TEST_STATUS_ABORT; }}};
    }
};

} // namespace

MORVEX_TEST_SUITE(AbortingSuite)
