// The host's window in front of a formatted view: what is done while a test waits, and what later.
#include "examples/QNExe/HostWindow.h"

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "examples/QNExe/view/FormattedView.h"
#include "platform/Pipe.h"
#include "platform/Synchronization.h"
#include "qnexe/LibraryState.h"

namespace {

CUIUpdate & Display() { return *CUIUpdate::GetUIUpdate(); }

// The window belongs to the test's own thread, so that an update runs its procedure at once, and
// what the procedure has posted waits until the test looks for it.
class FormattedWindowTest : public testing::Test {
protected:
    FormattedWindowTest() { CUIUpdate::GetUIUpdate(m_Window.Handle()); }

    void Add(std::string const & text) { m_State.output.AddText(text); }

    // Whether the window has a message of the host's for later.
    bool SomethingIsPosted() const {
        MSG message;
        return PeekMessageA(&message, m_Window.Handle(), WM_APP, 0xBFFF, PM_NOREMOVE) != 0;
    }

    // Dispatches what is posted.
    void Pump() const {
        MSG message;
        while (PeekMessageA(&message, m_Window.Handle(), WM_APP, 0xBFFF, PM_REMOVE) != 0)
            DispatchMessageA(&message);
    }

    // A forced update of another thread's, served on this one.
    void UpdateFromAnotherThread() const {
        std::atomic<bool> isServed = false;
        std::thread test([&] {
            CUIUpdate::DoUpdate(true);
            isServed = true;
        });
        while (!isServed) {
            SomethingIsPosted();
            Sleep(1);
        }
        test.join();
    }

    // Serves the window while `steps` run on a thread of their own.
    template <typename Steps>
    void ServeDuring(Steps const & steps) {
        std::thread test([&] {
            steps();
            m_Window.End();
        });
        m_Window.Serve();
        test.join();
    }

    LibraryState m_State;
    Pipe m_Pipe;
    FormattedView m_View{m_Pipe.Stream()};
    HostWindow m_Window{&m_View};
};

TEST_F(FormattedWindowTest, AnUpdateTakesTheTextAndLeavesTheShowingForLater) {
    Add("one\r\n");
    CUIUpdate::DoUpdate(true);
    EXPECT_EQ(m_State.output.GetText(), nullptr);
    EXPECT_EQ(m_Pipe.Taken(), "");
    EXPECT_TRUE(SomethingIsPosted());
    Pump();
    EXPECT_EQ(m_Pipe.Taken(), "one\n");
}

TEST_F(FormattedWindowTest, UpdatesBeforeTheShowingAskForOneShowing) {
    Add("one\r\n");
    CUIUpdate::DoUpdate(true);
    Add("two\r\n");
    CUIUpdate::DoUpdate(true);
    MSG message;
    ASSERT_TRUE(PeekMessageA(&message, m_Window.Handle(), WM_APP, 0xBFFF, PM_REMOVE));
    EXPECT_FALSE(SomethingIsPosted());
    DispatchMessageA(&message);
    EXPECT_EQ(m_Pipe.Taken(), "one\ntwo\n");
    Add("three\r\n");
    CUIUpdate::DoUpdate(true);
    EXPECT_TRUE(SomethingIsPosted());
}

TEST_F(FormattedWindowTest, AnUpdateWithoutNewsAsksForNoShowing) {
    CUIUpdate::DoUpdate(true);
    EXPECT_FALSE(SomethingIsPosted());
}

// The label is news only to an update that has read it.
TEST_F(FormattedWindowTest, TheLabelIsReadWhileAnotherThreadWaitsAndNeverOtherwise) {
    Display().ProgressLabel("T1");
    CUIUpdate::DoUpdate(true);
    PostMessageA(m_Window.Handle(), CUIUpdate::UpdateMessage, 0, 0);
    Pump();
    SendMessageA(m_Window.Handle(), HostLoop::IdleMessage, 0, 0);
    EXPECT_FALSE(m_View.TakeOver(false));
    UpdateFromAnotherThread();
    EXPECT_TRUE(SomethingIsPosted());
    EXPECT_TRUE(m_View.TakeOver(false));
}

TEST_F(FormattedWindowTest, AnIdleWindowShowsWhatNoUpdateHasTold) {
    Add("one\r\n");
    SendMessageA(m_Window.Handle(), HostLoop::IdleMessage, 0, 0);
    EXPECT_EQ(m_Pipe.Taken(), "one\n");
}

TEST_F(FormattedWindowTest, TextWithoutAnUpdateAppearsWhileATestRuns) {
    std::string shown;
    ServeDuring([&] {
        Add("one\r\n");
        for (int i = 0; i < 60'000 && shown.empty(); ++i) {
            Sleep(1);
            shown = m_Pipe.Taken();
        }
    });
    EXPECT_EQ(shown, "one\n");
}

TEST_F(FormattedWindowTest, ASecondWindowThatIsRefusedLeavesTheFirstItsView) {
    EXPECT_THROW(HostWindow(), std::runtime_error);
    Add("one\r\n");
    SendMessageA(m_Window.Handle(), HostLoop::IdleMessage, 0, 0);
    EXPECT_EQ(m_Pipe.Taken(), "one\n");
}

TEST_F(FormattedWindowTest, TheEndShowsWhatIsLeft) {
    ServeDuring([&] { Add("one\r\n"); });
    EXPECT_EQ(m_Pipe.Taken(), "one\n");
}

} // namespace
