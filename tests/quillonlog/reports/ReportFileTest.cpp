// The file of a report: growing, corrected, replaced.
#include "siblings/quillonlog/reports/ReportFile.h"

#include <system_error>

#include <gtest/gtest.h>

#include "quillonlog/reports/Folder.h"

namespace {

class ReportFileTest : public testing::Test {
protected:
    std::string Contents() { return m_Folder.Contents("f"); }

    Folder m_Folder;
    ReportFile m_File{m_Folder.File("f"), RawFile::Open::New};
};

TEST_F(ReportFileTest, WhatIsWrittenIsThereAtOnce) {
    m_File.Append("abc");
    EXPECT_EQ(Contents(), "abc");
    m_File.Append("def");
    EXPECT_EQ(Contents(), "abcdef");
    EXPECT_EQ(m_File.Size(), 6u);
}

TEST_F(ReportFileTest, CorrectionStaysInPlace) {
    m_File.Append("abcdef");
    m_File.WriteAt(1, "XY");
    EXPECT_EQ(Contents(), "aXYdef");
    m_File.WriteAt(5, "12");
    m_File.Append("3");
    EXPECT_EQ(Contents(), "aXYde123");
}

TEST_F(ReportFileTest, ReplacementIsSeenWhenItIsComplete) {
    m_File.Append("0123456789");
    ReportFile::Replacement text(m_File);
    text.Append("head ");
    text.Copy({2, 5});
    text.Copy({9, 10});
    EXPECT_EQ(Contents(), "0123456789");
    text.Commit();
    EXPECT_EQ(Contents(), "head 2349");
    EXPECT_FALSE(m_Folder.Has("f.part"));
    m_File.Append("!");
    EXPECT_EQ(Contents(), "head 2349!");
}

TEST_F(ReportFileTest, ReplacementOfMoreThanItsBufferHasEveryByte) {
    std::string text;
    while (text.size() < 3'000'000)
        text += std::to_string(text.size()) + ' ';
    m_File.Append(text);
    ReportFile::Replacement whole(m_File);
    whole.Append("<");
    whole.Copy({0, text.size()});
    whole.Append(text);
    whole.Copy({0, text.size()});
    whole.Commit();
    EXPECT_TRUE(Contents() == "<" + text + text + text);
}

TEST_F(ReportFileTest, ReplacementThatIsGivenUpLeavesNothing) {
    m_File.Append("abc");
    { ReportFile::Replacement(m_File).Append("other"); }
    EXPECT_EQ(Contents(), "abc");
    EXPECT_FALSE(m_Folder.Has("f.part"));
}

TEST_F(ReportFileTest, FileThatWasCutCannotBeCopied) {
    m_File.Append("abc");
    ReportFile::Replacement whole(m_File);
    EXPECT_THROW(whole.Copy({0, 4}), std::system_error);
}

TEST_F(ReportFileTest, NewFileIsNotOneThatIsThere) {
    try {
        ReportFile(m_Folder.File("f"), RawFile::Open::New);
        ADD_FAILURE() << "nothing was thrown";
    } catch (std::system_error const & error) {
        EXPECT_EQ(error.code(), std::errc::file_exists);
    }
}

} // namespace
