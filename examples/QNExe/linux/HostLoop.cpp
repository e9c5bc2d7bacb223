// The loop of the window thread on poll: the message queue, and a pipe on which the signal handler
// rings. SIGTERM, with which an unattended run is ended, counts as Ctrl-C does.
#include "examples/QNExe/HostLoop.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include "siblings/Promptline.h"

namespace {

std::atomic<int> interruptRead{-1};
std::atomic<int> interruptWrite{-1};

struct WatchedSignal {
    int const number;
    struct sigaction actionBefore;
};
WatchedSignal watchedSignals[] = {{SIGINT, {}}, {SIGTERM, {}}};

// Runs on whichever thread the signal meets: only what a handler may call.
void RingForInterrupt(int) {
    int const kept = errno;
    char const ring = 0;
    [[maybe_unused]] ssize_t const written = write(interruptWrite, &ring, sizeof ring);
    errno = kept;
}

[[noreturn]] void Fail(char const * what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void OpenPipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) Fail("cannot watch for Ctrl-C");
    interruptRead = ends[0];
    interruptWrite = ends[1];
}

// Resetting the handler at its first call leaves the second Ctrl-C to the system. Restarting keeps
// the interruption out of the suite's own system calls.
void Watch(WatchedSignal & signal) {
    sigaction(signal.number, nullptr, &signal.actionBefore);
    if (signal.actionBefore.sa_handler == SIG_IGN) return;
    struct sigaction watch = {};
    watch.sa_handler = RingForInterrupt;
    watch.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
    sigaction(signal.number, &watch, nullptr);
}

bool TakeInterrupt() {
    char ring;
    return read(interruptRead, &ring, sizeof ring) == sizeof ring;
}

// A test that waits for the window comes again soon, when one test ends and the next begins: sooner
// than a sleeping thread wakes.
int LookBeforeSleeping(pollfd * watched, nfds_t count) {
    using Clock = std::chrono::steady_clock;
    auto const end = Clock::now() + std::chrono::microseconds(50);
    int found = 0;
    while (found == 0 && Clock::now() < end) {
        std::this_thread::yield();
        found = poll(watched, count, 0);
    }
    return found;
}

// False: nothing came. A question whose time runs is served for ever, and is as good as nothing.
bool WaitForAny(int messages, int questions) {
    pollfd watched[] = {{messages, POLLIN, 0}, {interruptRead, POLLIN, 0}, {questions, POLLIN, 0}};
    // A signal or a lack of memory ends the wait early; all sources are looked at in any case.
    int found = LookBeforeSleeping(watched, 3);
    if (found == 0) found = poll(watched, 3, HostLoop::IdleMilliseconds);
    if (found <= 0) return false;
    return watched[0].revents != 0 || watched[1].revents != 0;
}

// False: the loop is to end.
bool ServeMessages() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) return false;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return true;
}

} // namespace

HostLoop::HostLoop(HWND window) : m_Window(window) {
    OpenPipe();
    for (WatchedSignal & signal : watchedSignals)
        Watch(signal);
}

HostLoop::~HostLoop() {
    for (WatchedSignal const & signal : watchedSignals)
        sigaction(signal.number, &signal.actionBefore, nullptr);
    close(interruptWrite.exchange(-1));
    close(interruptRead.exchange(-1));
}

void HostLoop::Run() noexcept {
    int const messages = MorvexMessageDescriptor();
    while (ServeMessages()) {
        int const questions = m_Prompts != nullptr ? m_Prompts->Descriptor() : -1;
        if (!WaitForAny(messages, questions)) SendMessageA(m_Window, IdleMessage, 0, 0);
        if (m_Prompts != nullptr) m_Prompts->Serve();
        if (TakeInterrupt()) SendMessageA(m_Window, InterruptMessage, 0, 0);
    }
}
