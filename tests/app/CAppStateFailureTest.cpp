// What the making of the run's state asks of the platform, and what is left when that fails.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "app/CAppState.h"
#include "platform/Synchronization.h"
#include "platform/Wrap.h"
#include "support/Allocations.h"

MORVEX_WRAP_API(
    HANDLE, CreateEventA,
    (_SECURITY_ATTRIBUTES * attributes, BOOL manual, BOOL set, char const * name),
    (attributes, manual, set, name))
MORVEX_WRAP_API(BOOL, CloseHandle, (HANDLE handle), (handle))

namespace {

std::function<std::filesystem::path()> directoryFake;

} // namespace

// std::filesystem::current_path(), as the linker knows it.
extern "C" std::filesystem::path __real__ZNSt10filesystem12current_pathB5cxx11Ev();
extern "C" std::filesystem::path __wrap__ZNSt10filesystem12current_pathB5cxx11Ev() {
    return directoryFake ? directoryFake() : __real__ZNSt10filesystem12current_pathB5cxx11Ev();
}

namespace {

class CAppStateFailureTest : public testing::Test {
protected:
    ~CAppStateFailureTest() override {
        directoryFake = nullptr;
        CAppState::CleanupAppState();
    }

    // What InitAppState throws; nothing when it throws nothing of that kind.
    template <typename Exception>
    std::optional<Exception> InitThrows() {
        try {
            CAppState::InitAppState(ApplicationFamilyDefault);
        } catch (Exception const & exception) {
            return exception;
        }
        return std::nullopt;
    }

    int m_Closed = 0;
    Diversion<BOOL(HANDLE)> m_CloseHandle{wrapped_CloseHandle, [this](HANDLE handle) {
                                              ++m_Closed;
                                              return wrapped_CloseHandle.Real(handle);
                                          }};
};

TEST_F(CAppStateFailureTest, TheEventIsUnnamedManualResetAndNotSet) {
    std::vector<std::tuple<void const *, BOOL, BOOL, char const *>> created;
    Diversion const diversion(
        wrapped_CreateEventA,
        [&](_SECURITY_ATTRIBUTES * attributes, BOOL manual, BOOL set, char const * name) {
            created.emplace_back(attributes, manual, set, name);
            return wrapped_CreateEventA.Real(attributes, manual, set, name);
        });
    CAppState::InitAppState(ApplicationFamilyDefault);
    decltype(created) const expected = {{nullptr, TRUE, FALSE, nullptr}};
    EXPECT_EQ(created, expected);
}

TEST_F(CAppStateFailureTest, TheEventStaysSignalledUntilItIsReset) {
    CAppState::InitAppState(ApplicationFamilyDefault);
    HANDLE const event = CAppState::MessageFilterEvent();
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT});
    SetEvent(event);
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_OBJECT_0});
    ResetEvent(event);
    EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT});
}

TEST_F(CAppStateFailureTest, WithoutAnEventThereIsNoInstance) {
    Diversion const diversion(wrapped_CreateEventA, [](auto...) { return HANDLE{}; });
    auto const error = InitThrows<std::runtime_error>();
    ASSERT_TRUE(error);
    EXPECT_STREQ(error->what(), "Unable to obtain message filter event HANDLE");
    EXPECT_FALSE(CAppState::AppStateSet());
    EXPECT_EQ(m_Closed, 0);
}

TEST_F(CAppStateFailureTest, AnInstanceThatEndsCannotBeReachedAnyMore) {
    CAppState::InitAppState(ApplicationFamilyDefault);
    std::vector<bool> reachable;
    Diversion const diversion(wrapped_CloseHandle, [&](HANDLE handle) {
        reachable.push_back(CAppState::AppStateSet());
        return wrapped_CloseHandle.Real(handle);
    });
    CAppState::CleanupAppState();
    EXPECT_EQ(reachable, std::vector<bool>{false});
}

TEST_F(CAppStateFailureTest, WithoutAnEventTheDirectoryIsNotAskedFor) {
    int asked = 0;
    directoryFake = [&] {
        ++asked;
        return std::filesystem::path();
    };
    Diversion const diversion(wrapped_CreateEventA, [](auto...) { return HANDLE{}; });
    EXPECT_THROW(CAppState::InitAppState(ApplicationFamilyDefault), std::runtime_error);
    EXPECT_EQ(asked, 0);
}

TEST_F(CAppStateFailureTest, TheDirectoryIsTheOneOfTheStartWhateverItsLetters) {
    directoryFake = [] { return std::filesystem::path(u8"/first/\u00fc"); };
    CAppState::InitAppState(ApplicationFamilyDefault);
    directoryFake = [] { return std::filesystem::path(L"/second"); };
    CAppState::InitAppState(ApplicationFamilyDefault);
    EXPECT_EQ(CAppState::InitialWorkingDirectory(), L"/first/\u00fc");
}

TEST_F(CAppStateFailureTest, TheDirectoryIsTheProcesss) {
    CAppState::InitAppState(ApplicationFamilyDefault);
    EXPECT_EQ(CAppState::InitialWorkingDirectory(), std::filesystem::current_path().wstring());
}

TEST_F(CAppStateFailureTest, AnUnknownDirectoryIsToldWithItsCodeAndLeavesNoInstance) {
    std::filesystem::filesystem_error const cause(
        "no way home", std::make_error_code(std::errc::permission_denied));
    directoryFake = [&]() -> std::filesystem::path { throw cause; };
    auto const error = InitThrows<std::filesystem::filesystem_error>();
    ASSERT_TRUE(error);
    std::filesystem::filesystem_error const expected(
        std::string("Could not get name of Current Working Directory.:  ") + cause.what(),
        cause.code());
    EXPECT_STREQ(error->what(), expected.what());
    EXPECT_EQ(error->code(), cause.code());
    EXPECT_FALSE(CAppState::AppStateSet());
    EXPECT_EQ(m_Closed, 1);
}

TEST_F(CAppStateFailureTest, MemoryThatRunsOutForTheDirectoryPassesOnUnchanged) {
    directoryFake = []() -> std::filesystem::path { throw std::bad_alloc(); };
    EXPECT_TRUE(InitThrows<std::bad_alloc>());
    EXPECT_FALSE(CAppState::AppStateSet());
    EXPECT_EQ(m_Closed, 1);
}

// Lets the making run out of memory after `granted` allocations. True: it got through.
bool InitWith(std::size_t granted, std::size_t & leaks) {
    AllocationWatch watch(granted);
    bool made = true;
    try {
        CAppState::InitAppState(ApplicationFamilyDefault);
    } catch (std::bad_alloc const &) {
        made = false;
    }
    watch.End();
    if (!made) leaks += watch.Leaks();
    return made;
}

TEST_F(CAppStateFailureTest, MemoryThatRunsOutAnywhereLeavesNothing) {
    // The platform keeps what it makes at its first use.
    CAppState::InitAppState(ApplicationFamilyDefault);
    CAppState::CleanupAppState();
    // A short one, so that the asking itself takes no memory.
    directoryFake = [] { return std::filesystem::path(); };
    std::size_t granted = 0;
    std::size_t leaks = 0;
    while (granted != 100 && !InitWith(granted, leaks)) {
        EXPECT_FALSE(CAppState::AppStateSet());
        ++granted;
    }
    EXPECT_EQ(leaks, 0u);
    EXPECT_GE(granted, 6u);
    EXPECT_LT(granted, 100u);
    EXPECT_TRUE(CAppState::AppStateSet());
}

TEST_F(CAppStateFailureTest, AFailedInitDoesNotStandInTheWayOfTheNext) {
    {
        Diversion const diversion(wrapped_CreateEventA, [](auto...) { return HANDLE{}; });
        EXPECT_THROW(CAppState::InitAppState(ApplicationFamilyDefault), std::runtime_error);
    }
    CAppState::InitAppState(ApplicationFamilyDefault);
    EXPECT_TRUE(CAppState::AppStateSet());
}

} // namespace
