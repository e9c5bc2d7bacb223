// The states of the dialogs: what they ask, and where their answers go.
#include <memory>

#include <gtest/gtest.h>

#include "siblings/promptline/PromptState.h"

namespace {

class StatesTest : public testing::Test {
protected:
    // Takes the state over.
    Question const & Of(CHelperDialogState * state) {
        m_State.reset(state);
        return Made().question;
    }
    PromptState & Made() { return static_cast<PromptState &>(*m_State); }
    void Reply(::Reply const & reply) { Made().store(reply); }

    std::unique_ptr<CHelperDialogState> m_State;
    std::wstring m_Header = L"H";
    std::wstring m_Text = L"text";
    std::wstring m_First = L"first";
    std::wstring m_Second = L"second";
    std::vector<std::wstring> m_List = {L"a", L"b"};
    unsigned long m_Number = 1;
    bool m_Flag = true;
};

TEST_F(StatesTest, AStateCarriesTimeOutAndEventAndTakesInput) {
    CMXGuiEvent event(0);
    Of(InitDisplayInfoToUserDialog(m_Header, &m_Text, true, 5, nullptr, &event, nullptr));
    EXPECT_EQ(m_State->timeout, 5u);
    EXPECT_EQ(m_State->event, &event);
    EXPECT_TRUE(m_State->inputEnabled);
}

TEST_F(StatesTest, InformationHasAButtonAndANoticeAsksNothing) {
    WINDOW_ARGS args{1, 2, 3, 4};
    auto const & question =
        Of(InitDisplayInfoToUserDialog(m_Header, &m_Text, true, 5, nullptr, nullptr, &args));
    EXPECT_EQ(question.kind, QuestionKind::Information);
    EXPECT_EQ(question.header, L"H");
    EXPECT_EQ(question.text, L"text");
    EXPECT_EQ(question.first, L"OK");
    EXPECT_EQ(question.where.height, 4);
    auto const & notice =
        Of(InitDisplayInfoToUserDialog(m_Header, nullptr, false, 5, &m_First, nullptr, nullptr));
    EXPECT_EQ(notice.kind, QuestionKind::Notice);
    EXPECT_EQ(notice.text, L"");
    EXPECT_EQ(notice.first, L"first");
}

TEST_F(StatesTest, AChoiceHasTwoLabelsAndNoPreset) {
    auto const & question = Of(InitGetUserBooleanChoiceDialog(
        m_Header, &m_Text, nullptr, nullptr, &m_Flag, 5, nullptr, nullptr));
    EXPECT_EQ(question.kind, QuestionKind::Choice);
    EXPECT_EQ(question.first, L"Yes");
    EXPECT_EQ(question.second, L"No");
    Reply({.affirmed = false});
    EXPECT_FALSE(m_Flag);
    Reply({.affirmed = true});
    EXPECT_TRUE(m_Flag);
    Of(InitGetUserBooleanChoiceDialog(
        m_Header, &m_Text, nullptr, nullptr, nullptr, 5, nullptr, nullptr));
    EXPECT_NO_THROW(Reply({}));
}

TEST_F(StatesTest, ANumberOffersWhatIsThere) {
    m_Number = 31;
    auto const & question = Of(InitGetUserItemDialog(
        m_Header, &m_First, &m_Text, true, true, 5, &m_Number, nullptr, nullptr, nullptr));
    EXPECT_EQ(question.kind, QuestionKind::Number);
    EXPECT_TRUE(question.hexadecimal);
    EXPECT_EQ(question.title, L"first");
    EXPECT_EQ(question.text, L"text");
    EXPECT_EQ(question.preset, L"0x1F");
    Reply({.number = 0xFFFFFFFF});
    EXPECT_EQ(m_Number, 0xFFFFFFFFul);
    auto const & decimal = Of(InitGetUserItemDialog(
        m_Header, nullptr, nullptr, true, false, 5, &m_Number, nullptr, nullptr, nullptr));
    EXPECT_EQ(decimal.preset, L"4294967295");
}

TEST_F(StatesTest, ATextOffersWhatIsThere) {
    std::wstring answer = L"old";
    auto const & question = Of(InitGetUserItemDialog(
        m_Header, nullptr, &m_Text, false, false, 5, nullptr, &answer, nullptr, nullptr));
    EXPECT_EQ(question.kind, QuestionKind::Text);
    EXPECT_EQ(question.preset, L"old");
    Reply({.texts = {L"new"}});
    EXPECT_EQ(answer, L"new");
}

TEST_F(StatesTest, AListOffersTheSelectionThatIsInIt) {
    auto const & question = Of(InitGetUserListSingleSelectionDialog(
        m_Header, &m_Text, &m_List, 5, &m_Number, nullptr, nullptr));
    EXPECT_EQ(question.kind, QuestionKind::OneOfList);
    EXPECT_EQ(question.list, m_List);
    EXPECT_EQ(question.presetPlace, 1u);
    Reply({.places = {0}});
    EXPECT_EQ(m_Number, 0u);
    m_Number = 2;
    EXPECT_EQ(
        Of(InitGetUserListSingleSelectionDialog(
               m_Header, &m_Text, &m_List, 5, &m_Number, nullptr, nullptr))
            .presetPlace,
        std::nullopt);
}

TEST_F(StatesTest, TheWayOutLeavesTheSelection) {
    m_Flag = false;
    auto const & question = Of(InitGetUserListSingleSelectionAllowAbortDialog(
        m_Header, &m_Text, nullptr, nullptr, &m_List, 5, &m_Number, &m_Flag, nullptr, nullptr));
    EXPECT_EQ(question.kind, QuestionKind::OneOfListOrOut);
    EXPECT_EQ(question.first, L"OK");
    EXPECT_EQ(question.second, L"Abort");
    Reply({.affirmed = false});
    EXPECT_TRUE(m_Flag);
    EXPECT_EQ(m_Number, 1u);
    Reply({.places = {0}});
    EXPECT_FALSE(m_Flag);
    EXPECT_EQ(m_Number, 0u);
}

TEST_F(StatesTest, SeveralSelectionsComeInAVectorOfTheirOwn) {
    std::vector<unsigned long> * selections = nullptr;
    auto const & question = Of(InitGetUserListSelectionsDialog(
        m_Header, &m_Text, &m_List, 5, &selections, nullptr, nullptr));
    EXPECT_EQ(question.kind, QuestionKind::SeveralOfList);
    Reply({.places = {0, 1}});
    std::unique_ptr<std::vector<unsigned long>> const owned(selections);
    ASSERT_NE(owned, nullptr);
    EXPECT_EQ(*owned, (std::vector<unsigned long>{0, 1}));
    Of(InitGetUserListSelectionsDialog(m_Header, nullptr, nullptr, 5, nullptr, nullptr, nullptr));
    EXPECT_NO_THROW(Reply({.places = {0}}));
}

} // namespace
