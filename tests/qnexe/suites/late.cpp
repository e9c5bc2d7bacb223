// A suite that still writes to the record when the log has ended.
#include "Suite.h"
#include "app/CAppState.h"
#include "siblings/QuillonLog.h"

namespace {

class LateSuite : public TestSuite {
public:
    ~LateSuite() override {
        CAppState::CurrentTestLog()->Write(TEST_STATUS_INFO, "too late for the file", nullptr);
    }

    std::string Name() const override { return "late"; }
    std::vector<TestCase> Tests() override { return {TrueTest("T1", Nothing)}; }
};

} // namespace

MORVEX_TEST_SUITE(LateSuite)
