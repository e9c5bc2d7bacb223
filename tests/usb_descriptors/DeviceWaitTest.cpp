// The suite's wait for a device, with events that the test sends to the host's window.
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "examples/suites/usb_descriptors/UsbDescriptorsSuite.h"
#include "messages/CWindowsMessage.h"
#include "platform/DeviceServices.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "tests/prompts/RecordingInput.h"
#include "tests/usb_descriptors/TestFolder.h"
#include "tests/usb_descriptors/WaitFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

char const * const kMouse = "\\\\?\\USB#VID_F1D0&PID_0001#4711#{a5dcbf10}";

// Does what the operator does while the question is shown.
class ActingOperator : public RecordingInput {
public:
    explicit ActingOperator(std::function<void()> act) : m_Act(std::move(act)) {
        CAppState::UserInput(this);
    }

    using RecordingInput::DisplayInfoToUser;
    TS_STATUS DisplayInfoToUser(
        std::wstring * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
        std::wstring * button, WINDOW_ARGS * args) override {
        m_Act();
        return RecordingInput::DisplayInfoToUser(text, timeout, flag, event, button, args);
    }

private:
    std::function<void()> m_Act;
};

} // namespace

class DeviceWaitTest : public WaitFixture {
protected:
    DeviceWaitTest() { Set("DevicesRoot", m_Folder.Text()); }

    // The wait has looked for a message once.
    static void ExpectReset() {
        ULONGLONG const end = GetTickCount64() + 60'000;
        while (WaitForSingleObject(CAppState::MessageFilterEvent(), 0) == WAIT_OBJECT_0) {
            ASSERT_LT(GetTickCount64(), end);
            Sleep(1);
        }
    }

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

TEST_F(DeviceWaitTest, OperatorIsAskedForADeviceAndPlugsItIn) {
    m_Folder.Write("1-1/descriptors", ReadGood("low_speed_mouse"));
    ActingOperator const operates([&] { Announce(DBT_DEVICEARRIVAL, kMouse); });
    EXPECT_EQ(Wait([] {}), TEST_STATUS_SUCCESS | TEST_STATUS_INFO);
    EXPECT_THAT(
        m_Log->m_Lines,
        ElementsAre(
            "INFO Plug in a USB device within 60 seconds.",
            HasSubstr("(WM_DEVICECHANGE) message received"), HasSubstr("DBT_DEVICEARRIVAL"),
            "INFO Checking the descriptors of 1-1"));
    EXPECT_EQ(
        operates.m_Asked, std::vector<Question>{(Question{
                              "DisplayInfoToUser",
                              {L"Plug in a USB device within 60 seconds.", L"OK"},
                              std::nullopt,
                              {nullptr, nullptr},
                              {60000},
                              true})});
}

TEST_F(DeviceWaitTest, WaitGoesOnBehindTheOperatorsAnswer) {
    m_Folder.Write("1-1/descriptors", ReadGood("low_speed_mouse"));
    std::thread machine;
    ActingOperator const operates([&] {
        SetEvent(CAppState::MessageFilterEvent());
        machine = std::thread([&] {
            ExpectReset();
            Announce(DBT_DEVICEARRIVAL, kMouse);
        });
    });
    EXPECT_EQ(Wait([] {}), TEST_STATUS_SUCCESS | TEST_STATUS_INFO);
    machine.join();
    EXPECT_EQ(operates.m_Asked.size(), 1u);
    EXPECT_EQ(m_Log->m_Lines.back(), "INFO Checking the descriptors of 1-1");
}

TEST_F(DeviceWaitTest, OperatorEndsTheWaitAtTheQuestion) {
    ActingOperator const operates([] { CUIUpdate::GetUIUpdate()->AbortFunction(true); });
    EXPECT_NE(Wait([] {}) & TEST_STATUS_ABORT, 0u);
    EXPECT_EQ(m_Log->m_Lines.back(), "ABORT The operator has ended the wait.");
}

TEST_F(DeviceWaitTest, WithoutTimeNobodyIsAsked) {
    Set("WaitForDevice", "0");
    ActingOperator const operates([] {});
    EXPECT_NE(Wait([] {}) & TEST_STATUS_ABORT, 0u);
    EXPECT_TRUE(operates.m_Asked.empty());
    EXPECT_EQ(m_Log->m_Lines.back(), "ABORT No device came within 0 seconds.");
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
