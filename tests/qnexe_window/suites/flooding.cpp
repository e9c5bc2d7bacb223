// A test that writes 20,000 entries at once, each tenth of them in a look of its own.
#include "output/CFormatInfo.h"
#include "qnexe/suites/Suite.h"

namespace {

void Flood(CMXLog & log) {
    CFormatInfo const look(0x0000FFul, true, 700);
    for (unsigned number = 1; number <= 20'000; ++number)
        if (number % 10 == 0)
            log.Write(TEST_STATUS_WARNING, Quiet, &look, "entry %u", number);
        else
            log.Write(TEST_STATUS_INFO, "entry %u", number);
}

class FloodingSuite : public TestSuite {
public:
    std::string Name() const override { return "flooding"; }
    std::vector<TestCase> Tests() override { return {TrueTest("T1", Flood)}; }
};

} // namespace

MORVEX_TEST_SUITE(FloodingSuite)
