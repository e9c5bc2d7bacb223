// What a signal finds and leaves of a terminal in which a line is edited. Each case is a process at
// a terminal of its own.
#include "siblings/promptline/linux/TerminalModes.h"

#include <optional>
#include <utility>

#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace {

tcflag_t Echo(int terminal) {
    termios modes = {};
    tcgetattr(terminal, &modes);
    return modes.c_lflag & ECHO;
}

// As an editor does.
void TakeEchoAway() {
    termios modes = {};
    tcgetattr(STDIN_FILENO, &modes);
    modes.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &modes);
}

class Editing {
public:
    Editing() {
        TakeEchoAway();
        m_Modes->Edited();
    }
    void End() { m_Modes.reset(); }

private:
    std::optional<TerminalModes> m_Modes{std::in_place};
};

struct Left {
    bool echoes;
    // Empty when a signal ended the process.
    std::optional<int> code;
    int signal;
};

// Runs `act` at a terminal; its result is the exit code.
template <typename Act>
Left AtTerminal(Act act) {
    int terminal = -1;
    pid_t const child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) _exit(act());
    int status = 0;
    waitpid(child, &status, 0);
    Left const left = {
        Echo(terminal) != 0, WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt,
        WIFSIGNALED(status) ? WTERMSIG(status) : 0};
    close(terminal);
    return left;
}

int calls = 0;
tcflag_t echoSeen = 0;

void NoteCall(int) {
    ++calls;
    echoSeen = Echo(STDIN_FILENO);
}

void OtherHandler(int) {}

void SetHandler(int signal, void (*handler)(int), int flags = 0) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(signal, &action, nullptr);
}

void (*HandlerOf(int signal))(int) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

TEST(TerminalModesTest, ASignalThatNobodyHandlesEndsTheProcessAtATerminalAsItWas) {
    for (int const signal : {SIGABRT, SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        SCOPED_TRACE(signal);
        Left const left = AtTerminal([signal] {
            Editing const editing;
            raise(signal);
            return 0;
        });
        EXPECT_EQ(left.signal, signal);
        EXPECT_TRUE(left.echoes);
    }
}

TEST(TerminalModesTest, AHandlerFindsTheTerminalAsItWasAndEditingGoesOn) {
    Left const left = AtTerminal([] {
        SetHandler(SIGTERM, NoteCall);
        Editing const editing;
        raise(SIGTERM);
        raise(SIGTERM);
        return calls == 2 && echoSeen != 0 && Echo(STDIN_FILENO) == 0 ? 0 : 1;
    });
    EXPECT_EQ(left.code, 0);
}

TEST(TerminalModesTest, AHandlerThatIsCalledOnceLeavesTheNextSignalToTheSystem) {
    Left const left = AtTerminal([] {
        SetHandler(SIGINT, NoteCall, static_cast<int>(SA_RESETHAND));
        Editing const editing;
        raise(SIGINT);
        if (calls == 1) raise(SIGINT);
        return 0;
    });
    EXPECT_EQ(left.signal, SIGINT);
    EXPECT_TRUE(left.echoes);
}

TEST(TerminalModesTest, AnIgnoredSignalStaysIgnored) {
    Left const left = AtTerminal([] {
        SetHandler(SIGHUP, SIG_IGN);
        Editing const editing;
        raise(SIGHUP);
        return HandlerOf(SIGHUP) == SIG_IGN && Echo(STDIN_FILENO) == 0 ? 0 : 1;
    });
    EXPECT_EQ(left.code, 0);
}

TEST(TerminalModesTest, TheFormerHandlersStandAgainAfterwards) {
    Left const left = AtTerminal([] {
        SetHandler(SIGTERM, NoteCall);
        SetHandler(SIGHUP, NoteCall);
        SetHandler(SIGINT, NoteCall, static_cast<int>(SA_RESETHAND));
        Editing editing;
        raise(SIGINT);
        SetHandler(SIGHUP, OtherHandler);
        editing.End();
        return HandlerOf(SIGTERM) == NoteCall && HandlerOf(SIGHUP) == OtherHandler
                       && HandlerOf(SIGINT) == SIG_DFL && HandlerOf(SIGQUIT) == SIG_DFL
                   ? 0
                   : 1;
    });
    EXPECT_EQ(left.code, 0);
}

TEST(TerminalModesTest, GoingOnIsToldOnce) {
    Left const left = AtTerminal([] {
        Editing const editing;
        if (TerminalModes::TakeContinued()) return 1;
        raise(SIGCONT);
        if (!TerminalModes::TakeContinued() || TerminalModes::TakeContinued()) return 2;
        return Echo(STDIN_FILENO) == 0 ? 0 : 3;
    });
    EXPECT_EQ(left.code, 0);
}

} // namespace
