// Tests that end in exceptions, and behind them one that passes.
#include <stdexcept>

#include "Suite.h"

namespace {

void ThrowError(CMXLog &) { throw std::runtime_error("only 50%s of the data came"); }
void ThrowNumber(CMXLog &) { throw 5; }

class ThrowingSuite : public TestSuite {
public:
    std::string Name() const override { return "throwing"; }
    std::vector<TestCase> Tests() override {
        return {TrueTest("T1", ThrowError), TrueTest("T2", ThrowNumber), TrueTest("T3", Nothing)};
    }
};

} // namespace

MORVEX_TEST_SUITE(ThrowingSuite)
