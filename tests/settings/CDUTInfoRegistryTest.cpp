// The device record in the registry, and what the operator hears when that fails.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "app/CAppState.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "platform/Environment.h"
#include "platform/Messaging.h"
#include "platform/RegistryScope.h"
#include "settings/CDUTInfo.h"
#include "settings/Registry.h"
#include "settings/RegistryWrapped.h"
#include "siblings/Keelbase.h"

MORVEX_WRAP_API(
    LRESULT, SendMessageA, (HWND window, UINT message, WPARAM wParam, LPARAM lParam),
    (window, message, wParam, lParam))

namespace {

// The record's key is built once in a process: every test here has this application name.
constexpr char Path[] = "Software\\Velmora\\Quillon\\Tester";

using Lines = std::vector<std::wstring>;
using FourTexts = std::tuple<std::wstring, std::wstring, std::wstring, std::wstring>;

FourTexts TextsOf(CDUTInfo const & info) {
    return {info.TID(), info.TestBed(), info.RoomNumber(), info.Comments()};
}

CDUTInfo FilledRecord() {
    CDUTInfo info;
    info.TID(L"1234");
    info.TestBed(L"Bed 7");
    info.RoomNumber(L"B.104");
    info.Comments(L"F\u00fcnfte Probe");
    return info;
}

// As the record's messages show the last error.
std::wstring LastErrorText() { return *Utf8ToUtf16(GetLastRegErrMsg()); }

std::wstring TextOfCode(long code) {
    SetRegistryErrMsgString(code);
    return LastErrorText();
}

class CDUTInfoRegistryTest : public testing::Test {
protected:
    CDUTInfoRegistryTest() {
        SetEnvironment("QN_VERBOSITY_LEVEL", "5");
        m_Buffer = std::make_unique<COutputBuffer>();
        COutputBuffer::InitializeDefaultFormatInfo(CFormatInfo().format);
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::ApplicationName("Tester");
        CUIUpdate::GetUIUpdate()->SetOutputBuffer(m_Buffer.get());
    }
    ~CDUTInfoRegistryTest() override {
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
        ClearEnvironment("QN_VERBOSITY_LEVEL");
    }

    // The messages since the last call, and beside them the colour that all have.
    Lines TakeMessages() {
        Lines lines;
        auto * const table = m_Buffer->GetText();
        if (table == nullptr) return lines;
        for (auto const & [text, look] : *table) {
            if (text == nullptr) continue;
            // The table's texts end in a blank.
            EXPECT_TRUE(text->ends_with(L"\n "));
            lines.push_back(text->substr(0, text->size() - 1));
            EXPECT_EQ(look.format.crTextColor, 0x7F007Fu);
        }
        COutputBuffer::DeleteDataTable(table);
        return lines;
    }

    static void ShowUpTo(char const * level) {
        SetEnvironment("QN_VERBOSITY_LEVEL", level);
        COutputBuffer const reader;
    }

    static void Keep(char const * name, char const * text) {
        EXPECT_TRUE(TS_SetRegistryString(HKEY_LOCAL_MACHINE, Path, name, text));
    }

    static std::optional<std::string> Kept(char const * name) {
        std::string text;
        bool const read = TS_GetRegistryString(HKEY_LOCAL_MACHINE, Path, name, text);
        return read ? std::optional(text) : std::nullopt;
    }

    static Lines Messages(std::wstring const & operation, long code, Lines const & names) {
        Lines lines;
        for (std::wstring const & name : names)
            lines.push_back(
                L"Registry " + operation + L" Error: " + TextOfCode(code) + L"  key = " + name
                + L".\n");
        return lines;
    }

    RegistryScope m_Scope;
    std::unique_ptr<COutputBuffer> m_Buffer;
    int m_Rings = 0;
    std::function<void()> m_OnRing;
    Diversion<LRESULT(HWND, UINT, WPARAM, LPARAM)> const m_Send{
        wrapped_SendMessageA, [this](HWND, UINT, WPARAM, LPARAM) {
            ++m_Rings;
            if (m_OnRing) m_OnRing();
            return LRESULT{0};
        }};
};

Lines const AllNames = {L"TestIdentNumber", L"TestBed", L"RoomNumber", L"Comments"};

TEST_F(CDUTInfoRegistryTest, ASavedRecordIsLoadedAgain) {
    FilledRecord().Save();
    CDUTInfo info;
    info.TestBed(L"before");
    info.Load();
    EXPECT_EQ(TextsOf(info), TextsOf(FilledRecord()));
    EXPECT_EQ(TakeMessages(), Lines{});
    EXPECT_EQ(m_Rings, 0);
}

TEST_F(CDUTInfoRegistryTest, TheRecordLiesBelowTheProductsKeyUnderTheApplicationsName) {
    FilledRecord().Save();
    EXPECT_EQ(Kept("TestIdentNumber"), "1234");
    EXPECT_EQ(Kept("TestBed"), "Bed 7");
    EXPECT_EQ(Kept("RoomNumber"), "B.104");
    EXPECT_EQ(Kept("Comments"), "F\xC3\xBCnfte Probe");
}

TEST_F(CDUTInfoRegistryTest, ALaterApplicationNameHasNoEffectOnTheKey) {
    FilledRecord().Save();
    CAppState::ApplicationName("Another");
    CDUTInfo info;
    info.Load();
    EXPECT_EQ(TextsOf(info), TextsOf(FilledRecord()));
    info.TID(L"changed");
    info.Save();
    EXPECT_EQ(Kept("TestIdentNumber"), "changed");
}

TEST_F(CDUTInfoRegistryTest, AMissingRecordIsReportedTwiceAtLevelOne) {
    EXPECT_FALSE(CDUTInfo().DUTExists());
    EXPECT_EQ(TakeMessages(), Messages(L"Retrieve", 2, {L"TestIdentNumber", L"RoomNumber"}));
    EXPECT_EQ(m_Rings, 2);
    ShowUpTo("1");
    EXPECT_FALSE(CDUTInfo().DUTExists());
    EXPECT_EQ(TakeMessages().size(), 2u);
    ShowUpTo("0");
    EXPECT_FALSE(CDUTInfo().DUTExists());
    EXPECT_EQ(TakeMessages(), Lines{});
    EXPECT_EQ(m_Rings, 6);
}

TEST_F(CDUTInfoRegistryTest, LoadingWithOneTextStoredReportsTheOtherThree) {
    Keep("TestBed", "Bed 7");
    CDUTInfo info = FilledRecord();
    info.Load();
    EXPECT_EQ(TextsOf(info), FourTexts(L"", L"Bed 7", L"", L""));
    EXPECT_EQ(
        TakeMessages(), Messages(L"Retrieve", 2, {L"TestIdentNumber", L"RoomNumber", L"Comments"}));
}

TEST_F(CDUTInfoRegistryTest, ClearingWhatIsNotThereSaysSoAtLevelFive) {
    CDUTInfo info = FilledRecord();
    info.Clear();
    EXPECT_EQ(TextsOf(info), FourTexts());
    Lines expected;
    for (std::wstring const & name : AllNames)
        expected.push_back(L"Key " + name + L" not found in registry.\n");
    EXPECT_EQ(TakeMessages(), expected);
    EXPECT_EQ(m_Rings, 4);
    ShowUpTo("4");
    info.Clear();
    EXPECT_EQ(TakeMessages(), Lines{});
    EXPECT_EQ(m_Rings, 8);
}

TEST_F(CDUTInfoRegistryTest, ClearingDeletesTheTextsAndKeepsTheKey) {
    Keep("Another", "text");
    CDUTInfo info = FilledRecord();
    info.Save();
    info.Clear();
    EXPECT_EQ(TextsOf(info), FourTexts());
    for (char const * const name : {"TestIdentNumber", "TestBed", "RoomNumber", "Comments"})
        EXPECT_EQ(Kept(name), std::nullopt);
    EXPECT_EQ(Kept("Another"), "text");
    EXPECT_EQ(TakeMessages(), Lines{});
}

TEST_F(CDUTInfoRegistryTest, ADeniedDeletionIsReportedAtLevelOne) {
    ShowUpTo("1");
    Diversion const denied(wrapped_RegOpenKeyExA, [](auto...) { return LSTATUS{5}; });
    CDUTInfo info = FilledRecord();
    info.Clear();
    EXPECT_EQ(TextsOf(info), FourTexts());
    EXPECT_EQ(TakeMessages(), Messages(L"Delete", 5, AllNames));
}

TEST_F(CDUTInfoRegistryTest, ADeniedSaveReportsFourTimesAndReturns) {
    ShowUpTo("1");
    Diversion const denied(wrapped_RegCreateKeyExA, [](auto...) { return LSTATUS{5}; });
    CDUTInfo const record = FilledRecord();
    CDUTInfo info = record;
    info.Save();
    EXPECT_EQ(TextsOf(info), TextsOf(record));
    EXPECT_EQ(TakeMessages(), Messages(L"Write", 5, AllNames));
    EXPECT_EQ(m_Rings, 4);
}

TEST_F(CDUTInfoRegistryTest, AFailedTextDoesNotStopTheOthers) {
    Diversion const secondFails(
        wrapped_RegSetValueExA,
        [](HKEY key, char const * name, DWORD reserved, DWORD type, BYTE const * data,
           DWORD size) -> LSTATUS {
            if (std::string(name) == "TestBed") return 112;
            return wrapped_RegSetValueExA.Real(key, name, reserved, type, data, size);
        });
    FilledRecord().Save();
    EXPECT_EQ(TakeMessages(), Messages(L"Write", 112, {L"TestBed"}));
    EXPECT_EQ(Kept("TestBed"), std::nullopt);
    EXPECT_EQ(Kept("Comments"), "F\xC3\xBCnfte Probe");
}

TEST_F(CDUTInfoRegistryTest, AnEmptyTextIsSavedAndReadsAsMissingWithoutAReport) {
    CDUTInfo info;
    info.TID(L"1234");
    info.Save();
    EXPECT_EQ(Kept("RoomNumber"), "");
    EXPECT_FALSE(info.DUTExists());
    EXPECT_EQ(TakeMessages(), Lines{});
}

TEST_F(CDUTInfoRegistryTest, NumberAndRoomMakeARecord) {
    Keep("TestIdentNumber", "1");
    Keep("RoomNumber", "2");
    CDUTInfo const info;
    EXPECT_TRUE(info.DUTExists());
    EXPECT_EQ(TextsOf(info), FourTexts());
    EXPECT_EQ(TakeMessages(), Lines{});
    Keep("TestIdentNumber", "");
    EXPECT_FALSE(info.DUTExists());
}

TEST_F(CDUTInfoRegistryTest, BedAndCommentsMakeNoRecord) {
    Keep("TestBed", "1");
    Keep("Comments", "2");
    EXPECT_FALSE(CDUTInfo().DUTExists());
}

TEST_F(CDUTInfoRegistryTest, TextsOutsideAsciiAndAtAnyLengthComeBack) {
    CDUTInfo info;
    info.TID(std::wstring(16383, L'\u00e4'));
    info.Comments(L"\u65e5\u672c \u20ac");
    info.Save();
    CDUTInfo loaded;
    loaded.Load();
    EXPECT_EQ(TextsOf(loaded), TextsOf(info));
}

TEST_F(CDUTInfoRegistryTest, ATextEndsAtItsFirstNul) {
    CDUTInfo info;
    info.TID(std::wstring(
        L"12\0"
        L"34",
        5));
    info.Save();
    info.Load();
    EXPECT_EQ(info.TID(), L"12");
}

TEST_F(CDUTInfoRegistryTest, AMessageIsIndentedLikeEveryFormattedText) {
    m_IndentLevel = 2;
    CDUTInfo().DUTExists();
    m_IndentLevel = 0;
    Lines const lines = TakeMessages();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[0].starts_with(L"    Registry Retrieve Error: "));
}

TEST_F(CDUTInfoRegistryTest, WithoutABufferAFailureStillRings) {
    CUIUpdate::GetUIUpdate()->SetOutputBuffer(nullptr);
    EXPECT_FALSE(CDUTInfo().DUTExists());
    EXPECT_EQ(m_Rings, 2);
    EXPECT_EQ(TakeMessages(), Lines{});
}

// Arms the abort at the given ring.
void AbortAt(int ring, int & rings) {
    if (rings == ring) CUIUpdate::GetUIUpdate()->AbortFunction(true);
}

TEST_F(CDUTInfoRegistryTest, AnAbortLeavesTheRestOfASaveUndone) {
    Keep("Comments", "old");
    Diversion const firstTwoFail(
        wrapped_RegSetValueExA,
        [](HKEY key, char const * name, DWORD reserved, DWORD type, BYTE const * data,
           DWORD size) -> LSTATUS {
            if (std::string(name).starts_with("Test")) return 5;
            return wrapped_RegSetValueExA.Real(key, name, reserved, type, data, size);
        });
    CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(true);
    m_OnRing = [this] { AbortAt(2, m_Rings); };
    try {
        FilledRecord().Save();
        FAIL() << "no abort";
    } catch (CQNRunTimeException const & abort) {
        EXPECT_STREQ(abort.what(), "Test Aborted by user.");
    }
    EXPECT_EQ(TakeMessages(), Messages(L"Write", 5, {L"TestIdentNumber", L"TestBed"}));
    EXPECT_EQ(Kept("RoomNumber"), std::nullopt);
    EXPECT_EQ(Kept("Comments"), "old");
}

TEST_F(CDUTInfoRegistryTest, AnAbortWhileClearingKeepsTheTexts) {
    CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(true);
    m_OnRing = [this] { AbortAt(1, m_Rings); };
    CDUTInfo info = FilledRecord();
    Keep("Comments", "old");
    EXPECT_THROW(info.Clear(), CQNRunTimeException);
    EXPECT_EQ(TextsOf(info), TextsOf(FilledRecord()));
    EXPECT_EQ(Kept("Comments"), "old");
}

TEST_F(CDUTInfoRegistryTest, AnAbortThatDoesNotThrowLetsEverythingHappen) {
    CUIUpdate::GetUIUpdate()->AbortFunction(true);
    CDUTInfo info = FilledRecord();
    info.Clear();
    EXPECT_EQ(TextsOf(info), FourTexts());
    EXPECT_EQ(TakeMessages().size(), 4u);
}

TEST_F(CDUTInfoRegistryTest, ASecondRecordSeesWhatTheFirstHasSaved) {
    FilledRecord().Save();
    CDUTInfo second;
    second.Load();
    EXPECT_TRUE(second.DUTExists());
    second.Clear();
    EXPECT_FALSE(FilledRecord().DUTExists());
}

} // namespace
