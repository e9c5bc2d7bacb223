// Tests of the reader, on tables as a COutputBuffer makes them.
#include "examples/QNExe/view/TableReader.h"

#include <gtest/gtest.h>

#include <memory>

void PrintTo(StyledText const & piece, std::ostream * out) {
    *out << std::string(piece.text.begin(), piece.text.end()) << (piece.look.bold ? " bold" : "")
         << (piece.look.italic ? " italic" : "") << (piece.look.underline ? " underline" : "");
    if (piece.look.color) *out << " color " << *piece.look.color;
    if (piece.look.backColor) *out << " back " << *piece.look.backColor;
}

namespace {

using Shown = std::vector<StyledText>;

TextLook const Plain;
TextLook const Red{.color = 0x0000FF};
TextLook const BoldRed{.bold = true, .color = 0x0000FF};

// What a host gives as its default: everything is specified, so that a reset undoes everything.
CHARFORMAT2A DefaultRecord() {
    CFormatInfo format;
    format.setBold(false, 400);
    format.setItalic(false);
    format.setUnderline(false);
    format.clearColor();
    format.clearBackColor();
    return format.format;
}

class TableReaderTest : public testing::Test {
protected:
    TableReaderTest() { COutputBuffer::InitializeDefaultFormatInfo(DefaultRecord()); }

    Shown Read() {
        std::unique_ptr<COutputBuffer::DataTable, void (*)(COutputBuffer::DataTable *)> const table(
            m_Buffer.GetText(), COutputBuffer::DeleteDataTable);
        return table ? m_Reader.Read(*table) : Shown();
    }

    COutputBuffer m_Buffer;
    TableReader m_Reader;
};

TEST_F(TableReaderTest, PlainTextIsShownWithoutItsJoint) {
    m_Buffer.AddText(std::string("a"));
    m_Buffer.AddText(std::string("b"));
    EXPECT_EQ(Read(), (Shown{{L"ab", Plain}}));
}

TEST_F(TableReaderTest, ALookHoldsUntilItIsRemoved) {
    m_Buffer.AddText(std::string("before "));
    m_Buffer.AddFormat(CFormatInfo(0x0000FFul, true, 700));
    m_Buffer.AddText(std::string("inside"));
    m_Buffer.RemoveFormat(1);
    m_Buffer.AddText(std::string("after"));
    EXPECT_EQ(Read(), (Shown{{L"before ", Plain}, {L"inside", BoldRed}, {L"after", Plain}}));
}

TEST_F(TableReaderTest, ALookGoesOnInTheNextTable) {
    m_Buffer.AddFormat(CFormatInfo(0x0000FFul));
    m_Buffer.AddText(std::string("one"));
    EXPECT_EQ(Read(), (Shown{{L"one", Red}}));
    m_Buffer.AddText(std::string("two"));
    EXPECT_EQ(Read(), (Shown{{L"two", Red}}));
}

// The range that the item got counts the blank that the joined text has replaced.
TEST_F(TableReaderTest, AJoinedTextIsOutsideTheRangeButForItsFirstCharacter) {
    CFormatInfo look(0x0000FFul);
    m_Buffer.AddItem(std::string("red"), look);
    m_Buffer.AddText(std::string("joined"));
    EXPECT_EQ(Read(), (Shown{{L"redj", Red}, {L"oined", Plain}}));
}

TEST_F(TableReaderTest, ARangeCoversAPartOfItsText) {
    CFormatInfo look(0x0000FFul);
    look.autoRange = false;
    look.range = {1, 3};
    m_Buffer.AddItem(std::string("abcd"), look);
    EXPECT_EQ(Read(), (Shown{{L"a", Plain}, {L"bc", Red}, {L"d", Plain}}));
}

TEST_F(TableReaderTest, ARangeBehindTheTextOrTurnedAroundCoversNothing) {
    CFormatInfo look(0x0000FFul);
    look.autoRange = false;
    look.range = {70, 90};
    m_Buffer.AddItem(std::string("abc"), look);
    EXPECT_EQ(Read(), (Shown{{L"abc", Plain}}));
    look.range = {3, 1};
    m_Buffer.AddItem(std::string("abc"), look);
    EXPECT_EQ(Read(), (Shown{{L"abc", Plain}}));
}

TEST_F(TableReaderTest, ARangeWithoutEndReachesTheEnd) {
    CFormatInfo look(0x0000FFul);
    look.autoRange = false;
    look.range = {1, -1};
    m_Buffer.AddItem(std::string("abc"), look);
    EXPECT_EQ(Read(), (Shown{{L"a", Plain}, {L"bc", Red}}));
}

TEST_F(TableReaderTest, OnlyWhatARecordSpecifiesIsChanged) {
    m_Buffer.AddFormat(CFormatInfo(0x0000FFul, true, 700));
    CFormatInfo italic;
    italic.setItalic(true);
    m_Buffer.AddFormat(italic);
    m_Buffer.AddText(std::string("x"));
    EXPECT_EQ(Read(), (Shown{{L"x", {.bold = true, .italic = true, .color = 0x0000FF}}}));
}

TEST_F(TableReaderTest, AResetUndoesEverything) {
    m_Buffer.AddFormat(CFormatInfo(0x0000FFul, true, true, 700));
    m_Buffer.AddText(std::string("x"));
    m_Buffer.SetDefaultFormatInfo();
    m_Buffer.AddText(std::string("y"));
    EXPECT_EQ(
        Read(), (Shown{{L"x", {.bold = true, .italic = true, .color = 0x0000FF}}, {L"y", Plain}}));
}

TEST_F(TableReaderTest, AWeightAloneIsBoldFromSemiBoldOn) {
    CFormatInfo look;
    look.format.dwMask = CFM_WEIGHT;
    look.format.wWeight = 599;
    m_Buffer.AddFormat(look);
    m_Buffer.AddText(std::string("light"));
    EXPECT_EQ(Read(), (Shown{{L"light", Plain}}));
    look.format.wWeight = 600;
    m_Buffer.AddFormat(look);
    m_Buffer.AddText(std::string("heavy"));
    EXPECT_EQ(Read(), (Shown{{L"heavy", {.bold = true}}}));
}

TEST_F(TableReaderTest, AutomaticColorsAreNone) {
    CFormatInfo look(0x0000FFul);
    look.setBackColor(0x00FFFFul);
    look.setUnderline(true);
    m_Buffer.AddFormat(look);
    m_Buffer.AddText(std::string("x"));
    look.clearColor();
    look.clearBackColor();
    m_Buffer.AddFormat(look);
    m_Buffer.AddText(std::string("y"));
    EXPECT_EQ(
        Read(), (Shown{
                    {L"x", {.underline = true, .color = 0x0000FF, .backColor = 0x00FFFF}},
                    {L"y", {.underline = true}}}));
}

TEST_F(TableReaderTest, OnlyTheLowThreeBytesOfAColorAreOne) {
    CFormatInfo look(0xFE0000FFul);
    look.setBackColor(0xFD00FFFFul);
    m_Buffer.AddFormat(look);
    m_Buffer.AddText(std::string("x"));
    EXPECT_EQ(Read(), (Shown{{L"x", {.color = 0x0000FF, .backColor = 0x00FFFF}}}));
}

TEST_F(TableReaderTest, TextThatWasCutAtItsNulHasNoJointToDrop) {
    m_Buffer.AddText(std::string("ab\0cd", 5));
    EXPECT_EQ(Read(), (Shown{{L"ab", Plain}}));
}

} // namespace
