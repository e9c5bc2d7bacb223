// What is relied on of device notifications and of lists of devices, whatever devices there are.
#include "platform/DeviceServices.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/Messaging.h"
#include "tests/platform/TestWindow.h"

namespace {

constexpr GUID USB_DEVICE = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

DEV_BROADCAST_DEVICEINTERFACE_A Filter(GUID const & interfaceClass = {}) {
    DEV_BROADCAST_DEVICEINTERFACE_A filter = {};
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = interfaceClass;
    return filter;
}

DWORD ErrorOfRegistration(HANDLE window, void * filter, DWORD flags) {
    SetLastError(0);
    EXPECT_EQ(RegisterDeviceNotificationA(window, filter, flags), nullptr);
    return GetLastError();
}

} // namespace

class DeviceServicesTest : public testing::Test {
protected:
    DeviceServicesTest() {
        RegisterTestClass();
        m_Window = MakeTestWindow();
    }
    ~DeviceServicesTest() override { DestroyWindow(m_Window); }

    HWND m_Window;
};

TEST_F(DeviceServicesTest, RegistrationNeedsAWindow) {
    auto filter = Filter();
    EXPECT_EQ(ErrorOfRegistration(nullptr, &filter, 4), DWORD{ERROR_INVALID_PARAMETER});
    HWND const gone = MakeTestWindow();
    DestroyWindow(gone);
    EXPECT_EQ(ErrorOfRegistration(gone, &filter, 4), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(DeviceServicesTest, RegistrationSucceedsWhereDevicesAreAnnounced) {
    for (DWORD const flags : {DWORD{0}, DWORD{4}}) {
        auto filter = Filter(USB_DEVICE);
        SetLastError(0);
        auto const notification = RegisterDeviceNotificationA(m_Window, &filter, flags);
        if (notification == nullptr) {
            EXPECT_EQ(GetLastError(), DWORD{ERROR_SERVICE_NOT_ACTIVE});
        } else {
            EXPECT_NE(UnregisterDeviceNotification(notification), FALSE);
        }
    }
}

TEST_F(DeviceServicesTest, ListWithoutAClassNeedsToBeOfAll) {
    SetLastError(0);
    EXPECT_EQ(SetupDiGetClassDevsA(nullptr, nullptr, nullptr, 0), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    auto const all = SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_ALLCLASSES);
    EXPECT_NE(all, INVALID_HANDLE_VALUE);
    EXPECT_NE(SetupDiDestroyDeviceInfoList(all), FALSE);
}

TEST_F(DeviceServicesTest, ListOfAClassCanBeWalked) {
    auto const list =
        SetupDiGetClassDevsA(&USB_DEVICE, nullptr, nullptr, DIGCF_DEVICEINTERFACE | DIGCF_PRESENT);
    ASSERT_NE(list, INVALID_HANDLE_VALUE);
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    DWORD index = 0;
    for (; SetupDiEnumDeviceInfo(list, index, &device); ++index) {
        char id[512] = {};
        EXPECT_NE(SetupDiGetDeviceInstanceIdA(list, &device, id, sizeof id, nullptr), FALSE);
        EXPECT_NE(std::string(id), "");
    }
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_ITEMS});
    EXPECT_NE(SetupDiDestroyDeviceInfoList(list), FALSE);
}

TEST_F(DeviceServicesTest, RecordOfAnotherSizeIsRefused) {
    auto const list = SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_ALLCLASSES);
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device - 1;
    EXPECT_EQ(SetupDiEnumDeviceInfo(list, 0, &device), FALSE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_USER_BUFFER});
    SetupDiDestroyDeviceInfoList(list);
}

TEST_F(DeviceServicesTest, NoListIsRefused) {
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    EXPECT_EQ(SetupDiEnumDeviceInfo(INVALID_HANDLE_VALUE, 0, &device), FALSE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(SetupDiDestroyDeviceInfoList(nullptr), FALSE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(DeviceServicesTest, EventSentByHandReachesTheProcedureWithItsRecord) {
    std::string name;
    WindowThread const host([&](HWND, UINT message, WPARAM event, LPARAM record) -> LRESULT {
        if (message == WM_DEVICECHANGE && event == DBT_DEVICEARRIVAL) {
            name = reinterpret_cast<DEV_BROADCAST_PORT_A const *>(record)->dbcp_name;
        }
        return 0;
    });
    std::vector<unsigned char> bytes = {17, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 'C', 'O', 'M', '3', 0};
    SendMessageA(
        host.Window(), WM_DEVICECHANGE, DBT_DEVICEARRIVAL, reinterpret_cast<LPARAM>(bytes.data()));
    EXPECT_EQ(name, "COM3");
}
