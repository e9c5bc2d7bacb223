// The terminal's two sets of modes, and the handlers that change between them.
//
// A handler runs on whichever thread the signal meets and calls only what a handler may call.
#include "siblings/promptline/linux/TerminalModes.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

namespace {

struct Watched {
    int const signal;
    struct sigaction former;
    // The former handler was to be called once, and was.
    std::atomic<bool> isUsedUp;
};

std::array<Watched, 7> watched{
    {{SIGABRT, {}, false},
     {SIGHUP, {}, false},
     {SIGINT, {}, false},
     {SIGQUIT, {}, false},
     {SIGTERM, {}, false},
     {SIGTSTP, {}, false},
     {SIGCONT, {}, false}}};

termios modesBefore;
termios modesWhileEditing;
std::atomic<bool> hasModesBefore;
std::atomic<bool> hasModesWhileEditing;

int ContinuedEvent() {
    static int const event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return event;
}

// What a handler uses must have been made before.
std::atomic<int> continuedEvent{-1};

bool IsInFront() {
    pid_t const owner = tcgetpgrp(STDIN_FILENO);
    return owner == -1 || owner == getpgrp();
}

// A process in the background leaves the terminal to the one in front, which has its own modes.
void SetModes(termios const & modes, std::atomic<bool> const & known) {
    if (known && IsInFront()) tcsetattr(STDIN_FILENO, TCSANOW, &modes);
}

// A shell may let a program go on a moment before it hands the terminal over. One that is to go on
// in the background never gets it.
void AwaitFront() {
    constexpr timespec shortly = {0, 10'000'000};
    for (int i = 0; i < 50 && !IsInFront(); ++i)
        nanosleep(&shortly, nullptr);
}

void Handle(int signal, siginfo_t * information, void * context);

void Install(int signal) {
    struct sigaction action = {};
    action.sa_sigaction = Handle;
    action.sa_flags = SA_SIGINFO | SA_RESTART;
    // Setting modes must neither stop the process nor meet another handler that does the same.
    for (Watched const & other : watched)
        sigaddset(&action.sa_mask, other.signal);
    sigaddset(&action.sa_mask, SIGTTOU);
    sigaction(signal, &action, nullptr);
}

// What the system does when nobody handles the signal: for most the end. A stop ends here again.
void LeaveToTheSystem(int signal) {
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
    sigset_t one;
    sigset_t kept;
    sigemptyset(&one);
    sigaddset(&one, signal);
    raise(signal);
    pthread_sigmask(SIG_UNBLOCK, &one, &kept);
    pthread_sigmask(SIG_SETMASK, &kept, nullptr);
    Install(signal);
}

void CallFormer(Watched & entry, siginfo_t * information, void * context) {
    struct sigaction const & former = entry.former;
    bool const isOnce = (former.sa_flags & static_cast<int>(SA_RESETHAND)) != 0;
    if (isOnce && entry.isUsedUp.exchange(true)) return LeaveToTheSystem(entry.signal);
    if ((former.sa_flags & SA_SIGINFO) != 0)
        former.sa_sigaction(entry.signal, information, context);
    else
        former.sa_handler(entry.signal);
}

bool IsDefault(struct sigaction const & action) {
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == SIG_DFL;
}

bool IsIgnored(struct sigaction const & action) {
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == SIG_IGN;
}

void TellContinued() {
    std::uint64_t const one = 1;
    [[maybe_unused]] ssize_t const written = write(continuedEvent, &one, sizeof one);
}

void Handle(int signal, siginfo_t * information, void * context) {
    int const kept = errno;
    SetModes(modesBefore, hasModesBefore);
    for (Watched & entry : watched) {
        if (entry.signal != signal) continue;
        if (!IsDefault(entry.former))
            CallFormer(entry, information, context);
        else if (signal != SIGCONT)
            LeaveToTheSystem(signal);
    }
    SetModes(modesWhileEditing, hasModesWhileEditing);
    if (signal == SIGCONT) TellContinued();
    errno = kept;
}

void Watch(Watched & entry) {
    entry.isUsedUp = false;
    sigaction(entry.signal, nullptr, &entry.former);
    if (!IsIgnored(entry.former)) Install(entry.signal);
}

// A handler that somebody has set since stays.
void Unwatch(Watched & entry) {
    struct sigaction now = {};
    sigaction(entry.signal, nullptr, &now);
    if ((now.sa_flags & SA_SIGINFO) == 0 || now.sa_sigaction != Handle) return;
    struct sigaction systems = {};
    systems.sa_handler = SIG_DFL;
    sigaction(entry.signal, entry.isUsedUp ? &systems : &entry.former, nullptr);
}

} // namespace

TerminalModes::TerminalModes() {
    continuedEvent = ContinuedEvent();
    hasModesBefore = tcgetattr(STDIN_FILENO, &modesBefore) == 0;
    for (Watched & entry : watched)
        Watch(entry);
}

TerminalModes::~TerminalModes() {
    hasModesWhileEditing = false;
    hasModesBefore = false;
    for (Watched & entry : watched)
        Unwatch(entry);
}

bool TerminalModes::Edited() {
    termios now = {};
    if (tcgetattr(STDIN_FILENO, &now) != 0) return true;
    if (now.c_lflag == modesBefore.c_lflag && now.c_iflag == modesBefore.c_iflag) return false;
    modesWhileEditing = now;
    hasModesWhileEditing = true;
    return true;
}

int TerminalModes::ContinuedDescriptor() { return ContinuedEvent(); }

bool TerminalModes::TakeContinued() {
    std::uint64_t count;
    if (read(ContinuedEvent(), &count, sizeof count) != sizeof count) return false;
    AwaitFront();
    SetModes(modesWhileEditing, hasModesWhileEditing);
    return true;
}
