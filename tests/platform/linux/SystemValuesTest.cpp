// The values that tell the real system off Windows, and the flags of the error texts.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include <sys/utsname.h>

#include "platform/Registry.h"
#include "platform/RegistryScope.h"
#include "platform/linux/StoreAccess.h"

namespace {

constexpr char SystemPath[] = "Software\\Microsoft\\Windows NT\\CurrentVersion";

class SystemValuesTest : public testing::Test {
protected:
    bool NothingIsWritten() { return fs::is_empty(m_Scope.Folder()); }

    RegistryScope m_Scope;
};

std::string SystemText(char const * name) {
    Key const key(HKEY_LOCAL_MACHINE, SystemPath);
    std::string text;
    EXPECT_EQ(key.result, 0);
    EXPECT_EQ(Query(key.key, name, text), 0);
    return text;
}

TEST_F(SystemValuesTest, TheSystemsNameIsThatOfTheDistribution) {
    std::string const name = SystemText("productname");
    ASSERT_TRUE(name.ends_with('\0'));
    std::string const quoted = "PRETTY_NAME=\"" + std::string(name.c_str()) + "\"\n";
    EXPECT_NE(Contents("/etc/os-release").find(quoted), std::string::npos);
    EXPECT_TRUE(NothingIsWritten());
}

TEST_F(SystemValuesTest, TheSystemsBuildIsThatOfTheKernel) {
    utsname names;
    ASSERT_EQ(uname(&names), 0);
    EXPECT_EQ(
        SystemText("BuildLabEx"), std::string(names.sysname) + ' ' + names.release + ' '
                                      + names.version + ' ' + names.machine + '\0');
}

TEST_F(SystemValuesTest, TheSystemsValuesAreWalkedInOrder) {
    Key const key(HKEY_LOCAL_MACHINE, SystemPath);
    for (auto const & [index, expected] :
         {std::pair{0u, "ProductName"}, std::pair{1u, "BuildLabEx"}}) {
        char name[32];
        DWORD size = sizeof name;
        DWORD type = 0;
        EXPECT_EQ(RegEnumValueA(key.key, index, name, &size, nullptr, &type, nullptr, nullptr), 0);
        EXPECT_STREQ(name, expected);
        EXPECT_EQ(type, REG_SZ);
    }
    char name[32];
    DWORD size = sizeof name;
    EXPECT_EQ(RegEnumValueA(key.key, 2, name, &size, nullptr, nullptr, nullptr, nullptr), 259);
}

TEST_F(SystemValuesTest, TheSystemsKeyCanOnlyBeRead) {
    EXPECT_EQ(Write(HKEY_LOCAL_MACHINE, SystemPath, "ProductName", "x"), 5);
    EXPECT_EQ(Write(HKEY_LOCAL_MACHINE, (std::string(SystemPath) + "\\Sub").c_str(), "A", "x"), 5);
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, SystemPath), 5);
    Key const key(HKEY_LOCAL_MACHINE, "SOFTWARE\\microsoft\\WINDOWS nt\\CurrentVersion");
    EXPECT_EQ(RegDeleteValueA(key.key, "ProductName"), 5);
    std::string text;
    EXPECT_EQ(Query(key.key, "Other", text), 2);
    EXPECT_EQ(Key(key.key, "Sub").result, 2);
    EXPECT_TRUE(NothingIsWritten());
}

TEST_F(SystemValuesTest, TheSystemsKeyIsFoundBelowAnOpenKeyToo) {
    EXPECT_EQ(Write(HKEY_LOCAL_MACHINE, "Software\\Microsoft", "Value", "x"), 0);
    Key const parent(HKEY_LOCAL_MACHINE, "Software\\Microsoft");
    Key const key(parent.key, "Windows NT\\CurrentVersion");
    std::string text;
    EXPECT_EQ(Query(key.key, "ProductName", text), 0);
    EXPECT_EQ(Key(HKEY_CURRENT_USER, SystemPath).result, 2);
}

TEST(ErrorTextFlagsTest, OtherFlagsAreRefused) {
    char * text = nullptr;
    SetLastError(0);
    EXPECT_EQ(
        FormatMessageA(0x1900, nullptr, 2, 0, reinterpret_cast<char *>(&text), 0, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(text, nullptr);
}

} // namespace
