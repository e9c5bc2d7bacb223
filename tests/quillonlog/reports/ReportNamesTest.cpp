// The names of reports: nothing is overwritten unless asked, and `latest` leads to the newest.
#include "siblings/quillonlog/reports/ReportNames.h"

#include <filesystem>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Host.h"
#include "quillonlog/reports/Folder.h"

namespace {

using enum EReportFormat;
using testing::HasSubstr;

class ReportNamesTest : public testing::Test {
protected:
    std::string
    Begin(std::string const & path, bool overwrite = false, EReportFormat format = Html) {
        auto const file = ReportNames::Begin({format, path}, overwrite, m_Run);
        file->Append("new");
        return file->Name();
    }

    std::string File(std::string const & name) { return m_Folder.File(name); }

    // Where a `latest` leads to.
    std::string Latest(std::string const & name) {
        if (!ON_WINDOWS) return std::filesystem::read_symlink(m_Folder.Path() / name).string();
        return m_Folder.Contents(name);
    }

    Folder m_Folder;
    ReportNames::Run m_Run{
        "USB: 100%", std::chrono::system_clock::time_point(std::chrono::seconds(1'794'000'001))};
};

TEST_F(ReportNamesTest, FreeNameIsTakenAsItIs) {
    EXPECT_EQ(Begin(File("run.html")), File("run.html"));
    EXPECT_EQ(m_Folder.Contents("run.html"), "new");
}

TEST_F(ReportNamesTest, TakenNamesGetANumber) {
    m_Folder.Write("run.html", "old");
    EXPECT_EQ(Begin(File("run.html")), File("run-2.html"));
    EXPECT_EQ(Begin(File("run.html")), File("run-3.html"));
    EXPECT_EQ(m_Folder.Contents("run.html"), "old");
}

TEST_F(ReportNamesTest, NumberStandsInFrontOfTheExtensionOfTheName) {
    m_Folder.Write("run", "old");
    m_Folder.Write(".run", "old");
    EXPECT_EQ(Begin(File("run")), File("run-2"));
    EXPECT_EQ(Begin(File(".run")), File(".run-2"));
}

TEST_F(ReportNamesTest, AskedToOverwriteItDoes) {
    m_Folder.Write("run.html", "something old");
    EXPECT_EQ(Begin(File("run.html"), true), File("run.html"));
    EXPECT_EQ(m_Folder.Contents("run.html"), "new");
}

TEST_F(ReportNamesTest, InAFolderTheRunNamesItself) {
    std::string const name = "USB__100_-20261106-212001";
    EXPECT_EQ(Begin(m_Folder.Path().generic_string()), File(name + ".html"));
    EXPECT_EQ(Begin(m_Folder.Path().generic_string() + "/"), File(name + "-2.html"));
    EXPECT_EQ(Begin(m_Folder.Path().generic_string(), false, JUnit), File(name + ".xml"));
    EXPECT_EQ(Begin(m_Folder.Path().generic_string(), false, Json), File(name + ".jsonl"));
}

TEST_F(ReportNamesTest, FolderThatIsNotThereIsNamed) {
    try {
        Begin(File("none/run.html"));
        ADD_FAILURE() << "nothing was thrown";
    } catch (std::runtime_error const & error) {
        EXPECT_THAT(error.what(), HasSubstr("the report \"" + File("none/run.html") + "\" cannot"));
        EXPECT_THAT(error.what(), HasSubstr("Name a file in a folder that exists"));
    }
}

TEST_F(ReportNamesTest, LatestLeadsToTheNewest) {
    struct Case {
        EReportFormat format;
        char const * latest;
        char const * pointer;
    };
    for (auto const & [format, latest, pointer] :
         {Case{JUnit, "latest.junit", "latest report: second\n"},
          {Json, "latest.jsonl", "latest report: second\n"},
          {Html, "latest.html",
           "<!DOCTYPE html><title>latest report</title><meta http-equiv=\"refresh\" content=\"0; "
           "url=second\"><a href=\"second\">second</a>\n"}}) {
        SCOPED_TRACE(latest);
        EXPECT_EQ(ReportNames::PointLatestAt(File("first"), format), "");
        EXPECT_EQ(ReportNames::PointLatestAt(File("second"), format), "");
        EXPECT_EQ(Latest(latest), ON_WINDOWS ? pointer : "second");
        EXPECT_FALSE(m_Folder.Has(std::string(latest) + ".part"));
    }
}

TEST_F(ReportNamesTest, SomebodyElsesLatestIsLeftAlone) {
    m_Folder.Write("latest.html", "mine");
    std::filesystem::create_directory(m_Folder.Path() / "latest.junit");
    EXPECT_THAT(ReportNames::PointLatestAt(File("run"), Html), HasSubstr("is left alone"));
    EXPECT_THAT(ReportNames::PointLatestAt(File("run"), JUnit), HasSubstr("is left alone"));
    EXPECT_EQ(m_Folder.Contents("latest.html"), "mine");
}

TEST_F(ReportNamesTest, ReportThatIsCalledLatestStays) {
    Begin(File("latest.html"));
    EXPECT_EQ(ReportNames::PointLatestAt(File("latest.html"), Html), "");
    EXPECT_EQ(m_Folder.Contents("latest.html"), "new");
}

} // namespace
