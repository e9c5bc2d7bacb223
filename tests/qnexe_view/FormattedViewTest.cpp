// Tests of the way from the library's table to a stream, in the two steps that the window takes.
#include "examples/QNExe/view/FormattedView.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "output/CUIUpdate.h"
#include "platform/Environment.h"
#include "platform/Pipe.h"
#include "qnexe/LibraryState.h"
#include "qnexe_view/Files.h"

namespace {

CUIUpdate & Display() { return *CUIUpdate::GetUIUpdate(); }

class FormattedViewTest : public testing::Test {
protected:
    FormattedViewTest() {
        for (char const * name : {"NO_COLOR", "CLICOLOR", "CLICOLOR_FORCE", "TERM"})
            ClearEnvironment(name);
    }
    ~FormattedViewTest() override { ClearEnvironment("CLICOLOR_FORCE"); }

    void Open() { m_View.emplace(m_Pipe.Stream()); }
    void AddRed(std::string const & text) { m_State.output.AddItem(text, CFormatInfo(0x0000FFul)); }
    void Add(std::string const & text) { m_State.output.AddText(text); }

    LibraryState m_State;
    Pipe m_Pipe;
    std::optional<FormattedView> m_View;
};

TEST_F(FormattedViewTest, NothingIsThereToRenderAtFirst) {
    Open();
    EXPECT_FALSE(m_View->TakeOver(true));
    m_View->Render();
    EXPECT_EQ(m_Pipe.Taken(), "");
}

TEST_F(FormattedViewTest, TakingOverTakesTheTableAndShowsNothing) {
    Open();
    Add("one\r\n");
    EXPECT_TRUE(m_View->TakeOver(true));
    EXPECT_EQ(m_State.output.GetText(), nullptr);
    EXPECT_EQ(m_Pipe.Taken(), "");
}

TEST_F(FormattedViewTest, RenderingShowsAllThatWasTakenInOrderAndOnce) {
    Open();
    Add("one\r\n");
    m_View->TakeOver(true);
    Add("two\r\n");
    m_View->TakeOver(false);
    m_View->Render();
    EXPECT_EQ(m_Pipe.Taken(), "one\ntwo\n");
    m_View->Render();
    EXPECT_EQ(m_Pipe.Taken(), "");
}

TEST_F(FormattedViewTest, WhatWasTakenIsToBeRenderedUntilItWas) {
    Open();
    Add("one\r\n");
    m_View->TakeOver(true);
    EXPECT_TRUE(m_View->TakeOver(true));
    m_View->Render();
    EXPECT_FALSE(m_View->TakeOver(true));
}

TEST_F(FormattedViewTest, NumbersOfProgressAreReadWhetherOrNotATestWaits) {
    Open();
    Display().ProgressRange(3);
    EXPECT_TRUE(m_View->TakeOver(false));
    m_View->Render();
    Display().ProgressPosition(1);
    EXPECT_TRUE(m_View->TakeOver(true));
    m_View->Render();
    EXPECT_FALSE(m_View->TakeOver(true));
}

// A test that does not wait may be changing it.
TEST_F(FormattedViewTest, TheLabelOfProgressIsReadOnlyWhileATestWaits) {
    Open();
    Display().ProgressLabel("T1");
    EXPECT_FALSE(m_View->TakeOver(false));
    EXPECT_TRUE(m_View->TakeOver(true));
    m_View->Render();
    EXPECT_FALSE(m_View->TakeOver(true));
}

TEST_F(FormattedViewTest, WithoutABufferThereIsNoText) {
    Open();
    Display().SetOutputBuffer(nullptr);
    EXPECT_FALSE(m_View->TakeOver(true));
}

TEST_F(FormattedViewTest, APipeIsPlain) {
    Open();
    AddRed("red\r\n");
    Display().ProgressRange(3);
    m_View->TakeOver(true);
    m_View->Render();
    EXPECT_EQ(m_Pipe.Taken(), "red\n");
}

TEST_F(FormattedViewTest, APipeHasColorsButNoProgressWhenTheyAreForced) {
    SetEnvironment("CLICOLOR_FORCE", "1");
    Open();
    AddRed("red\r\n");
    Display().ProgressRange(3);
    m_View->TakeOver(true);
    m_View->Render();
    EXPECT_EQ(m_Pipe.Taken(), "\x1b[38;2;255;0;0mred\x1b[0m\n");
}

TEST_F(FormattedViewTest, AFileIsPlainEvenWhenColorsAreForced) {
    SetEnvironment("CLICOLOR_FORCE", "1");
    File const file = TemporaryFile();
    FormattedView view(file.get());
    AddRed("red\r\n");
    view.TakeOver(true);
    view.Render();
    std::rewind(file.get());
    char bytes[64] = {};
    EXPECT_EQ(std::string(bytes, std::fread(bytes, 1, sizeof bytes, file.get())), "red\n");
}

} // namespace
