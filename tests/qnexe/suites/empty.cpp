// A suite without tests.
#include "Suite.h"

namespace {

class EmptySuite : public TestSuite {
public:
    std::string Name() const override { return "empty"; }
    std::vector<TestCase> Tests() override { return {}; }
};

} // namespace

MORVEX_TEST_SUITE(EmptySuite)
