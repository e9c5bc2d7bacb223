// COM on a thread, for a scope.
#include "xml/CComSessionMgr.h"

#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Com.h"
#include "tests/platform/Wrap.h"

MORVEX_WRAPPED(CoInitializeEx)
MORVEX_WRAPPED(CoUninitialize)

namespace {

using Calls = std::vector<std::string>;

class CComSessionMgrTest : public testing::Test {
protected:
    Calls m_Calls;
    HRESULT m_Answer = S_OK;

private:
    Diversion<HRESULT(void *, DWORD)> const m_Start{
        wrapped_CoInitializeEx, [this](void * reserved, DWORD mode) {
            EXPECT_EQ(reserved, nullptr);
            m_Calls.push_back("start " + std::to_string(mode));
            return m_Answer;
        }};
    Diversion<void()> const m_End{wrapped_CoUninitialize, [this] { m_Calls.push_back("end"); }};
};

} // namespace

TEST_F(CComSessionMgrTest, DefaultIsMultiThreaded) {
    { CComSessionMgr const session; }
    EXPECT_EQ(m_Calls, (Calls{"start 0", "end"}));
}

TEST_F(CComSessionMgrTest, FlagsArePassedOn) {
    { CComSessionMgr const session(6); }
    EXPECT_EQ(m_Calls, (Calls{"start 6", "end"}));
}

TEST_F(CComSessionMgrTest, EndsEvenWhatItCouldNotStart) {
    m_Answer = RPC_E_CHANGED_MODE;
    { CComSessionMgr const session; }
    EXPECT_EQ(m_Calls, (Calls{"start 0", "end"}));
}

TEST_F(CComSessionMgrTest, AssignmentDoesNothing) {
    {
        CComSessionMgr first;
        CComSessionMgr const second(2);
        EXPECT_EQ(&(first = second), &first);
        EXPECT_EQ(m_Calls, (Calls{"start 0", "start 2"}));
    }
    EXPECT_EQ(m_Calls, (Calls{"start 0", "start 2", "end", "end"}));
}

TEST_F(CComSessionMgrTest, HoldsNothing) {
    EXPECT_TRUE(std::is_empty_v<CComSessionMgr>);
    EXPECT_FALSE(std::is_polymorphic_v<CComSessionMgr>);
}
