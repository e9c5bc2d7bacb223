// A run in the window of this process, printed into a picture: what the log says is what is seen.
#include "qnexe_window/Picture.h"

#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/OperatorSession.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "platform/ChildProcess.h"
#include "qnexe_window/KeptPlace.h"
#include "qnexe_window/RemoteWindow.h"

namespace {

class PictureTest : public testing::Test {
protected:
    PictureTest() {
        ForgetPlace();
        m_Options.recordings = RECORDINGS;
    }
    ~PictureTest() override { ForgetPlace(); }

    static std::string Suite(std::string const & name) {
        return (ProgramFolder() / "test-suites" / (name + SUITE_SUFFIX)).string();
    }

    // Runs the suite, then does `look` while the window stands.
    template <typename Look>
    void After(std::string const & suite, Look const & look) {
        m_Options.suite = suite;
        OperatorSession session(m_Options);
        m_Window = RemoteWindow(session.Window().Handle());
        m_Log = m_Window.Child(ID_LOG_VIEW);
        std::thread operatorsHand([&] {
            m_Window.Command(ID_RUN_START);
            auto const isOver = [&] { return m_Window.Child(ID_LOG_SAVE).IsEnabled(); };
            EXPECT_TRUE(WaitFor(isOver));
            look();
            PostMessageW(m_Window.Handle(), WM_CLOSE, 0, 0);
        });
        session.Serve();
        operatorsHand.join();
    }

    SIZE LogSize() const {
        RECT area = {};
        GetClientRect(m_Log.Handle(), &area);
        return {area.right, area.bottom};
    }

    // Where this text stands in the control.
    RECT LineOf(std::wstring const & text) const {
        auto const place = m_Log.RichText().find(text);
        EXPECT_NE(place, std::wstring::npos);
        POINTL const first = PlaceOf(place);
        POINTL const below = PlaceOf(place + text.size());
        return {first.x, first.y, LogSize().cx, below.y};
    }

    POINTL PlaceOf(std::size_t character) const {
        POINTL place = {};
        m_Log.Send(
            EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&place), static_cast<LPARAM>(character));
        return place;
    }

    HostOptions m_Options;
    RemoteWindow m_Window;
    RemoteWindow m_Log;
};

constexpr COLORREF Black = RGB(0, 0, 0);
constexpr COLORREF Yellow = RGB(0xFF, 0xFF, 0);

TEST_F(PictureTest, ColoursAndWeightsAreSeenWhereTheLogHasThem) {
    After(Suite("looking"), [&] {
        SIZE const size = LogSize();
        Picture picture(size.cx, size.cy);
        m_Log.Send(WM_VSCROLL, SB_TOP);
        picture.Print(m_Log.Handle(), {});
        RECT const plain = LineOf(L"plain\n");
        RECT const marked = LineOf(L"marked\n");
        RECT const again = LineOf(L"plain again\n");
        ASSERT_LT(again.bottom, size.cy);
        EXPECT_GT(picture.Count(Yellow, marked), 200u);
        EXPECT_EQ(picture.Count(Yellow, plain), 0u);
        EXPECT_EQ(picture.Count(Yellow, again), 0u);
        EXPECT_GT(picture.Count(Black, plain), 20u);
        // Six bold letters and the line beneath them against five plain ones.
        EXPECT_GT(picture.Count(Black, marked) * 5, picture.Count(Black, plain) * 6 * 3 / 2);
        EXPECT_TRUE(picture.SavePng((ProgramFolder() / "window-looks.png").wstring()));
    });
}

TEST_F(PictureTest, TheVerdictOfTheSampleSuiteIsSeenInItsColour) {
    After((ProgramFolder() / "usb_descriptors.dll").string(), [&] {
        SIZE const size = LogSize();
        Picture picture(size.cx, size.cy);
        picture.Print(m_Log.Handle(), {});
        EXPECT_TRUE(picture.SavePng((ProgramFolder() / "window-log.png").wstring()));
        // The log stands at its end.
        RECT const verdict = LineOf(L"TEST RESULTS:\n");
        ASSERT_GE(verdict.top, 0);
        ASSERT_LE(verdict.bottom, size.cy);
        CHARFORMAT2W const look = m_Log.LookOf(L"TEST RESULTS:");
        ASSERT_EQ(look.dwEffects & CFE_AUTOCOLOR, 0u);
        EXPECT_NE(look.crTextColor, Black);
        EXPECT_GT(picture.Count(look.crTextColor, verdict), 50u);
        EXPECT_EQ(picture.Count(Black, verdict), 0u);
    });
}

} // namespace
