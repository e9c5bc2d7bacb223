// A program at a terminal of its own.
#include "qnexe/linux/Pty.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::chrono::seconds Patience{60};

std::vector<char *> PointersTo(std::vector<std::string> & texts) {
    std::vector<char *> pointers;
    for (std::string & text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

void SetVariables(Pty::Variables const & variables) {
    for (char const * name : {"NO_COLOR", "CLICOLOR", "CLICOLOR_FORCE"})
        unsetenv(name);
    setenv("TERM", "xterm-256color", 1);
    for (auto const & [name, value] : variables)
        setenv(name.c_str(), value.c_str(), 1);
}

} // namespace

Pty::Pty(
    std::string const & program, std::vector<std::string> const & arguments,
    Variables const & variables, unsigned short columns)
    : m_Deadline(std::chrono::steady_clock::now() + Patience) {
    std::vector<std::string> texts{program};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    auto const pointers = PointersTo(texts);
    winsize const size{24, columns, 0, 0};
    m_Child = forkpty(&m_Terminal, nullptr, nullptr, &size);
    if (m_Child < 0) throw std::system_error(errno, std::generic_category(), "no terminal");
    if (m_Child == 0) {
        SetVariables(variables);
        execv(program.c_str(), pointers.data());
        _exit(127);
    }
}

Pty::~Pty() {
    if (m_Child > 0) {
        kill(m_Child, SIGKILL);
        waitpid(m_Child, nullptr, 0);
    }
    close(m_Terminal);
}

void Pty::Type(std::string const & keys) {
    if (write(m_Terminal, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
        throw std::system_error(errno, std::generic_category(), "the terminal takes no keys");
}

bool Pty::ReadSome() {
    auto const left = std::chrono::duration_cast<std::chrono::milliseconds>(
        m_Deadline - std::chrono::steady_clock::now());
    pollfd watched = {m_Terminal, POLLIN, 0};
    if (left.count() <= 0 || poll(&watched, 1, static_cast<int>(left.count())) <= 0) return false;
    char bytes[4096];
    // The terminal of a child that is gone gives an error instead of an end.
    ssize_t const count = read(m_Terminal, bytes, sizeof bytes);
    if (count <= 0) return false;
    m_Shown.append(bytes, static_cast<std::size_t>(count));
    return true;
}

void Pty::Signal(int signal) { kill(m_Child, signal); }

termios Pty::Modes() const {
    termios modes = {};
    if (tcgetattr(m_Terminal, &modes) != 0)
        throw std::system_error(errno, std::generic_category(), "the terminal has no modes");
    return modes;
}

void Pty::SetModes(termios const & modes) { tcsetattr(m_Terminal, TCSANOW, &modes); }

int Pty::CountOf(std::string const & text) const {
    int count = 0;
    for (std::size_t at = 0; (at = m_Shown.find(text, at)) != m_Shown.npos; at += text.size())
        ++count;
    return count;
}

bool Pty::WaitFor(std::string const & text, int times) {
    while (CountOf(text) < times)
        if (!ReadSome()) return false;
    return true;
}

std::optional<int> Pty::FinalStatus() {
    while (ReadSome()) {
    }
    if (std::chrono::steady_clock::now() >= m_Deadline) return std::nullopt;
    int status = 0;
    waitpid(m_Child, &status, 0);
    m_Child = -1;
    return status;
}

std::optional<int> Pty::Finish() {
    auto const status = FinalStatus();
    if (!status || !WIFEXITED(*status)) return std::nullopt;
    return WEXITSTATUS(*status);
}

std::optional<int> Pty::FinishBySignal() {
    auto const status = FinalStatus();
    if (!status || !WIFSIGNALED(*status)) return std::nullopt;
    return WTERMSIG(*status);
}

// The terminal puts a return before each line feed.
std::string Pty::Shown() const {
    std::string text;
    for (std::size_t i = 0; i < m_Shown.size(); ++i)
        if (m_Shown[i] != '\r' || i + 1 == m_Shown.size() || m_Shown[i + 1] != '\n')
            text += m_Shown[i];
    return text;
}
