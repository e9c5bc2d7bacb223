// The two guards against running twice: what they ask of the platform, and what they see.
#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/CLimitSingleExecute.h"
#include "app/CLimitSingleInstance.h"
#include "app/GuardWrapped.h"

namespace {

static_assert(!std::is_polymorphic_v<CLimitSingleExecute>);
static_assert(!std::is_polymorphic_v<CLimitSingleInstance>);
static_assert(!std::is_destructible_v<CLimitSingleExecute>);
static_assert(!std::is_default_constructible_v<CLimitSingleExecute>);
static_assert(sizeof(CLimitSingleExecute) == 2 * sizeof(HANDLE));
static_assert(sizeof(CLimitSingleInstance) == 2 * sizeof(HANDLE));

HANDLE HandleNumber(std::uintptr_t number) { return reinterpret_cast<HANDLE>(number); }

// The platform answers what a test says, and what is asked of it is kept.
class LimitGuardTest : public testing::Test {
protected:
    using Creation = std::tuple<void const *, BOOL, std::wstring>;

    ~LimitGuardTest() override { CLimitSingleExecute::FreeSingleExecute(); }

    HANDLE m_Given = HandleNumber(0x40);
    DWORD m_Error = ERROR_SUCCESS;
    std::vector<Creation> m_Created;
    std::vector<HANDLE> m_Closed;

private:
    Diversion<HANDLE(_SECURITY_ATTRIBUTES *, BOOL, wchar_t const *)> const m_Create{
        wrapped_CreateMutexW, [this](_SECURITY_ATTRIBUTES * attributes, BOOL owned, auto * name) {
            m_Created.emplace_back(attributes, owned, name);
            SetLastError(m_Error);
            return m_Given;
        }};
    Diversion<BOOL(HANDLE)> const m_Close{wrapped_CloseHandle, [this](HANDLE handle) {
                                              m_Closed.push_back(handle);
                                              return BOOL{TRUE};
                                          }};
};

using CLimitSingleExecuteTest = LimitGuardTest;
using CLimitSingleInstanceTest = LimitGuardTest;

TEST_F(CLimitSingleExecuteTest, TheNameIsAskedForOnceAndLetGoOnce) {
    CLimitSingleExecute * const first = CLimitSingleExecute::GetSingleExecute();
    EXPECT_EQ(CLimitSingleExecute::GetSingleExecute(), first);
    std::vector<Creation> const expected = {
        {nullptr, FALSE, L"{F0BDBC18-5C8B-478C-A242-69CE5DD16058}"}};
    EXPECT_EQ(m_Created, expected);
    EXPECT_TRUE(m_Closed.empty());
    CLimitSingleExecute::FreeSingleExecute();
    EXPECT_EQ(m_Closed, std::vector{m_Given});
}

TEST_F(CLimitSingleExecuteTest, FreeingWithoutAnInstanceDoesNothingAndALaterOneIsNew) {
    CLimitSingleExecute::FreeSingleExecute();
    EXPECT_TRUE(m_Created.empty());
    CLimitSingleExecute::GetSingleExecute();
    CLimitSingleExecute::FreeSingleExecute();
    CLimitSingleExecute::FreeSingleExecute();
    EXPECT_EQ(m_Closed.size(), 1u);
    EXPECT_NE(CLimitSingleExecute::GetSingleExecute(), nullptr);
    EXPECT_EQ(m_Created.size(), 2u);
}

TEST_F(CLimitSingleExecuteTest, TheErrorAtTheCreationDecides) {
    for (auto const & [error, running] :
         {std::pair<DWORD, bool>{183, true}, {0, false}, {5, false}, {182, false}}) {
        SCOPED_TRACE(error);
        m_Error = error;
        CLimitSingleExecute::GetSingleExecute();
        SetLastError(error == 183 ? 0 : 183);
        EXPECT_EQ(CLimitSingleExecute::GetSingleExecute()->IsAnotherInstanceRunning(), running);
        CLimitSingleExecute::FreeSingleExecute();
    }
}

TEST_F(CLimitSingleExecuteTest, AFailedCreationReadsAsNoOtherAndNothingIsClosed) {
    m_Given = nullptr;
    m_Error = ERROR_ACCESS_DENIED;
    EXPECT_FALSE(CLimitSingleExecute::GetSingleExecute()->IsAnotherInstanceRunning());
    CLimitSingleExecute::FreeSingleExecute();
    EXPECT_TRUE(m_Closed.empty());
}

TEST_F(CLimitSingleInstanceTest, TheNameIsTheCallersAndIsHeldForTheObjectsLife) {
    {
        CLimitSingleInstance const guard(L"a name");
        std::vector<Creation> const expected = {{nullptr, FALSE, L"a name"}};
        EXPECT_EQ(m_Created, expected);
        EXPECT_TRUE(m_Closed.empty());
    }
    EXPECT_EQ(m_Closed, std::vector{m_Given});
}

TEST_F(CLimitSingleInstanceTest, TheErrorAtTheCreationDecides) {
    for (auto const & [error, running] :
         {std::pair<DWORD, int>{183, 1}, {0, 0}, {5, 0}, {182, 0}}) {
        SCOPED_TRACE(error);
        m_Error = error;
        CLimitSingleInstance guard(L"a name");
        SetLastError(error == 183 ? 0 : 183);
        EXPECT_EQ(guard.IsAnotherInstanceRunning(), running);
    }
}

TEST_F(CLimitSingleInstanceTest, AFailedCreationReadsAsNoOtherAndNothingIsClosed) {
    m_Given = nullptr;
    m_Error = ERROR_ACCESS_DENIED;
    { EXPECT_EQ(CLimitSingleInstance(L"a name").IsAnotherInstanceRunning(), 0); }
    EXPECT_TRUE(m_Closed.empty());
}

TEST_F(CLimitSingleInstanceTest, AnAssignedGuardHasBothMembersOfItsSource) {
    CLimitSingleInstance first(L"first");
    {
        m_Given = HandleNumber(0x44);
        m_Error = ERROR_ALREADY_EXISTS;
        CLimitSingleInstance const second(L"second");
        first = second;
    }
    EXPECT_EQ(first.IsAnotherInstanceRunning(), 1);
    EXPECT_EQ(m_Closed, std::vector{HandleNumber(0x44)});
    m_Closed.clear();
    { CLimitSingleInstance const copy(first); }
    EXPECT_EQ(m_Closed, std::vector{HandleNumber(0x44)});
}

} // namespace
