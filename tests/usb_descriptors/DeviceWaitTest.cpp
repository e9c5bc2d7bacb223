// The suite's wait for a device, with events that the test sends to the host's window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "examples/suites/usb_descriptors/UsbDescriptorsSuite.h"
#include "messages/CWindowsMessage.h"
#include "platform/DeviceServices.h"
#include "tests/usb_descriptors/TestFolder.h"
#include "tests/usb_descriptors/WaitFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

char const * const kMouse = "\\\\?\\USB#VID_F1D0&PID_0001#4711#{a5dcbf10}";

} // namespace

class DeviceWaitTest : public WaitFixture {
protected:
    DeviceWaitTest() { Set("DevicesRoot", m_Folder.Text()); }

    std::shared_ptr<void> const m_Machine = MakeAnnouncingMachine();
    TestFolder m_Folder;
};

TEST_F(DeviceWaitTest, FirstArrivalIsShownAndItsDescriptorsAreChecked) {
    m_Folder.Write("1-1/descriptors", ReadGood("low_speed_mouse"));
    EXPECT_EQ(
        Wait([&] { Announce(DBT_DEVICEARRIVAL, kMouse); }), TEST_STATUS_SUCCESS | TEST_STATUS_INFO);
    EXPECT_THAT(
        m_Log->m_Lines,
        ElementsAre(
            "INFO Plug in a USB device within 60 seconds.",
            StartsWith("INFO \n0x0219 (WM_DEVICECHANGE) message received: hWnd="),
            "INFO   Event: DBT_DEVICEARRIVAL\n"
            "    Device event struct length=70, type=DBT_DEVTYP_DEVICEINTERFACE\n"
            "      Device Interface class GUID: {00000000-0000-0000-0000-000000000000}\n"
            "      Device name: \\\\?\\USB#VID_F1D0&PID_0001#4711#{a5dcbf10}",
            "INFO Checking the descriptors of 1-1"));
}

TEST_F(DeviceWaitTest, FaultOfTheDeviceFailsTheTest) {
    m_Folder.Write(
        "1-1/descriptors", ReadFile(RecordingsFolder() / "faulty" / "bulk_packet_size.bin"));
    TEST_STATUS const status =
        Wait([&] { Announce(DBT_DEVICEARRIVAL, "\\\\?\\USB#VID_F1D0&PID_0104#1#{}"); });
    EXPECT_NE(status & TEST_STATUS_FAIL, 0u);
    EXPECT_THAT(m_Log->m_Lines.back(), HasSubstr("9.6.6 wMaxPacketSize"));
}

TEST_F(DeviceWaitTest, RemovalsAndOtherDevicesAreShownAndWaitedPast) {
    m_Folder.Write("1-1/descriptors", ReadGood("low_speed_mouse"));
    Wait([&] {
        Announce(DBT_DEVICEREMOVECOMPLETE, kMouse);
        Announce(DBT_DEVICEARRIVAL, "\\\\?\\HID#something");
        Announce(DBT_DEVICEARRIVAL, kMouse);
        Announce(DBT_DEVICEARRIVAL, kMouse);
    });
    EXPECT_EQ(m_Log->m_Lines.size(), 1u + 3 * 2 + 1);
    EXPECT_EQ(m_Log->m_Lines.back(), "INFO Checking the descriptors of 1-1");
}

TEST_F(DeviceWaitTest, DeviceWithoutDescriptorsIsAborted) {
    m_Folder.Write("1-1/descriptors", ReadGood("high_speed_hub"));
    EXPECT_NE(Wait([&] { Announce(DBT_DEVICEARRIVAL, kMouse); }) & TEST_STATUS_ABORT, 0u);
    EXPECT_EQ(m_Log->m_Lines.back(), "ABORT The device that came does not show its descriptors.");
}

TEST_F(DeviceWaitTest, SystemThatShowsNoDescriptorsIsContentWithTheArrival) {
    Set("DevicesRoot", "");
    EXPECT_EQ(
        Wait([&] { Announce(DBT_DEVICEARRIVAL, kMouse); }), TEST_STATUS_SUCCESS | TEST_STATUS_INFO);
    EXPECT_EQ(
        m_Log->m_Lines.back(), "INFO This system does not show its devices' descriptors as files.");
}

TEST_F(DeviceWaitTest, WaitEndsWithItsTime) {
    Set("WaitForDevice", "0");
    EXPECT_NE(Wait([] {}) & TEST_STATUS_ABORT, 0u);
    EXPECT_EQ(
        m_Log->m_Lines, (Lines{
                            "INFO Plug in a USB device within 0 seconds.",
                            "ABORT No device came within 0 seconds."}));
}

TEST_F(DeviceWaitTest, OperatorEndsTheWait) {
    EXPECT_NE(Wait([] { CUIUpdate::GetUIUpdate()->AbortFunction(true); }) & TEST_STATUS_ABORT, 0u);
    EXPECT_EQ(m_Log->m_Lines.back(), "ABORT The operator has ended the wait.");
}

TEST_F(DeviceWaitTest, NothingIsLeftBehind) {
    m_Folder.Write("1-1/descriptors", ReadGood("low_speed_mouse"));
    Wait([&] {
        Announce(DBT_DEVICEARRIVAL, kMouse);
        Announce(DBT_DEVICEARRIVAL, kMouse);
    });
    EXPECT_EQ(CAppState::MessageToFilter(), 0u);
    EXPECT_EQ(CAppState::PopWindowsMessage(), nullptr);
}

class DeviceWaitSettingTest : public WaitFixture {};

TEST_F(DeviceWaitSettingTest, WindowThatHearsNothingIsAborted) {
    CAppState::MainWindowHandle(nullptr);
    EXPECT_NE(Wait([] {}) & TEST_STATUS_ABORT, 0u);
    EXPECT_EQ(m_Log->m_Lines, Lines{"ABORT This system does not announce devices."});
}

TEST_F(DeviceWaitSettingTest, WaitIsTheOnlyTestWithoutRecordings) {
    auto const tests = UsbDescriptorsSuite().Tests();
    ASSERT_EQ(tests.size(), 1u);
    EXPECT_EQ(tests[0].name, "Wait for a device");
    EXPECT_TRUE(tests[0].isActualTest);
}

TEST_F(DeviceWaitSettingTest, WaitIsTheFirstTestBeforeRecordings) {
    TestFolder const folder;
    folder.Write("mouse.bin", ReadGood("low_speed_mouse"));
    Set("Recordings", folder.Text());
    auto const tests = UsbDescriptorsSuite().Tests();
    ASSERT_EQ(tests.size(), 6u);
    EXPECT_EQ(tests[0].name, "Wait for a device");
    EXPECT_EQ(tests[1].name, "f1d0:0001 Structure");
}

TEST_F(DeviceWaitSettingTest, TimeThatIsNoNumberIsRefused) {
    for (char const * const text : {"soon", "", "86401"}) {
        Set("WaitForDevice", text);
        EXPECT_EQ(
            ThrownBy([] { UsbDescriptorsSuite().Tests(); }),
            "WaitForDevice of section Suite is no number of seconds: give one up to 86400.");
    }
}
