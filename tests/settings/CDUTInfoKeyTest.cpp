// The device record's key under an empty application name. The key is built once in a process, so
// this test has a program to itself.
#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "output/CUIUpdate.h"
#include "platform/RegistryScope.h"
#include "settings/CDUTInfo.h"
#include "settings/RegistryWrapped.h"

MORVEX_WRAP_API(
    LSTATUS, RegCreateKeyExA,
    (HKEY key, char const * subkey, DWORD reserved, KeyClass keyClass, DWORD options, REGSAM access,
     SecurityAttributes attributes, HKEY * result, DWORD * disposition),
    (key, subkey, reserved, keyClass, options, access, attributes, result, disposition))

namespace {

TEST(CDUTInfoKeyTest, AnEmptyApplicationNameLeavesABackslashAtTheEnd) {
    RegistryScope const scope;
    CAppState::InitAppState(ApplicationFamilyDefault);
    std::string path;
    Diversion const create(
        wrapped_RegCreateKeyExA,
        [&](HKEY key, char const * subkey, DWORD reserved, KeyClass keyClass, DWORD options,
            REGSAM access, SecurityAttributes attributes, HKEY * result, DWORD * disposition) {
            path = subkey;
            return wrapped_RegCreateKeyExA.Real(
                key, subkey, reserved, keyClass, options, access, attributes, result, disposition);
        });
    CDUTInfo info;
    info.TID(L"1234");
    info.RoomNumber(L"1");
    info.Save();
    EXPECT_EQ(path, "Software\\Velmora\\Quillon\\");
    EXPECT_TRUE(info.DUTExists());
    CUIUpdate::FreeUIUpdate();
    CAppState::CleanupAppState();
}

} // namespace
