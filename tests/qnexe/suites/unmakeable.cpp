// A suite whose constructor throws something that has no text.
#include "Suite.h"

namespace {

class UnmakeableSuite : public TestSuite {
public:
    UnmakeableSuite() { throw 5; }
    std::string Name() const override { return "unmakeable"; }
    std::vector<TestCase> Tests() override { return {}; }
};

} // namespace

MORVEX_TEST_SUITE(UnmakeableSuite)
