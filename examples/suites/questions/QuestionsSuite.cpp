// A suite that asks the operator one question of each kind.
#include "OperatorTests.h"
#include "examples/TestSuite.h"

namespace {

class QuestionsSuite : public TestSuite {
public:
    std::string Name() const override { return "Questions"; }
    std::vector<TestCase> Tests() override { return OperatorTests(); }
};

} // namespace

MORVEX_TEST_SUITE(QuestionsSuite)
