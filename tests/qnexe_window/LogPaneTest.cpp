// The log's control: what a table says is what the control holds.
#include "examples/QNExe/windows/LogPane.h"

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "examples/QNExe/view/DefaultLook.h"
#include "examples/QNExe/view/RunIntake.h"
#include "examples/QNExe/view/TableReader.h"
#include "qnexe_window/RemoteWindow.h"

std::ostream & operator<<(std::ostream & stream, StyledText const & piece) {
    return stream << '"' << Narrow(piece.text) << "\" bold " << piece.look.bold << " italic "
                  << piece.look.italic << " underline " << piece.look.underline << " colour "
                  << piece.look.color.value_or(0x1000000) << " back "
                  << piece.look.backColor.value_or(0x1000000);
}

namespace {

class ParentWindow {
public:
    ParentWindow()
        : m_Handle(CreateWindowExW(
            0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 800, 600, nullptr, nullptr, nullptr,
            nullptr)) {}
    ParentWindow(ParentWindow const &) = delete;
    ParentWindow & operator=(ParentWindow const &) = delete;
    ~ParentWindow() { DestroyWindow(m_Handle); }

    HWND Handle() const { return m_Handle; }

private:
    HWND m_Handle;
};

class LogPaneTest : public testing::Test {
protected:
    LogPaneTest() { MoveWindow(m_Pane.Handle(), 0, 0, 700, 300, FALSE); }

    // Serves messages until all is shown.
    void Settle() {
        MSG message;
        while (m_Pane.IsWaiting() && GetMessageW(&message, nullptr, 0, 0) > 0)
            DispatchMessageW(&message);
    }

    void Show(std::vector<StyledText> const & pieces) {
        m_Pane.Add(pieces);
        Settle();
    }

    // What the control holds, in neighbours that differ in look.
    std::vector<StyledText> Held() const {
        std::vector<StyledText> held;
        std::wstring const text = m_Remote.RichText();
        for (std::size_t at = 0; at < text.size(); ++at) {
            TextLook const look = LookAt(static_cast<LONG>(at));
            if (held.empty() || held.back().look != look) held.push_back({L"", look});
            held.back().text += text[at];
        }
        return held;
    }

    TextLook LookAt(LONG place) const {
        CHARFORMAT2W const format = m_Remote.LookOf(place, place + 1);
        auto const on = [&](DWORD effect) { return (format.dwEffects & effect) != 0; };
        TextLook look{on(CFE_BOLD), on(CFE_ITALIC), on(CFE_UNDERLINE)};
        if (!on(CFE_AUTOCOLOR)) look.color = format.crTextColor;
        if (!on(CFE_AUTOBACKCOLOR)) look.backColor = format.crBackColor;
        return look;
    }

    ParentWindow m_Parent;
    LogPane m_Pane{m_Parent.Handle()};
    RemoteWindow m_Remote{m_Pane.Handle()};
};

// The control counts the end of a line as one character.
std::vector<StyledText> AsHeld(std::vector<StyledText> pieces) {
    for (auto & piece : pieces)
        std::erase(piece.text, L'\r');
    return pieces;
}

TEST_F(LogPaneTest, TheLooksOfATableAreThoseOfTheControl) {
    InitializeDefaultLook();
    COutputBuffer buffer;
    buffer.AddText(std::wstring(L"plain\r\n"));
    CFormatInfo failure(0x0000FFul, true, 700);
    failure.setBackColor(eColorYellow);
    buffer.AddFormat(failure);
    buffer.AddText(std::wstring(L"failed\r\n"));
    CFormatInfo slanted(true, false, 0);
    slanted.setUnderline(true);
    buffer.AddItem(std::wstring(L"inner\r\n"), slanted);
    buffer.RemoveFormat(2);
    buffer.AddText(std::wstring(L"plain again\r\n"));
    RunIntake::Table const table(buffer.GetText());
    std::vector<StyledText> const pieces = TableReader().Read(*table);
    ASSERT_EQ(pieces.size(), 4u);
    Show(pieces);
    EXPECT_EQ(Held(), AsHeld(pieces));
}

TEST_F(LogPaneTest, ALongTextEntersInBatchesAndWhole) {
    std::wstring text;
    for (int line = 0; line < 3000; ++line)
        text += L"line " + std::to_wstring(line) + L"\r\n";
    text += std::wstring(10'000, L'x');
    m_Pane.Add({{text, {}}});
    EXPECT_TRUE(m_Pane.IsWaiting());
    EXPECT_EQ(m_Remote.RichText(), L"");
    Settle();
    std::erase(text, L'\r');
    EXPECT_EQ(m_Remote.RichText(), text);
    EXPECT_EQ(m_Pane.Text(), Narrow(text));
}

TEST_F(LogPaneTest, TellsOnceThatAllIsShown) {
    int told = 0;
    m_Pane.WhenShown([&] { ++told; });
    Show({{L"one\r\n", {}}, {L"two\r\n", {.bold = true}}});
    EXPECT_EQ(told, 1);
}

TEST_F(LogPaneTest, ClearDropsWhatWaitsAndItsLooks) {
    Show({{L"bold\r\n", {.bold = true, .color = 0xFF}}});
    m_Pane.Add({{L"waits", {}}});
    m_Pane.Clear();
    EXPECT_FALSE(m_Pane.IsWaiting());
    Show({{L"new", {}}});
    EXPECT_EQ(Held(), (std::vector<StyledText>{{L"new", {}}}));
}

TEST_F(LogPaneTest, TheSelectionOfTheReaderStays) {
    Show({{L"first line\r\nsecond line\r\n", {}}});
    m_Remote.Ask(EM_EXSETSEL, 0, CHARRANGE{2, 7});
    Show({{L"third line\r\n", {.italic = true}}});
    CHARRANGE const selected = m_Remote.Ask(EM_EXGETSEL, 0, CHARRANGE{});
    EXPECT_EQ(selected.cpMin, 2);
    EXPECT_EQ(selected.cpMax, 7);
}

// The first line that is seen.
TEST_F(LogPaneTest, FollowsTheEndUnlessTheReaderHasGoneBack) {
    std::wstring lines;
    for (int line = 0; line < 200; ++line)
        lines += L"line\r\n";
    Show({{lines, {}}});
    auto const firstSeen = [&] { return m_Remote.Send(EM_GETFIRSTVISIBLELINE); };
    auto const followed = firstSeen();
    EXPECT_GT(followed, 100);
    Show({{lines, {}}});
    EXPECT_GT(firstSeen(), followed + 100);
    m_Remote.Send(WM_VSCROLL, SB_TOP);
    Show({{lines, {}}});
    EXPECT_EQ(firstSeen(), 0);
}

TEST_F(LogPaneTest, LongLinesAreWrappedAndSeenFromTheirBeginning) {
    std::wstring lines;
    for (int line = 0; line < 200; ++line)
        lines += std::wstring(300, L'w') + L"\r\n";
    Show({{lines, {}}, {lines, {.bold = true}}});
    POINT place = {};
    m_Remote.Send(EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(place.x, 0);
    EXPECT_GT(place.y, 0);
    EXPECT_GT(m_Remote.Send(EM_GETLINECOUNT), 2 * 400);
    EXPECT_EQ(m_Pane.Text(), Narrow(AsHeld({{lines + lines, {}}}).front().text));
}

TEST_F(LogPaneTest, TextBeyondSixtyFourThousandCharactersIsKept) {
    std::wstring const line(99, L'm');
    std::wstring text;
    for (int count = 0; count < 1000; ++count)
        text += line + L'\n';
    Show({{text, {}}});
    EXPECT_EQ(m_Remote.RichText().size(), text.size());
}

TEST_F(LogPaneTest, TextOutsideTheCodePageIsKept) {
    std::wstring const text = L"\x4E2D\x6587 \xD83D\xDE00 \x00E4";
    Show({{text, {}}});
    EXPECT_EQ(m_Pane.Text(), Narrow(text));
}

} // namespace
