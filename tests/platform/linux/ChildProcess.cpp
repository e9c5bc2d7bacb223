// Child processes by posix_spawn.
#include "platform/ChildProcess.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

struct ChildProcess::Native {
    pid_t id = 0;
};

namespace {

void Check(int error, char const * what) {
    if (error != 0) throw std::system_error(error, std::generic_category(), what);
}

// The child's three streams.
class Streams {
public:
    Streams(char const * output, char const * error) {
        constexpr int create = O_WRONLY | O_CREAT | O_TRUNC;
        Check(posix_spawn_file_actions_init(&m_Actions), "file actions");
        Open(STDIN_FILENO, "/dev/null", O_RDONLY);
        Open(STDOUT_FILENO, output, create);
        Open(STDERR_FILENO, error, create);
    }
    Streams(Streams const &) = delete;
    Streams & operator=(Streams const &) = delete;
    ~Streams() { posix_spawn_file_actions_destroy(&m_Actions); }

    posix_spawn_file_actions_t const * Get() const { return &m_Actions; }

private:
    void Open(int stream, char const * file, int flags) {
        Check(posix_spawn_file_actions_addopen(&m_Actions, stream, file, flags, 0666), file);
    }

    posix_spawn_file_actions_t m_Actions;
};

// Whoever started the tests may have had Ctrl-C ignored or blocked; the child starts like a program
// at a terminal.
class FreshSignals {
public:
    FreshSignals() {
        sigset_t none;
        sigset_t interrupt;
        sigemptyset(&none);
        sigemptyset(&interrupt);
        sigaddset(&interrupt, SIGINT);
        Check(posix_spawnattr_init(&m_Attributes), "attributes");
        Check(posix_spawnattr_setsigmask(&m_Attributes, &none), "signal mask");
        Check(posix_spawnattr_setsigdefault(&m_Attributes, &interrupt), "signal default");
        constexpr short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        Check(posix_spawnattr_setflags(&m_Attributes, flags), "flags");
    }
    FreshSignals(FreshSignals const &) = delete;
    FreshSignals & operator=(FreshSignals const &) = delete;
    ~FreshSignals() { posix_spawnattr_destroy(&m_Attributes); }

    posix_spawnattr_t const * Get() const { return &m_Attributes; }

private:
    posix_spawnattr_t m_Attributes;
};

std::vector<char *> Pointers(std::vector<std::string> & texts) {
    std::vector<char *> pointers;
    for (auto & text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

ChildProcess::End EndOf(int status) {
    ChildProcess::End end;
    if (WIFEXITED(status)) end.code = WEXITSTATUS(status);
    end.interrupted = WIFSIGNALED(status) && WTERMSIG(status) == SIGINT;
    end.killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    return end;
}

} // namespace

std::filesystem::path ProgramFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::string ProgramFileName(std::string const & name) { return name; }

std::string TextOfBytes(std::string bytes) { return bytes; }

void PrepareInterruptions() {}

ChildProcess::ChildProcess(
    std::filesystem::path const & program, std::vector<std::string> const & arguments,
    std::filesystem::path const & folder)
    : m_OutputFile(folder / "stdout"),
      m_ErrorFile(folder / "stderr"),
      m_Native(std::make_unique<Native>()) {
    std::vector<std::string> words{program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    Streams const streams(m_OutputFile.c_str(), m_ErrorFile.c_str());
    FreshSignals const signals;
    auto const argv = Pointers(words);
    Check(
        posix_spawn(
            &m_Native->id, program.c_str(), streams.Get(), signals.Get(), argv.data(), environ),
        program.c_str());
}

ChildProcess::~ChildProcess() {
    if (!IsRunning()) return;
    Kill();
    Wait();
}

void ChildProcess::Poll() {
    int status = 0;
    if (m_End || waitpid(m_Native->id, &status, WNOHANG) != m_Native->id) return;
    m_End = EndOf(status);
}

void ChildProcess::Interrupt() {
    if (IsRunning()) kill(m_Native->id, SIGINT);
}

void ChildProcess::Kill() {
    if (IsRunning()) kill(m_Native->id, SIGKILL);
}
