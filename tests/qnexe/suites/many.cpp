// As many tests and entries as one likes: Suite.Tests, Suite.Entries, and Suite.FailEvery for every
// how-manieth test fails; 0: none.
#include "Suite.h"
#include "app/CAppState.h"
#include "settings/CIniArgs.h"

namespace {

std::uint32_t Setting(char const * key, std::uint32_t otherwise) {
    std::uint32_t value = otherwise;
    CAppState::GetIniArgs().GetArg("Suite", key, value);
    return value;
}

TestCase Test(std::uint32_t number, std::uint32_t entries, bool fails) {
    return TrueTest("Test " + std::to_string(number), [number, entries, fails](CMXLog & log) {
        for (std::uint32_t entry = 1; entry <= entries; ++entry)
            log.Write(
                TEST_STATUS_INFO, "port %u answers \"<ok>\" & goes on, round %u of %u",
                number % 15 + 1, entry, entries);
        if (fails) log.Write(TEST_STATUS_FAIL, "test %u has failed on purpose", number);
    });
}

class ManySuite : public TestSuite {
public:
    std::string Name() const override { return "many"; }
    std::vector<TestCase> Tests() override {
        std::uint32_t const entries = Setting("Entries", 100);
        std::uint32_t const every = Setting("FailEvery", 0);
        std::vector<TestCase> tests;
        for (std::uint32_t number = 1; number <= Setting("Tests", 1000); ++number)
            tests.push_back(Test(number, entries, every != 0 && number % every == 0));
        return tests;
    }
};

} // namespace

MORVEX_TEST_SUITE(ManySuite)
