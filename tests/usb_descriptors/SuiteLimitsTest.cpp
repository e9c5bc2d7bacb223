// The limits of the suite: what a file says, and how a bad one is told of.
#include "examples/suites/usb_descriptors/SuiteLimits.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "examples/suites/usb_descriptors/Rules.h"
#include "settings/CIniArgs.h"
#include "tests/platform/Host.h"
#include "tests/usb_descriptors/TestFolder.h"

namespace {

class SuiteLimitsTest : public testing::Test {
protected:
    SuiteLimitsTest() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::SetIniArgs(m_Args);
        std::filesystem::copy_file(USB_DESCRIPTORS_SCHEMA, m_Folder.Path() / "suite.xsd");
        m_Args.AddArg("Suite", "Folder", m_Folder.Text());
    }
    ~SuiteLimitsTest() override { CAppState::CleanupAppState(); }

    void Write(std::string const & text) {
        m_Folder.Write("suite.xml", Bytes(text.begin(), text.end()));
    }
    SuiteLimits Read(std::string const & text) {
        Write(text);
        return ReadSuiteLimits();
    }
    std::string Refusal(std::string const & text) {
        return ThrownBy([&] { Read(text); });
    }

    TestFolder m_Folder;
    CIniArgs m_Args;
};

} // namespace

TEST_F(SuiteLimitsTest, WithoutAFileThereAreNone) {
    SuiteLimits const limits = ReadSuiteLimits();
    EXPECT_TRUE(limits.HasDevice("f1d0:0001"));
    EXPECT_TRUE(limits.HasGroup("Device descriptor"));
    EXPECT_FALSE(limits.run);
}

TEST_F(SuiteLimitsTest, FileIsRead) {
    SuiteLimits const limits = Read("<suite label='x'><!-- only these -->\n"
                                    "<devices><device vendor='f1d0' product='0001'/>\n"
                                    "<!-- and these --><device vendor='04f3'/></devices>\n"
                                    "<groups><group name='BOS descriptors'/></groups>\n"
                                    "<timeouts><run seconds='60'/></timeouts></suite>");
    EXPECT_TRUE(limits.HasDevice("f1d0:0001"));
    EXPECT_FALSE(limits.HasDevice("f1d0:0002"));
    EXPECT_TRUE(limits.HasDevice("04f3:0c7e"));
    EXPECT_FALSE(limits.HasDevice("04f"));
    EXPECT_TRUE(limits.HasGroup("BOS descriptors"));
    EXPECT_FALSE(limits.HasGroup("Device descriptor"));
    EXPECT_EQ(limits.run, std::chrono::seconds(60));
}

TEST_F(SuiteLimitsTest, EveryGroupOfRulesMayBeNamed) {
    for (auto const & group : usb::RuleGroups()) {
        std::string const text =
            std::string("<suite><groups><group name='") + group.name + "'/></groups></suite>";
        EXPECT_EQ(Read(text).groups, std::vector<std::string>{group.name});
    }
}

TEST_F(SuiteLimitsTest, BadFileIsToldOfWithItsPlaceAndReason) {
    std::string const text =
        Refusal("<suite>\n<devices>\n<device vendor='F1D0'/>\n</devices>\n</suite>");
    EXPECT_THAT(text, testing::HasSubstr("suite.xml("));
    // Wine gives neither place nor reason.
    if (UnderWine()) return;
    EXPECT_THAT(text, testing::HasSubstr("suite.xml(3,22): "));
    EXPECT_THAT(text, testing::HasSubstr("F1D0"));
    EXPECT_THAT(Refusal("<suite>\n<groups>\n</suite>"), testing::HasSubstr("suite.xml(3,"));
}

TEST_F(SuiteLimitsTest, WhatTheSchemaDoesNotAllowIsRefused) {
    for (char const * text :
         {"<other/>", "<suite limit='1'/>", "<suite><devices/></suite>",
          "<suite><groups><group name='No such group'/></groups></suite>",
          "<suite><timeouts><run seconds='-1'/></timeouts></suite>",
          "<suite><timeouts><run seconds='86401'/></timeouts></suite>", "<suite>text</suite>"})
        EXPECT_NE(Refusal(text), "") << text;
}

TEST_F(SuiteLimitsTest, NamedFileMustBeThere) {
    m_Args.AddArg("Suite", "Limits", m_Folder.Text() + "/missing.xml");
    EXPECT_THAT(ThrownBy([] { ReadSuiteLimits(); }), testing::HasSubstr("missing.xml("));
}
