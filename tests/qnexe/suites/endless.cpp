// A test that polls for ever, as one that waits for a device, and behind it one that passes.
#include <chrono>
#include <thread>

#include "Suite.h"
#include "output/CUIUpdate.h"

namespace {

void WaitForEver(CMXLog &) {
    Tell("waiting");
    for (;;) {
        CUIUpdate::DoUpdate(false);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

class EndlessSuite : public TestSuite {
public:
    std::string Name() const override { return "endless"; }
    std::vector<TestCase> Tests() override {
        return {TrueTest("T1", WaitForEver), TrueTest("T2", Nothing)};
    }
};

} // namespace

MORVEX_TEST_SUITE(EndlessSuite)
