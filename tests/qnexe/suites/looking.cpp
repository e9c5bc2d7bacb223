// A test that logs an entry in every look, and plain ones between.
#include "Suite.h"
#include "output/CFormatInfo.h"

namespace {

CFormatInfo Marked() {
    CFormatInfo look(true, true, 700);
    look.setUnderline(true);
    look.setColor(eColorBlack);
    look.setBackColor(eColorYellow);
    return look;
}

void ShowLooks(CMXLog & log) {
    CFormatInfo const look = Marked();
    log.Write(TEST_STATUS_INFO, "plain");
    log.Write(TEST_STATUS_INFO, Quiet, &look, "marked");
    log.Write(TEST_STATUS_INFO, "plain again");
}

class LookingSuite : public TestSuite {
public:
    std::string Name() const override { return "looking"; }
    std::vector<TestCase> Tests() override { return {TrueTest("T1", ShowLooks)}; }
};

} // namespace

MORVEX_TEST_SUITE(LookingSuite)
