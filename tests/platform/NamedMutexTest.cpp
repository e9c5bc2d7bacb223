// Mutexes with a name: who is told that the name was held, and until when.
#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NameHolding.h"
#include "platform/Synchronization.h"

namespace {

std::wstring Wide(std::string const & text) { return {text.begin(), text.end()}; }

class NamedMutexTest : public NameHolding {
protected:
    ~NamedMutexTest() override {
        for (HANDLE const mutex : m_Open)
            CloseHandle(mutex);
    }

    // The last error after taking the name; the mutex stays open.
    DWORD Take(std::wstring const & name) {
        SetLastError(4711);
        m_Open.push_back(CreateMutexW(nullptr, FALSE, name.c_str()));
        DWORD const error = GetLastError();
        EXPECT_NE(m_Open.back(), nullptr) << error;
        return error;
    }
    DWORD Take() { return Take(Wide(Name())); }

    void CloseOldest() {
        EXPECT_TRUE(CloseHandle(m_Open.front()));
        m_Open.erase(m_Open.begin());
    }

private:
    std::vector<HANDLE> m_Open;
};

TEST_F(NamedMutexTest, TheFirstClearsTheLastErrorAndTheNextAreTold) {
    EXPECT_EQ(Take(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Take(), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_EQ(Take(), DWORD{ERROR_ALREADY_EXISTS});
}

TEST_F(NamedMutexTest, TheNameIsHeldUntilTheLastHandleIsClosed) {
    Take();
    Take();
    CloseOldest();
    EXPECT_EQ(Take(), DWORD{ERROR_ALREADY_EXISTS});
    CloseOldest();
    CloseOldest();
    EXPECT_EQ(Take(), DWORD{ERROR_SUCCESS});
}

TEST_F(NamedMutexTest, EveryCharacterTellsNamesApart) {
    std::wstring const name = Wide(Name());
    std::vector<std::wstring> const names = {name + L"a",      name + L"A",      name + L"/",
                                             name + L"%",      name + L"%2F",    name + L"..",
                                             name + L"\u00e4", name + L"\u20ac", name + L"a "};
    for (std::wstring const & each : names)
        EXPECT_EQ(Take(each), DWORD{ERROR_SUCCESS}) << Name() << ": " << each.size();
    for (std::wstring const & each : names)
        EXPECT_EQ(Take(each), DWORD{ERROR_ALREADY_EXISTS});
}

TEST_F(NamedMutexTest, LocalIsTheUsersOwnAsAPlainNameIsAndGlobalIsNot) {
    std::wstring const name = Wide(Name());
    EXPECT_EQ(Take(L"Local\\" + name), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Take(name), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_EQ(Take(L"Global\\" + name), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Take(L"Global\\" + name), DWORD{ERROR_ALREADY_EXISTS});
}

TEST_F(NamedMutexTest, ABackslashInANameIsRefused) {
    for (std::wstring const name : {L"no such\\", L"no\\such", L"Global\\no\\such"}) {
        SetLastError(0);
        EXPECT_EQ(CreateMutexW(nullptr, FALSE, name.c_str()), nullptr);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
    }
}

TEST_F(NamedMutexTest, WithoutANameEachIsItsOwnAndCanBeOwned) {
    SetLastError(4711);
    HANDLE const first = CreateMutexW(nullptr, TRUE, nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SUCCESS});
    HANDLE const second = CreateMutexW(nullptr, FALSE, nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(ReleaseMutex(first));
    EXPECT_FALSE(ReleaseMutex(second));
    CloseHandle(first);
    CloseHandle(second);
}

TEST_F(NamedMutexTest, OfThreadsThatComeAtOnceOneAloneIsTheFirst) {
    constexpr int rounds = 100;
    constexpr int threads = 8;
    std::wstring const name = Wide(Name());
    for (int round = 0; round != rounds; ++round) {
        std::vector<HANDLE> mutexes(threads);
        std::vector<DWORD> errors(threads);
        std::vector<std::thread> running;
        for (std::size_t i = 0; i != threads; ++i)
            running.emplace_back([&, i] {
                mutexes[i] = CreateMutexW(nullptr, FALSE, name.c_str());
                errors[i] = GetLastError();
            });
        for (auto & thread : running)
            thread.join();
        std::vector<DWORD> expected(threads, ERROR_ALREADY_EXISTS);
        expected[0] = ERROR_SUCCESS;
        EXPECT_TRUE(std::is_permutation(errors.begin(), errors.end(), expected.begin()));
        for (HANDLE const mutex : mutexes)
            ASSERT_TRUE(CloseHandle(mutex));
    }
}

TEST_F(NamedMutexTest, OtherProcessesSeeIt) {
    Take();
    EXPECT_EQ(Ask(Name()), "second");
    CloseOldest();
    EXPECT_EQ(Ask(Name()), "first");
}

TEST_F(NamedMutexTest, AProcessThatIsKilledHoldsItNoMore) {
    for (int round = 0; round != 5; ++round) {
        auto const child = Hold(Name());
        EXPECT_EQ(Take(), DWORD{ERROR_ALREADY_EXISTS});
        CloseOldest();
        child->Kill();
        ASSERT_TRUE(child->Wait());
        EXPECT_EQ(Take(), DWORD{ERROR_SUCCESS});
        CloseOldest();
    }
}

TEST_F(NamedMutexTest, OfProcessesThatComeAtOnceOneAloneIsTheFirst) {
    for (int round = 0; round != 3; ++round) {
        std::vector<std::unique_ptr<ChildProcess>> children;
        for (int i = 0; i != 6; ++i)
            children.push_back(Start({Name(), "hold"}));
        std::vector<std::string> told;
        for (auto const & child : children)
            told.push_back(Told(*child));
        std::sort(told.begin(), told.end());
        EXPECT_EQ(
            told,
            (std::vector<std::string>{"first", "second", "second", "second", "second", "second"}));
        for (auto const & child : children) {
            child->Kill();
            EXPECT_TRUE(child->Wait());
        }
    }
}

} // namespace
