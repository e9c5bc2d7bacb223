// The registry's file off Windows: where it lies, who may use it, and what is refused untouched.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Environment.h"
#include "platform/Registry.h"
#include "platform/RegistryScope.h"
#include "platform/linux/OtherHands.h"
#include "platform/linux/StoreAccess.h"

namespace {

mode_t ModeOf(fs::path const & path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

// The file in other hands: SQL from outside.
void Execute(fs::path const & file, char const * script) {
    sqlite3 * database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, script, nullptr, nullptr, nullptr), SQLITE_OK) << script;
    sqlite3_close(database);
}

class RegistryStoreTest : public testing::Test {
protected:
    // Everything in the folder, with its bytes.
    std::vector<std::pair<std::string, std::string>> Folder() {
        std::vector<std::pair<std::string, std::string>> files;
        for (auto const & entry : fs::directory_iterator(m_Scope.Folder()))
            files.emplace_back(entry.path().filename().string(), Contents(entry.path()));
        std::sort(files.begin(), files.end());
        return files;
    }

    // Reading and writing answer with the code, and no byte in the folder changes.
    void ExpectRefused(int code) {
        auto const before = Folder();
        EXPECT_EQ(Read(), '<' + std::to_string(code) + '>');
        EXPECT_EQ(Write("x"), code);
        EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, Path), code);
        EXPECT_EQ(Folder(), before);
    }

    RegistryScope m_Scope;
};

TEST_F(RegistryStoreTest, ReadingCreatesNoFile) {
    EXPECT_EQ(Read(), "<2>");
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, Path), 2);
    EXPECT_EQ(RegDeleteValueA(HKEY_LOCAL_MACHINE, "None"), 2);
    std::string text;
    EXPECT_EQ(Query(HKEY_LOCAL_MACHINE, "None", text), 2);
    char name[8];
    DWORD size = sizeof name;
    EXPECT_EQ(
        RegEnumValueA(HKEY_LOCAL_MACHINE, 0, name, &size, nullptr, nullptr, nullptr, nullptr), 259);
    EXPECT_TRUE(Folder().empty());
}

TEST_F(RegistryStoreTest, AnEmptyFileIsAnEmptyRegistry) {
    PutContents(m_Scope.File(), "");
    EXPECT_EQ(Read(), "<2>");
    EXPECT_EQ(Write("text"), 0);
    EXPECT_EQ(Read(), "text");
}

TEST_F(RegistryStoreTest, MachineAndUserAreTwoFiles) {
    EXPECT_EQ(Write("machine"), 0);
    EXPECT_EQ(Read(HKEY_CURRENT_USER), "<2>");
    EXPECT_EQ(Write(HKEY_CURRENT_USER, Path, "Value", "user"), 0);
    EXPECT_EQ(Read(), "machine");
    EXPECT_EQ(Read(HKEY_CURRENT_USER), "user");
    EXPECT_TRUE(fs::exists(m_Scope.File()));
    EXPECT_TRUE(fs::exists(m_Scope.Folder() / "user.db"));
}

TEST_F(RegistryStoreTest, AValueMayStandInTheRootItself) {
    EXPECT_EQ(Write(HKEY_LOCAL_MACHINE, "", "Value", "root"), 0);
    EXPECT_EQ(Read(HKEY_LOCAL_MACHINE, ""), "root");
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, ""), 5);
    EXPECT_EQ(RegDeleteValueA(HKEY_LOCAL_MACHINE, "value"), 0);
    EXPECT_EQ(Read(HKEY_LOCAL_MACHINE, ""), "<2>");
}

TEST_F(RegistryStoreTest, FilesInAnOwnFolderAreForTheOwnerAlone) {
    fs::path const folder = m_Scope.Folder() / "made" / "here";
    SetEnvironment("QN_REGISTRY", folder.c_str());
    mode_t const mask = umask(0);
    EXPECT_EQ(Write("text"), 0);
    umask(mask);
    EXPECT_EQ(ModeOf(folder.parent_path()), 0700u);
    EXPECT_EQ(ModeOf(folder), 0700u);
    EXPECT_EQ(ModeOf(folder / "registry.db"), 0600u);
    EXPECT_EQ(ModeOf(folder / "registry.db-journal"), 0600u);
}

TEST_F(RegistryStoreTest, AUsersFilesLieWithTheConfiguration) {
    ClearEnvironment("QN_REGISTRY");
    SetEnvironment("XDG_CONFIG_HOME", m_Scope.Folder().c_str());
    EXPECT_EQ(Write(HKEY_CURRENT_USER, Path, "Value", "user"), 0);
    EXPECT_EQ(ModeOf(m_Scope.Folder() / "morvex"), 0700u);
    EXPECT_EQ(ModeOf(m_Scope.Folder() / "morvex" / "user.db"), 0600u);
    ClearEnvironment("XDG_CONFIG_HOME");
    SetEnvironment("HOME", m_Scope.Folder().c_str());
    EXPECT_EQ(Read(HKEY_CURRENT_USER), "<2>");
    EXPECT_EQ(Write(HKEY_CURRENT_USER, Path, "Value", "home"), 0);
    EXPECT_EQ(ModeOf(m_Scope.Folder() / ".config"), 0700u);
    EXPECT_EQ(ModeOf(m_Scope.Folder() / ".config" / "morvex" / "user.db"), 0600u);
}

TEST_F(RegistryStoreTest, TheFolderMayChangeWithinAProcess) {
    EXPECT_EQ(Write("here"), 0);
    RegistryScope const other;
    EXPECT_EQ(Read(), "<2>");
    EXPECT_EQ(Write("there"), 0);
    SetEnvironment("QN_REGISTRY", m_Scope.Folder().c_str());
    EXPECT_EQ(Read(), "here");
}

TEST_F(RegistryStoreTest, AKeyStaysWithTheFolderThatItWasOpenedIn) {
    EXPECT_EQ(Write("here"), 0);
    Key const key(HKEY_LOCAL_MACHINE, Path);
    RegistryScope const other;
    EXPECT_EQ(Write("there"), 0);
    std::string text;
    EXPECT_EQ(Query(key.key, "Value", text), 0);
    EXPECT_EQ(text, "here");
}

TEST_F(RegistryStoreTest, AFileThatIsNoDatabaseIsRefused) {
    PutContents(m_Scope.File(), std::string(5000, 'x'));
    ExpectRefused(1015);
}

TEST_F(RegistryStoreTest, ATruncatedFileIsRefused) {
    EXPECT_EQ(InChild([] { return Write(std::string(20000, 'x')); }), 0);
    fs::resize_file(m_Scope.File(), 6000);
    ExpectRefused(1015);
}

TEST_F(RegistryStoreTest, ADamagedPageGivesACodeAndStays) {
    EXPECT_EQ(InChild([] { return Write("text"); }), 0);
    std::string bytes = Contents(m_Scope.File());
    for (std::size_t page = 4096; page < bytes.size(); page += 4096)
        std::memset(&bytes[page], 0x5A, 200);
    PutContents(m_Scope.File(), bytes);
    ExpectRefused(1015);
}

TEST_F(RegistryStoreTest, ARegistryOfALaterVersionIsRefused) {
    EXPECT_EQ(InChild([] { return Write("text"); }), 0);
    Execute(m_Scope.File(), "PRAGMA user_version = 2");
    ExpectRefused(1017);
}

TEST_F(RegistryStoreTest, ALaterVersionWithAWriteAheadLogIsRefused) {
    EXPECT_EQ(InChild([] { return Write("text"); }), 0);
    Execute(m_Scope.File(), "PRAGMA user_version = 2; PRAGMA journal_mode = WAL");
    ExpectRefused(1017);
}

// Opening it would change it back.
TEST_F(RegistryStoreTest, ARegistryWithAWriteAheadLogIsRefused) {
    EXPECT_EQ(InChild([] { return Write("text"); }), 0);
    Execute(m_Scope.File(), "PRAGMA journal_mode = WAL");
    ExpectRefused(1017);
}

TEST_F(RegistryStoreTest, AnotherProgramsDatabaseIsRefused) {
    Execute(m_Scope.File(), "CREATE TABLE notes(text)");
    ExpectRefused(1017);
    Execute(m_Scope.File(), "DROP TABLE notes; PRAGMA application_id = 5");
    ExpectRefused(1017);
}

TEST_F(RegistryStoreTest, AFolderInPlaceOfTheFileCannotBeOpened) {
    fs::create_directory(m_Scope.File());
    EXPECT_EQ(Read(), "<1011>");
    EXPECT_EQ(Write("x"), 1011);
}

TEST_F(RegistryStoreTest, AFileInPlaceOfTheFolderCannotBeOpened) {
    PutContents(m_Scope.Folder() / "file", "x");
    SetEnvironment("QN_REGISTRY", (m_Scope.Folder() / "file").c_str());
    EXPECT_EQ(Read(), "<1011>");
    EXPECT_EQ(Write("x"), 1011);
}

TEST_F(RegistryStoreTest, WhoMayOnlyReadIsDeniedWriting) {
    EXPECT_EQ(InChild([] { return Write("text"); }), 0);
    fs::permissions(m_Scope.Folder(), fs::perms(0755));
    fs::permissions(m_Scope.File(), fs::perms(0444));
    AsSomebody const somebody;
    EXPECT_EQ(Read(), "text");
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, Path, KEY_WRITE).result, 5);
    EXPECT_EQ(Write("other"), 5);
    EXPECT_EQ(Write(HKEY_LOCAL_MACHINE, "Software\\New", "Value", "x"), 5);
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, Path), 5);
    EXPECT_EQ(Read(), "text");
}

TEST_F(RegistryStoreTest, WhoMayNotWriteInTheFolderIsDenied) {
    EXPECT_EQ(InChild([] { return Write("text"); }), 0);
    fs::remove(m_Scope.Folder() / "registry.db-journal");
    fs::permissions(m_Scope.File(), fs::perms(0666));
    fs::permissions(m_Scope.Folder(), fs::perms(0555));
    AsSomebody const somebody;
    EXPECT_EQ(Read(), "text");
    EXPECT_EQ(Write("other"), 5);
    EXPECT_EQ(Read(), "text");
}

TEST_F(RegistryStoreTest, WhoMayNotReadIsDenied) {
    EXPECT_EQ(InChild([] { return Write("text"); }), 0);
    fs::permissions(m_Scope.Folder(), fs::perms(0755));
    AsSomebody const somebody;
    if (access(m_Scope.File().c_str(), R_OK) == 0 && geteuid() != 65534)
        GTEST_SKIP() << "only root has somebody else's rights to try";
    EXPECT_EQ(Read(), "<5>");
    EXPECT_EQ(Write("other"), 5);
}

TEST_F(RegistryStoreTest, AFolderThatMayNotBeMadeIsDenied) {
    fs::permissions(m_Scope.Folder(), fs::perms(0555));
    SetEnvironment("QN_REGISTRY", (m_Scope.Folder() / "new").c_str());
    AsSomebody const somebody;
    EXPECT_EQ(Read(), "<2>");
    EXPECT_EQ(Write("x"), 5);
}

TEST_F(RegistryStoreTest, ALockedFileIsBusyAfterAWhile) {
    EXPECT_EQ(Write("text"), 0);
    sqlite3 * holder = nullptr;
    ASSERT_EQ(sqlite3_open(m_Scope.File().c_str(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(Write("other"), 170);
    ASSERT_EQ(sqlite3_exec(holder, "ROLLBACK", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(holder);
    EXPECT_EQ(Read(), "text");
    EXPECT_EQ(Write("other"), 0);
}

// The file's change counter as if others wrote, twice a second for longer than a quiet file is
// waited for; then the holder lets go.
void WriteForLong(int file, sqlite3 * holder) {
    constexpr off_t changeCounter = 24;
    for (unsigned char change = 1; change != 14; ++change) {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        EXPECT_EQ(pwrite(file, &change, 1, changeCounter), 1);
    }
    EXPECT_EQ(sqlite3_exec(holder, "ROLLBACK", nullptr, nullptr, nullptr), SQLITE_OK);
}

TEST_F(RegistryStoreTest, AFileThatOthersWriteIsWaitedForLonger) {
    EXPECT_EQ(Write("text"), 0);
    sqlite3 * holder = nullptr;
    ASSERT_EQ(sqlite3_open(m_Scope.File().c_str(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    int const file = open(m_Scope.File().c_str(), O_RDWR | O_CLOEXEC);
    std::thread others(WriteForLong, file, holder);
    EXPECT_EQ(Write("other"), 0);
    others.join();
    EXPECT_EQ(Read(), "other");
    sqlite3_close(holder);
    close(file);
}

TEST_F(RegistryStoreTest, AChangeFromOutsideIsSeenAtOnce) {
    EXPECT_EQ(Write("first"), 0);
    Key const key(HKEY_LOCAL_MACHINE, Path);
    std::string text;
    EXPECT_EQ(Query(key.key, "Value", text), 0);
    EXPECT_EQ(Query(key.key, "Other", text), 2);
    for (std::string const each : {"second", "third", "fourth"}) {
        EXPECT_EQ(InChild([&] { return Write(each); }), 0);
        EXPECT_EQ(Query(key.key, "Value", text), 0);
        EXPECT_EQ(text, each);
    }
    EXPECT_EQ(InChild([] { return Write(HKEY_LOCAL_MACHINE, Path, "Other", "new"); }), 0);
    EXPECT_EQ(Query(key.key, "OTHER", text), 0);
    EXPECT_EQ(text, "new");
    EXPECT_EQ(InChild([] { return RegDeleteKeyA(HKEY_LOCAL_MACHINE, Path); }), 0);
    EXPECT_EQ(Query(key.key, "Value", text), 1018);
    EXPECT_EQ(Read(), "<2>");
}

TEST_F(RegistryStoreTest, WhatIsKeptInMemoryHoldsBetweenOwnAndForeignChanges) {
    auto const write = [](char const * name, std::string const & text) {
        return Write(HKEY_LOCAL_MACHINE, Path, name, text);
    };
    EXPECT_EQ(write("Own", "0"), 0);
    EXPECT_EQ(write("Foreign", "0"), 0);
    Key const key(HKEY_LOCAL_MACHINE, Path);
    for (int round = 1; round != 6; ++round) {
        SCOPED_TRACE(round);
        std::string const text = std::to_string(round);
        std::string read;
        EXPECT_EQ(Query(key.key, "Own", read) + Query(key.key, "Foreign", read), 0);
        if (round % 2 == 0) {
            EXPECT_EQ(write("Own", text), 0);
        }
        EXPECT_EQ(InChild([&] { return write("Foreign", text); }), 0);
        if (round % 3 != 0) {
            EXPECT_EQ(write("Own", text), 0);
        }
        EXPECT_EQ(Query(key.key, "Foreign", read), 0);
        EXPECT_EQ(read, text);
        EXPECT_EQ(Query(key.key, "Own", read), 0);
        EXPECT_EQ(read, round == 3 ? "2" : text);
    }
}

TEST_F(RegistryStoreTest, ARemovedFileIsAnEmptyRegistry) {
    EXPECT_EQ(Write("text"), 0);
    Key const key(HKEY_LOCAL_MACHINE, Path, KEY_READ | KEY_WRITE);
    fs::remove(m_Scope.File());
    EXPECT_EQ(Read(), "<2>");
    BYTE const byte = 1;
    EXPECT_EQ(RegSetValueExA(key.key, "Value", 0, REG_BINARY, &byte, 1), 1018);
    EXPECT_EQ(Write("again"), 0);
    EXPECT_EQ(Read(), "again");
    EXPECT_EQ(InChild([] { return Read() == "again" ? 0 : 1; }), 0);
}

TEST_F(RegistryStoreTest, AForkedChildHasAConnectionOfItsOwn) {
    EXPECT_EQ(Write("parent"), 0);
    Key const key(HKEY_LOCAL_MACHINE, Path);
    EXPECT_EQ(
        InChild([&] {
            std::string text;
            if (Query(key.key, "Value", text) != 6) return 1;
            if (Read() != "parent") return 2;
            return static_cast<int>(Write("child"));
        }),
        0);
    EXPECT_EQ(Read(), "child");
    EXPECT_EQ(Write("parent again"), 0);
    EXPECT_EQ(InChild([] { return Read() == "parent again" ? 0 : 1; }), 0);
}

// A sanitizer may have one of its own.
std::ptrdiff_t Threads() {
    auto const tasks = fs::directory_iterator("/proc/self/task");
    return std::distance(fs::begin(tasks), fs::end(tasks));
}

TEST_F(RegistryStoreTest, TheStoreStartsNoThread) {
    EXPECT_EQ(
        InChild([] {
            auto const before = Threads();
            if (Write("text") != 0 || Read() != "text") return 1;
            return static_cast<int>(Threads() - before);
        }),
        0);
}

TEST_F(RegistryStoreTest, NothingIsInheritedByAProgram) {
    EXPECT_EQ(Write("text"), 0);
    for (auto const & entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        auto const target = fs::read_symlink(entry.path(), ignored).string();
        if (target.find("registry.db") == target.npos) continue;
        std::ifstream info("/proc/self/fdinfo/" + entry.path().filename().string());
        std::string const all{std::istreambuf_iterator<char>(info), {}};
        auto const at = all.find("flags:\t");
        ASSERT_NE(at, all.npos);
        EXPECT_NE(std::stoul(all.substr(at + 7), nullptr, 8) & 02000000, 0u) << target;
    }
}

TEST_F(RegistryStoreTest, AWalkEndsWhenTheStoreFails) {
    EXPECT_EQ(Write("text"), 0);
    Key const key(HKEY_LOCAL_MACHINE, Path);
    auto const step = [&](DWORD index) {
        char name[16];
        DWORD size = sizeof name;
        return RegEnumValueA(key.key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(step(0), 0);
    EXPECT_EQ(step(1), 259);
    EXPECT_EQ(step(0), 0);
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, Path), 0);
    EXPECT_EQ(step(1), 1018);
    EXPECT_EQ(step(2), 259);
    EXPECT_EQ(step(0), 1018);
}

TEST_F(RegistryStoreTest, ThreadsWriteAndReadTogether) {
    EXPECT_EQ(Write("text"), 0);
    std::array<std::thread, 4> threads;
    for (std::size_t number = 0; number != threads.size(); ++number) {
        threads[number] = std::thread([number] {
            std::string const name = "Value" + std::to_string(number);
            for (int i = 0; i != 20; ++i) {
                std::string const text = name + ':' + std::to_string(i);
                EXPECT_EQ(Write(HKEY_LOCAL_MACHINE, Path, name.c_str(), text), 0);
                Key const key(HKEY_LOCAL_MACHINE, Path);
                std::string read;
                EXPECT_EQ(Query(key.key, name.c_str(), read), 0);
                EXPECT_EQ(read, text);
            }
        });
    }
    for (auto & thread : threads)
        thread.join();
}

TEST_F(RegistryStoreTest, ValuesBeyondTheCachesLimitAreReadAsWell) {
    std::string const text(900, 'x');
    for (int i = 0; i != 60; ++i)
        EXPECT_EQ(Write(HKEY_LOCAL_MACHINE, Path, std::to_string(i).c_str(), text), 0);
    Key const key(HKEY_LOCAL_MACHINE, Path);
    for (int round = 0; round != 2; ++round) {
        for (int i = 0; i != 9000; ++i) {
            std::string read;
            LSTATUS const expected = i < 60 ? 0 : 2;
            ASSERT_EQ(Query(key.key, (std::string(500, '0') + std::to_string(i)).c_str(), read), 2);
            ASSERT_EQ(Query(key.key, std::to_string(i).c_str(), read), expected);
            ASSERT_EQ(read, i < 60 ? text : "");
        }
    }
}

} // namespace
