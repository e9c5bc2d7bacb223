// The chosen VIF files: in memory, and carried across runs by the registry.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "app/CAppState.h"
#include "platform/RegistryScope.h"
#include "settings/Registry.h"
#include "settings/RegistryWrapped.h"
#include "siblings/Keelbase.h"

namespace {

constexpr char Path[] = "Software\\Velmora\\Tool";
constexpr char ListPath[] = "Software\\Velmora\\Tool\\DFPVifs";

using Texts = std::vector<std::string>;

class CAppStateVifTest : public testing::Test {
protected:
    CAppStateVifTest() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::ApplicationName("Tool");
    }
    ~CAppStateVifTest() override { CAppState::CleanupAppState(); }

    static void Choose(Texts const & names) {
        std::vector<CSafeString> chosen;
        for (std::string const & name : names)
            chosen.emplace_back(name.c_str());
        CAppState::DFPVifNames(chosen);
    }

    static std::optional<Texts> Chosen() {
        if (CAppState::DFPVifNames() == nullptr) return std::nullopt;
        Texts names;
        for (CSafeString const & name : *CAppState::DFPVifNames())
            names.emplace_back(name.get());
        return names;
    }

    static std::optional<std::string> Stored(char const * path, char const * value) {
        std::string text;
        bool const read = TS_GetRegistryString(HKEY_LOCAL_MACHINE, path, value, text);
        return read ? std::optional(text) : std::nullopt;
    }

    // The stored list by its values' numbers; nothing without its key.
    static std::optional<Texts> StoredList() {
        HKEY key = nullptr;
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, ListPath, 0, KEY_READ, &key) != 0)
            return std::nullopt;
        RegCloseKey(key);
        Texts names;
        for (int number = 1; number != 10; ++number) {
            auto const name = Stored(ListPath, ("Vif_" + std::to_string(number)).c_str());
            if (name) names.push_back(std::to_string(number) + '=' + *name);
        }
        return names;
    }

    RegistryScope m_Scope;
};

TEST_F(CAppStateVifTest, NothingIsChosenAtFirst) {
    EXPECT_EQ(CAppState::UFPVifName(), nullptr);
    EXPECT_EQ(CAppState::DFPVifNames(), nullptr);
    EXPECT_FALSE(CAppState::UFPVifLoaded());
    EXPECT_FALSE(CAppState::DFPVifLoaded());
}

TEST_F(CAppStateVifTest, AnEmptyNameAndAnEmptyListAreNotLoaded) {
    CAppState::UFPVifName("");
    EXPECT_FALSE(CAppState::UFPVifLoaded());
    Choose({});
    EXPECT_FALSE(CAppState::DFPVifLoaded());
    CAppState::UFPVifName("u.xml");
    EXPECT_TRUE(CAppState::UFPVifLoaded());
    Choose({""});
    EXPECT_TRUE(CAppState::DFPVifLoaded());
}

TEST_F(CAppStateVifTest, ANewChoiceIsACopyInANewPlace) {
    std::string name = "first.xml";
    CAppState::UFPVifName(name);
    name = "changed";
    EXPECT_EQ(*CAppState::UFPVifName(), "first.xml");
    CAppState::UFPVifName("second.xml");
    EXPECT_EQ(*CAppState::UFPVifName(), "second.xml");
    Choose({"a", "b"});
    Choose({"c"});
    EXPECT_EQ(Chosen(), Texts{"c"});
}

TEST_F(CAppStateVifTest, TheUFPNameSurvivesTheInstance) {
    CAppState::UFPVifName("C:\\vifs\\\xC3\xBC.xml");
    EXPECT_TRUE(CAppState::WriteUFPVifToRegistry());
    EXPECT_EQ(Stored(Path, "UFPVif"), "C:\\vifs\\\xC3\xBC.xml");
    CAppState::CleanupAppState();
    CAppState::InitAppState(ApplicationFamilyDefault);
    CAppState::ApplicationName("Tool");
    EXPECT_TRUE(CAppState::ReadUFPVifFromRegistry());
    EXPECT_EQ(*CAppState::UFPVifName(), "C:\\vifs\\\xC3\xBC.xml");
}

TEST_F(CAppStateVifTest, NoNameIsWrittenAsAnEmptyOne) {
    EXPECT_TRUE(CAppState::WriteUFPVifToRegistry());
    EXPECT_EQ(Stored(Path, "UFPVif"), "");
    CAppState::UFPVifName("held");
    EXPECT_TRUE(CAppState::ReadUFPVifFromRegistry());
    EXPECT_EQ(*CAppState::UFPVifName(), "");
    EXPECT_FALSE(CAppState::UFPVifLoaded());
}

TEST_F(CAppStateVifTest, AFailedReadKeepsTheHeldName) {
    CAppState::UFPVifName("held");
    EXPECT_FALSE(CAppState::ReadUFPVifFromRegistry());
    EXPECT_EQ(*CAppState::UFPVifName(), "held");
    EXPECT_EQ(GetLastRegErrCode(), 2);
}

TEST_F(CAppStateVifTest, TheKeyFollowsTheApplicationsName) {
    CAppState::UFPVifName("tool");
    EXPECT_TRUE(CAppState::WriteUFPVifToRegistry());
    CAppState::ApplicationName("Other");
    EXPECT_FALSE(CAppState::ReadUFPVifFromRegistry());
    CAppState::UFPVifName("other");
    EXPECT_TRUE(CAppState::WriteUFPVifToRegistry());
    EXPECT_EQ(Stored(Path, "UFPVif"), "tool");
    EXPECT_EQ(Stored("Software\\Velmora\\Other", "UFPVif"), "other");
}

TEST_F(CAppStateVifTest, ThreeNamesMakeThreeNumberedValues) {
    Choose({"a.xml", "b.xml", "c.xml"});
    CAppState::WriteDFPVifsToRegistry();
    EXPECT_EQ(StoredList(), (Texts{"1=a.xml", "2=b.xml", "3=c.xml"}));
    Choose({"d.xml"});
    CAppState::WriteDFPVifsToRegistry();
    EXPECT_EQ(GetLastRegErrCode(), 0);
    EXPECT_EQ(StoredList(), Texts{"1=d.xml"});
}

TEST_F(CAppStateVifTest, NumbersTakeNoIndent) {
    m_IndentLevel = 3;
    Choose({"a.xml"});
    CAppState::WriteDFPVifsToRegistry();
    m_IndentLevel = 0;
    EXPECT_EQ(StoredList(), Texts{"1=a.xml"});
}

TEST_F(CAppStateVifTest, WritingTheDFPListIsFalseAlsoWhenItSucceeds) {
    Choose({"a.xml"});
    EXPECT_FALSE(CAppState::WriteDFPVifsToRegistry());
    EXPECT_EQ(StoredList(), Texts{"1=a.xml"});
    EXPECT_FALSE(CAppState::WriteDFPVifsToRegistry());
    Choose({});
    EXPECT_FALSE(CAppState::WriteDFPVifsToRegistry());
}

TEST_F(CAppStateVifTest, AnEmptyListRemovesTheKeyAndMakesNone) {
    Choose({"a.xml"});
    CAppState::WriteDFPVifsToRegistry();
    Choose({});
    CAppState::WriteDFPVifsToRegistry();
    EXPECT_EQ(StoredList(), std::nullopt);
    EXPECT_EQ(GetLastRegErrCode(), 0);
    EXPECT_EQ(GetLastRegErrMsg(), "");
    CAppState::WriteDFPVifsToRegistry();
    EXPECT_EQ(StoredList(), std::nullopt);
    EXPECT_EQ(GetLastRegErrCode(), 2);
}

TEST_F(CAppStateVifTest, AnEarlierFailureIsForgottenWhenTheListIsRemoved) {
    Choose({"a.xml"});
    CAppState::WriteDFPVifsToRegistry();
    Choose({});
    SetRegistryErrMsgString(5);
    CAppState::WriteDFPVifsToRegistry();
    EXPECT_EQ(GetLastRegErrCode(), 0);
    EXPECT_EQ(GetLastRegErrMsg(), "");
}

TEST_F(CAppStateVifTest, NoListRemovesTheKeyToo) {
    TS_SetRegistryString(HKEY_LOCAL_MACHINE, ListPath, "Vif_1", "old");
    EXPECT_FALSE(CAppState::WriteDFPVifsToRegistry());
    EXPECT_EQ(StoredList(), std::nullopt);
}

TEST_F(CAppStateVifTest, ReadingTheDFPListIsFalseAlsoWhenItWasThere) {
    Choose({"a.xml", "b.xml", ""});
    CAppState::WriteDFPVifsToRegistry();
    Choose({"held"});
    EXPECT_FALSE(CAppState::ReadDFPVifsFromRegistry());
    EXPECT_EQ(Chosen(), (Texts{"a.xml", "b.xml", ""}));
    EXPECT_TRUE(CAppState::DFPVifLoaded());
}

TEST_F(CAppStateVifTest, AMissingListEmptiesTheHeldOne) {
    Choose({"held"});
    EXPECT_FALSE(CAppState::ReadDFPVifsFromRegistry());
    EXPECT_EQ(Chosen(), Texts{});
    EXPECT_EQ(GetLastRegErrCode(), 0);
}

TEST_F(CAppStateVifTest, ReadingTakesEveryTextWhateverItsName) {
    TS_SetRegistryString(HKEY_LOCAL_MACHINE, ListPath, "A", "one");
    TS_SetRegistryDword(HKEY_LOCAL_MACHINE, ListPath, "B", 5);
    TS_SetRegistryString(HKEY_LOCAL_MACHINE, ListPath, "Vif_1", "two");
    CAppState::ReadDFPVifsFromRegistry();
    EXPECT_EQ(Chosen(), (Texts{"one", "two"}));
}

TEST_F(CAppStateVifTest, AListThatCannotBeDeletedStays) {
    Choose({"old"});
    CAppState::WriteDFPVifsToRegistry();
    Choose({"new"});
    Diversion const denied(wrapped_RegDeleteKeyA, [](auto...) { return LSTATUS{5}; });
    EXPECT_FALSE(CAppState::WriteDFPVifsToRegistry());
    EXPECT_EQ(GetLastRegErrCode(), 5);
    EXPECT_NE(GetLastRegErrMsg(), "");
    EXPECT_EQ(StoredList(), Texts{"1=old"});
}

TEST_F(CAppStateVifTest, AListWithAKeyBelowItCannotBeDeleted) {
    Choose({"old"});
    CAppState::WriteDFPVifsToRegistry();
    TS_SetRegistryDword(
        HKEY_LOCAL_MACHINE, (std::string(ListPath) + "\\Below").c_str(), "Value", 1);
    Choose({"new"});
    EXPECT_FALSE(CAppState::WriteDFPVifsToRegistry());
    EXPECT_EQ(GetLastRegErrCode(), 5);
    EXPECT_EQ(StoredList(), Texts{"1=old"});
}

TEST_F(CAppStateVifTest, AValueThatCannotBeWrittenLeavesAGap) {
    Choose({"a", "b", "c"});
    Diversion const secondFails(
        wrapped_RegSetValueExA,
        [](HKEY key, char const * name, DWORD reserved, DWORD type, BYTE const * data,
           DWORD size) -> LSTATUS {
            if (std::string(name) == "Vif_2") return 112;
            return wrapped_RegSetValueExA.Real(key, name, reserved, type, data, size);
        });
    EXPECT_FALSE(CAppState::WriteDFPVifsToRegistry());
    EXPECT_EQ(StoredList(), (Texts{"1=a", "3=c"}));
}

TEST_F(CAppStateVifTest, WhoMayNotWriteFailsBothWrites) {
    Choose({"a"});
    CAppState::UFPVifName("u");
    Diversion const denied(wrapped_RegCreateKeyExA, [](auto...) { return LSTATUS{5}; });
    EXPECT_FALSE(CAppState::WriteUFPVifToRegistry());
    EXPECT_EQ(GetLastRegErrCode(), 5);
    SetRegistryErrMsgString(0);
    EXPECT_FALSE(CAppState::WriteDFPVifsToRegistry());
    EXPECT_EQ(GetLastRegErrCode(), 5);
}

} // namespace
