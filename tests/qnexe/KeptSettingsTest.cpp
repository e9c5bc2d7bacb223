// The whole program and the registry: what one run keeps there is found by the next one, and by
// others under the names that they know.
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Host.h"
#include "platform/ProgramRegistry.h"
#include "qnexe/ChildHost.h"
#include "settings/Registry.h"

namespace {

constexpr char DevicePath[] = "Software\\Velmora\\Quillon\\QNExe";
constexpr char ChoicePath[] = "Software\\Velmora\\QNExe";
constexpr char ListPath[] = "Software\\Velmora\\QNExe\\DFPVifs";

constexpr char Shown[] = "--show-settings=true  # command line\n";
constexpr char BuiltIn[] = "quillon.programname=QNExe  # built in\n";

using Texts = std::vector<std::optional<std::string>>;

class KeptSettingsTest : public ChildHost {
protected:
    void SetUp() override {
        if (ON_WINDOWS && !UnderWine()) GTEST_SKIP() << "the machine's own settings stay";
        m_Machine.emplace();
    }

    static void Keep(char const * path, char const * name, char const * text) {
        EXPECT_TRUE(TS_SetRegistryString(HKEY_LOCAL_MACHINE, path, name, text)) << name;
    }

    static Texts Kept(char const * path, std::vector<char const *> const & names) {
        Texts texts;
        for (char const * const name : names) {
            std::string text;
            bool const read = TS_GetRegistryString(HKEY_LOCAL_MACHINE, path, name, text);
            texts.push_back(read ? std::optional(text) : std::nullopt);
        }
        return texts;
    }

    static Texts KeptDevice() {
        return Kept(DevicePath, {"TestIdentNumber", "TestBed", "RoomNumber", "Comments"});
    }

    // What the program shows of the settings, without options and behind what is always there.
    std::string Settings() {
        Result const result = Run({"--show-settings"});
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.error, "");
        std::string const always = std::string(Shown) + BuiltIn;
        EXPECT_EQ(result.output.substr(0, always.size()), always);
        return result.output.substr(always.size());
    }

private:
    std::optional<ProgramRegistry> m_Machine;
};

TEST_F(KeptSettingsTest, WhatOneRunKeepsTheNextOneShows) {
    EXPECT_EQ(
        Run(
            {"--show-settings", "--set", "Suite.Speed=6", "--dut",
             "tid=1234,testbed=Bed \xC3\xBC,room=B.104,comments=one, two", "--ufp-vif",
             "vifs/\xE2\x82\xAC.xml", "--dfp-vif", "a.xml", "b.xml"}),
        (Result{
            0,
            "--dfp-vif=a.xml;b.xml  # command line\n"
            "--dut=tid=1234,testbed=Bed \xC3\xBC,room=B.104,comments=one, two  # command line\n"
            "--set=Suite.Speed=6  # command line\n"
            "--show-settings=true  # command line\n"
            "--ufp-vif=vifs/\xE2\x82\xAC.xml  # command line\n"
            "quillon.programname=QNExe  # built in\n"
            "suite.speed=6  # --set\n"
            "dut.tid=1234  # --dut\n"
            "dut.testbed=Bed \xC3\xBC  # --dut\n"
            "dut.room=B.104  # --dut\n"
            "dut.comments=one, two  # --dut\n"
            "vif.ufp=vifs/\xE2\x82\xAC.xml  # --ufp-vif\n"
            "vif.dfp=a.xml  # --dfp-vif\n"
            "vif.dfp=b.xml  # --dfp-vif\n",
            ""}));
    EXPECT_EQ(
        Settings(), "dut.tid=1234  # registry\n"
                    "dut.testbed=Bed \xC3\xBC  # registry\n"
                    "dut.room=B.104  # registry\n"
                    "dut.comments=one, two  # registry\n"
                    "vif.ufp=vifs/\xE2\x82\xAC.xml  # registry\n"
                    "vif.dfp=a.xml  # registry\n"
                    "vif.dfp=b.xml  # registry\n");
}

TEST_F(KeptSettingsTest, ARunOfASuiteKeepsItUnderTheNamesThatOthersKnow) {
    EXPECT_EQ(
        Run({"--suite", Suite("passing"), "--dut", "tid=1,testbed=2,room=3,comments=4", "--ufp-vif",
             "u.xml", "--dfp-vif", "a.xml", "b.xml"})
            .code,
        0);
    EXPECT_EQ(KeptDevice(), (Texts{"1", "2", "3", "4"}));
    EXPECT_EQ(Kept(ChoicePath, {"UFPVif"}), Texts{"u.xml"});
    EXPECT_EQ(Kept(ListPath, {"Vif_1", "Vif_2", "Vif_3"}), (Texts{"a.xml", "b.xml", std::nullopt}));
}

TEST_F(KeptSettingsTest, WhatOthersHaveKeptIsShown) {
    EXPECT_TRUE(TS_SetRegistryDword(
        HKEY_LOCAL_MACHINE, "Software\\Velmora\\Quillon", "CertificationMode", 7));
    Keep(DevicePath, "RoomNumber", "B.104");
    Keep(ChoicePath, "UFPVif", "u.xml");
    Keep(ListPath, "Vif_1", "a.xml");
    EXPECT_EQ(
        Run({"--show-settings"}),
        (Result{
            0,
            std::string(Shown) + "quillon.certificationmode=1  # registry\n" + BuiltIn
                + "dut.room=B.104  # registry\nvif.ufp=u.xml  # registry\n"
                  "vif.dfp=a.xml  # registry\n",
            ""}));
}

TEST_F(KeptSettingsTest, ASettingOfTheCommandLineIsForOneRun) {
    EXPECT_EQ(Run({"--show-settings", "--set", "Suite.Speed=6"}).code, 0);
    EXPECT_EQ(Settings(), "");
}

TEST_F(KeptSettingsTest, OnePartOfTheDeviceChangesAndTheOthersStay) {
    Run({"--show-settings", "--dut", "tid=1,room=3"});
    Run({"--show-settings", "--dut", "room=4"});
    EXPECT_EQ(KeptDevice(), (Texts{"1", "", "4", ""}));
    EXPECT_EQ(Settings(), "dut.tid=1  # registry\ndut.room=4  # registry\n");
}

TEST_F(KeptSettingsTest, EmptyWordsForgetWhatWasKept) {
    Run({"--show-settings", "--dut", "tid=1", "--ufp-vif", "u.xml", "--dfp-vif", "a.xml"});
    Run({"--show-settings", "--dut", "", "--ufp-vif", "", "--dfp-vif", ""});
    EXPECT_EQ(KeptDevice(), Texts(4));
    EXPECT_EQ(Kept(ChoicePath, {"UFPVif"}), Texts{""});
    EXPECT_EQ(Kept(ListPath, {"Vif_1"}), Texts(1));
    EXPECT_EQ(Settings(), "");
}

} // namespace
