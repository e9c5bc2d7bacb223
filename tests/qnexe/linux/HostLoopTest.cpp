// Ctrl-C as a signal, and the one that ends an unattended run: what the loop does with them, and in
// which state it leaves them.
#include "examples/QNExe/HostLoop.h"

#include <chrono>
#include <system_error>
#include <thread>

#include <signal.h>

#include <gtest/gtest.h>

#include "examples/QNExe/HostWindow.h"
#include "platform/linux/NoMoreDescriptors.h"
#include "qnexe/LibraryState.h"

namespace {

using Handler = void (*)(int);

void Unused(int) {}

class HostLoopTest : public testing::TestWithParam<int> {
protected:
    static Handler Disposition() {
        struct sigaction action = {};
        sigaction(GetParam(), nullptr, &action);
        return action.sa_handler;
    }

    static bool AbortStands() { return CUIUpdate::GetUIUpdate()->AbortFunction(); }

    LibraryState m_State;
};

TEST_P(HostLoopTest, FirstSignalIsTheOperatorsAbortAlsoWhenItCameBeforeTheLoop) {
    HostWindow window;
    raise(GetParam());
    EXPECT_FALSE(AbortStands());
    std::thread test([&] {
        auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!AbortStands() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::yield();
        window.End();
    });
    window.Serve();
    test.join();
    EXPECT_TRUE(AbortStands());
}

TEST_P(HostLoopTest, SecondSignalIsLeftToTheSystem) {
    HostWindow const window;
    EXPECT_NE(Disposition(), SIG_DFL);
    raise(GetParam());
    EXPECT_EQ(Disposition(), SIG_DFL);
}

TEST_P(HostLoopTest, SignalThatIsIgnoredStaysIgnored) {
    signal(GetParam(), SIG_IGN);
    HostWindow const window;
    EXPECT_EQ(Disposition(), SIG_IGN);
}

TEST_P(HostLoopTest, EndOfTheLoopPutsTheHandlerBack) {
    signal(GetParam(), Unused);
    { HostLoop const loop(nullptr); }
    EXPECT_EQ(Disposition(), Unused);
}

TEST_P(HostLoopTest, WithoutALoopNoWindowIsLeftBehind) {
    // The thread's queue has its descriptor already, so that the loop is the first to miss one.
    MorvexMessageDescriptor();
    {
        NoMoreDescriptors const none;
        EXPECT_THROW(HostWindow(), std::system_error);
    }
    EXPECT_NO_THROW(HostWindow());
}

INSTANTIATE_TEST_SUITE_P(Signals, HostLoopTest, testing::Values(SIGINT, SIGTERM));

} // namespace
