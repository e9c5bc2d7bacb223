// Updates on their way to a window of another thread.
#include <atomic>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "output/CExceptionSwitch.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "output/Transcript.h"
#include "platform/TestWindow.h"
#include "siblings/Keelbase.h"

namespace {

using namespace std::chrono_literals;

// Ends the host's window and thread without serving what still waits.
constexpr UINT kLeave = WM_USER;

// What a host sees when it is rung.
struct Seen {
    int rings = 0;
    Lines text;
    std::string label;
    std::wstring suite;
    int position = 0;
};

class UpdateRoadTest : public testing::Test {
protected:
    ~UpdateRoadTest() override {
        m_Window.reset();
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }

    void StartRun() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CUIUpdate * const link = CUIUpdate::GetUIUpdate(m_Window->Window());
        link->SetOutputBuffer(&m_Buffer);
    }

    LRESULT Serve(HWND window, UINT message) {
        if (message == kLeave) {
            std::this_thread::sleep_for(50ms);
            DestroyWindow(window);
            PostQuitMessage(0);
            return 0;
        }
        if (message != CUIUpdate::UpdateMessage) return 0;
        // The host is busy until the test lets it go, which it cannot do while it waits here.
        for (int i = 0; i < 1000 && !m_MayServe && !m_WasWaitedFor; ++i)
            std::this_thread::sleep_for(10ms);
        if (!m_MayServe) m_WasWaitedFor = true;
        // A test thread that did not wait would look before this is done.
        std::this_thread::sleep_for(30ms);
        CUIUpdate & link = *CUIUpdate::GetUIUpdate();
        ++m_Seen.rings;
        m_Seen.text = Take(*CUIUpdate::GetBuffer());
        m_Seen.label = link.ProgressLabel();
        if (link.DoSetName()) m_Seen.suite = link.GetTestSuiteName();
        m_Seen.position = link.ProgressPosition();
        if (m_AbortNow) link.AbortFunction(true);
        m_Served = true;
        return 1;
    }

    // Waits for the window's thread, at most ten seconds.
    bool WaitUntilServed() const {
        for (int i = 0; i < 1000 && !m_Served; ++i)
            std::this_thread::sleep_for(10ms);
        return m_Served;
    }

    Seen m_Seen;
    bool m_AbortNow = false;
    std::atomic<bool> m_MayServe = true;
    std::atomic<bool> m_WasWaitedFor = false;
    std::atomic<bool> m_Served = false;
    COutputBuffer m_Buffer;
    std::optional<WindowThread> m_Window{
        std::in_place,
        [this](HWND window, UINT message, WPARAM, LPARAM) { return Serve(window, message); }};
};

} // namespace

TEST_F(UpdateRoadTest, AForcedUpdateReturnsWhenTheHostHasServedIt) {
    StartRun();
    CUIUpdate & link = *CUIUpdate::GetUIUpdate();
    m_Buffer.AddText(std::string("line"));
    link.ProgressLabel("label");
    link.SetTestSuiteName(L"suite");
    link.DoSetName(true);
    link.ProgressPosition(7);
    EXPECT_EQ(CUIUpdate::DoUpdate(true), TS_SUCCESS);
    EXPECT_EQ(m_Seen.rings, 1);
    EXPECT_EQ(m_Seen.text, Lines{"\"line \" mask=00000000 effects=44000000 @0,0"});
    EXPECT_EQ(m_Seen.label, "label");
    EXPECT_EQ(m_Seen.suite, L"suite");
    EXPECT_EQ(m_Seen.position, 7);
}

TEST_F(UpdateRoadTest, AnUnforcedUpdateReachesTheHostLater) {
    StartRun();
    m_Buffer.AddText(std::string("line"));
    CUIUpdate::SendUpdate(false);
    ASSERT_TRUE(WaitUntilServed());
    EXPECT_EQ(m_Seen.rings, 1);
    EXPECT_EQ(m_Seen.text, Lines{"\"line \" mask=00000000 effects=44000000 @0,0"});
}

TEST_F(UpdateRoadTest, AnUnforcedUpdateDoesNotWaitForABusyHost) {
    StartRun();
    m_MayServe = false;
    CUIUpdate::SendUpdate(false);
    for (int i = 0; i < 1000; ++i) {
        m_Buffer.AddText(std::string("x"));
        CUIUpdate::GetUIUpdate()->ProgressPosition(i);
        CUIUpdate::SendUpdate(false);
    }
    m_MayServe = true;
    ASSERT_TRUE(WaitUntilServed());
    EXPECT_FALSE(m_WasWaitedFor);
}

TEST_F(UpdateRoadTest, AnAbortFromTheHostsThreadIsThrownAtTheNextUpdate) {
    StartRun();
    m_AbortNow = true;
    CExceptionSwitch const armed;
    EXPECT_THROW(CUIUpdate::DoUpdate(true), CQNRunTimeException);
    EXPECT_EQ(CUIUpdate::DoUpdate(true), TS_ABORTED);
}

TEST_F(UpdateRoadTest, AHostThatIsGoneFailsNobody) {
    StartRun();
    m_Window.reset();
    EXPECT_EQ(CUIUpdate::DoUpdate(true), TS_SUCCESS);
    EXPECT_EQ(CUIUpdate::DoUpdate(false), TS_SUCCESS);
    EXPECT_EQ(m_Seen.rings, 0);
}

TEST_F(UpdateRoadTest, AHostThatGoesWhileItIsWaitedForFailsNobody) {
    StartRun();
    PostMessageA(m_Window->Window(), kLeave, 0, 0);
    std::this_thread::sleep_for(10ms);
    EXPECT_EQ(CUIUpdate::DoUpdate(true), TS_SUCCESS);
    EXPECT_EQ(CUIUpdate::DoUpdate(true), TS_SUCCESS);
}

TEST_F(UpdateRoadTest, WithoutAWindowUpdatesAreLost) {
    CUIUpdate::GetUIUpdate();
    EXPECT_EQ(CUIUpdate::DoUpdate(true), TS_SUCCESS);
    CAppState::InitAppState(ApplicationFamilyDefault);
    EXPECT_EQ(CUIUpdate::DoUpdate(false), TS_SUCCESS);
    EXPECT_EQ(m_Seen.rings, 0);
}
