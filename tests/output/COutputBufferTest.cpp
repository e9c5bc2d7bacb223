// What comes into the table, and how it is handed over.
#include "output/COutputBuffer.h"

#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

#include "output/Transcript.h"

static_assert(std::has_virtual_destructor_v<COutputBuffer>);
// The table and the virtual functions are all that an object holds.
static_assert(sizeof(COutputBuffer) == 2 * sizeof(void *));

namespace {

// The protected operation, for a derived class's use.
class Producer : public COutputBuffer {
public:
    using COutputBuffer::DoAddFormattedText;
};

class COutputBufferTest : public testing::Test {
protected:
    COutputBufferTest() {
        CHARFORMAT2A standard = Record(CFM_FACE | CFM_COLOR, CFE_AUTOCOLOR);
        standard.szFaceName[0] = 'D';
        COutputBuffer::InitializeDefaultFormatInfo(standard);
    }

    Lines Shown() { return Take(m_Buffer); }

    Producer m_Buffer;
};

CFormatInfo const kRed(0x0000FFul);
CFormatInfo const kBold(true, 700);

constexpr char kDefault[] = "mask=60000000 effects=40000000 face=\"D\"";

std::string Default(char const * range = " @0,0") { return std::string("- ") + kDefault + range; }

CFormatInfo Covering(CFormatInfo look, LONG first, LONG last) {
    look.range = {first, last};
    look.autoRange = false;
    return look;
}

} // namespace

TEST_F(COutputBufferTest, PlainTextGetsABlankAndABlankFormat) {
    m_Buffer.AddText(std::string("ab"));
    EXPECT_EQ(Shown(), Lines{"\"ab \" mask=00000000 effects=44000000 @0,0"});
    m_Buffer.AddText(std::wstring(L"cd"));
    EXPECT_EQ(Shown(), Lines{"\"cd \" mask=00000000 effects=44000000 @0,0"});
}

TEST_F(COutputBufferTest, NarrowTextIsUtf8) {
    m_Buffer.AddText(std::string("\xC3\xA9\xE2\x82\xAC\xFFz"));
    EXPECT_EQ(Shown(), Lines{"\"\\e9\\20ac\\fffdz \" mask=00000000 effects=44000000 @0,0"});
    m_Buffer.AddText(std::string("cut\xE2\x82"));
    EXPECT_EQ(Shown(), Lines{"\"cut\\fffd \" mask=00000000 effects=44000000 @0,0"});
}

TEST_F(COutputBufferTest, EmptyTextWithoutAFormatAddsNothing) {
    m_Buffer.AddText(std::string());
    m_Buffer.AddText(std::wstring());
    m_Buffer.AddItem(std::string(), nullptr);
    EXPECT_EQ(m_Buffer.GetText(), nullptr);
}

TEST_F(COutputBufferTest, EmptyTextWithAFormatAddsABlankAndPushesTheFormat) {
    m_Buffer.AddItem(std::string(), kRed);
    m_Buffer.AddItem(std::wstring(), &kBold);
    EXPECT_EQ(
        Shown(), (Lines{
                     "\" \" mask=40000000 effects=04000000 color=0000FF @0,1",
                     "\" \" mask=00400001 effects=44000001 weight=700 @0,1"}));
    EXPECT_EQ(m_Buffer.FormatDepth(), 2u);
}

TEST_F(COutputBufferTest, PlainTextsJoin) {
    m_Buffer.AddText(std::string("a"));
    m_Buffer.AddText(std::wstring(L"b"));
    m_Buffer.AddText(std::string("cd"));
    EXPECT_EQ(Shown(), Lines{"\"abcd \" mask=00000000 effects=44000000 @0,0"});
}

TEST_F(COutputBufferTest, PlainTextDoesNotJoinAcrossAFormatChange) {
    m_Buffer.AddText(std::string("a"));
    m_Buffer.AddFormat(kRed);
    m_Buffer.AddText(std::string("b"));
    EXPECT_EQ(
        Shown(), (Lines{
                     "\"a \" mask=00000000 effects=44000000 @0,0",
                     "- mask=40000000 effects=04000000 color=0000FF @0,0",
                     "\"b \" mask=00000000 effects=44000000 @0,0"}));
}

TEST_F(COutputBufferTest, AFormattedTextDoesNotJoinTheOneBefore) {
    m_Buffer.AddText(std::string("a"));
    m_Buffer.AddItem(std::string("b"), kRed);
    EXPECT_EQ(
        Shown(), (Lines{
                     "\"a \" mask=00000000 effects=44000000 @0,0",
                     "\"b \" mask=40000000 effects=04000000 color=0000FF @0,2"}));
}

TEST_F(COutputBufferTest, AJoinLeavesTheRangeOfTheFirstText) {
    m_Buffer.AddItem(std::string("ab"), kRed);
    EXPECT_EQ(m_Buffer.FormatDepth(), 1u);
    m_Buffer.AddText(std::string("cd"));
    EXPECT_EQ(Shown(), Lines{"\"abcd \" mask=40000000 effects=04000000 color=0000FF @0,3"});
}

TEST_F(COutputBufferTest, EachFormOfAddItemTakesTheFormatWhole) {
    CFormatInfo const look = Covering(kRed, 1, 2);
    m_Buffer.AddItem(std::wstring(L"ab"), &look);
    m_Buffer.AddItem(std::string("cd"), &look);
    m_Buffer.AddItem(std::wstring(L"ef"), look);
    m_Buffer.AddItem(std::string("gh"), look);
    EXPECT_EQ(
        Shown(), (Lines{
                     "\"ab \" mask=40000000 effects=04000000 color=0000FF @1,2 own",
                     "\"cd \" mask=40000000 effects=04000000 color=0000FF @1,2 own",
                     "\"ef \" mask=40000000 effects=04000000 color=0000FF @1,2 own",
                     "\"gh \" mask=40000000 effects=04000000 color=0000FF @1,2 own"}));
    EXPECT_EQ(m_Buffer.FormatDepth(), 4u);
}

TEST_F(COutputBufferTest, AnAutomaticRangeReplacesTheCallers) {
    CFormatInfo look = Covering(kRed, 1, 2);
    look.autoRange = true;
    m_Buffer.AddItem(std::string("abc"), look);
    EXPECT_EQ(Shown(), Lines{"\"abc \" mask=40000000 effects=04000000 color=0000FF @0,4"});
}

TEST_F(COutputBufferTest, ARangeCountsWideCharacters) {
    m_Buffer.AddItem(std::string("\xC3\xA9\xE2\x82\xAC"), kRed);
    EXPECT_EQ(Shown(), Lines{"\"\\e9\\20ac \" mask=40000000 effects=04000000 color=0000FF @0,3"});
}

TEST_F(COutputBufferTest, TextEndsAtItsFirstNulAndHasNoBlankThen) {
    m_Buffer.AddItem(std::string("ab\0cd", 5), kRed);
    m_Buffer.AddItem(std::wstring(L"ef\0gh", 5), kRed);
    EXPECT_EQ(
        Shown(), (Lines{
                     "\"ab\" mask=40000000 effects=04000000 color=0000FF @0,2",
                     "\"ef\" mask=40000000 effects=04000000 color=0000FF @0,2"}));
}

TEST_F(COutputBufferTest, AJoinToTextWithANulTakesItsLastCharacter) {
    m_Buffer.AddText(std::string("ab\0cd", 5));
    m_Buffer.AddText(std::string("ef"));
    EXPECT_EQ(Shown(), Lines{"\"aef \" mask=00000000 effects=44000000 @0,0"});
}

TEST_F(COutputBufferTest, TextThatBeginsWithANulIsAnEmptyEntry) {
    m_Buffer.AddText(std::string("\0ab", 3));
    EXPECT_EQ(Shown(), Lines{"\"\" mask=00000000 effects=44000000 @0,0"});
    m_Buffer.AddText(std::string("\0ab", 3));
    m_Buffer.AddText(std::string("cd"));
    EXPECT_EQ(Shown(), Lines{"\"cd \" mask=00000000 effects=44000000 @0,0"});
}

TEST_F(COutputBufferTest, ALongTextIsKeptWhole) {
    std::wstring const text(1'000'000, L'x');
    m_Buffer.AddText(text);
    m_Buffer.AddText(text);
    auto * const table = m_Buffer.GetText();
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(table->size(), 1u);
    EXPECT_TRUE(*table->front().first == text + text + L' ');
    COutputBuffer::DeleteDataTable(table);
}

TEST_F(COutputBufferTest, NarrowTextOfAnyLengthIsTreatedAlike) {
    for (std::size_t const size : {1022u, 1023u, 1024u, 1025u, 5000u}) {
        SCOPED_TRACE(size);
        std::string const text(size, 'x');
        m_Buffer.AddText(text);
        EXPECT_EQ(Shown(), Lines{'"' + text + " \" mask=00000000 effects=44000000 @0,0"});
        m_Buffer.AddText(text + std::string(1, '\0') + text);
        EXPECT_EQ(Shown(), Lines{'"' + text + "\" mask=00000000 effects=44000000 @0,0"});
    }
}

TEST_F(COutputBufferTest, ManyEntriesKeepTheirOrder) {
    constexpr int kCount = 1000;
    Lines expected;
    for (int i = 0; i < kCount; ++i) {
        m_Buffer.AddItem(std::to_string(i), Covering(CFormatInfo(), i, i));
        auto const number = std::to_string(i);
        expected.push_back(
            '"' + number + " \" mask=00000000 effects=44000000 @" + number + ',' + number + " own");
    }
    EXPECT_EQ(Shown(), expected);
}

TEST_F(COutputBufferTest, ADerivedClassAddsEntriesOfItsOwn) {
    m_Buffer.DoAddFormattedText({new std::wstring(L"own "), kRed}, true);
    m_Buffer.DoAddFormattedText({nullptr, kBold}, true);
    EXPECT_EQ(
        Shown(), (Lines{
                     "\"own \" mask=40000000 effects=04000000 color=0000FF @0,0",
                     "- mask=00400001 effects=44000001 weight=700 @0,0"}));
    EXPECT_EQ(m_Buffer.FormatDepth(), 2u);
}

TEST_F(COutputBufferTest, WithoutItsFlagAnEntryLosesItsFormatAndMayBeNothing) {
    m_Buffer.DoAddFormattedText({nullptr, kRed}, false);
    EXPECT_EQ(Shown(), Lines{});
    m_Buffer.DoAddFormattedText({new std::wstring(L"ab "), Covering(kRed, 1, 2)}, false);
    m_Buffer.DoAddFormattedText({new std::wstring(L"cd "), kRed}, false);
    EXPECT_EQ(Shown(), Lines{"\"abcd \" mask=00000000 effects=44000000 @0,0"});
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
}

TEST_F(COutputBufferTest, AnEmptyTableIsNotHandedOver) {
    EXPECT_EQ(m_Buffer.GetText(), nullptr);
    m_Buffer.AddText(std::string("a"));
    EXPECT_EQ(Shown().size(), 1u);
    EXPECT_EQ(m_Buffer.GetText(), nullptr);
}

TEST_F(COutputBufferTest, TextAfterTheHandOverStartsANewTable) {
    m_Buffer.AddText(std::string("a"));
    auto * const first = m_Buffer.GetText();
    m_Buffer.AddText(std::string("b"));
    auto * const second = m_Buffer.GetText();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    ASSERT_EQ(first->size(), 1u);
    EXPECT_EQ(*first->front().first, L"a ");
    ASSERT_EQ(second->size(), 1u);
    EXPECT_EQ(*second->front().first, L"b ");
    COutputBuffer::DeleteDataTable(first);
    COutputBuffer::DeleteDataTable(second);
}

TEST_F(COutputBufferTest, DeletingNoTableDoesNothing) { COutputBuffer::DeleteDataTable(nullptr); }

TEST_F(COutputBufferTest, ClearEmptiesTableAndStack) {
    m_Buffer.AddItem(std::string("a"), kRed);
    m_Buffer.Clear();
    EXPECT_EQ(m_Buffer.GetText(), nullptr);
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
    m_Buffer.AddText(std::string("b"));
    EXPECT_EQ(Shown(), Lines{"\"b \" mask=00000000 effects=44000000 @0,0"});
}

TEST_F(COutputBufferTest, EachBufferHasATableOfItsOwnAndAllShareTheStack) {
    COutputBuffer other;
    m_Buffer.AddFormat(kRed);
    other.AddText(std::string("a"));
    EXPECT_EQ(other.FormatDepth(), 1u);
    other.RemoveFormat(1);
    EXPECT_EQ(Shown(), Lines{"- mask=40000000 effects=04000000 color=0000FF @0,0"});
    EXPECT_EQ(Take(other), (Lines{"\"a \" mask=00000000 effects=44000000 @0,0", Default()}));
}

TEST_F(COutputBufferTest, TheEndOfAnyBufferEmptiesTheStack) {
    m_Buffer.AddFormat(kRed);
    { COutputBuffer const other; }
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
}

TEST_F(COutputBufferTest, TheEndOfABufferDeletesWhatNobodyTook) {
    auto const buffer = std::make_unique<COutputBuffer>();
    buffer->AddItem(std::string("left behind"), kRed);
}

TEST_F(COutputBufferTest, CopiesShareOneTable) {
    // Neither is ended: both would delete the table.
    alignas(COutputBuffer) unsigned char storage[2][sizeof(COutputBuffer)];
    auto * const copy = new (storage[0]) COutputBuffer(m_Buffer);
    auto * const assigned = new (storage[1]) COutputBuffer(m_Buffer);
    *assigned = m_Buffer;
    copy->AddText(std::string("a"));
    assigned->AddText(std::string("b"));
    EXPECT_EQ(Shown(), Lines{"\"ab \" mask=00000000 effects=44000000 @0,0"});
}
