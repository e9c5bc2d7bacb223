// The sample suite as its users load it: a module, run by the program over recordings.
#include <filesystem>
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
