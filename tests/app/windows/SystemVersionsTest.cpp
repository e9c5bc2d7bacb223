// The line about the system under real systems' versions: Wine shows a program whichever it is
// told to.
#include <filesystem>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "platform/Host.h"

namespace {

constexpr char KeyOfTheTeller[] = "Software\\Wine\\AppDefaults\\BannerTeller.exe";
constexpr char Unsupported[] = "WARNING Quillon is not supported on this platfor\n";

class SystemVersionsTest : public testing::Test {
protected:
    SystemVersionsTest()
        : m_Folder(
            std::filesystem::temp_directory_path()
            / ("systems-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(m_Folder);
    }
    ~SystemVersionsTest() override {
        RegDeleteKeyA(HKEY_CURRENT_USER, KeyOfTheTeller);
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }

    // What a program tells that sees this system.
    std::string Told(std::string const & system) {
        auto const size = static_cast<DWORD>(system.size() + 1);
        RegSetKeyValueA(HKEY_CURRENT_USER, KeyOfTheTeller, "Version", REG_SZ, system.c_str(), size);
        ChildProcess child(ProgramFolder() / "BannerTeller.exe", {}, m_Folder);
        EXPECT_TRUE(child.Wait());
        return TextOfBytes(child.Output());
    }

    std::filesystem::path const m_Folder;
};

TEST_F(SystemVersionsTest, EachSystemIsToldAsItIs) {
    if (!UnderWine()) GTEST_SKIP() << "one system is one version";
    EXPECT_EQ(
        Told("nt40"), std::string("INFO Microsoft Windows NT version 4.0 (Build \n")
                          + "INFO Service Pack 6.0\n" + Unsupported
                          + "Microsoft Windows NT version 4.0 (Build 1381) - Service Pack 6.0\n");
    EXPECT_EQ(
        Told("win2k"), std::string("INFO Microsoft Windows 2000\nINFO Service Pack 4.0\n")
                           + Unsupported + "Microsoft Windows 2000 - Service Pack 4.0\n");
    EXPECT_EQ(
        Told("winxp64"), std::string("INFO Microsoft Windows XP (Build 3790)\n")
                             + "INFO Service Pack 2.0\n" + Unsupported
                             + "Microsoft Windows XP (Build 3790) - Service Pack 2.0\n");
    EXPECT_EQ(
        Told("vista"), std::string("INFO Microsoft Vista (Build 6002)\nINFO Service Pack 2.0\n")
                           + Unsupported + "Microsoft Vista (Build 6002) - Service Pack 2.0\n");
    EXPECT_EQ(
        Told("win7"), "INFO P (Build B)\nINFO Service Pack 1.0\nP (Build B) - Service Pack 1.0\n");
    EXPECT_EQ(Told("win81"), "INFO P (Build B)\nP (Build B)\n");
    EXPECT_EQ(
        Told("win10"), "ERROR <Unknown NT-based OS>  version 10.0 (Bui\n"
                       "<Unknown NT-based OS>  version 10.0 (Build 18362)\n");
    EXPECT_EQ(Told("win98"), std::string("INFO \n") + Unsupported + "\n");
}

} // namespace
