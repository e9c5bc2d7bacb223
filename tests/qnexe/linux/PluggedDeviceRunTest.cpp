// The whole program while a device is plugged in: the device is simulated, the rest is not.
#include <chrono>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qnexe/ChildHost.h"
#include "tests/platform/linux/UsbTestbed.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

class PluggedDeviceRunTest : public ChildHost {
protected:
    // Its descriptors are there before it is announced. `product` is that of the recording.
    void Prepare(std::string const & recording, std::string const & product) {
        std::ifstream stream(RECORDINGS "/" + recording, std::ios::binary);
        m_Machine.Plug(
            "1-1", {{"PRODUCT", "f1d0/" + product + "/100"}, {"ID_SERIAL_SHORT", "4711"}});
        m_Machine.AddFile("1-1", "descriptors", {std::istreambuf_iterator<char>(stream), {}});
    }

    // The device is announced when the program asks for it.
    Result RunAndPlug(
        std::string const & suite = "usb_descriptors.so",
        std::string const & setting = "Suite.WaitForDevice=50") {
        auto & program = Start({"--suite", (ProgramFolder() / suite).string(), "--set", setting});
        while (program.Error().find("Plug in a USB device") == std::string::npos) {
            if (!program.IsRunning()) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        m_Machine.Announce("1-1", "add");
        return Finish();
    }

    UsbTestbed m_Machine;
};

TEST_F(PluggedDeviceRunTest, DeviceThatComesIsShownAndItsDescriptorsPass) {
    Prepare("good/low_speed_mouse.bin", "1");
    Result const result = RunAndPlug();
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(
        result.error,
        HasSubstr("INFO      Event: DBT_DEVICEARRIVAL\n"
                  "    Device event struct length=98, type=DBT_DEVTYP_DEVICEINTERFACE\n"
                  "      Device Interface class GUID: {A5DCBF10-6530-11D2-901F-00C04FB951ED} (USB "
                  "Device)\n"
                  "      Device name: "
                  "\\\\?\\USB#VID_F1D0&PID_0001#4711#{a5dcbf10-6530-11d2-901f-00c04fb951ed}"));
    EXPECT_THAT(result.error, HasSubstr("INFO    Checking the descriptors of 1-1\n"));
    EXPECT_THAT(result.error, EndsWith(Summary("Fails (0); Aborts (0); Warnings (0)", 1, 0)));
}

TEST_F(PluggedDeviceRunTest, FaultOfTheDeviceThatComesFailsTheRun) {
    Prepare("faulty/bulk_packet_size.bin", "104");
    Result const result = RunAndPlug();
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.error, HasSubstr("wMaxPacketSize"));
}

TEST_F(PluggedDeviceRunTest, TheExampleThatWaitsPassesWhenADeviceComes) {
    Prepare("good/low_speed_mouse.bin", "1");
    Result const result = RunAndPlug("arrivals.so", "Suite.Seconds=50");
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.error, HasSubstr("Event: DBT_DEVICEARRIVAL"));
    EXPECT_THAT(result.error, EndsWith(Summary("Fails (0); Aborts (0); Warnings (0)", 1, 0)));
}

} // namespace
