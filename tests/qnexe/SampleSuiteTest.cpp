// The sample suite as its users load it: a module, run by the program over recordings.
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "qnexe/ChildHost.h"

namespace {

namespace fs = std::filesystem;

class SampleSuiteTest : public ChildHost {
protected:
    static std::string Recordings(char const * folder) { return RECORDINGS + std::string(folder); }

    Result RunOver(std::string const & recordings) {
        auto const suite = ProgramFolder() / ("usb_descriptors" SUITE_SUFFIX);
        return Run({"--suite", suite.string(), "--recordings", recordings, "--log", File("log")});
    }

    // The log's file holds what the console shows.
    void ExpectFiled(Result const & result) {
        EXPECT_EQ(Normalized(Contents(File("log"))), result.error);
    }

    static std::string LastLines(Result const & result) {
        return result.error.substr(result.error.rfind("INFO    TEST SUITE SUMMARY:"));
    }
};

} // namespace

TEST_F(SampleSuiteTest, FaultlessRecordingsPass) {
    Result const result = RunOver(Recordings("/good"));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(LastLines(result), Summary("Fails (0); Aborts (0); Warnings (0)", 38, 0));
    ExpectFiled(result);
}

TEST_F(SampleSuiteTest, RecordingsWithFaultsFail) {
    Result const result = RunOver(Recordings(""));
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(LastLines(result), Summary("Fails (17); Aborts (0); Warnings (1)", 113, 17));
    ExpectFiled(result);
}

TEST_F(SampleSuiteTest, FoldersMayHaveNamesFromAllOverTheWorld) {
    fs::path const folder = fs::path(File("recordings")) / u8"Ger\u00E4te \u8A66\u9A13";
    fs::create_directories(folder.parent_path());
    fs::copy(RECORDINGS "/good", folder, fs::copy_options::recursive);
    std::u8string const name = folder.u8string();
    Result const result = RunOver(std::string(name.begin(), name.end()));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(LastLines(result), Summary("Fails (0); Aborts (0); Warnings (0)", 38, 0));
}

TEST_F(SampleSuiteTest, BadLimitsEndTheRunWithOneEntryAndCode4) {
    fs::path const folder = File("suite");
    fs::create_directories(folder);
    for (std::string const name : {"usb_descriptors" SUITE_SUFFIX, "suite.xsd"})
        fs::copy_file(ProgramFolder() / name, folder / name);
    std::ofstream(folder / "suite.xml") << "<suite>\n  <other/>\n</suite>\n";
    auto const suite = folder / ("usb_descriptors" SUITE_SUFFIX);
    Result const result =
        Run({"--suite", suite.string(), "--recordings", Recordings("/good"), "--log", File("log")});
    EXPECT_EQ(result.code, 4);
    std::string const entry = "ABORT   ";
    std::string const log = Normalized(Contents(File("log")));
    ASSERT_NE(log.find(entry), log.npos);
    EXPECT_NE(log.find("suite.xml(", log.find(entry)), log.npos);
    EXPECT_EQ(log.find(entry, log.find(entry) + 1), log.npos);
}
