// The whole program with the sample suite's wait for a device: how long is a setting of the run.
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Environment.h"
#include "qnexe/ChildHost.h"

namespace {

class DeviceWaitRunTest : public ChildHost {
protected:
    // Somebody answers at once, so that no system shows a dialog.
    DeviceWaitRunTest() {
        std::string const file = File("answers.json");
        std::ofstream(file, std::ios::binary) << R"({"answers": [{"answer": "ok"}]})";
        SetEnvironment("QN_PROMPTS", file.c_str());
    }
    ~DeviceWaitRunTest() override { ClearEnvironment("QN_PROMPTS"); }

    Result RunWith(std::vector<std::string> const & settings) {
        auto arguments = settings;
        arguments.insert(
            arguments.end(),
            {"--suite", (ProgramFolder() / ("usb_descriptors" SUITE_SUFFIX)).string()});
        return Run(arguments);
    }

    // The log of a run in which nothing came.
    static std::string InVain(std::string const & seconds) {
        return Opened() + Started() + "INFO    Plug in a USB device within " + seconds
               + " seconds.\nABORT   No device came within " + seconds
               + " seconds.\nFAIL    Test did not execute all required steps.\n"
               + Stopped("Wait for a device", "Fails (1); Aborts (1); Warnings (0)")
               + "FAIL    One or more functions called in this Test Suite failed to perform "
                 "required tasks.\n"
               + Summary("Fails (2); Aborts (1); Warnings (0)", 0, 1);
    }
};

TEST_F(DeviceWaitRunTest, SecondsOfTheCommandLineReachTheSuite) {
    Result const result = RunWith({"--set", "Suite.WaitForDevice=1"});
    EXPECT_EQ(result, (Result{1, "", InVain("1")}));
}

TEST_F(DeviceWaitRunTest, SecondsOfASettingsFileReachTheSuiteUnlessTheCommandLineHasOthers) {
    std::ofstream(File("run.ini")) << "[suite]\nwaitfordevice=0x1\n";
    EXPECT_EQ(RunWith({"--settings", File("run.ini")}), (Result{1, "", InVain("1")}));
    EXPECT_EQ(
        RunWith({"--settings", File("run.ini"), "--set", "Suite.WaitForDevice=0"}),
        (Result{1, "", InVain("0")}));
}

TEST_F(DeviceWaitRunTest, TimeThatIsNoNumberEndsTheRunWithCode4) {
    Result const result = RunWith({"--set", "Suite.WaitForDevice=soon"});
    EXPECT_EQ(result.code, 4);
    EXPECT_NE(
        result.error.find("QNExe: the suite cannot list its tests: WaitForDevice of section Suite "
                          "is no number of seconds: give one up to 86400.\n"),
        result.error.npos);
}

} // namespace
