// A suite that sets up and tests nothing.
#include "Suite.h"

namespace {

void SetUp(CMXLog & log) { log.Write(TEST_STATUS_INFO, "port 1 is powered"); }

class UtilityOnlySuite : public TestSuite {
public:
    std::string Name() const override { return "utility only"; }
    std::vector<TestCase> Tests() override { return {Utility("Power up", SetUp)}; }
};

} // namespace

MORVEX_TEST_SUITE(UtilityOnlySuite)
