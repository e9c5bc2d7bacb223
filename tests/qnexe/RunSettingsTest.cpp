// The settings of a run: which source wins, what is kept in the registry, and what is shown.
#include "examples/QNExe/settings/RunSettings.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "examples/QNExe/settings/SettingsFile.h"
#include "output/CUIUpdate.h"
#include "platform/RegistryScope.h"
#include "settings/CDUTInfo.h"
#include "settings/Registry.h"
#include "siblings/Keelbase.h"

namespace {

using testing::HasSubstr;

constexpr char BuiltIn[] = "quillon.programname=QNExe  # built in\n";

class RunSettingsTest : public testing::Test {
protected:
    RunSettingsTest() {
        std::random_device seed;
        m_File = std::filesystem::temp_directory_path()
                 / ("settings-" + std::to_string(seed()) + std::to_string(seed()) + ".ini");
    }
    ~RunSettingsTest() override {
        std::error_code ignored;
        std::filesystem::remove(m_File, ignored);
    }

    // Options that name a settings file with this text.
    HostOptions With(std::string const & text) {
        std::ofstream(m_File) << text;
        HostOptions options;
        options.settings = m_File.string();
        return options;
    }

    std::string Origin() const { return "  # " + m_File.string() + '\n'; }

    // What the file is refused with, behind its name.
    std::string Refusal(std::string const & text) {
        try {
            SettingsText(With(text));
        } catch (std::runtime_error const & refusal) {
            std::string const what = refusal.what();
            std::string const begin = "the settings file \"" + m_File.string() + "\" ";
            return what.starts_with(begin) ? what.substr(begin.size()) : what;
        }
        return "accepted";
    }

    RegistryScope m_Scope;
    std::filesystem::path m_File;
};

TEST_F(RunSettingsTest, WithoutAnythingThereIsTheProgramsName) {
    EXPECT_EQ(SettingsText({}), BuiltIn);
}

TEST_F(RunSettingsTest, AFileHasSectionsAndComments) {
    EXPECT_EQ(
        SettingsText(With("; a comment\n[Suite]\nPorts = 4\n  Name=\"two  blanks \"\n"
                          "Words=one two\n[Other.Part]\nEmpty=\"\"\nPath=C:\\x.y\n")),
        "other.part.empty=" + Origin() + "other.part.path=C:\\x.y" + Origin() + BuiltIn
            + "suite.name=two  blanks " + Origin() + "suite.ports=4" + Origin()
            + "suite.words=one two" + Origin());
}

TEST_F(RunSettingsTest, AKeyMayNameItsSection) {
    EXPECT_EQ(SettingsText(With("Suite.Ports=4\n")), BuiltIn + ("suite.ports=4" + Origin()));
}

TEST_F(RunSettingsTest, AFileThatIsMissingOrHasNoSectionIsRefused) {
    EXPECT_EQ(
        Refusal("Ports=4\n"), "has the key \"Ports\" without a section. Put [section] above.");
    HostOptions options;
    options.settings = "none/there.ini";
    EXPECT_THROW(SettingsText(options), std::runtime_error);
}

TEST_F(RunSettingsTest, AFolderIsNoFile) {
    HostOptions options;
    options.settings = m_File.parent_path().string();
    try {
        SettingsText(options);
        FAIL() << "accepted";
    } catch (std::runtime_error const & refusal) {
        EXPECT_EQ(
            std::string(refusal.what()),
            "the settings file \"" + *options.settings
                + "\" cannot be opened. Give --settings a file that may be read.");
    }
}

TEST_F(RunSettingsTest, AnEmptyFileSetsNothing) { EXPECT_EQ(SettingsText(With("")), BuiltIn); }

TEST_F(RunSettingsTest, ASettingStandsAboveTheFileAndTheFileAboveTheRest) {
    TS_SetRegistryDword(HKEY_LOCAL_MACHINE, "Software\\Velmora\\Quillon", "CertificationMode", 7);
    EXPECT_EQ(SettingsText({}), "quillon.certificationmode=1  # registry\n" + std::string(BuiltIn));
    HostOptions options = With("[Quillon]\nCertificationMode=0\nProgramName=Mine\n[A]\nB=1\nC=2\n");
    options.set = {{"a", "b", "set"}, {"a", "b", "set again"}};
    EXPECT_EQ(
        SettingsText(options), "a.b=set again  # --set\na.c=2" + Origin()
                                   + "quillon.certificationmode=0" + Origin()
                                   + "quillon.programname=Mine" + Origin());
}

TEST_F(RunSettingsTest, OptionsFillTheCommandLinesTable) {
    CAppState::InitAppState(ApplicationFamilyDefault);
    {
        HostOptions options;
        options.recordings = "dir";
        options.given = {{"Recordings", "dir"}, {"log", "x.log"}};
        RunSettings settings(options);
        EXPECT_EQ(&CAppState::GetIniArgs(), &settings.Args());
        std::string * out = nullptr;
        ASSERT_TRUE(settings.Args().GetCmdLineArg("RECORDINGS", out));
        EXPECT_EQ(*out, "dir");
        ASSERT_TRUE(settings.Args().GetCmdLineArg("Any", "log", out));
        EXPECT_EQ(*out, "x.log");
        EXPECT_FALSE(settings.Args().GetCmdLineArg("suite", out));
        EXPECT_EQ(
            settings.Text(), "--log=x.log  # command line\n--recordings=dir  # command line\n"
                                 + std::string(BuiltIn) + "suite.recordings=dir  # --recordings\n");
    }
    CUIUpdate::FreeUIUpdate();
    CAppState::CleanupAppState();
}

TEST_F(RunSettingsTest, TheDeviceIsKeptForLaterRuns) {
    HostOptions options;
    options.device = DeviceWords{"1234", "Bed \xC3\xBC", std::nullopt, std::nullopt};
    EXPECT_EQ(
        SettingsText(options),
        std::string(BuiltIn) + "dut.tid=1234  # --dut\ndut.testbed=Bed \xC3\xBC  # --dut\n");
    EXPECT_EQ(
        SettingsText({}),
        std::string(BuiltIn) + "dut.tid=1234  # registry\ndut.testbed=Bed \xC3\xBC  # registry\n");
    options.device = DeviceWords{std::nullopt, std::nullopt, "B.104", "last"};
    EXPECT_EQ(
        SettingsText(options), std::string(BuiltIn)
                                   + "dut.tid=1234  # registry\n"
                                     "dut.testbed=Bed \xC3\xBC  # registry\n"
                                     "dut.room=B.104  # --dut\ndut.comments=last  # --dut\n");
    options.device = DeviceWords{};
    EXPECT_EQ(SettingsText(options), BuiltIn);
    EXPECT_EQ(SettingsText({}), BuiltIn);
}

TEST_F(RunSettingsTest, TheVifFilesAreKeptForLaterRuns) {
    HostOptions options;
    options.ufpVif = "u.xml";
    options.dfpVifs = {"a.xml", "b.xml"};
    std::string const chosen = "vif.ufp=u.xml  # --ufp-vif\nvif.dfp=a.xml  # --dfp-vif\n"
                               "vif.dfp=b.xml  # --dfp-vif\n";
    EXPECT_EQ(SettingsText(options), BuiltIn + chosen);
    EXPECT_EQ(
        SettingsText({}), std::string(BuiltIn)
                              + "vif.ufp=u.xml  # registry\nvif.dfp=a.xml  # registry\n"
                                "vif.dfp=b.xml  # registry\n");
    options.ufpVif = "";
    options.dfpVifs = {""};
    EXPECT_EQ(SettingsText(options), BuiltIn);
    EXPECT_EQ(SettingsText({}), BuiltIn);
}

// What the system says of the last failure, in one line.
std::string Reason() {
    std::string reason = GetLastRegErrMsg();
    return reason.substr(0, reason.find_last_not_of("\r\n") + 1) + '\n';
}

TEST_F(RunSettingsTest, WhatCannotBeKeptHoldsForThisRunAndIsSaid) {
    m_Scope.Break();
    HostOptions options;
    options.device = DeviceWords{"1234", std::nullopt, std::nullopt, std::nullopt};
    options.ufpVif = "u.xml";
    options.dfpVifs = {"a.xml"};
    std::string const text = SettingsText(options);
    EXPECT_NE(GetLastRegErrCode(), 0);
    EXPECT_EQ(
        text, "# the device record cannot be kept for later runs: " + Reason()
                  + "# the UFP VIF file cannot be kept for later runs: " + Reason()
                  + "# the list of DFP VIF files cannot be kept for later runs: " + Reason()
                  + BuiltIn + "dut.tid=1234  # --dut\nvif.ufp=u.xml  # --ufp-vif\n"
                  + "vif.dfp=a.xml  # --dfp-vif\n");
}

TEST_F(RunSettingsTest, WhatCannotBeForgottenIsSaid) {
    m_Scope.Break();
    HostOptions options;
    options.device = DeviceWords{};
    options.ufpVif = "";
    options.dfpVifs = {""};
    std::string const text = SettingsText(options);
    EXPECT_EQ(
        text, "# the device record cannot be forgotten: " + Reason()
                  + "# the UFP VIF file cannot be forgotten: " + Reason()
                  + "# the list of DFP VIF files cannot be forgotten: " + Reason() + BuiltIn);
}

TEST_F(RunSettingsTest, ForgettingWhatWasNeverKeptIsNoFailure) {
    HostOptions options;
    options.device = DeviceWords{};
    options.dfpVifs = {""};
    EXPECT_EQ(SettingsText(options), BuiltIn);
}

TEST_F(RunSettingsTest, RunsWithoutAChoiceWriteNothing) {
    SettingsText({});
    std::string text;
    EXPECT_FALSE(
        TS_GetRegistryString(HKEY_LOCAL_MACHINE, "Software\\Velmora\\QNExe", "UFPVif", text));
    HKEY key = nullptr;
    EXPECT_NE(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Velmora", 0, KEY_READ, &key), 0);
}

} // namespace
