// What an operator types, and what it means.
#include "siblings/promptline/Reply.h"

#include <gtest/gtest.h>

namespace {

Question Asking(QuestionKind kind) {
    Question question;
    question.kind = kind;
    question.first = L"Yes";
    question.second = L"No";
    question.list = {L"a", L"b", L"c"};
    return question;
}

// What the line means, as text: the answer, or the problem behind a mark.
std::string Read(Question const & question, std::wstring const & line) {
    std::wstring problem;
    auto const reply = ReadReply(question, line, problem);
    if (reply) return TextOf(question, *reply);
    return "? " + std::string(problem.begin(), problem.end());
}

TEST(ReplyTest, ANumberIsDecimalUnlessMarkedAndHas32Bits) {
    EXPECT_EQ(ReadNumber(L"0", false), 0u);
    EXPECT_EQ(ReadNumber(L" 4294967295 ", false), 4294967295u);
    EXPECT_EQ(ReadNumber(L"4294967296", false), std::nullopt);
    EXPECT_EQ(ReadNumber(L"99999999999999999999999999", false), std::nullopt);
    EXPECT_EQ(ReadNumber(L"0x1f", false), 31u);
    EXPECT_EQ(ReadNumber(L"010", false), 10u);
    for (wchar_t const * text : {L"", L" ", L"-1", L"+1", L"1 2", L"1f", L"0x", L"0xg", L"1.0"})
        EXPECT_EQ(ReadNumber(text, false), std::nullopt);
}

TEST(ReplyTest, AHexadecimalNumberNeedsNoMark) {
    EXPECT_EQ(ReadNumber(L"FFFFFFFF", true), 0xFFFFFFFFu);
    EXPECT_EQ(ReadNumber(L"0XfF", true), 255u);
    EXPECT_EQ(ReadNumber(L"100000000", true), std::nullopt);
    EXPECT_EQ(ReadNumber(L"g", true), std::nullopt);
}

TEST(ReplyTest, AChoiceIsANumberALabelOrItsInitial) {
    Question const question = Asking(QuestionKind::Choice);
    for (wchar_t const * line : {L"1", L"yes", L"Y", L" YES "})
        EXPECT_EQ(Read(question, line), "Yes");
    for (wchar_t const * line : {L"2", L"no", L"n"})
        EXPECT_EQ(Read(question, line), "No");
    for (wchar_t const * line : {L"", L"0", L"3", L"ye", L"x"})
        EXPECT_EQ(Read(question, line), "? Type 1 for Yes or 2 for No.");
    Question alike = question;
    alike.first = L"Stay";
    alike.second = L"Stop";
    EXPECT_EQ(Read(alike, L"s"), "? Type 1 for Stay or 2 for Stop.");
}

TEST(ReplyTest, AnEmptyLineTakesWhatIsOffered) {
    Question number = Asking(QuestionKind::Number);
    EXPECT_EQ(Read(number, L""), "? Type a number from 0 to 4294967295.");
    number.preset = L"7";
    EXPECT_EQ(Read(number, L""), "7");
    EXPECT_EQ(Read(number, L"8"), "8");
    number.hexadecimal = true;
    EXPECT_EQ(Read(number, L"ff"), "0xFF");
    EXPECT_EQ(Read(number, L"x"), "? Type a hexadecimal number from 0 to FFFFFFFF.");
    Question text = Asking(QuestionKind::Text);
    EXPECT_EQ(Read(text, L""), "");
    text.preset = L"old";
    EXPECT_EQ(Read(text, L""), "old");
    EXPECT_EQ(Read(text, L" new "), " new ");
    Question list = Asking(QuestionKind::OneOfList);
    EXPECT_EQ(Read(list, L""), "? Type a number from 1 to 3.");
    list.presetPlace = 1;
    EXPECT_EQ(Read(list, L""), "b");
}

TEST(ReplyTest, EntriesAreNumberedFrom1AndTheWayOutIs0) {
    Question list = Asking(QuestionKind::OneOfList);
    EXPECT_EQ(Read(list, L"1"), "a");
    EXPECT_EQ(Read(list, L"3"), "c");
    for (wchar_t const * line : {L"0", L"4", L"b", L"1 2"})
        EXPECT_EQ(Read(list, line), "? Type a number from 1 to 3.");
    list.kind = QuestionKind::OneOfListOrOut;
    EXPECT_EQ(Read(list, L"0"), "No");
    EXPECT_EQ(Read(list, L"2"), "b");
    EXPECT_EQ(Read(list, L"4"), "? Type a number from 0 to 3.");
}

TEST(ReplyTest, SeveralEntriesComeSortedAndOnce) {
    Question const list = Asking(QuestionKind::SeveralOfList);
    EXPECT_EQ(Read(list, L"3, 1 3"), "a; c");
    EXPECT_EQ(Read(list, L""), "");
    EXPECT_EQ(Read(list, L"1 4"), "? Type numbers from 1 to 3, with blanks between them.");
}

TEST(ReplyTest, InformationTakesAnyLineAndANoticeNone) {
    Question question = Asking(QuestionKind::Information);
    EXPECT_EQ(Read(question, L""), "Yes");
    question.kind = QuestionKind::Notice;
    EXPECT_EQ(Read(question, L"x"), "? Nothing is asked.");
}

} // namespace
