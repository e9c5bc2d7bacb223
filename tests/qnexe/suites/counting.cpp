// A test that writes numbered entries for ever, and tells each number once its entry is written.
#include "Suite.h"

namespace {

void CountForEver(CMXLog & log) {
    for (unsigned number = 1;; ++number) {
        log.Write(TEST_STATUS_INFO, "entry %u", number);
        Tell(std::to_string(number) + '\n');
    }
}

class CountingSuite : public TestSuite {
public:
    std::string Name() const override { return "counting"; }
    std::vector<TestCase> Tests() override { return {TrueTest("T1", CountForEver)}; }
};

} // namespace

MORVEX_TEST_SUITE(CountingSuite)
