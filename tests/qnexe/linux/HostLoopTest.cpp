// Ctrl-C as a signal: what the loop does with it, and in which state it leaves it.
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

Handler Disposition() {
    struct sigaction action = {};
    sigaction(SIGINT, nullptr, &action);
    return action.sa_handler;
}

class HostLoopTest : public testing::Test {
protected:
    static bool AbortStands() { return CUIUpdate::GetUIUpdate()->AbortFunction(); }

    LibraryState m_State;
};

TEST_F(HostLoopTest, FirstSignalIsTheOperatorsAbortAlsoWhenItCameBeforeTheLoop) {
    HostWindow window;
    raise(SIGINT);
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

TEST_F(HostLoopTest, SecondSignalIsLeftToTheSystem) {
    HostWindow const window;
    EXPECT_NE(Disposition(), SIG_DFL);
    raise(SIGINT);
    EXPECT_EQ(Disposition(), SIG_DFL);
}

TEST_F(HostLoopTest, SignalThatIsIgnoredStaysIgnored) {
    signal(SIGINT, SIG_IGN);
    HostWindow const window;
    EXPECT_EQ(Disposition(), SIG_IGN);
}

TEST_F(HostLoopTest, EndOfTheLoopPutsTheHandlerBack) {
    signal(SIGINT, Unused);
    { HostLoop const loop(nullptr); }
    EXPECT_EQ(Disposition(), Unused);
}

TEST_F(HostLoopTest, WithoutALoopNoWindowIsLeftBehind) {
    // The thread's queue has its descriptor already, so that the loop is the first to miss one.
    MorvexMessageDescriptor();
    {
        NoMoreDescriptors const none;
        EXPECT_THROW(HostWindow(), std::system_error);
    }
    EXPECT_NO_THROW(HostWindow());
}

} // namespace
