// The files behind named mutexes: where they are, what they are left as, and what is refused.
#include <filesystem>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/NameHolding.h"
#include "platform/Synchronization.h"
#include "platform/linux/NoMoreDescriptors.h"

namespace {

namespace fs = std::filesystem;

class NamedMutexFileTest : public NameHolding {
protected:
    // The last error of taking a name for a moment; whether it was given stands in `m_Given`.
    DWORD Take(std::wstring const & name) {
        SetLastError(4711);
        HANDLE const mutex = CreateMutexW(nullptr, FALSE, name.c_str());
        DWORD const error = GetLastError();
        m_Given = mutex != nullptr;
        if (m_Given) CloseHandle(mutex);
        return error;
    }

    DWORD Refusal(std::wstring const & name) {
        DWORD const error = Take(name);
        EXPECT_FALSE(m_Given);
        return error;
    }

    static mode_t ModeOf(fs::path const & file) {
        struct stat about = {};
        EXPECT_EQ(stat(file.c_str(), &about), 0) << file;
        return about.st_mode & 07777;
    }

    fs::path LockFile(std::string const & name) const {
        return Folder() / ("morvex." + name + ".lock");
    }

    bool m_Given = false;
};

TEST_F(NamedMutexFileTest, TheFileStaysWithTheUserAlone) {
    EXPECT_EQ(Take(L"name"), ERROR_SUCCESS);
    EXPECT_EQ(ModeOf(LockFile("name")), mode_t{01600});
    EXPECT_EQ(Take(L"name"), ERROR_SUCCESS);
}

TEST_F(NamedMutexFileTest, ALeftoverFileBlocksNothing) {
    std::ofstream(LockFile("name")) << "of an earlier run";
    EXPECT_EQ(Take(L"name"), ERROR_SUCCESS);
}

TEST_F(NamedMutexFileTest, ANameCannotLeaveTheFolder) {
    EXPECT_EQ(Take(L"../../name\x01%"), ERROR_SUCCESS);
    EXPECT_TRUE(fs::exists(LockFile("..%2F..%2Fname%01%25")));
    EXPECT_EQ(Take(L"\u00e9\u20ac\U0001F600"), ERROR_SUCCESS);
    EXPECT_TRUE(fs::exists(LockFile("\u00e9\u20ac\U0001F600")));
}

TEST_F(NamedMutexFileTest, TheMachinesNamesAreForEveryUser) {
    std::string const name = Name() + " of all";
    EXPECT_EQ(Take(L"Global\\" + std::wstring(name.begin(), name.end())), ERROR_SUCCESS);
    fs::path const file = fs::path("/run/lock") / ("morvex." + name + ".lock");
    EXPECT_EQ(ModeOf(file), mode_t{01666});
    fs::remove(file);
}

TEST_F(NamedMutexFileTest, WithoutASessionTheUsersNamesAreAmongTheMachines) {
    std::string const user = std::to_string(geteuid());
    if (fs::exists("/run/user/" + user)) GTEST_SKIP() << "there is a session";
    for (char const * const session : {"", "relative"}) {
        SetEnvironment("XDG_RUNTIME_DIR", session);
        EXPECT_EQ(Take(std::wstring(Name().begin(), Name().end())), ERROR_SUCCESS);
        fs::path const file = fs::path("/run/lock") / ("morvex-" + user + '.' + Name() + ".lock");
        EXPECT_EQ(ModeOf(file), mode_t{01600});
        fs::remove(file);
    }
}

TEST_F(NamedMutexFileTest, ALinkInTheFilesPlaceIsNotFollowed) {
    fs::create_symlink(Folder() / "elsewhere", LockFile("name"));
    EXPECT_EQ(Refusal(L"name"), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(fs::exists(Folder() / "elsewhere"));
}

TEST_F(NamedMutexFileTest, AFolderThatIsNotThereIsTold) {
    SetEnvironment("XDG_RUNTIME_DIR", (Folder() / "none").c_str());
    EXPECT_EQ(Refusal(L"name"), ERROR_PATH_NOT_FOUND);
}

TEST_F(NamedMutexFileTest, ANameThatIsTooLongForAFileIsRefused) {
    std::wstring const longest(255 - std::string("morvex..lock").size(), L'x');
    EXPECT_EQ(Take(longest), ERROR_SUCCESS);
    EXPECT_EQ(Refusal(longest + L"x"), ERROR_FILENAME_EXCED_RANGE);
}

TEST_F(NamedMutexFileTest, WithoutDescriptorsThereIsNone) {
    NoMoreDescriptors const none;
    EXPECT_EQ(Refusal(L"name"), ERROR_TOO_MANY_OPEN_FILES);
}

TEST_F(NamedMutexFileTest, AnInitialOwnerIsRefusedAndItIsNothingToWaitFor) {
    SetLastError(0);
    EXPECT_EQ(CreateMutexW(nullptr, TRUE, L"name"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    HANDLE const mutex = CreateMutexW(nullptr, FALSE, L"name");
    EXPECT_EQ(WaitForSingleObject(mutex, 0), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(ReleaseMutex(mutex));
    EXPECT_TRUE(CloseHandle(mutex));
}

TEST_F(NamedMutexFileTest, AGuardThatIsNeverGivenBackEndsInARefusal) {
    Take(L"name");
    int const file = open(LockFile("name").c_str(), O_RDWR | O_CLOEXEC);
    struct flock guard = {};
    guard.l_type = F_WRLCK;
    guard.l_len = 1;
    ASSERT_EQ(fcntl(file, F_OFD_SETLK, &guard), 0);
    EXPECT_EQ(Refusal(L"name"), ERROR_LOCK_VIOLATION);
    close(file);
    EXPECT_EQ(Take(L"name"), ERROR_SUCCESS);
}

} // namespace
