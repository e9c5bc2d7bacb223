// Which verbose messages are shown, and which are traced.
#include <gtest/gtest.h>

#include "output/COutputBuffer.h"
#include "output/TraceSession.h"
#include "output/Transcript.h"
#include "platform/Environment.h"

namespace {

constexpr char kVariable[] = "QN_VERBOSITY_LEVEL";

// The settings are the process's: each test needs one of its own, as CTest gives it.
class VerboseTextTest : public testing::Test {
protected:
    VerboseTextTest() { COutputBuffer::InitializeDefaultFormatInfo(Record(CFM_FACE, 0)); }
    ~VerboseTextTest() override { ClearEnvironment(kVariable); }

    static unsigned int LevelFor(char const * setting) {
        SetEnvironment(kVariable, setting);
        COutputBuffer const buffer;
        return COutputBuffer::VerbosityLevel();
    }

    // The levels up to 5 whose message is shown.
    static std::string ShownLevels() {
        COutputBuffer buffer;
        std::string shown;
        for (unsigned int level = 0; level <= 5; ++level) {
            buffer.AddVerbose(CBasicFormattedString<char>("x"), level, kLook);
            if (!Take(buffer).empty()) shown += std::to_string(level);
        }
        return shown;
    }

    static CFormatInfo const kLook;
};

CFormatInfo const VerboseTextTest::kLook(0x0000FFul);

constexpr char kRestored[] = "- mask=20000000 effects=00000000 @0,0";

} // namespace

TEST_F(VerboseTextTest, WithoutASettingOnlyLevelNoughtShows) {
    ClearEnvironment(kVariable);
    EXPECT_EQ(ShownLevels(), "0");
    EXPECT_EQ(COutputBuffer::VerbosityLevel(), 0u);
}

TEST_F(VerboseTextTest, ASettingShowsTheLevelsUpToItsNumber) {
    SetEnvironment(kVariable, "3");
    EXPECT_EQ(ShownLevels(), "0123");
    EXPECT_EQ(COutputBuffer::VerbosityLevel(), 3u);
}

TEST_F(VerboseTextTest, ASettingWithoutANumberLeavesTheLevel) {
    EXPECT_EQ(LevelFor("abc"), 0u);
    EXPECT_EQ(ShownLevels(), "0");
    EXPECT_EQ(LevelFor("2"), 2u);
    EXPECT_EQ(LevelFor("abc"), 2u);
    EXPECT_EQ(ShownLevels(), "012");
}

TEST_F(VerboseTextTest, AnEmptySettingChangesNothing) {
    EXPECT_EQ(LevelFor("2"), 2u);
    EXPECT_EQ(LevelFor(""), 2u);
    EXPECT_EQ(ShownLevels(), "012");
}

TEST_F(VerboseTextTest, TheSettingIsReadAtEachConstruction) {
    EXPECT_EQ(LevelFor("2"), 2u);
    EXPECT_EQ(LevelFor("4"), 4u);
    ClearEnvironment(kVariable);
    COutputBuffer const buffer;
    EXPECT_EQ(COutputBuffer::VerbosityLevel(), 4u);
}

TEST_F(VerboseTextTest, ANumberIsReadAsTheScannerReadsIt) {
    EXPECT_EQ(LevelFor("3d"), 3u);
    EXPECT_EQ(LevelFor("3x"), 3u);
    EXPECT_EQ(LevelFor(" \t\n+4"), 4u);
    EXPECT_EQ(LevelFor("010"), 10u);
    EXPECT_EQ(LevelFor("0x10"), 0u);
    EXPECT_EQ(LevelFor("-1"), 4294967295u);
    EXPECT_EQ(LevelFor("4294967295"), 4294967295u);
}

TEST_F(VerboseTextTest, ANumberBeyondTheLevelKeepsItsLowBits) {
    EXPECT_EQ(LevelFor("4294967297"), 1u);
    EXPECT_EQ(LevelFor("18446744073709551615"), 4294967295u);
    EXPECT_EQ(LevelFor("18446744073709551618"), 4294967295u);
}

TEST_F(VerboseTextTest, AVerboseTextStandsAloneInItsFormat) {
    COutputBuffer buffer;
    CFormatInfo look = kLook;
    look.range = {1, 2};
    look.autoRange = false;
    buffer.AddVerbose(CBasicFormattedString<char>("n%d", 7), 0, kLook);
    buffer.AddVerbose(CBasicFormattedString<wchar_t>(L"w%d", 7), 0, look);
    EXPECT_EQ(
        Take(buffer),
        (Lines{
            "\"n7 \" mask=40000000 effects=04000000 color=0000FF @0,3", kRestored,
            "\"w7 \" mask=40000000 effects=04000000 color=0000FF @1,2 own", kRestored}));
    EXPECT_EQ(buffer.FormatDepth(), 0u);
}

TEST_F(VerboseTextTest, AVerboseTextMayNameItsColourOnly) {
    COutputBuffer buffer;
    buffer.AddVerbose(CBasicFormattedString<char>("n"), 0, 0x7F007Ful);
    buffer.AddVerbose(CBasicFormattedString<wchar_t>(L"w"), 0, 0x7F007Ful);
    EXPECT_EQ(
        Take(buffer), (Lines{
                          "\"n \" mask=40000000 effects=04000000 color=7F007F @0,2", kRestored,
                          "\"w \" mask=40000000 effects=04000000 color=7F007F @0,2", kRestored}));
}

TEST_F(VerboseTextTest, AnUnformattedVerboseTextIsEmpty) {
    COutputBuffer buffer;
    buffer.AddVerbose(CBasicFormattedString<char>(), 0, kLook);
    buffer.AddVerbose(CBasicFormattedString<wchar_t>(), 0, kLook);
    EXPECT_EQ(
        Take(buffer), (Lines{
                          "\" \" mask=40000000 effects=04000000 color=0000FF @0,1", kRestored,
                          "\" \" mask=40000000 effects=04000000 color=0000FF @0,1", kRestored}));
}

TEST_F(VerboseTextTest, AVerboseTextIsTracedAsUtf8) {
    COutputBuffer buffer;
    TraceSession const session(TraceFlag::Output);
    buffer.AddVerbose(CBasicFormattedString<wchar_t>(L"\u00e9"), 0, kLook);
    buffer.AddVerbose(CBasicFormattedString<char>("\xC3\xA9"), 0, kLook);
    buffer.AddVerbose(CBasicFormattedString<wchar_t>(L"wide"), 0, 1ul);
    buffer.AddVerbose(CBasicFormattedString<char>("narrow"), 0, 1ul);
    EXPECT_EQ(
        session.Take(),
        (Lines{"43 10 \xC3\xA9|", "43 11 \xC3\xA9|", "43 10 wide|", "43 11 narrow|"}));
}

TEST_F(VerboseTextTest, AGatedVerboseTextWithAFormatIsTracedAllTheSame) {
    COutputBuffer buffer;
    TraceSession const session(TraceFlag::Output);
    buffer.AddVerbose(CBasicFormattedString<wchar_t>(L"wide"), 1, kLook);
    buffer.AddVerbose(CBasicFormattedString<char>("narrow"), 1, kLook);
    EXPECT_EQ(session.Take(), (Lines{"43 10 wide|", "43 11 narrow|"}));
    EXPECT_EQ(buffer.GetText(), nullptr);
    EXPECT_EQ(buffer.FormatDepth(), 0u);
}

TEST_F(VerboseTextTest, AGatedVerboseTextWithAColourIsNotTraced) {
    COutputBuffer buffer;
    TraceSession const session(TraceFlag::Output);
    buffer.AddVerbose(CBasicFormattedString<wchar_t>(L"wide"), 1, 1ul);
    buffer.AddVerbose(CBasicFormattedString<char>("narrow"), 1, 1ul);
    EXPECT_EQ(session.Take(), Lines{});
    EXPECT_EQ(buffer.GetText(), nullptr);
}

TEST_F(VerboseTextTest, NothingIsTracedUnderAnotherFlag) {
    COutputBuffer buffer;
    TraceSession const session(TraceFlag::Log);
    buffer.AddVerbose(CBasicFormattedString<wchar_t>(L"wide"), 0, kLook);
    buffer.AddVerbose(CBasicFormattedString<char>("narrow"), 0, kLook);
    EXPECT_EQ(session.Take(), Lines{});
    EXPECT_EQ(Take(buffer).size(), 4u);
}

TEST_F(VerboseTextTest, OtherTextIsNotTraced) {
    COutputBuffer buffer;
    TraceSession const session(TraceFlag::Output);
    buffer.AddItem(std::string("a"), kLook);
    buffer.AddText(std::wstring(L"b"));
    EXPECT_EQ(session.Take(), Lines{});
}
