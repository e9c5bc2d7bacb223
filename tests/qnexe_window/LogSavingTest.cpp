// The log saved through the system's dialog.
#include <string>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/ResourceIds.h"
#include "qnexe_window/WindowChild.h"

namespace {

class LogSavingTest : public WindowChild {
protected:
    // Saves under this name in the test's folder.
    void Save(std::string const & name) {
        Window().Command(ID_LOG_SAVE);
        Window().Dialog().TakeFile(File(name));
        EXPECT_TRUE(WaitFor([&] { return Window().IsEnabled(); }));
    }
};

TEST_F(LogSavingTest, TheTextIsThatOfTheWindow) {
    OpenWithSuite("looking");
    RunToState(L"Passed");
    Save("log.txt");
    EXPECT_TRUE(WaitFor([&] { return !Contents(File("log.txt")).empty(); }));
    EXPECT_EQ(TextOfBytes(Contents(File("log.txt"))), Narrow(Log().RichText()));
    EXPECT_EQ(Close(), 0);
}

TEST_F(LogSavingTest, RichTextKeepsTheLooks) {
    OpenWithSuite("looking");
    RunToState(L"Passed");
    Save("log.rtf");
    EXPECT_TRUE(WaitFor([&] { return !Contents(File("log.rtf")).empty(); }));
    std::string const rtf = Contents(File("log.rtf"));
    EXPECT_EQ(rtf.find("{\\rtf1"), 0u) << rtf;
    EXPECT_NE(rtf.find("\\red255\\green255\\blue0"), std::string::npos);
    EXPECT_NE(rtf.find("marked"), std::string::npos);
    EXPECT_EQ(Close(), 0);
}

TEST_F(LogSavingTest, BeforeTheFirstRunThereIsNothingToSave) {
    OpenWithSuite("looking");
    EXPECT_FALSE(Window().Child(ID_LOG_SAVE).IsEnabled());
    EXPECT_EQ(Close(), 2);
}

} // namespace
