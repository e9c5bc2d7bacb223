// The suite's wait for a device, from the plug to the verdict: the device is simulated, the rest is
// not.
#include <gtest/gtest.h>

#include "tests/platform/linux/UsbTestbed.h"
#include "tests/usb_descriptors/TestDevice.h"
#include "tests/usb_descriptors/WaitFixture.h"

class PluggedDeviceTest : public WaitFixture {
protected:
    // Its descriptors are there before it is announced to whoever waits.
    void Plug(std::string const & recording) {
        auto const bytes = ReadFile(RecordingsFolder() / recording);
        m_Machine.Plug("1-1", {{"PRODUCT", "f1d0/104/100"}, {"ID_SERIAL_SHORT", "4711"}});
        m_Machine.AddFile("1-1", "descriptors", std::string(bytes.begin(), bytes.end()));
    }

    UsbTestbed m_Machine;
};

TEST_F(PluggedDeviceTest, PluggedDeviceIsFoundShownAndChecked) {
    Plug("faulty/bulk_packet_size.bin");
    TEST_STATUS const status = Wait([&] { m_Machine.Announce("1-1", "add"); });
    EXPECT_NE(status & TEST_STATUS_FAIL, 0u);
    ASSERT_EQ(m_Log->m_Lines.size(), 5u);
    EXPECT_EQ(
        m_Log->m_Lines[2],
        "INFO   Event: DBT_DEVICEARRIVAL\n"
        "    Device event struct length=98, type=DBT_DEVTYP_DEVICEINTERFACE\n"
        "      Device Interface class GUID: {A5DCBF10-6530-11D2-901F-00C04FB951ED} (USB Device)\n"
        "      Device name: "
        "\\\\?\\USB#VID_F1D0&PID_0104#4711#{a5dcbf10-6530-11d2-901f-00c04fb951ed}");
    EXPECT_EQ(m_Log->m_Lines[3], "INFO Checking the descriptors of 1-1");
    EXPECT_EQ(m_Log->m_Lines[4].substr(0, 5), "FAIL ");
}
