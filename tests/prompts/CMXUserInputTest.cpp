// The prompt base: construction, header and switch, the narrow forms, the order of its virtuals.
#include "prompts/CMXUserInput.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "app/CAppState.h"
#include "prompts/RecordingInput.h"
#include "support/Allocations.h"

namespace {

static_assert(std::is_abstract_v<CMXUserInput>);
static_assert(std::has_virtual_destructor_v<CMXUserInput>);

// A place that a pointer can name; nobody looks inside.
template <typename Object>
Object * Somewhere(int place) {
    static char places[8];
    return reinterpret_cast<Object *>(places + place);
}

CMXGuiEvent * const event = Somewhere<CMXGuiEvent>(1);
WINDOW_ARGS * const args = Somewhere<WINDOW_ARGS>(2);
CMXLog * const otherLog = Somewhere<CMXLog>(3);

class CMXUserInputTest : public testing::Test {
protected:
    CMXUserInputTest() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        m_Input.emplace(otherLog);
    }
    ~CMXUserInputTest() override {
        m_Input.reset();
        CAppState::CleanupAppState();
    }

    // The one question that the wide form was asked.
    Question Asked() { return m_Input->m_Asked.size() == 1 ? m_Input->m_Asked[0] : Question{}; }

    std::optional<RecordingInput> m_Input;
    // In UTF-8 and wide.
    std::string m_First = "\xC2\xB5-first";
    std::string m_Second = "second";
    std::string m_Third = "";
    std::vector<std::string> m_List = {"one", "", "\xE2\x82\xAC"};
    std::wstring const m_WideFirst = L"\u00b5-first";
    std::vector<std::wstring> const m_WideList = {L"one", L"", L"\u20ac"};
    unsigned long m_Selection = 7;
    bool m_Flag = false;
    std::vector<unsigned long> * m_Selections = nullptr;
};

TEST_F(CMXUserInputTest, EachConstructorLeavesInputEnabled) {
    RecordingInput const bare;
    EXPECT_EQ(bare.m_Log, nullptr);
    EXPECT_EQ(bare.m_DialogHeader, L"");
    EXPECT_TRUE(bare.m_InputEnabled);

    RecordingInput const logged(otherLog);
    EXPECT_EQ(logged.m_Log, otherLog);
    EXPECT_EQ(logged.m_DialogHeader, L"");
    EXPECT_TRUE(logged.m_InputEnabled);

    RecordingInput const wide(otherLog, std::wstring(L"\u00b5 Header"));
    EXPECT_EQ(wide.m_Log, otherLog);
    EXPECT_EQ(wide.m_DialogHeader, L"\u00b5 Header");
    EXPECT_TRUE(wide.m_InputEnabled);

    RecordingInput const narrow(otherLog, std::string("\xC2\xB5 Header"));
    EXPECT_EQ(narrow.m_Log, otherLog);
    EXPECT_EQ(narrow.m_DialogHeader, L"\u00b5 Header");
    EXPECT_TRUE(narrow.m_InputEnabled);
}

TEST_F(CMXUserInputTest, CopiesTakeSwitchHeaderAndLog) {
    RecordingInput source(otherLog, std::wstring(L"Header"));
    source.DisableInput();
    RecordingInput const copy(source);
    RecordingInput assigned;
    assigned = source;
    for (RecordingInput const * const made : {&copy, &std::as_const(assigned)}) {
        EXPECT_FALSE(made->m_InputEnabled);
        EXPECT_EQ(made->m_DialogHeader, L"Header");
        EXPECT_EQ(made->m_Log, otherLog);
    }
}

TEST_F(CMXUserInputTest, SetLogReplacesTheLog) {
    m_Input->SetLog(nullptr);
    EXPECT_EQ(m_Input->m_Log, nullptr);
    m_Input->SetLog(otherLog);
    EXPECT_EQ(m_Input->m_Log, otherLog);
}

TEST_F(CMXUserInputTest, InputCanBeSwitchedOffAndOn) {
    EXPECT_TRUE(m_Input->IsInputEnabled());
    EXPECT_EQ(m_Input->DisableInput(), TS_SUCCESS);
    EXPECT_FALSE(m_Input->IsInputEnabled());
    EXPECT_EQ(m_Input->EnableInput(), TS_SUCCESS);
    EXPECT_TRUE(m_Input->IsInputEnabled());
}

TEST_F(CMXUserInputTest, AHeaderIsTakenFromEitherText) {
    std::wstring wide = L"\u20ac wide";
    EXPECT_EQ(m_Input->SetDialogHeader(&wide), TS_SUCCESS);
    EXPECT_EQ(m_Input->m_DialogHeader, L"\u20ac wide");
    std::string narrow = "\xE2\x82\xAC narrow";
    EXPECT_EQ(m_Input->SetDialogHeader(&narrow), TS_SUCCESS);
    EXPECT_EQ(m_Input->m_DialogHeader, L"\u20ac narrow");
}

TEST_F(CMXUserInputTest, ANullHeaderOfEitherTypeClearsIt) {
    m_Input->m_DialogHeader = L"Header";
    EXPECT_EQ(m_Input->SetDialogHeader(static_cast<std::wstring *>(nullptr)), TS_SUCCESS);
    EXPECT_EQ(m_Input->m_DialogHeader, L"");
    m_Input->m_DialogHeader = L"Header";
    EXPECT_EQ(m_Input->SetDialogHeader(static_cast<std::string *>(nullptr)), TS_SUCCESS);
    EXPECT_EQ(m_Input->m_DialogHeader, L"");
}

TEST_F(CMXUserInputTest, TheObjectsOwnHeaderStays) {
    m_Input->m_DialogHeader = L"a header that is too long for the string's own place";
    EXPECT_EQ(m_Input->SetDialogHeader(&m_Input->m_DialogHeader), TS_SUCCESS);
    EXPECT_EQ(m_Input->m_DialogHeader, L"a header that is too long for the string's own place");
}

TEST_F(CMXUserInputTest, TheEndOfThePromptObjectInForceWithdrawsIt) {
    CAppState::UserInput(&*m_Input);
    m_Input.reset();
    EXPECT_EQ(CAppState::UserInput(), nullptr);
}

TEST_F(CMXUserInputTest, TheEndOfAnotherPromptObjectLeavesTheOneInForce) {
    RecordingInput inForce;
    CAppState::UserInput(&inForce);
    m_Input.reset();
    EXPECT_EQ(CAppState::UserInput(), &inForce);
}

TEST_F(CMXUserInputTest, NarrowChoiceGoesToTheWideOne) {
    EXPECT_EQ(
        m_Input->GetSelectionFromList(&m_First, &m_List, &m_Selection, 5000, event, args),
        RecordingInput::Answer);
    EXPECT_EQ(
        Asked(), (Question{
                     "GetSelectionFromList",
                     {m_WideFirst},
                     m_WideList,
                     {&m_Selection, event, args},
                     {5000},
                     std::nullopt}));
}

TEST_F(CMXUserInputTest, NarrowChoiceWithAWayOutGoesToTheWideOne) {
    EXPECT_EQ(
        m_Input->GetSelectionFromListAllowAbort(
            &m_First, &m_Second, &m_Third, &m_List, &m_Selection, &m_Flag, 5000, event, args),
        RecordingInput::Answer);
    EXPECT_EQ(
        Asked(), (Question{
                     "GetSelectionFromListAllowAbort",
                     {m_WideFirst, L"second", L""},
                     m_WideList,
                     {&m_Selection, &m_Flag, event, args},
                     {5000},
                     std::nullopt}));
}

TEST_F(CMXUserInputTest, NarrowMultipleChoiceGoesToTheWideOne) {
    EXPECT_EQ(
        m_Input->GetMultipleSelectionsFromList(&m_First, &m_List, &m_Selections, 5000, event, args),
        RecordingInput::Answer);
    EXPECT_EQ(
        Asked(), (Question{
                     "GetMultipleSelectionsFromList",
                     {m_WideFirst},
                     m_WideList,
                     {&m_Selections, event, args},
                     {5000},
                     std::nullopt}));
}

TEST_F(CMXUserInputTest, NarrowTextGoesToTheWideOne) {
    EXPECT_EQ(
        m_Input->DisplayInfoToUser(&m_First, 0xFFFFFFFF, true, event, &m_Second, args),
        RecordingInput::Answer);
    EXPECT_EQ(
        Asked(), (Question{
                     "DisplayInfoToUser",
                     {m_WideFirst, L"second"},
                     std::nullopt,
                     {event, args},
                     {0xFFFFFFFF},
                     true}));
}

TEST_F(CMXUserInputTest, NarrowDecisionGoesToTheWideOne) {
    EXPECT_EQ(
        m_Input->GetBooleanDecision(&m_First, &m_Second, &m_Third, &m_Flag, 5000, event, args),
        RecordingInput::Answer);
    EXPECT_EQ(
        Asked(), (Question{
                     "GetBooleanDecision",
                     {m_WideFirst, L"second", L""},
                     std::nullopt,
                     {&m_Flag, event, args},
                     {5000},
                     std::nullopt}));
}

TEST_F(CMXUserInputTest, NarrowIntegerGoesToTheWideOne) {
    EXPECT_EQ(
        m_Input->GetInteger(&m_First, &m_Second, &m_Selection, true, 5000, event, 90, 10, args),
        RecordingInput::Answer);
    EXPECT_EQ(
        Asked(), (Question{
                     "GetInteger",
                     {m_WideFirst, L"second"},
                     std::nullopt,
                     {&m_Selection, event, args},
                     {5000, 90, 10},
                     true}));
}

TEST_F(CMXUserInputTest, NullTextsAndListsStayNull) {
    std::string * const text = nullptr;
    std::vector<std::string> * const list = nullptr;
    m_Input->GetSelectionFromList(text, list, nullptr, 1, nullptr, nullptr);
    m_Input->GetSelectionFromListAllowAbort(
        text, text, text, list, nullptr, nullptr, 2, nullptr, nullptr);
    m_Input->GetMultipleSelectionsFromList(text, list, nullptr, 3, nullptr, nullptr);
    m_Input->DisplayInfoToUser(text, 4, false, nullptr, text, nullptr);
    m_Input->GetBooleanDecision(text, text, text, nullptr, 5, nullptr, nullptr);
    m_Input->GetInteger(text, text, nullptr, false, 6, nullptr, 7, 8, nullptr);
    auto const none = std::nullopt;
    void const * const null = nullptr;
    EXPECT_EQ(
        m_Input->m_Asked,
        (std::vector<Question>{
            {"GetSelectionFromList", {none}, none, {null, null, null}, {1}, none},
            {"GetSelectionFromListAllowAbort",
             {none, none, none},
             none,
             {null, null, null, null},
             {2},
             none},
            {"GetMultipleSelectionsFromList", {none}, none, {null, null, null}, {3}, none},
            {"DisplayInfoToUser", {none, none}, none, {null, null}, {4}, false},
            {"GetBooleanDecision", {none, none, none}, none, {null, null, null}, {5}, none},
            {"GetInteger", {none, none}, none, {null, null, null}, {6, 7, 8}, false}}));
}

TEST_F(CMXUserInputTest, AnEmptyListStaysAList) {
    m_List.clear();
    m_Input->GetSelectionFromList(&m_First, &m_List, &m_Selection, 0, nullptr, nullptr);
    EXPECT_EQ(Asked().list, std::vector<std::wstring>());
}

TEST_F(CMXUserInputTest, AnExceptionOfTheWideFormReleasesTheTemporaries) {
    m_Input->m_Throw = true;
    AllocationWatch watch;
    try {
        m_Input->GetSelectionFromListAllowAbort(
            &m_First, &m_Second, &m_Third, &m_List, &m_Selection, &m_Flag, 0, nullptr, nullptr);
    } catch (std::runtime_error const &) {
        m_Flag = true;
    }
    watch.End();
    EXPECT_TRUE(m_Flag);
    EXPECT_EQ(watch.Leaks(), 0u);
}

// The place of a virtual among those of its class, the destructor's two ahead of all others.
template <typename Member>
int Slot(Member member) {
    std::intptr_t bytes = 0;
    std::memcpy(&bytes, &member, sizeof bytes);
    return static_cast<int>((bytes - 1) / static_cast<std::intptr_t>(sizeof(void *)));
}

template <typename... Arguments>
using Virtual = TS_STATUS (RecordingInput::*)(Arguments...);

using Ulong = unsigned long;
using Event = CMXGuiEvent *;
using Args = WINDOW_ARGS *;

// The virtuals of a question in text form: narrow or wide.
template <typename Text>
std::vector<int> SlotsOf() {
    using Input = RecordingInput;
    using List = std::vector<Text> *;
    using Many = std::vector<Ulong> **;
    Virtual<Text *, List, Ulong *, Ulong, Event, Args> const choice = &Input::GetSelectionFromList;
    Virtual<Text *, Text *, Text *, List, Ulong *, bool *, Ulong, Event, Args> const abortable =
        &Input::GetSelectionFromListAllowAbort;
    Virtual<Text *, List, Many, Ulong, Event, Args> const several =
        &Input::GetMultipleSelectionsFromList;
    Virtual<Text *, Ulong, bool, Event, Text *, Args> const info = &Input::DisplayInfoToUser;
    Virtual<Text *, Text *, Text *, bool *, Ulong, Event, Args> const decision =
        &Input::GetBooleanDecision;
    Virtual<Text *, Text *, Ulong *, bool, Ulong, Event, Ulong, Ulong, Args> const integer =
        &Input::GetInteger;
    return {Slot(choice), Slot(abortable), Slot(several),
            Slot(info),   Slot(decision),  Slot(integer)};
}

TEST_F(CMXUserInputTest, VirtualsStandInTheirOrder) {
    using Input = RecordingInput;
    EXPECT_EQ(
        (std::vector<int>{
            Slot(&Input::SelectSingleFile), Slot(&Input::SelectMultipleFiles),
            Slot(&Input::SelectSingleVIF), Slot(&Input::SelectMultipleVIFs)}),
        (std::vector<int>{2, 3, 4, 5}));
    EXPECT_EQ(SlotsOf<std::wstring>(), (std::vector<int>{6, 8, 10, 12, 14, 16}));
    EXPECT_EQ(SlotsOf<std::string>(), (std::vector<int>{7, 9, 11, 13, 15, 17}));
    EXPECT_EQ(
        (std::vector<int>{
            Slot(&Input::GetString), Slot(&Input::CreateHelperDialog),
            Slot(&Input::TerminateDialog)}),
        (std::vector<int>{18, 19, 20}));
}

} // namespace
