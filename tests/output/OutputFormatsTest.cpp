// Formats in force: pushing, restoring, resetting.
#include <cstring>

#include <gtest/gtest.h>

#include "output/COutputBuffer.h"
#include "output/Transcript.h"

namespace {

class OutputFormatsTest : public testing::Test {
protected:
    OutputFormatsTest() {
        CHARFORMAT2A standard = Record(CFM_FACE | CFM_COLOR, CFE_AUTOCOLOR);
        standard.szFaceName[0] = 'D';
        COutputBuffer::InitializeDefaultFormatInfo(standard);
    }

    Lines Shown() { return Take(m_Buffer); }

    void Push(CFormatInfo const & look) { m_Buffer.AddFormat(look); }

    // What is in force, without the entries that led to it.
    std::string InForce() {
        CFormatInfo out;
        m_Buffer.GetCurrentFormat(out, 0);
        return Line(out.format);
    }

    COutputBuffer m_Buffer;
};

CFormatInfo const kRed(0x0000FFul);
CFormatInfo const kBold(true, 700);

constexpr char kRedLine[] = "- mask=40000000 effects=04000000 color=0000FF @0,0";
constexpr char kBoldLine[] = "- mask=00400001 effects=44000001 weight=700 @0,0";
constexpr char kDefaultRecord[] = "mask=60000000 effects=40000000 face=\"D\"";
constexpr char kDefaultLine[] = "- mask=60000000 effects=40000000 face=\"D\" @0,0";

// Bold inside red, merged.
constexpr char kBoldInRed[] = "mask=40400001 effects=44000001 color=0000FF weight=700";

} // namespace

TEST_F(OutputFormatsTest, AFormatChangeCarriesTheCallersFormatUnmerged) {
    Push(kRed);
    Push(kBold);
    EXPECT_EQ(Shown(), (Lines{kRedLine, kBoldLine}));
    EXPECT_EQ(InForce(), kBoldInRed);
}

TEST_F(OutputFormatsTest, AFormatChangeKeepsRangeAndFlag) {
    CFormatInfo look = kRed;
    look.range = {3, 7};
    look.autoRange = false;
    Push(look);
    look.autoRange = true;
    Push(look);
    EXPECT_EQ(
        Shown(), (Lines{
                     "- mask=40000000 effects=04000000 color=0000FF @3,7 own",
                     "- mask=40000000 effects=04000000 color=0000FF @3,7"}));
}

TEST_F(OutputFormatsTest, AFormattedItemIsMergedOnTheStackAlone) {
    Push(kRed);
    m_Buffer.AddItem(std::string("a"), kBold);
    EXPECT_EQ(Shown(), (Lines{kRedLine, "\"a \" mask=00400001 effects=44000001 weight=700 @0,2"}));
    EXPECT_EQ(InForce(), kBoldInRed);
}

TEST_F(OutputFormatsTest, TheDefaultFormatPlaysNoPartInAMerge) {
    Push(CFormatInfo());
    EXPECT_EQ(InForce(), "mask=00000000 effects=44000000");
}

TEST_F(OutputFormatsTest, NullIsNotAFormat) {
    m_Buffer.AddFormat(static_cast<CFormatInfo *>(nullptr));
    EXPECT_EQ(Shown(), Lines{});
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
    CFormatInfo look = kRed;
    m_Buffer.AddFormat(&look);
    EXPECT_EQ(Shown(), Lines{kRedLine});
    EXPECT_EQ(m_Buffer.FormatDepth(), 1u);
}

TEST_F(OutputFormatsTest, RemovingNothingChangesNothing) {
    m_Buffer.RemoveFormat(0);
    m_Buffer.RemoveFormat(3);
    EXPECT_EQ(m_Buffer.GetText(), nullptr);
    Push(kRed);
    m_Buffer.RemoveFormat(0);
    EXPECT_EQ(Shown(), Lines{kRedLine});
    EXPECT_EQ(m_Buffer.FormatDepth(), 1u);
}

TEST_F(OutputFormatsTest, RemovingTheLastFormatRestoresTheDefaultWithItsOwnMask) {
    Push(kRed);
    m_Buffer.RemoveFormat(1);
    EXPECT_EQ(Shown(), (Lines{kRedLine, kDefaultLine}));
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
}

TEST_F(OutputFormatsTest, ARestoreRespecifiesWhatTheMergedFormatHadTouched) {
    Push(kRed);
    Push(kBold);
    Shown();
    m_Buffer.RemoveFormat(1);
    // The outer record with the mask of the record that was popped, which was merged.
    EXPECT_EQ(Shown(), Lines{"- mask=40400001 effects=04000000 color=0000FF @0,0"});
    EXPECT_EQ(InForce(), "mask=40000000 effects=04000000 color=0000FF");
}

TEST_F(OutputFormatsTest, RemovingMoreThanThereIsStopsAtTheDefault) {
    Push(kRed);
    Push(kBold);
    Shown();
    m_Buffer.RemoveFormat(5);
    EXPECT_EQ(Shown(), (Lines{"- mask=40400001 effects=04000000 color=0000FF @0,0", kDefaultLine}));
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
}

TEST_F(OutputFormatsTest, TheStackGoesDeep) {
    for (int i = 0; i < 100; ++i)
        Push(kRed);
    EXPECT_EQ(m_Buffer.FormatDepth(), 100u);
    m_Buffer.RemoveFormat(99);
    EXPECT_EQ(m_Buffer.FormatDepth(), 1u);
    EXPECT_EQ(Shown().size(), 199u);
}

TEST_F(OutputFormatsTest, TheCurrentFormatLeavesRangeAndFlag) {
    Push(kRed);
    CFormatInfo out(kBold);
    out.range = {3, 7};
    out.autoRange = false;
    m_Buffer.GetCurrentFormat(out, 0);
    EXPECT_EQ(Line(out), "mask=40000000 effects=04000000 color=0000FF @3,7 own");
    EXPECT_EQ(Shown(), Lines{kRedLine});
}

TEST_F(OutputFormatsTest, TheCurrentFormatOfAnEmptyStackIsTheDefault) {
    EXPECT_EQ(InForce(), kDefaultRecord);
    EXPECT_EQ(m_Buffer.GetText(), nullptr);
}

TEST_F(OutputFormatsTest, AskingForTheCurrentFormatRemovesFormatsFirst) {
    Push(kRed);
    CFormatInfo out;
    m_Buffer.GetCurrentFormat(out, 1);
    EXPECT_EQ(Line(out.format), kDefaultRecord);
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
    EXPECT_EQ(Shown(), (Lines{kRedLine, kDefaultLine}));
}

TEST_F(OutputFormatsTest, TheStackOutlivesTheHandOver) {
    Push(kRed);
    Shown();
    EXPECT_EQ(m_Buffer.FormatDepth(), 1u);
    m_Buffer.RemoveFormat(1);
    EXPECT_EQ(Shown(), Lines{kDefaultLine});
}

TEST_F(OutputFormatsTest, AResetEmptiesTheStackWithoutRestores) {
    Push(kRed);
    Push(kBold);
    Shown();
    m_Buffer.SetDefaultFormatInfo();
    EXPECT_EQ(Shown(), Lines{"- mask=60000000 effects=40000000 face=\"D\" @-1,-1"});
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
}

TEST_F(OutputFormatsTest, AResetMayNameItsRange) {
    m_Buffer.SetDefaultFormatInfo(_charrange{2, 9});
    EXPECT_EQ(Shown(), Lines{"- mask=60000000 effects=40000000 face=\"D\" @2,9"});
}

TEST_F(OutputFormatsTest, AResetStopsAJoin) {
    m_Buffer.AddText(std::string("a"));
    m_Buffer.SetDefaultFormatInfo();
    m_Buffer.AddText(std::string("b"));
    EXPECT_EQ(Shown().size(), 3u);
}

TEST_F(OutputFormatsTest, TheFirstDefaultFormatIsTheProcesses) {
    COutputBuffer::InitializeDefaultFormatInfo(Record(CFM_BOLD, CFE_BOLD));
    EXPECT_EQ(Line(COutputBuffer::GetDefaultFormat()), kDefaultRecord);
    EXPECT_EQ(&COutputBuffer::GetDefaultFormat(), &CFormatInfo::GetDefaultFormat());
}

TEST_F(OutputFormatsTest, RecordsReachTheTableByteForByte) {
    CHARFORMAT2A filled;
    std::memset(&filled, 0xA5, sizeof filled);
    Push(CFormatInfo(filled));
    CFormatInfo out;
    m_Buffer.GetCurrentFormat(out, 0);
    EXPECT_EQ(std::memcmp(&out.format, &filled, sizeof filled), 0);
    auto * const table = m_Buffer.GetText();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(std::memcmp(&table->front().second.format, &filled, sizeof filled), 0);
    COutputBuffer::DeleteDataTable(table);
}
