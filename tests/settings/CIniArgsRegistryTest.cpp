// The one setting that the argument store takes out of the registry.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/RegistryScope.h"
#include "settings/CIniArgs.h"
#include "settings/Registry.h"

namespace {

class CIniArgsRegistryTest : public testing::Test {
protected:
    static void Keep(unsigned long mode) {
        EXPECT_TRUE(TS_SetRegistryDword(
            HKEY_LOCAL_MACHINE, "Software\\Velmora\\Quillon", "CertificationMode", mode));
    }

    std::optional<std::string> Mode() {
        std::string * out = nullptr;
        bool const found = m_Args.GetArg("Quillon", "CertificationMode", out);
        return found ? std::optional(*out) : std::nullopt;
    }

    RegistryScope m_Scope;
    CIniArgs m_Args;
};

TEST_F(CIniArgsRegistryTest, AModeIsOneUnlessItIsZero) {
    for (auto const & [stored, text] :
         {std::pair{7ul, "1"}, std::pair{0ul, "0"}, std::pair{0xFFFFFFFFul, "1"},
          std::pair{0x80000000ul, "1"}, std::pair{1ul, "1"}}) {
        SCOPED_TRACE(stored);
        Keep(stored);
        EXPECT_TRUE(m_Args.ReloadRegistry());
        EXPECT_EQ(Mode(), text);
        bool on = false;
        EXPECT_TRUE(m_Args.GetArg("Quillon", "CertificationMode", on));
        EXPECT_EQ(on, stored != 0);
    }
}

TEST_F(CIniArgsRegistryTest, AMissingModeAddsNothing) {
    EXPECT_FALSE(m_Args.ReloadRegistry());
    EXPECT_EQ(GetLastRegErrCode(), 2);
    EXPECT_EQ(Mode(), std::nullopt);
}

TEST_F(CIniArgsRegistryTest, AMissingModeLeavesAnEarlierOne) {
    m_Args.AddArg("quillon", "certificationmode", "earlier");
    EXPECT_FALSE(m_Args.ReloadRegistry());
    EXPECT_EQ(Mode(), "earlier");
}

TEST_F(CIniArgsRegistryTest, AModeReplacesAnEarlierOneInPlace) {
    m_Args.AddArg("quillon", "certificationmode", "earlier");
    std::string * held = nullptr;
    ASSERT_TRUE(m_Args.GetArg("Quillon", "CertificationMode", held));
    Keep(0);
    EXPECT_TRUE(m_Args.ReloadRegistry());
    EXPECT_EQ(*held, "0");
}

TEST_F(CIniArgsRegistryTest, AModeThatIsTooLongIsNotRead) {
    unsigned char bytes[5] = {1, 2, 3, 4, 5};
    TS_SetRegistryBinary(
        HKEY_LOCAL_MACHINE, "Software\\Velmora\\Quillon", "CertificationMode", bytes, 5);
    EXPECT_FALSE(m_Args.ReloadRegistry());
    EXPECT_EQ(GetLastRegErrCode(), 234);
    EXPECT_EQ(Mode(), std::nullopt);
}

} // namespace
