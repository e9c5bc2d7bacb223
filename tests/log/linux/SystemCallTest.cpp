// What an entry costs the system: no call when it is dropped, one write when it goes to a file.
#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "log/CConsoleOutMXLog.h"
#include "log/CDummyMXLog.h"
#include "log/CRawTextMXLog.h"
#include "log/LogBench.h"
#include "platform/Wrap.h"

MORVEX_WRAP_API(std::FILE *, fopen, (char const * name, char const * mode), (name, mode))

namespace {

constexpr unsigned int kNoCall = ~0u;

// From here on the process ends by SIGSYS at any system call but its end and `allowed`.
bool ForbidSystemCalls(unsigned int allowed) {
    std::array<sock_filter, 6> filter = {{
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        {BPF_JMP | BPF_JEQ | BPF_K, 3, 0, SYS_exit_group},
        {BPF_JMP | BPF_JEQ | BPF_K, 2, 0, SYS_exit},
        {BPF_JMP | BPF_JEQ | BPF_K, 1, 0, allowed},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_KILL_PROCESS},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    }};
    sock_fprog program = {filter.size(), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
           && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

// Runs `action` in this process, which ends with it: 0, or a signal at a forbidden call.
template <typename Action>
[[noreturn]] void EndAfter(unsigned int allowed, Action action) {
    if (!ForbidSystemCalls(allowed)) _exit(2);
    action();
    _exit(0);
}

constexpr char kName[] = "log.txt";

// A pipe that keeps each write as a packet of its own, in the place of the file `kName`.
class PacketFile {
public:
    PacketFile() {
        if (pipe2(m_Ends.data(), O_DIRECT | O_NONBLOCK) != 0) ADD_FAILURE() << "no pipe";
    }
    ~PacketFile() { close(m_Ends[0]); }
    PacketFile(PacketFile const &) = delete;
    PacketFile & operator=(PacketFile const &) = delete;

    std::vector<std::string> Packets() const {
        std::vector<std::string> packets;
        std::array<char, 4096> packet;
        for (;;) {
            ssize_t const size = read(m_Ends[0], packet.data(), packet.size());
            if (size <= 0) return packets;
            packets.emplace_back(packet.data(), static_cast<std::size_t>(size));
        }
    }

    // Leaves no room for a further packet.
    void Fill() const {
        while (write(m_Ends[1], "x", 1) == 1) {
        }
    }

private:
    std::array<int, 2> m_Ends{};

    Diversion<std::FILE *(char const *, char const *)> const m_Open{
        wrapped_fopen, [this](char const * name, char const * mode) {
            return name == std::string(kName) ? fdopen(m_Ends[1], "a")
                                              : wrapped_fopen.Real(name, mode);
        }};
};

using Packets = std::vector<std::string>;

class SystemCallTest : public testing::Test {
protected:
    SystemCallTest() { m_Bench.m_Suite.OpenTest(true); }

    LogBench m_Bench;
};

using SystemCallDeathTest = SystemCallTest;

class ExposedRawLog : public CRawTextMXLog {
public:
    using CRawTextMXLog::CRawTextMXLog;
    using CRawTextMXLog::InternalWrite;
};

} // namespace

TEST_F(SystemCallDeathTest, AForbiddenCallEndsTheProcess) {
    EXPECT_EXIT(
        EndAfter(kNoCall, [] { syscall(SYS_getppid); }), testing::KilledBySignal(SIGSYS), "");
}

TEST_F(SystemCallDeathTest, AFilteredEntryMakesNoSystemCall) {
    CDummyMXLog log;
    EXPECT_EXIT(
        EndAfter(
            kNoCall,
            [&] {
                for (int i = 0; i < 1000; ++i)
                    log.Write(TEST_STATUS_INFO, Verbose, "%s has %d ports", "hub", i);
            }),
        testing::ExitedWithCode(0), "");
}

TEST_F(SystemCallDeathTest, AFilteredEntryOfAFileMakesNoSystemCall) {
    PacketFile const file;
    CRawTextMXLog log(kName);
    EXPECT_EXIT(
        EndAfter(kNoCall, [&] { log.Write(TEST_STATUS_INFO, Verbose, "%d", 1); }),
        testing::ExitedWithCode(0), "");
}

TEST_F(SystemCallDeathTest, AnEntryToAFileMakesNoSystemCallButWrites) {
    PacketFile const file;
    CRawTextMXLog log(kName);
    // Thread's buffer and stream are there from the second entry on.
    log.Write(TEST_STATUS_INFO, "first");
    EXPECT_EXIT(
        EndAfter(SYS_write, [&] { log.Write(TEST_STATUS_INFO, "%s", "second"); }),
        testing::ExitedWithCode(0), "");
}

TEST_F(SystemCallTest, AnEntryToAFileIsOneWrite) {
    PacketFile const file;
    CRawTextMXLog log(kName);
    log.Write(TEST_STATUS_INFO, "%s", "one");
    log.Write(TEST_STATUS_INFO, "%s", "two\nlines");
    log.Write(TEST_STATUS_INFO, "%s", "");
    std::string const text(3000, 'x');
    log.Write(TEST_STATUS_INFO, "%s", text);
    EXPECT_EQ(file.Packets(), (Packets{"one\n", "two\nlines\n", "\n", text + '\n'}));
}

TEST_F(SystemCallTest, AnEntryToTheFileOfAConsoleLogIsOneWrite) {
    PacketFile const file;
    testing::internal::CaptureStderr();
    {
        CConsoleOutMXLog log(kName);
        log.Write(TEST_STATUS_FAIL, "%s", "one");
        log.Write(TEST_STATUS_INFO, "%s", "two");
        EXPECT_EQ(file.Packets(), (Packets{"FAIL    one\n", "INFO    two\n"}));
    }
    testing::internal::GetCapturedStderr();
}

TEST_F(SystemCallTest, AnEntryAfterOneThatFailedArrives) {
    PacketFile const file;
    ExposedRawLog log(kName);
    file.Fill();
    EXPECT_EQ(log.InternalWrite(TEST_STATUS_INFO, "lost", nullptr), TS_WRITE_FAILED);
    file.Packets();
    EXPECT_EQ(log.InternalWrite(TEST_STATUS_INFO, "kept", nullptr), TS_SUCCESS);
    EXPECT_EQ(file.Packets(), Packets{"kept\n"});
}
