// The guards on the real platform: within one process and beside another one.
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "app/CLimitSingleExecute.h"
#include "app/CLimitSingleInstance.h"
#include "platform/NameHolding.h"

namespace {

class LimitGuardProcessTest : public NameHolding {
protected:
    ~LimitGuardProcessTest() override { CLimitSingleExecute::FreeSingleExecute(); }

    static constexpr char ProgramsName[] = "{F0BDBC18-5C8B-478C-A242-69CE5DD16058}";

    static bool SeesAnother() {
        bool const seen = CLimitSingleExecute::GetSingleExecute()->IsAnotherInstanceRunning();
        CLimitSingleExecute::FreeSingleExecute();
        return seen;
    }

    std::wstring const m_Wide{Name().begin(), Name().end()};
};

TEST_F(LimitGuardProcessTest, TheSecondGuardOfANameInOneProcessSeesTheFirst) {
    CLimitSingleInstance first(m_Wide.c_str());
    CLimitSingleInstance second(m_Wide.c_str());
    CLimitSingleInstance other((m_Wide + L".").c_str());
    EXPECT_EQ(first.IsAnotherInstanceRunning(), 0);
    EXPECT_EQ(second.IsAnotherInstanceRunning(), 1);
    EXPECT_EQ(other.IsAnotherInstanceRunning(), 0);
}

TEST_F(LimitGuardProcessTest, TheNameIsFreeWhenItsLastHolderHasGone) {
    auto first = std::make_unique<CLimitSingleInstance>(m_Wide.c_str());
    auto second = std::make_unique<CLimitSingleInstance>(m_Wide.c_str());
    first.reset();
    EXPECT_EQ(CLimitSingleInstance(m_Wide.c_str()).IsAnotherInstanceRunning(), 1);
    second.reset();
    EXPECT_EQ(CLimitSingleInstance(m_Wide.c_str()).IsAnotherInstanceRunning(), 0);
}

TEST_F(LimitGuardProcessTest, AGuardSeesAnotherProcessUntilThatIsKilled) {
    auto const child = Hold(Name());
    EXPECT_EQ(CLimitSingleInstance(m_Wide.c_str()).IsAnotherInstanceRunning(), 1);
    child->Kill();
    ASSERT_TRUE(child->Wait());
    EXPECT_EQ(CLimitSingleInstance(m_Wide.c_str()).IsAnotherInstanceRunning(), 0);
}

TEST_F(LimitGuardProcessTest, TheProgramsGuardSeesAnotherProgramUntilThatIsKilled) {
    auto const child = Hold(ProgramsName);
    EXPECT_TRUE(SeesAnother());
    child->Kill();
    ASSERT_TRUE(child->Wait());
    EXPECT_FALSE(SeesAnother());
}

TEST_F(LimitGuardProcessTest, AnotherProgramSeesThisOneUntilItFreesTheGuard) {
    EXPECT_FALSE(CLimitSingleExecute::GetSingleExecute()->IsAnotherInstanceRunning());
    EXPECT_EQ(Ask(ProgramsName), "second");
    CLimitSingleExecute::FreeSingleExecute();
    EXPECT_EQ(Ask(ProgramsName), "first");
}

} // namespace
