// A test that never comes to an update, as one that hangs in a driver.
#include <chrono>
#include <thread>

#include "Suite.h"

namespace {

void Hang(CMXLog &) {
    Tell("stuck");
    for (;;)
        std::this_thread::sleep_for(std::chrono::seconds(1));
}

class StuckSuite : public TestSuite {
public:
    std::string Name() const override { return "stuck"; }
    std::vector<TestCase> Tests() override { return {TrueTest("T1", Hang)}; }
};

} // namespace

MORVEX_TEST_SUITE(StuckSuite)
