// Lists of the devices that are there.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/DeviceServices.h"
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
constexpr GUID SETUP_CLASS = {
    0x36FC9E60, 0xC465, 0x11CF, {0x80, 0x56, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};
constexpr GUID OTHER_CLASS = {0x12345678, 0, 0, {}};

char const * const CONTROLLER_ID = "PCI\\VEN_8086&DEV_1E31&SUBSYS_14771043\\0000:00:14.0";
char const * const ROOT_HUB_ID = "USB\\VID_1D6B&PID_0002\\0000:00:14.0";
char const * const DEVICE_ID = "USB\\VID_F1D0&PID_0001\\4711";

std::string Readable(std::string bytes) {
    for (char & byte : bytes) {
        byte = byte == '\0' ? '|' : byte;
    }
    return bytes;
}

} // namespace

class DeviceListTest : public testing::Test {
protected:
    DeviceListTest() {
        m_Machine.Plug("1-1", {}, {{"serial", "4711"}, {"product", "A device of tests"}});
        m_Machine.PlugOther("pci", "0000:00:02.0", {{"PCI_CLASS", "30000"}});
    }
    ~DeviceListTest() override { Free(); }

    void Free() {
        if (m_List != INVALID_HANDLE_VALUE) {
            EXPECT_NE(SetupDiDestroyDeviceInfoList(m_List), FALSE);
        }
        m_List = INVALID_HANDLE_VALUE;
    }

    Lines Open(GUID const * classGuid, char const * enumerator, DWORD flags) {
        Free();
        m_List = SetupDiGetClassDevsA(classGuid, enumerator, nullptr, flags);
        Lines ids;
        for (DWORD index = 0; Select(index); ++index) {
            ids.push_back(Id());
        }
        EXPECT_EQ(GetLastError(), ERROR_NO_MORE_ITEMS);
        return ids;
    }

    bool Select(DWORD index) {
        m_Device.cbSize = sizeof m_Device;
        return SetupDiEnumDeviceInfo(m_List, index, &m_Device) != FALSE;
    }

    std::string Id() {
        char id[300];
        DWORD required = 0;
        EXPECT_NE(SetupDiGetDeviceInstanceIdA(m_List, &m_Device, id, sizeof id, &required), FALSE);
        EXPECT_EQ(required, std::strlen(id) + 1);
        return id;
    }

    // The property's type and its bytes with "|" for each NUL.
    std::string Property(DWORD property) {
        BYTE bytes[300];
        DWORD required = 0;
        DWORD type = 0;
        EXPECT_NE(
            SetupDiGetDeviceRegistryPropertyA(
                m_List, &m_Device, property, &type, bytes, sizeof bytes, &required),
            FALSE);
        return std::to_string(type) + " "
               + Readable(std::string(reinterpret_cast<char *>(bytes), required));
    }

    UsbTestbed m_Machine;
    HDEVINFO m_List = INVALID_HANDLE_VALUE;
    SP_DEVINFO_DATA m_Device = {};
};

TEST_F(DeviceListTest, AllAreListed) {
    EXPECT_EQ(
        Open(nullptr, nullptr, DIGCF_ALLCLASSES | DIGCF_PRESENT),
        (Lines{CONTROLLER_ID, ROOT_HUB_ID, DEVICE_ID}));
}

TEST_F(DeviceListTest, ClassOfInterfacesSelects) {
    DWORD const flags = DIGCF_DEVICEINTERFACE | DIGCF_PRESENT;
    EXPECT_EQ(Open(&DEVICE_CLASS, nullptr, flags), Lines{DEVICE_ID});
    EXPECT_EQ(Open(&HUB_CLASS, nullptr, flags), Lines{ROOT_HUB_ID});
    EXPECT_EQ(Open(&CONTROLLER_CLASS, nullptr, flags), Lines{CONTROLLER_ID});
    EXPECT_EQ(Open(&SETUP_CLASS, nullptr, flags), Lines{});
}

TEST_F(DeviceListTest, SetupClassOfUsbIsAllOfThem) {
    EXPECT_EQ(Open(&SETUP_CLASS, nullptr, DIGCF_PRESENT).size(), 3u);
    EXPECT_EQ(Open(&OTHER_CLASS, nullptr, 0), Lines{});
    EXPECT_EQ(Open(&DEVICE_CLASS, nullptr, 0), Lines{});
}

TEST_F(DeviceListTest, EnumeratorSelectsABusOrADevice) {
    EXPECT_EQ(Open(nullptr, "usb", DIGCF_ALLCLASSES), (Lines{ROOT_HUB_ID, DEVICE_ID}));
    EXPECT_EQ(Open(nullptr, "PCI", DIGCF_ALLCLASSES), Lines{CONTROLLER_ID});
    EXPECT_EQ(Open(nullptr, "usb\\vid_f1d0&pid_0001\\4711", DIGCF_ALLCLASSES), Lines{DEVICE_ID});
    EXPECT_EQ(Open(nullptr, "ACPI", DIGCF_ALLCLASSES), Lines{});
    EXPECT_EQ(Open(&DEVICE_CLASS, "USB", DIGCF_DEVICEINTERFACE), Lines{DEVICE_ID});
}

TEST_F(DeviceListTest, PropertiesAreDescriptionAndHardwareIds) {
    Open(nullptr, nullptr, DIGCF_ALLCLASSES);
    Select(0);
    EXPECT_EQ(Property(SPDRP_DEVICEDESC), "1 USB Host Controller|");
    EXPECT_EQ(
        Property(SPDRP_HARDWAREID),
        "7 PCI\\VEN_8086&DEV_1E31&SUBSYS_14771043|PCI\\VEN_8086&DEV_1E31||");
    Select(1);
    EXPECT_EQ(Property(SPDRP_DEVICEDESC), "1 USB Hub|");
    Select(2);
    EXPECT_EQ(Property(SPDRP_DEVICEDESC), "1 A device of tests|");
    EXPECT_EQ(
        Property(SPDRP_HARDWAREID), "7 USB\\VID_F1D0&PID_0001&REV_0100|USB\\VID_F1D0&PID_0001||");
}

TEST_F(DeviceListTest, HexadecimalDigitsOfAnIdAreCapitals) {
    m_Machine.Plug("1-2", {{"PRODUCT", "beef/ace/b0a"}}, {{"serial", "abc"}});
    Open(nullptr, "USB\\VID_BEEF&PID_0ACE\\abc", DIGCF_ALLCLASSES);
    ASSERT_TRUE(Select(0));
    EXPECT_EQ(Id(), "USB\\VID_BEEF&PID_0ACE\\abc");
    EXPECT_EQ(
        Property(SPDRP_HARDWAREID), "7 USB\\VID_BEEF&PID_0ACE&REV_0B0A|USB\\VID_BEEF&PID_0ACE||");
}

TEST_F(DeviceListTest, ListStaysAsItWasMade) {
    Open(&DEVICE_CLASS, nullptr, DIGCF_DEVICEINTERFACE);
    m_Machine.Unplug("1-1");
    EXPECT_TRUE(Select(0));
    EXPECT_EQ(Id(), DEVICE_ID);
    EXPECT_EQ(Open(&DEVICE_CLASS, nullptr, DIGCF_DEVICEINTERFACE), Lines{});
}

TEST_F(DeviceListTest, ShortBufferIsToldTheSizeAndStaysAsItWas) {
    Open(&DEVICE_CLASS, nullptr, DIGCF_DEVICEINTERFACE);
    Select(0);
    DWORD const needed = static_cast<DWORD>(std::strlen(DEVICE_ID) + 1);
    char id[64] = "before";
    DWORD required = 0;
    EXPECT_FALSE(SetupDiGetDeviceInstanceIdA(m_List, &m_Device, id, needed - 1, &required));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(required, needed);
    EXPECT_STREQ(id, "before");
    EXPECT_FALSE(SetupDiGetDeviceInstanceIdA(m_List, &m_Device, nullptr, 0, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_TRUE(SetupDiGetDeviceInstanceIdA(m_List, &m_Device, id, needed, nullptr));
    EXPECT_STREQ(id, DEVICE_ID);
    EXPECT_FALSE(SetupDiGetDeviceRegistryPropertyA(
        m_List, &m_Device, SPDRP_HARDWAREID, nullptr, nullptr, 0, &required));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(required, 54u);
}

TEST_F(DeviceListTest, OtherPropertiesAndDevicesAreRefused) {
    Open(&DEVICE_CLASS, nullptr, DIGCF_DEVICEINTERFACE);
    Select(0);
    BYTE bytes[64];
    EXPECT_FALSE(SetupDiGetDeviceRegistryPropertyA(
        m_List, &m_Device, 2, nullptr, bytes, sizeof bytes, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_DATA);
    for (DWORD const number : {0u, 2u}) {
        m_Device.DevInst = number;
        char id[64];
        EXPECT_FALSE(SetupDiGetDeviceInstanceIdA(m_List, &m_Device, id, sizeof id, nullptr));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    }
    EXPECT_FALSE(SetupDiGetDeviceInstanceIdA(m_List, nullptr, nullptr, 0, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(SetupDiEnumDeviceInfo(m_List, 0, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_USER_BUFFER);
}

TEST_F(DeviceListTest, FreedListIsUnknown) {
    Open(nullptr, nullptr, DIGCF_ALLCLASSES);
    Select(0);
    HDEVINFO const freed = m_List;
    Free();
    BYTE bytes[64];
    EXPECT_FALSE(SetupDiEnumDeviceInfo(freed, 0, &m_Device));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(SetupDiGetDeviceInstanceIdA(freed, &m_Device, nullptr, 0, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(SetupDiGetDeviceRegistryPropertyA(
        freed, &m_Device, SPDRP_DEVICEDESC, nullptr, bytes, sizeof bytes, nullptr));
    EXPECT_FALSE(SetupDiDestroyDeviceInfoList(freed));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST_F(DeviceListTest, WhereNothingCanBeAskedTheListIsEmpty) {
    {
        Diversion const none(wrapped_udev_new, []() -> udev * { return nullptr; });
        EXPECT_EQ(Open(nullptr, nullptr, DIGCF_ALLCLASSES), Lines{});
    }
    Diversion const none(
        wrapped_udev_enumerate_new, [](auto...) -> udev_enumerate * { return nullptr; });
    EXPECT_EQ(Open(nullptr, nullptr, DIGCF_ALLCLASSES), Lines{});
}
