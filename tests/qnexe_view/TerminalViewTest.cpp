// Tests of the view: every byte that it sends to its stream.
#include "examples/QNExe/view/TerminalView.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "platform/Wrap.h"
#include "qnexe_view/Files.h"

MORVEX_WRAP(
    std::size_t, fwrite,
    (void const * bytes, std::size_t size, std::size_t count, std::FILE * stream),
    (bytes, size, count, stream))

namespace {

class TerminalViewTest : public testing::Test {
protected:
    TerminalViewTest() : m_File(TemporaryFile()) {}

    void Open(bool progress) {
        m_View.emplace(
            m_File.get(),
            TerminalView::Settings{
                .styled = false, .progress = progress, .columns = [this] { return m_Columns; }});
    }
    void Show(wchar_t const * text) { m_View->Show({{text, TextLook()}}); }
    void ShowProgress(int position) { m_View->Show(Progress{position, 2, "T"}); }
    void Close() { m_View.reset(); }

    // Everything since the last look.
    std::string Sent() {
        std::fseek(m_File.get(), m_Seen, SEEK_SET);
        std::string text;
        for (int byte = std::fgetc(m_File.get()); byte != EOF; byte = std::fgetc(m_File.get()))
            text += static_cast<char>(byte);
        m_Seen = std::ftell(m_File.get());
        std::fseek(m_File.get(), 0, SEEK_END);
        return text;
    }

    File m_File;
    std::optional<TerminalView> m_View;
    std::size_t m_Columns = 80;
    long m_Seen = 0;
};

TEST_F(TerminalViewTest, WithoutProgressThereIsTextAlone) {
    Open(false);
    ShowProgress(1);
    Show(L"a\r\n");
    Close();
    EXPECT_EQ(Sent(), "a\n");
}

TEST_F(TerminalViewTest, ProgressIsTakenAwayBeforeTextAndDrawnAgainBehindIt) {
    Open(true);
    ShowProgress(1);
    EXPECT_EQ(Sent(), "[##########----------]  1/2  T");
    Show(L"a\r\n");
    EXPECT_EQ(Sent(), "\r\x1b[Ka\n[##########----------]  1/2  T");
}

TEST_F(TerminalViewTest, ProgressThatHasNotChangedIsNotDrawnAgain) {
    Open(true);
    ShowProgress(1);
    Sent();
    ShowProgress(1);
    EXPECT_EQ(Sent(), "");
}

TEST_F(TerminalViewTest, ProgressWaitsForTheEndOfALine) {
    Open(true);
    Show(L"half");
    ShowProgress(1);
    EXPECT_EQ(Sent(), "half");
    Show(L" a line\r\n");
    EXPECT_EQ(Sent(), " a line\n[##########----------]  1/2  T");
}

TEST_F(TerminalViewTest, ProgressLeavesTheLastColumnFree) {
    Open(true);
    m_Columns = 5;
    ShowProgress(1);
    EXPECT_EQ(Sent(), "[###");
}

TEST_F(TerminalViewTest, EachShowIsOneWrite) {
    std::vector<std::string> writes;
    Diversion const watch(
        wrapped_fwrite,
        [&](void const * bytes, std::size_t size, std::size_t count, std::FILE * stream) {
            writes.emplace_back(static_cast<char const *>(bytes), size * count);
            return wrapped_fwrite.Real(bytes, size, count, stream);
        });
    Open(true);
    ShowProgress(1);
    Show(L"a\r\nb\r\n");
    ShowProgress(2);
    EXPECT_EQ(
        writes,
        (std::vector<std::string>{
            "[##########----------]  1/2  T", "\r\x1b[Ka\nb\n[##########----------]  1/2  T",
            "\r\x1b[K[####################]  2/2  T"}));
}

TEST_F(TerminalViewTest, TheEndTakesProgressAway) {
    Open(true);
    ShowProgress(1);
    Sent();
    Close();
    EXPECT_EQ(Sent(), "\r\x1b[K");
}

} // namespace
