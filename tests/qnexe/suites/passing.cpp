// Two tests that pass: one without an entry, one with an entry of each kind that does no harm.
#include "Suite.h"

namespace {

void WriteHarmlessEntries(CMXLog & log) {
    log.Write(TEST_STATUS_INFO, "port %u answers", 2u);
    log.Write(TEST_STATUS_WARNING, "port %u is slow", 2u);
}

class PassingSuite : public TestSuite {
public:
    std::string Name() const override { return "passing"; }
    std::vector<TestCase> Tests() override {
        return {TrueTest("T1", Nothing), TrueTest("T2", WriteHarmlessEntries)};
    }
};

} // namespace

MORVEX_TEST_SUITE(PassingSuite)
