// The line that tells the system: every row of the table of systems, and what is warned of.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Common.h"
#include "app/CommonBench.h"
#include "settings/Registry.h"

namespace {

constexpr char Warning[] =
    "WARNING Quillon is not supported on this platform.  It is supported on Windows 7 (Service "
    "Pack 1) and above only.";

class CommonOSVersionTest : public CommonBench {
protected:
    CommonOSVersionTest() {
        m_Registry.m_Values = {{"ProductName", "Some System"}, {"BuildLabEx", "9.8.7"}};
    }

    void System(DWORD platform, DWORD major, DWORD minor, DWORD build) {
        m_Version = {};
        m_Version.dwPlatformId = platform;
        m_Version.dwMajorVersion = major;
        m_Version.dwMinorVersion = minor;
        m_Version.dwBuildNumber = build;
    }

    Lines Show() {
        LineLog log;
        Common_DisplayOSVersionInfo(&log);
        return log.Take();
    }

    std::string const & Filed() { return m_Bench.m_Suite.OSVersion(); }

    static std::string ReadError(DWORD code) {
        SetRegistryErrMsgString(static_cast<long>(code));
        return "ERROR Registry Read Error: " + GetLastRegErrMsg()
               + "  key = Software\\Microsoft\\Windows NT\\CurrentVersion.\n";
    }

    FakeRegistry m_Registry;
    OSVERSIONINFOEXA m_Version = {};
    BOOL m_Known = TRUE;
    OSVERSIONINFOEXA m_Received = {};

private:
    Diversion<BOOL(OSVERSIONINFOA *)> const m_Get{
        wrapped_GetVersionExA, [this](OSVERSIONINFOA * version) {
            std::memcpy(&m_Received, version, sizeof m_Received);
            DWORD const size = m_Received.dwOSVersionInfoSize;
            m_Version.dwOSVersionInfoSize = size;
            std::memcpy(static_cast<void *>(version), &m_Version, sizeof m_Version);
            return m_Known;
        }};
};

TEST_F(CommonOSVersionTest, TheExtendedRecordIsZeroedButForItsSize) {
    Show();
    OSVERSIONINFOEXA expected;
    std::memset(&expected, 0, sizeof expected);
    expected.dwOSVersionInfoSize = 156;
    EXPECT_EQ(std::memcmp(&m_Received, &expected, sizeof expected), 0);
}

TEST_F(CommonOSVersionTest, EveryRowOfTheTableHasItsTextItsStatusAndItsWarning) {
    struct Case {
        DWORD platform, major, minor, build;
        char const * status;
        char const * text;
        bool warned;
    };
    for (auto const & [platform, major, minor, build, status, text, warned] :
         {Case{0, 3, 11, 5, "INFO ", "Microsoft Win32s version 3.11 (Build 5)", true},
          Case{0, 9, 1, 5, "INFO ", "Microsoft Win32s version 9.1 (Build 5)", true},
          Case{2, 4, 0, 1381, "INFO ", "Microsoft Windows NT version 4.0 (Build 1381)", true},
          Case{2, 0, 7, 3, "INFO ", "Microsoft Windows NT version 0.7 (Build 3)", true},
          Case{2, 5, 0, 2195, "INFO ", "Microsoft Windows 2000", true},
          Case{2, 5, 1, 2600, "INFO ", "Microsoft Windows XP (Build 2600)", true},
          Case{2, 5, 2, 3790, "INFO ", "Microsoft Windows XP (Build 3790)", true},
          Case{2, 6, 0, 6002, "INFO ", "Microsoft Vista (Build 6002)", true},
          Case{2, 6, 1, 7601, "INFO ", "Some System (Build 9.8.7)", false},
          Case{2, 6, 2, 9200, "INFO ", "Some System (Build 9.8.7)", false},
          Case{2, 7, 0, 1, "ERROR ", "<Unknown NT-based OS>  version 7.0 (Build 1)", false},
          Case{
              2, 10, 0, 19041, "ERROR ", "<Unknown NT-based OS>  version 10.0 (Build 19041)",
              false},
          Case{1, 4, 10, 2222, "INFO ", "", true}, Case{3, 10, 0, 1, "INFO ", "", true}}) {
        SCOPED_TRACE(testing::Message() << platform << ' ' << major << '.' << minor);
        System(platform, major, minor, build);
        Lines expected{std::string(status) + text};
        if (warned) expected.push_back(Warning);
        EXPECT_EQ(Show(), expected);
        EXPECT_EQ(Filed(), text);
    }
}

TEST_F(CommonOSVersionTest, TheSupportedSystemsBeginAt61WhateverTheServicePack) {
    System(2, 6, 1, 7600);
    EXPECT_EQ(Show(), Lines{"INFO Some System (Build 9.8.7)"});
    System(2, 6, 0, 6002);
    m_Version.wServicePackMajor = 2;
    EXPECT_EQ(
        Show(), (Lines{"INFO Microsoft Vista (Build 6002)", "INFO Service Pack 2.0", Warning}));
}

TEST_F(CommonOSVersionTest, AServicePackHasItsOwnLineAndJoinsTheFiledText) {
    System(2, 5, 1, 2600);
    m_Version.wServicePackMajor = 3;
    EXPECT_EQ(
        Show(),
        (Lines{"INFO Microsoft Windows XP (Build 2600)", "INFO Service Pack 3.0", Warning}));
    EXPECT_EQ(Filed(), "Microsoft Windows XP (Build 2600) - Service Pack 3.0");
    System(2, 10, 0, 1);
    m_Version.wServicePackMinor = 4;
    EXPECT_EQ(
        Show(),
        (Lines{"ERROR <Unknown NT-based OS>  version 10.0 (Build 1)", "INFO Service Pack 0.4"}));
    EXPECT_EQ(Filed(), "<Unknown NT-based OS>  version 10.0 (Build 1) - Service Pack 0.4");
}

TEST_F(CommonOSVersionTest, WhatTheRegistryDoesNotTellIsReportedAndReplaced) {
    System(2, 6, 1, 7601);
    std::string const error = ReadError(2);
    m_Registry.m_Values = {{"BuildLabEx", "9.8.7"}};
    EXPECT_EQ(Show(), (Lines{error, "INFO <Unknown OS> (Build 9.8.7)"}));
    m_Registry.m_Values = {{"ProductName", "Some System"}};
    EXPECT_EQ(Show(), (Lines{error, "INFO Some System (Build <Unknown Build>)"}));
    m_Registry.m_Values = {};
    EXPECT_EQ(Show(), (Lines{error, error, "INFO <Unknown OS> (Build <Unknown Build>)"}));
    EXPECT_EQ(Filed(), "<Unknown OS> (Build <Unknown Build>)");
}

TEST_F(CommonOSVersionTest, APercentSignIsReadAsADirective) {
    m_Registry.m_Values = {{"ProductName", "100%% System"}, {"BuildLabEx", "%s"}};
    System(2, 6, 1, 7601);
    EXPECT_EQ(Show(), Lines{"INFO 100% System (Build )"});
    EXPECT_EQ(Filed(), "100%% System (Build %s)");
}

TEST_F(CommonOSVersionTest, ADescriptionHas511BytesAtMost) {
    m_Registry.m_Values = {{"ProductName", std::string(600, 'x')}, {"BuildLabEx", "9"}};
    System(2, 6, 1, 7601);
    EXPECT_EQ(Show(), Lines{"INFO " + std::string(511, 'x')});
    EXPECT_EQ(Filed(), std::string(511, 'x'));
}

TEST_F(CommonOSVersionTest, AFailedQueryIsAnErrorAndNothingIsFiled) {
    m_Known = FALSE;
    EXPECT_EQ(Show(), Lines{"ERROR GetVersionEx failed.  Could not get OS Version info."});
    EXPECT_EQ(Filed(), "");
}

TEST_F(CommonOSVersionTest, TheLinesAreShownInAQuietRun) {
    CAppState::QNLogVerbosityLevel(Quiet);
    System(2, 5, 1, 2600);
    m_Version.wServicePackMajor = 3;
    EXPECT_EQ(Show().size(), 3u);
    m_Registry.m_Values = {};
    System(2, 6, 1, 7601);
    EXPECT_EQ(Show().size(), 3u);
}

TEST_F(CommonOSVersionTest, WithoutALogNothingIsAskedOrFiled) {
    Common_DisplayOSVersionInfo(nullptr);
    EXPECT_EQ(m_Received.dwOSVersionInfoSize, DWORD{0});
    EXPECT_EQ(Filed(), "");
}

} // namespace
