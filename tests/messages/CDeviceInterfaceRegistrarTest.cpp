// The registration for a scope.
#include "messages/CDeviceInterfaceRegistrar.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

#include "app/CAppState.h"
#include "platform/DeviceServices.h"
#include "platform/Wrap.h"

MORVEX_WRAPPED(RegisterDeviceNotificationA)
MORVEX_WRAPPED(UnregisterDeviceNotification)

static_assert(!std::is_polymorphic_v<CDeviceInterfaceRegistrar>);
static_assert(sizeof(CDeviceInterfaceRegistrar) == sizeof(void *));

namespace {

constexpr GUID kClass = {
    0xF18A0E88, 0xC30C, 0x11D0, {0x88, 0x15, 0x00, 0xA0, 0xC9, 0x06, 0xBE, 0xD8}};

void * Number(unsigned long long number) { return reinterpret_cast<void *>(number); }

} // namespace

class CDeviceInterfaceRegistrarTest : public testing::Test {
protected:
    CDeviceInterfaceRegistrarTest() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::MainWindowHandle(Number(0x77));
    }
    ~CDeviceInterfaceRegistrarTest() override { CAppState::CleanupAppState(); }

    HDEVNOTIFY m_Answer = Number(0x1234);
    HANDLE m_Recipient = nullptr;
    std::vector<unsigned char> m_Filter;
    DWORD m_Flags = 0;
    std::vector<HDEVNOTIFY> m_Ended;

    // The filter's bytes as they are published.
    static std::vector<unsigned char> FilterOf(GUID const & classGuid) {
        std::vector<unsigned char> bytes = {32, 0, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0};
        bytes.resize(32);
        std::memcpy(bytes.data() + 12, &classGuid, sizeof classGuid);
        return bytes;
    }

    Diversion<HDEVNOTIFY(HANDLE, void *, DWORD)> const m_Register{
        wrapped_RegisterDeviceNotificationA, [this](HANDLE recipient, void * filter, DWORD flags) {
            m_Recipient = recipient;
            auto const * const bytes = static_cast<unsigned char const *>(filter);
            m_Filter.assign(bytes, bytes + 32);
            m_Flags = flags;
            return m_Answer;
        }};
    Diversion<BOOL(HDEVNOTIFY)> const m_Unregister{
        wrapped_UnregisterDeviceNotification, [this](HDEVNOTIFY notification) {
            m_Ended.push_back(notification);
            return TRUE;
        }};
};

TEST_F(CDeviceInterfaceRegistrarTest, WithoutAClassAllAreAskedFor) {
    {
        CDeviceInterfaceRegistrar const registrar;
        EXPECT_TRUE(registrar.IsValid());
        EXPECT_EQ(m_Recipient, Number(0x77));
        EXPECT_EQ(m_Filter, FilterOf(GUID{}));
        EXPECT_EQ(m_Flags, 4u);
        EXPECT_TRUE(m_Ended.empty());
    }
    EXPECT_EQ(m_Ended, std::vector<HDEVNOTIFY>{Number(0x1234)});
}

TEST_F(CDeviceInterfaceRegistrarTest, ClassAloneIsAskedFor) {
    {
        CDeviceInterfaceRegistrar const registrar(kClass);
        EXPECT_TRUE(registrar.IsValid());
        EXPECT_EQ(m_Recipient, Number(0x77));
        EXPECT_EQ(m_Filter, FilterOf(kClass));
        EXPECT_EQ(m_Flags, 0u);
    }
    EXPECT_EQ(m_Ended, std::vector<HDEVNOTIFY>{Number(0x1234)});
}

TEST_F(CDeviceInterfaceRegistrarTest, RefusedRegistrationIsNotValidAndNotEnded) {
    m_Answer = nullptr;
    { EXPECT_FALSE(CDeviceInterfaceRegistrar().IsValid()); }
    { EXPECT_FALSE(CDeviceInterfaceRegistrar(kClass).IsValid()); }
    EXPECT_TRUE(m_Ended.empty());
}

TEST_F(CDeviceInterfaceRegistrarTest, AssignmentSharesTheHandle) {
    auto first = std::make_unique<CDeviceInterfaceRegistrar>();
    m_Answer = nullptr;
    auto second = std::make_unique<CDeviceInterfaceRegistrar>();
    EXPECT_EQ(&(*second = *first), second.get());
    EXPECT_TRUE(second->IsValid());
    first.reset();
    second.reset();
    EXPECT_EQ(m_Ended, (std::vector<HDEVNOTIFY>{Number(0x1234), Number(0x1234)}));
}

TEST(CDeviceInterfaceRegistrarSystemTest, NullWindowIsNotValidAndNothingIsEnded) {
    CAppState::InitAppState(ApplicationFamilyDefault);
    int ended = 0;
    Diversion const unregister(wrapped_UnregisterDeviceNotification, [&](HDEVNOTIFY) {
        ++ended;
        return TRUE;
    });
    { EXPECT_FALSE(CDeviceInterfaceRegistrar().IsValid()); }
    { EXPECT_FALSE(CDeviceInterfaceRegistrar(kClass).IsValid()); }
    EXPECT_EQ(ended, 0);
    CAppState::CleanupAppState();
}
