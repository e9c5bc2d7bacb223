// Devices that come and go, as a window hears of them.
#include <cerrno>
#include <cstring>
#include <functional>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <poll.h>

#include <gtest/gtest.h>

#include "platform/DeviceServices.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "tests/platform/TestWindow.h"
#include "tests/platform/linux/NoMoreDescriptors.h"
#include "tests/platform/linux/UdevFaults.h"
#include "tests/platform/linux/UsbTestbed.h"

namespace {

using Lines = std::vector<std::string>;

constexpr GUID DEVICE_CLASS = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
constexpr GUID HUB_CLASS = {
    0xF18A0E88, 0xC30C, 0x11D0, {0x88, 0x15, 0x00, 0xA0, 0xC9, 0x06, 0xBE, 0xD8}};
constexpr GUID CONTROLLER_CLASS = {
    0x3ABF6F2D, 0x71C4, 0x462A, {0x8A, 0x92, 0x1E, 0x68, 0x61, 0xE6, 0xAF, 0x27}};

char const * const DEVICE = "#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
char const * const HUB = "#{f18a0e88-c30c-11d0-8815-00a0c906bed8}";
char const * const CONTROLLER = "#{3abf6f2d-71c4-462a-8a92-1e6861e6af27}";

std::string Name(std::string const & instance, char const * interfaceClass = DEVICE) {
    return "\\\\?\\USB#VID_F1D0&PID_0001#" + instance + interfaceClass;
}

std::string ClassOf(GUID const & guid) {
    if (std::memcmp(&guid, &DEVICE_CLASS, sizeof guid) == 0) {
        return "device ";
    }
    if (std::memcmp(&guid, &HUB_CLASS, sizeof guid) == 0) {
        return "hub ";
    }
    return std::memcmp(&guid, &CONTROLLER_CLASS, sizeof guid) == 0 ? "controller " : "? ";
}

std::string LineOf(WPARAM event, LPARAM address) {
    auto const & record = *reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_A const *>(address);
    EXPECT_EQ(record.dbcc_devicetype, 5u);
    EXPECT_EQ(record.dbcc_reserved, 0u);
    EXPECT_EQ(record.dbcc_size, 28 + std::strlen(record.dbcc_name) + 1);
    return (event == DBT_DEVICEARRIVAL          ? "+"
            : event == DBT_DEVICEREMOVECOMPLETE ? "-"
                                                : "? ")
           + ClassOf(record.dbcc_classguid) + record.dbcc_name;
}

HDEVNOTIFY Register(HWND window, std::optional<GUID> const & interfaceClass = std::nullopt) {
    DEV_BROADCAST_DEVICEINTERFACE_A filter = {};
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = interfaceClass.value_or(GUID{});
    return RegisterDeviceNotificationA(window, &filter, interfaceClass ? 0 : 4);
}

// The simulated machine, unlike a kernel, holds no more than some ten events that nobody has
// fetched.
constexpr int CHANGES_AT_ONCE = 4;

bool IsReadable(int descriptor, int timeout) {
    pollfd readable{descriptor, POLLIN, 0};
    return poll(&readable, 1, timeout) == 1;
}

} // namespace

// The device manager runs, unless a test says that it does not.
class DeviceNotificationTest : public testing::Test {
protected:
    DeviceNotificationTest() {
        RegisterTestClass();
        ThreadHandler() = [this](HWND, UINT message, WPARAM event, LPARAM record) -> LRESULT {
            if (message == WM_DEVICECHANGE) {
                m_Lines.push_back(LineOf(event, record));
                if (m_OnEvent) {
                    m_OnEvent();
                }
            }
            return 0;
        };
        m_Window = MakeTestWindow();
    }
    ~DeviceNotificationTest() override {
        DestroyWindow(m_Window);
        ThreadHandler() = nullptr;
    }

    HDEVNOTIFY Listen(std::optional<GUID> const & interfaceClass = std::nullopt) {
        auto const notification = Register(m_Window, interfaceClass);
        EXPECT_NE(notification, nullptr) << GetLastError();
        return notification;
    }

    // What came since the last call. Nothing is waited for: events are there as soon as they have
    // been announced.
    Lines Heard() {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageA(&message);
        }
        return std::exchange(m_Lines, {});
    }

    DWORD RefusalOf(HANDLE window, void * filter, DWORD flags) {
        SetLastError(0);
        EXPECT_EQ(RegisterDeviceNotificationA(window, filter, flags), nullptr);
        return GetLastError();
    }

    DWORD Refusal() {
        SetLastError(0);
        EXPECT_EQ(Register(m_Window), nullptr);
        return GetLastError();
    }

    UsbTestbed m_Machine;
    bool m_ManagerRuns = true;
    Diversion<int(udev_queue *)> const m_Manager{
        wrapped_udev_queue_get_udev_is_active, [this](udev_queue *) { return m_ManagerRuns; }};
    HWND m_Window;
    Lines m_Lines;
    std::function<void()> m_OnEvent;
};

TEST_F(DeviceNotificationTest, ArrivalAndRemovalAreTold) {
    auto const notification = Listen();
    EXPECT_EQ(Heard(), Lines{});
    m_Machine.Plug("1-1", {{"ID_SERIAL_SHORT", "4711"}});
    EXPECT_EQ(Heard(), Lines{"+device " + Name("4711")});
    m_Machine.Unplug("1-1");
    EXPECT_EQ(Heard(), Lines{"-device " + Name("4711")});
    EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
}

// Its files are gone when the removal is heard of.
TEST_F(DeviceNotificationTest, RemovalBearsTheNameOfTheArrival) {
    auto const notification = Listen();
    m_Machine.Plug("1-1", {}, {{"serial", "4711\n"}});
    EXPECT_EQ(Heard(), Lines{"+device " + Name("4711")});
    m_Machine.Unplug("1-1");
    EXPECT_EQ(Heard(), Lines{"-device " + Name("4711")});
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, HundredFastChangesAreTwoHundredEventsInOrder) {
    auto const notification = Listen();
    Lines expected;
    Lines heard;
    for (int i = 0; i != 100; ++i) {
        auto const serial = "S" + std::to_string(i);
        m_Machine.Plug("1-1", {{"ID_SERIAL_SHORT", serial}});
        m_Machine.Unplug("1-1");
        expected.push_back("+device " + Name(serial));
        expected.push_back("-device " + Name(serial));
        if (i % CHANGES_AT_ONCE == CHANGES_AT_ONCE - 1) {
            auto const some = Heard();
            heard.insert(heard.end(), some.begin(), some.end());
        }
    }
    EXPECT_EQ(heard.size(), 200u);
    EXPECT_EQ(heard, expected);
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, WithoutAManagerRegistrationIsRefusedThoughThereIsUsb) {
    m_Machine.Plug("1-1");
    m_ManagerRuns = false;
    EXPECT_EQ(Refusal(), ERROR_SERVICE_NOT_ACTIVE);
    EXPECT_FALSE(IsReadable(MorvexMessageDescriptor(), 0));
    EXPECT_EQ(Heard(), Lines{});
    m_ManagerRuns = true;
    UnregisterDeviceNotification(Listen());
}

TEST_F(DeviceNotificationTest, EventsAreThoseOfTheManager) {
    Lines sources;
    Diversion const open(
        wrapped_udev_monitor_new_from_netlink, [&](udev * context, char const * name) {
            sources.push_back(name);
            return wrapped_udev_monitor_new_from_netlink.Real(context, name);
        });
    UnregisterDeviceNotification(Listen());
    m_ManagerRuns = false;
    Refusal();
    EXPECT_EQ(sources, Lines{"udev"});
}

TEST_F(DeviceNotificationTest, ThereIsRoomForEventsThatNobodyFetchesYet) {
    int room = 0;
    Diversion const make(
        wrapped_udev_monitor_set_receive_buffer_size, [&](udev_monitor * monitor, int size) {
            room = size;
            return wrapped_udev_monitor_set_receive_buffer_size.Real(monitor, size);
        });
    UnregisterDeviceNotification(Listen());
    EXPECT_EQ(room, 16 << 20);
}

TEST_F(DeviceNotificationTest, DeviceWithoutAUsableSerialIsNamedAfterItsPlace) {
    auto const notification = Listen();
    for (char const * const serial :
         {"", "with blank", "a,b", "a#b", "a\\b", "a/b", "\x01", "\xC3\xA4"}) {
        SCOPED_TRACE(serial);
        m_Machine.Plug("1-1.2", {}, {{"serial", serial}});
        EXPECT_EQ(Heard(), Lines{"+device " + Name("0&1&1.2")});
        m_Machine.Unplug("1-1.2");
        EXPECT_EQ(Heard(), Lines{"-device " + Name("0&1&1.2")});
    }
    m_Machine.Plug("1-3", {{"ID_SERIAL_SHORT", std::string(127, 'x')}});
    EXPECT_EQ(Heard(), Lines{"+device " + Name("0&1&3")});
    m_Machine.Plug("1-4", {{"ID_SERIAL_SHORT", std::string(126, 'x')}});
    EXPECT_EQ(Heard(), Lines{"+device " + Name(std::string(126, 'x'))});
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, FilesOfTheNextDeviceOnThePortAreNotTakenForItsOwn) {
    auto const notification = Listen();
    m_Machine.Plug("1-1", {}, {{"serial", "first"}});
    m_Machine.Unplug("1-1");
    m_Machine.Plug("1-1", {}, {{"serial", "second"}});
    EXPECT_EQ(
        Heard(),
        (Lines{
            "+device " + Name("0&1&1"), "-device " + Name("0&1&1"), "+device " + Name("second")}));
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, ClassFollowsTheDevice) {
    auto const notification = Listen();
    m_Machine.Plug("1-2", {{"TYPE", "9/0/1"}, {"ID_SERIAL_SHORT", "H"}});
    m_Machine.PlugOther(
        "pci", "0000:00:1a.0",
        {{"PCI_CLASS", "C0320"}, {"PCI_ID", "8086:1E2D"}, {"PCI_SUBSYS_ID", "1043:1477"}});
    m_Machine.PlugOther(
        "usb", "usb2",
        {{"DEVTYPE", "usb_device"},
         {"PRODUCT", "1d6b/3/510"},
         {"TYPE", "0/0/0"},
         {"BUSNUM", "002"},
         {"DEVNUM", "001"}});
    EXPECT_EQ(
        Heard(),
        (Lines{
            "+hub " + Name("H", HUB),
            std::string("+controller \\\\?\\PCI#VEN_8086&DEV_1E2D&SUBSYS_14771043#0000:00:1a.0")
                + CONTROLLER,
            std::string("+hub \\\\?\\USB#VID_1D6B&PID_0003#0&2&0") + HUB}));
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, OtherDevicesAreNotTold) {
    auto const notification = Listen();
    m_Machine.PlugOther("pci", "0000:00:02.0", {{"PCI_CLASS", "30000"}, {"PCI_ID", "8086:0166"}});
    m_Machine.PlugOther("usb", "1-1:1.0", {{"DEVTYPE", "usb_interface"}, {"PRODUCT", "1/2/3"}});
    m_Machine.PlugOther("input", "input7", {});
    m_Machine.PlugOther("usb", "1-7", {{"DEVTYPE", "usb_device"}});
    m_Machine.UnplugOther("1-1:1.0");
    m_Machine.UnplugOther("0000:00:02.0");
    EXPECT_EQ(Heard(), Lines{});
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, OtherChangesOfADeviceAreNotTold) {
    auto const notification = Listen();
    m_Machine.Plug("1-1", {{"ID_SERIAL_SHORT", "1"}});
    Heard();
    for (char const * const action : {"change", "bind", "unbind", "move", "offline"}) {
        m_Machine.Announce("1-1", action);
    }
    EXPECT_EQ(Heard(), Lines{});
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, DeviceThatWasThereBeforeGoesUnderItsName) {
    m_Machine.Plug("1-1", {}, {{"serial", "early"}});
    auto const notification = Listen();
    EXPECT_EQ(Heard(), Lines{});
    m_Machine.Unplug("1-1");
    m_Machine.UnplugRootHub();
    EXPECT_EQ(
        Heard(), (Lines{
                     "-device " + Name("early"),
                     std::string("-hub \\\\?\\USB#VID_1D6B&PID_0002#0000:00:14.0") + HUB}));
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, RegistrationForAClassHearsOfThatAlone) {
    auto const hubs = Listen(HUB_CLASS);
    m_Machine.Plug("1-1", {{"ID_SERIAL_SHORT", "D"}});
    m_Machine.Plug("1-2", {{"ID_SERIAL_SHORT", "H"}, {"TYPE", "9/0/1"}});
    EXPECT_EQ(Heard(), Lines{"+hub " + Name("H", HUB)});
    auto const nothing = Listen(GUID{});
    m_Machine.Unplug("1-2");
    EXPECT_EQ(Heard(), Lines{"-hub " + Name("H", HUB)});
    UnregisterDeviceNotification(hubs);
    UnregisterDeviceNotification(nothing);
}

TEST_F(DeviceNotificationTest, EachRegistrationHearsForItself) {
    auto const first = Listen();
    auto const second = Listen();
    m_Machine.Plug("1-1", {{"ID_SERIAL_SHORT", "1"}});
    EXPECT_EQ(Heard().size(), 2u);
    UnregisterDeviceNotification(first);
    m_Machine.Unplug("1-1");
    EXPECT_EQ(Heard().size(), 1u);
    UnregisterDeviceNotification(second);
}

TEST_F(DeviceNotificationTest, EndedRegistrationHearsNoMore) {
    auto const notification = Listen();
    m_Machine.Plug("1-1");
    EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
    EXPECT_FALSE(IsReadable(MorvexMessageDescriptor(), 0));
    m_Machine.Unplug("1-1");
    EXPECT_EQ(Heard(), Lines{});
    EXPECT_EQ(UnregisterDeviceNotification(notification), FALSE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(UnregisterDeviceNotification(nullptr), FALSE);
}

TEST_F(DeviceNotificationTest, DescriptorOfTheQueueShowsAnEvent) {
    int const descriptor = MorvexMessageDescriptor();
    auto const notification = Listen();
    EXPECT_EQ(MorvexMessageDescriptor(), descriptor);
    EXPECT_FALSE(IsReadable(descriptor, 0));
    m_Machine.Plug("1-1");
    EXPECT_TRUE(IsReadable(descriptor, 10'000));
    EXPECT_EQ(Heard().size(), 1u);
    EXPECT_FALSE(IsReadable(descriptor, 0));
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, EventIsServedBeforePostedMessagesAndPastEveryFilter) {
    auto const notification = Listen();
    PostMessageA(m_Window, WM_APP, 0, 0);
    m_Machine.Plug("1-1");
    MSG message;
    EXPECT_FALSE(PeekMessageA(&message, nullptr, WM_APP + 1, WM_APP + 1, PM_REMOVE));
    EXPECT_EQ(m_Lines.size(), 1u);
    EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    UnregisterDeviceNotification(notification);
}

TEST_F(DeviceNotificationTest, WaitingPumpWakesForAnEvent) {
    std::promise<HWND> made;
    std::promise<std::string> heard;
    std::thread host([&] {
        ThreadHandler() = [&](HWND, UINT message, WPARAM event, LPARAM record) -> LRESULT {
            if (message == WM_DEVICECHANGE) {
                heard.set_value(LineOf(event, record));
                PostQuitMessage(0);
            }
            return 0;
        };
        HWND const window = MakeTestWindow();
        made.set_value(window);
        Pump();
        ThreadHandler() = nullptr;
        DestroyWindow(window);
    });
    // From a thread that is not the window's.
    auto const notification = Register(made.get_future().get());
    ASSERT_NE(notification, nullptr);
    m_Machine.Plug("1-1", {{"ID_SERIAL_SHORT", "1"}});
    EXPECT_EQ(heard.get_future().get(), "+device " + Name("1"));
    host.join();
    EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
}

TEST_F(DeviceNotificationTest, ProcedureMayPumpAndEndTheRegistration) {
    auto const notification = Listen();
    m_OnEvent = [&] {
        if (m_Lines.size() == 3) {
            EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
        }
        MSG message;
        PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);
    };
    for (int i = 0; i != 2; ++i) {
        m_Machine.Plug("1-1", {{"ID_SERIAL_SHORT", std::to_string(i)}});
        m_Machine.Unplug("1-1");
    }
    EXPECT_EQ(
        Heard(), (Lines{"+device " + Name("0"), "-device " + Name("0"), "+device " + Name("1")}));
}

TEST_F(DeviceNotificationTest, WindowThatGoesTakesItsEventsAlong) {
    HWND const other = MakeTestWindow();
    auto const notification = Register(other);
    ASSERT_NE(notification, nullptr);
    m_Machine.Plug("1-1");
    DestroyWindow(other);
    EXPECT_FALSE(IsReadable(MorvexMessageDescriptor(), 0));
    EXPECT_EQ(Heard(), Lines{});
    EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
}

TEST_F(DeviceNotificationTest, ProcedureThatEndsItsWindowHearsNoMore) {
    HWND const other = MakeTestWindow();
    auto const notification = Register(other);
    m_OnEvent = [&] { DestroyWindow(other); };
    m_Machine.Plug("1-1");
    m_Machine.Unplug("1-1");
    EXPECT_EQ(Heard().size(), 1u);
    EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
}

TEST_F(DeviceNotificationTest, RegistrationEndsOnAnotherThreadWhileEventsCome) {
    auto const notification = Listen();
    std::thread other([&] { EXPECT_NE(UnregisterDeviceNotification(notification), FALSE); });
    for (int i = 0; i != 20; ++i) {
        m_Machine.Plug("1-1");
        m_Machine.Unplug("1-1");
        Heard();
    }
    other.join();
    m_Machine.Plug("1-1");
    EXPECT_EQ(Heard(), Lines{});
}

TEST_F(DeviceNotificationTest, SuccessLeavesTheLastError) {
    SetLastError(77);
    auto const notification = Listen();
    EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
    EXPECT_EQ(GetLastError(), 77u);
}

TEST_F(DeviceNotificationTest, FilterMustBeOfAnInterface) {
    DEV_BROADCAST_DEVICEINTERFACE_A filter = {};
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    EXPECT_EQ(RefusalOf(m_Window, nullptr, 4), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RefusalOf(m_Window, &filter, 1), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RefusalOf(m_Window, &filter, 8), ERROR_INVALID_PARAMETER);
    filter.dbcc_size = 27;
    EXPECT_EQ(RefusalOf(m_Window, &filter, 4), ERROR_INVALID_PARAMETER);
    filter.dbcc_size = 28;
    auto const notification = RegisterDeviceNotificationA(m_Window, &filter, 4);
    EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_HANDLE;
    EXPECT_EQ(RefusalOf(m_Window, &filter, 4), ERROR_INVALID_PARAMETER);
}

TEST_F(DeviceNotificationTest, FailuresOfTheSystemAreTold) {
    {
        Diversion const none(wrapped_udev_new, []() -> udev * { return nullptr; });
        EXPECT_EQ(Refusal(), ERROR_NOT_ENOUGH_MEMORY);
    }
    {
        Diversion const none(wrapped_udev_monitor_new_from_netlink, [](auto...) -> udev_monitor * {
            errno = EPROTONOSUPPORT;
            return nullptr;
        });
        EXPECT_EQ(Refusal(), ERROR_SERVICE_NOT_ACTIVE);
    }
    {
        Diversion const none(wrapped_udev_monitor_enable_receiving, [](auto...) { return -1; });
        EXPECT_EQ(Refusal(), ERROR_SERVICE_NOT_ACTIVE);
    }
    NoMoreDescriptors const none;
    EXPECT_EQ(Refusal(), ERROR_NOT_ENOUGH_MEMORY);
}

TEST(DeviceNotificationWithoutUsbTest, MachineThatAnnouncesNothingIsRefusedAtOnce) {
    Diversion const manager(wrapped_udev_queue_get_udev_is_active, [](auto...) { return 0; });
    RegisterTestClass();
    HWND const window = MakeTestWindow();
    SetLastError(0);
    EXPECT_EQ(Register(window), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_SERVICE_NOT_ACTIVE);
    MSG message;
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    DestroyWindow(window);
}
