// The host's window: what it takes from the library, and when Ctrl-C is the operator's abort.
#include "examples/QNExe/HostWindow.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "messages/CMessageFilterSetter.h"
#include "messages/CWindowsMessage.h"
#include "platform/Synchronization.h"
#include "qnexe/LibraryState.h"
#include "siblings/QuillonLog.h"

namespace {

class HostWindowTest : public testing::Test {
protected:
    HostWindowTest() { CUIUpdate::GetUIUpdate(m_Window.Handle()); }

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

    void Interrupt() { SendMessageA(m_Window.Handle(), HostLoop::InterruptMessage, 0, 0); }

    static bool AbortStands() { return CUIUpdate::GetUIUpdate()->AbortFunction(); }

    LibraryState m_State;
    HostWindow m_Window;
};

TEST_F(HostWindowTest, EndEndsTheLoop) {
    ServeDuring([] {});
    SUCCEED();
}

TEST_F(HostWindowTest, UpdateTakesTheTextOut) {
    m_State.output.AddText(std::string("a line"));
    ServeDuring([] { CUIUpdate::DoUpdate(true); });
    EXPECT_EQ(m_State.output.GetText(), nullptr);
}

TEST_F(HostWindowTest, UpdateWithoutABufferDoesNothing) {
    CUIUpdate::GetUIUpdate()->SetOutputBuffer(nullptr);
    EXPECT_NO_THROW(ServeDuring([] { CUIUpdate::DoUpdate(true); }));
}

TEST_F(HostWindowTest, InterruptionAsksForAnAbort) {
    bool stood = true;
    ServeDuring([&] {
        stood = AbortStands();
        Interrupt();
    });
    EXPECT_FALSE(stood);
    EXPECT_TRUE(AbortStands());
}

TEST_F(HostWindowTest, WhoeverClosesTheWindowAsksForAnAbort) {
    ServeDuring([&] {
        SendMessageA(m_Window.Handle(), WM_CLOSE, 0, 0);
        EXPECT_NE(IsWindow(m_Window.Handle()), 0);
    });
    EXPECT_TRUE(AbortStands());
}

TEST_F(HostWindowTest, InterruptionOfARunThatIsOverAsksForNothing) {
    ServeDuring([&] {
        m_Window.RefuseAborts();
        Interrupt();
    });
    EXPECT_FALSE(AbortStands());
}

TEST_F(HostWindowTest, AbortStaysWhenFurtherOnesAreRefused) {
    ServeDuring([&] {
        Interrupt();
        m_Window.RefuseAborts();
    });
    EXPECT_TRUE(AbortStands());
}

TEST_F(HostWindowTest, OtherMessagesAreLeftToTheSystem) {
    LRESULT answer = -1;
    ServeDuring([&] { answer = SendMessageA(m_Window.Handle(), WM_APP + 100, 1, 2); });
    EXPECT_EQ(answer, 0);
}

TEST_F(HostWindowTest, DeviceEventReachesTheTestThatWaitsForIt) {
    // A port named COM3.
    unsigned char record[] = {17, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 'C', 'O', 'M', '3', 0};
    auto const announce = [&] {
        return SendMessageA(
            m_Window.Handle(), WM_DEVICECHANGE, 0x8000, reinterpret_cast<LPARAM>(record));
    };
    std::string details;
    ServeDuring([&] {
        EXPECT_EQ(announce(), TRUE);
        EXPECT_EQ(CAppState::PopWindowsMessage(), nullptr);
        CMessageFilterSetter const filter(WM_DEVICECHANGE);
        EXPECT_EQ(announce(), TRUE);
        record[12] = 'X';
        EXPECT_EQ(
            WaitForSingleObject(CAppState::MessageFilterEvent(), INFINITE), DWORD{WAIT_OBJECT_0});
        auto const message = CAppState::PopWindowsMessage();
        ASSERT_NE(message, nullptr);
        EXPECT_EQ(message->HWnd(), m_Window.Handle());
        details = message->GetDetailsStr().get();
    });
    EXPECT_EQ(
        details, "  Event: DBT_DEVICEARRIVAL\n"
                 "    Device event struct length=17, type=DBT_DEVTYP_PORT\n"
                 "    Name=COM3\n");
}

TEST_F(HostWindowTest, DeviceEventsAreKeptInTheSuitesRecord) {
    CTestSuiteLog suite;
    CAppState::TestSuiteLog(&suite);
    ServeDuring([&] {
        SendMessageA(m_Window.Handle(), WM_DEVICECHANGE, 0x8000, 0);
        SendMessageA(m_Window.Handle(), WM_DEVICECHANGE, 0x1234, 0);
    });
    CAppState::TestSuiteLog(nullptr);
    auto const events = suite.DeviceEvents();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].what, "arrived");
    EXPECT_EQ(events[0].device, "");
    EXPECT_EQ(events[1].what, "device event 4660");
}

TEST_F(HostWindowTest, SecondWindowIsRefused) {
    EXPECT_THROW(HostWindow(), std::runtime_error);
    EXPECT_NE(IsWindow(m_Window.Handle()), 0);
}

TEST(HostWindowLifeTest, WindowGoesWithItsObjectAndAnotherCanBeMade) {
    auto window = std::make_unique<HostWindow>();
    HWND const handle = window->Handle();
    EXPECT_NE(IsWindow(handle), 0);
    window.reset();
    EXPECT_EQ(IsWindow(handle), 0);
    EXPECT_NO_THROW(HostWindow());
}

} // namespace
