// A suite that cannot list its tests.
#include <stdexcept>

#include "Suite.h"

namespace {

class RefusingSuite : public TestSuite {
public:
    std::string Name() const override { return "refusing"; }
    std::vector<TestCase> Tests() override {
        throw std::runtime_error("no recordings in \"100%s\". Give --recordings a folder.");
    }
};

} // namespace

MORVEX_TEST_SUITE(RefusingSuite)
