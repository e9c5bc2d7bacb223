// The list of devices for a scope.
#include "messages/CDevManager.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <type_traits>

#include "platform/DeviceServices.h"
#include "platform/Wrap.h"

MORVEX_WRAPPED(SetupDiGetClassDevsA)
MORVEX_WRAPPED(SetupDiDestroyDeviceInfoList)

static_assert(!std::is_polymorphic_v<CDevManager>);
static_assert(sizeof(CDevManager) == 24);

namespace {

constexpr GUID kClass = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

bool IsSame(GUID const & left, GUID const & right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

} // namespace

class CDevManagerTest : public testing::Test {
protected:
    static HDEVINFO List(unsigned long long number) { return reinterpret_cast<HDEVINFO>(number); }

    HDEVINFO m_Answer = List(0x1234);
    GUID const * m_Class = nullptr;
    char const * m_Enumerator = nullptr;
    bool m_HasParent = false;
    DWORD m_Flags = 0;
    std::vector<HDEVINFO> m_Freed;

    Diversion<HDEVINFO(GUID const *, char const *, HWND, DWORD)> const m_Get{
        wrapped_SetupDiGetClassDevsA,
        [this](GUID const * guid, char const * enumerator, HWND parent, DWORD flags) {
            m_Class = guid;
            m_Enumerator = enumerator;
            m_HasParent = parent != nullptr;
            m_Flags = flags;
            return m_Answer;
        }};
    Diversion<BOOL(HDEVINFO)> const m_Destroy{
        wrapped_SetupDiDestroyDeviceInfoList, [this](HDEVINFO list) {
            m_Freed.push_back(list);
            return TRUE;
        }};
};

TEST_F(CDevManagerTest, ArgumentsReachTheSystemAsTheyAre) {
    char const * const enumerator = "USB";
    {
        CDevManager const devices(&kClass, enumerator, 0xFFFFFFEDul);
        EXPECT_EQ(m_Class, &kClass);
        EXPECT_EQ(m_Enumerator, enumerator);
        EXPECT_FALSE(m_HasParent);
        EXPECT_EQ(m_Flags, 0xFFFFFFEDu);
        EXPECT_EQ(devices.GetDevInfoHandle(), List(0x1234));
        EXPECT_TRUE(IsSame(devices.GetGUID(), kClass));
        EXPECT_TRUE(m_Freed.empty());
    }
    EXPECT_EQ(m_Freed, std::vector<HDEVINFO>{List(0x1234)});
}

TEST_F(CDevManagerTest, NullClassIsPassedOnAndReadsAsZeroes) {
    CDevManager const devices(nullptr, nullptr, 0);
    EXPECT_EQ(m_Class, nullptr);
    EXPECT_EQ(m_Enumerator, nullptr);
    EXPECT_EQ(m_Flags, 0u);
    EXPECT_TRUE(IsSame(devices.GetGUID(), GUID{}));
}

TEST_F(CDevManagerTest, InvalidListIsShownAndNotFreed) {
    m_Answer = INVALID_HANDLE_VALUE;
    {
        CDevManager const devices(&kClass, nullptr, 0);
        EXPECT_EQ(devices.GetDevInfoHandle(), INVALID_HANDLE_VALUE);
        EXPECT_TRUE(IsSame(devices.GetGUID(), kClass));
    }
    EXPECT_TRUE(m_Freed.empty());
}

TEST_F(CDevManagerTest, NullListIsFreed) {
    m_Answer = nullptr;
    { CDevManager const devices(&kClass, nullptr, 0); }
    EXPECT_EQ(m_Freed, std::vector<HDEVINFO>{nullptr});
}

TEST(CDevManagerSystemTest, ListIsWhatTheSystemGives) {
    CDevManager const none(nullptr, nullptr, 0);
    EXPECT_EQ(none.GetDevInfoHandle(), INVALID_HANDLE_VALUE);
    CDevManager const all(nullptr, nullptr, DIGCF_ALLCLASSES | DIGCF_PRESENT);
    EXPECT_NE(all.GetDevInfoHandle(), INVALID_HANDLE_VALUE);
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    DWORD count = 0;
    while (SetupDiEnumDeviceInfo(all.GetDevInfoHandle(), count, &device))
        ++count;
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_ITEMS));
}
