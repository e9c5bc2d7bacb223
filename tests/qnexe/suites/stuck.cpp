// A test that never comes to an update, as one that hangs in a driver. It tells when the operator
// has asked for an abort, and does not follow.
#include <chrono>
#include <thread>

#include "Suite.h"
#include "output/CUIUpdate.h"

namespace {

void Hang(CMXLog &) {
    Tell("stuck");
    bool told = false;
    for (;;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        if (told || !CUIUpdate::GetUIUpdate()->AbortFunction()) continue;
        Tell(", asked");
        told = true;
    }
}

class StuckSuite : public TestSuite {
public:
    std::string Name() const override { return "stuck"; }
    std::vector<TestCase> Tests() override { return {TrueTest("T1", Hang)}; }
};

} // namespace

MORVEX_TEST_SUITE(StuckSuite)
