// The registry's file off Windows on a disk that is full or fails: the codes, and what is left.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include "platform/Registry.h"
#include "platform/RegistryScope.h"
#include "platform/StoreCheck.h"
#include "platform/linux/DiskFaults.h"
#include "platform/linux/OtherHands.h"
#include "platform/linux/StoreAccess.h"

namespace {

using testing::AnyOf;

constexpr LSTATUS DiskFull = 112;
constexpr LSTATUS Damaged = 1015;
constexpr LSTATUS DiskFails = 1016;

using Act = std::function<LSTATUS()>;
using Codes = testing::Matcher<LSTATUS>;

LSTATUS WriteUsers(std::string const & text) {
    return Write(HKEY_CURRENT_USER, Path, "Value", text);
}

std::string ReadUsers() { return Read(HKEY_CURRENT_USER); }

class RegistryDiskTest : public testing::Test {
protected:
    // Runs the operation with its first, its second, ... call of this kind failing until it
    // succeeds; after each failure the caller looks at what is left. True: it succeeded although a
    // call has failed.
    static bool FailEach(
        DiskCall call, int systemError, Codes const & codes, Act const & act,
        std::function<void()> const & look) {
        for (std::size_t granted = 0; granted != 100; ++granted) {
            SCOPED_TRACE(granted);
            auto const [result, met] = RunWith(DiskFault(call, systemError, granted), act);
            EXPECT_TRUE(granted != 0 || met) << "no such call";
            if (result == 0) return met;
            EXPECT_THAT(result, codes);
            look();
        }
        ADD_FAILURE() << "never succeeds";
        return false;
    }

    // The result, and whether a call has failed.
    static std::pair<LSTATUS, bool> RunWith(DiskFault const & fault, Act const & act) {
        LSTATUS const result = act();
        return {result, fault.WasMet()};
    }

    void ExpectOld() {
        EXPECT_EQ(ReadUsers(), "old");
        EXPECT_EQ(FaultsOfTheFile(m_Scope), "ok");
    }

    RegistryScope m_Scope;
};

TEST_F(RegistryDiskTest, AFullDiskGivesItsCodeAndKeepsTheOldValue) {
    EXPECT_EQ(WriteUsers("old"), 0);
    EXPECT_FALSE(FailEach(
        DiskCall::Write, ENOSPC, DiskFull, [] { return WriteUsers("new"); }, [&] { ExpectOld(); }));
    EXPECT_EQ(ReadUsers(), "new");
}

TEST_F(RegistryDiskTest, AUsedUpQuotaIsAFullDisk) {
    EXPECT_EQ(WriteUsers("old"), 0);
    EXPECT_FALSE(FailEach(
        DiskCall::Write, EDQUOT, DiskFull, [] { return WriteUsers("new"); }, [&] { ExpectOld(); }));
    EXPECT_EQ(ReadUsers(), "new");
}

TEST_F(RegistryDiskTest, ADiskThatDoesNotTakeWritesGivesItsCodeAndKeepsTheOldValue) {
    EXPECT_EQ(WriteUsers("old"), 0);
    EXPECT_FALSE(FailEach(
        DiskCall::Write, EIO, DiskFails, [] { return WriteUsers("new"); }, [&] { ExpectOld(); }));
    EXPECT_FALSE(FailEach(
        DiskCall::Truncate, EIO, DiskFails, [] { return WriteUsers("newer"); },
        [] { EXPECT_EQ(ReadUsers(), "new"); }));
    EXPECT_EQ(ReadUsers(), "newer");
}

// When the last step fails nobody can say which of the two the disk will hold.
TEST_F(RegistryDiskTest, AWriteThatCannotBeFlushedLeavesTheOldValueOrTheNew) {
    EXPECT_EQ(WriteUsers("old"), 0);
    EXPECT_FALSE(FailEach(
        DiskCall::Sync, EIO, DiskFails, [] { return WriteUsers("new"); },
        [&] {
            EXPECT_THAT(ReadUsers(), AnyOf("old", "new"));
            EXPECT_EQ(FaultsOfTheFile(m_Scope), "ok");
        }));
    EXPECT_EQ(ReadUsers(), "new");
}

TEST_F(RegistryDiskTest, ADiskThatCannotBeReadGivesACodeUntilItCan) {
    EXPECT_EQ(WriteUsers("old"), 0);
    // What fails behind the write itself is no failure of it.
    EXPECT_TRUE(FailEach(
        DiskCall::Read, EIO, AnyOf(DiskFails, Damaged), [] { return WriteUsers("new"); },
        [&] { ExpectOld(); }));
    EXPECT_EQ(ReadUsers(), "new");
    DiskFault const fault(DiskCall::Read, EIO, 0);
    EXPECT_EQ(ReadUsers(), "<1016>");
}

TEST_F(RegistryDiskTest, AnEarlierFailureDoesNotColourALaterOne) {
    EXPECT_EQ(WriteUsers("old"), 0);
    {
        DiskFault const fault(DiskCall::Write, EDQUOT, 0);
        EXPECT_EQ(WriteUsers("new"), DiskFull);
    }
    DiskFault const fault(DiskCall::Read, EIO, 0);
    EXPECT_EQ(ReadUsers(), "<1016>");
}

TEST_F(RegistryDiskTest, ARegistryThatCannotBeMadeIsMadeLater) {
    for (auto const & [systemError, code] : {std::pair{ENOSPC, DiskFull}, {EIO, DiskFails}}) {
        RegistryScope const folder;
        EXPECT_FALSE(FailEach(
            DiskCall::Write, systemError, code, [] { return WriteUsers("new"); },
            [] { EXPECT_EQ(ReadUsers(), "<2>"); }));
        EXPECT_EQ(ReadUsers(), "new");
        EXPECT_EQ(FaultsOfTheFile(folder), "ok");
    }
}

TEST_F(RegistryDiskTest, AKeyThatCannotBeMadeIsNotThere) {
    EXPECT_EQ(WriteUsers("old"), 0);
    static constexpr char path[] = "Software\\One\\Two";
    EXPECT_FALSE(FailEach(
        DiskCall::Write, ENOSPC, DiskFull,
        [] { return Write(HKEY_CURRENT_USER, path, "Value", "new"); },
        [] {
            EXPECT_THAT(Key(HKEY_CURRENT_USER, path).result, AnyOf(0, 2));
            EXPECT_EQ(Read(HKEY_CURRENT_USER, path), "<2>");
        }));
    EXPECT_EQ(Read(HKEY_CURRENT_USER, path), "new");
}

TEST_F(RegistryDiskTest, WhatCannotBeDeletedStays) {
    EXPECT_EQ(WriteUsers("old"), 0);
    Key const key(HKEY_CURRENT_USER, Path, KEY_READ | KEY_WRITE);
    EXPECT_FALSE(FailEach(
        DiskCall::Write, ENOSPC, DiskFull, [&] { return RegDeleteValueA(key.key, "Value"); },
        [&] { ExpectOld(); }));
    EXPECT_EQ(ReadUsers(), "<2>");
    EXPECT_EQ(WriteUsers("old"), 0);
    EXPECT_FALSE(FailEach(
        DiskCall::Write, EIO, DiskFails, [] { return RegDeleteKeyA(HKEY_CURRENT_USER, Path); },
        [&] { ExpectOld(); }));
    EXPECT_EQ(Key(HKEY_CURRENT_USER, Path).result, 2);
}

// The system itself refuses: no file may grow beyond what the registry has.
TEST_F(RegistryDiskTest, AFileThatMayNotGrowIsAFailingDisk) {
    EXPECT_EQ(InChild([] { return WriteUsers("old"); }), 0);
    rlimit limit = {};
    limit.rlim_cur = limit.rlim_max = fs::file_size(m_Scope.Folder() / "user.db");
    EXPECT_EQ(
        InChild([&] {
            signal(SIGXFSZ, SIG_IGN);
            if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
            if (WriteUsers(std::string(50000, 'x')) != DiskFails) return 2;
            return WriteUsers("fits") == 0 ? 0 : 3;
        }),
        0);
    EXPECT_EQ(ReadUsers(), "fits");
    EXPECT_EQ(FaultsOfTheFile(m_Scope), "ok");
}

// A small disk of the child's own in the folder's place.
bool MountedSmallDisk(fs::path const & folder) {
    return unshare(CLONE_NEWNS) == 0
           && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
           && mount("none", folder.c_str(), "tmpfs", 0, "size=128k") == 0;
}

void FillUp(fs::path const & file) {
    std::ofstream stream(file, std::ios::binary);
    std::string const page(4096, 'x');
    for (int pages = 0; stream && pages != 100; ++pages)
        stream << page << std::flush;
}

int UseAFullDisk(fs::path const & folder) {
    if (WriteUsers("old") != 0) return 1;
    FillUp(folder / "filler");
    if (WriteUsers(std::string(50000, 'x')) != DiskFull) return 2;
    if (ReadUsers() != "old") return 3;
    fs::remove(folder / "filler");
    if (WriteUsers("new") != 0) return 4;
    return ReadUsers() == "new" ? 0 : 5;
}

TEST_F(RegistryDiskTest, ADiskThatIsReallyFullGivesItsCodeUntilThereIsRoom) {
    constexpr int notMounted = 99;
    fs::path const folder = m_Scope.Folder();
    int const result =
        InChild([&] { return MountedSmallDisk(folder) ? UseAFullDisk(folder) : notMounted; });
    if (result == notMounted) GTEST_SKIP() << "only who may mount has a small disk to try";
    EXPECT_EQ(result, 0);
}

} // namespace
