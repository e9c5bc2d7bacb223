// The questions of a debug run: asked there, skipped in every other run.
#include <gtest/gtest.h>

#include <functional>

#include "app/CAppState.h"
#include "platform/Synchronization.h"
#include "platform/Wrap.h"
#include "prompts/RecordingInput.h"
#include "siblings/Keelbase.h"

MORVEX_WRAP_API(void, Sleep, (DWORD milliseconds), (milliseconds))

namespace {

// Answers the narrow forms itself, so that a test sees which form was asked.
class NarrowInput : public RecordingInput {
public:
    using RecordingInput::DisplayInfoToUser;
    using RecordingInput::GetBooleanDecision;
    using RecordingInput::GetMultipleSelectionsFromList;
    using RecordingInput::GetSelectionFromList;

    TS_STATUS GetSelectionFromList(
        std::string *, std::vector<std::string> *, unsigned long *, unsigned long, CMXGuiEvent *,
        WINDOW_ARGS *) override {
        return ++m_NarrowAsked;
    }
    TS_STATUS GetMultipleSelectionsFromList(
        std::string *, std::vector<std::string> *, std::vector<unsigned long> **, unsigned long,
        CMXGuiEvent *, WINDOW_ARGS *) override {
        return ++m_NarrowAsked;
    }
    TS_STATUS DisplayInfoToUser(
        std::string *, unsigned long, bool, CMXGuiEvent *, std::string *, WINDOW_ARGS *) override {
        return ++m_NarrowAsked;
    }
    TS_STATUS GetBooleanDecision(
        std::string *, std::string *, std::string *, bool *, unsigned long, CMXGuiEvent *,
        WINDOW_ARGS *) override {
        return ++m_NarrowAsked;
    }

    TS_STATUS m_NarrowAsked = 0;
};

constexpr bool decimal = false;
constexpr bool hexadecimal = true;

class CMXUserInputDebugTest : public testing::Test {
protected:
    CMXUserInputDebugTest() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        m_Input.emplace();
    }
    ~CMXUserInputDebugTest() override {
        m_Input.reset();
        CAppState::CleanupAppState();
    }

    static void StartDebugRun() { CAppState::SetRunType(RunTypeDebug); }

    // Asks each question once, in its wide and in its narrow form.
    std::vector<TS_STATUS> AskWide() {
        return {
            m_Input->DebugGetSelectionFromList(
                &m_Wide, &m_WideList, &m_Number, 1, nullptr, nullptr),
            m_Input->DebugGetMultipleSelectionsFromList(
                &m_Wide, &m_WideList, &m_Selections, 2, nullptr, nullptr),
            m_Input->DebugDisplayInfoToUser(&m_Wide, 3, true, nullptr, &m_Wide, nullptr),
            m_Input->DebugGetBooleanDecision(
                &m_Wide, &m_Wide, &m_Wide, &m_Flag, 4, nullptr, nullptr)};
    }
    std::vector<TS_STATUS> AskNarrow() {
        return {
            m_Input->DebugGetSelectionFromList(
                &m_Narrow, &m_NarrowList, &m_Number, 1, nullptr, nullptr),
            m_Input->DebugGetMultipleSelectionsFromList(
                &m_Narrow, &m_NarrowList, &m_Selections, 2, nullptr, nullptr),
            m_Input->DebugDisplayInfoToUser(&m_Narrow, 3, true, nullptr, &m_Narrow, nullptr),
            m_Input->DebugGetBooleanDecision(
                &m_Narrow, &m_Narrow, &m_Narrow, &m_Flag, 4, nullptr, nullptr)};
    }

    // The three that must not be asked in a debug run.
    TS_STATUS WideAbortable() {
        return m_Input->DebugGetSelectionFromListAllowAbort(
            &m_Wide, &m_Wide, &m_Wide, &m_WideList, &m_Number, &m_Flag, 1, nullptr, nullptr);
    }
    TS_STATUS NarrowAbortable() {
        return m_Input->DebugGetSelectionFromListAllowAbort(
            &m_Narrow, &m_Narrow, &m_Narrow, &m_NarrowList, &m_Number, &m_Flag, 1, nullptr,
            nullptr);
    }
    TS_STATUS String() {
        return m_Input->DebugGetString(&m_Wide, &m_Wide, &m_Wide, 1, nullptr, nullptr);
    }

    TS_STATUS Integer(bool hex, unsigned long lower, unsigned long upper) {
        return m_Input->DebugGetInteger(
            &m_Wide, &m_Wide, &m_Number, hex, 5, nullptr, upper, lower, nullptr);
    }

    // The text of the exception that a preset outside its bounds raises.
    std::string IntegerError(bool hex, unsigned long lower, unsigned long upper) {
        try {
            Integer(hex, lower, upper);
        } catch (CQNRunTimeException const & error) {
            return error.what();
        }
        return "no exception";
    }

    // Whether the question sleeps on and on: after 1000 sleeps the test breaks it off.
    static bool StaysAsleep(std::function<void()> const & ask) {
        struct Woken {};
        int sleeps = 0;
        Diversion const diversion(wrapped_Sleep, [&](DWORD milliseconds) {
            if (milliseconds != 0 && ++sleeps == 1000) throw Woken{};
        });
        try {
            ask();
        } catch (Woken const &) {
            return true;
        }
        return false;
    }

    std::optional<NarrowInput> m_Input;
    std::wstring m_Wide = L"wide";
    std::string m_Narrow = "narrow";
    std::vector<std::wstring> m_WideList = {L"a"};
    std::vector<std::string> m_NarrowList = {"a"};
    unsigned long m_Number = 50;
    bool m_Flag = true;
    std::vector<unsigned long> * m_Selections = nullptr;
};

TEST_F(CMXUserInputDebugTest, ADebugRunAsksTheSameForm) {
    StartDebugRun();
    auto const answer = RecordingInput::Answer;
    EXPECT_EQ(AskWide(), (std::vector<TS_STATUS>{answer, answer, answer, answer}));
    auto const none = std::nullopt;
    void const * const null = nullptr;
    EXPECT_EQ(
        m_Input->m_Asked,
        (std::vector<Question>{
            {"GetSelectionFromList", {m_Wide}, m_WideList, {&m_Number, null, null}, {1}, none},
            {"GetMultipleSelectionsFromList",
             {m_Wide},
             m_WideList,
             {&m_Selections, null, null},
             {2},
             none},
            {"DisplayInfoToUser", {m_Wide, m_Wide}, none, {null, null}, {3}, true},
            {"GetBooleanDecision",
             {m_Wide, m_Wide, m_Wide},
             none,
             {&m_Flag, null, null},
             {4},
             none}}));
    EXPECT_EQ(AskNarrow(), (std::vector<TS_STATUS>{1, 2, 3, 4}));
    EXPECT_EQ(m_Input->m_Asked.size(), 4u);
}

TEST_F(CMXUserInputDebugTest, EveryOtherRunAsksNothingAndLeavesThePresets) {
    std::vector<TS_STATUS> const successes(4, TS_SUCCESS);
    for (auto const type : {ERunType{0}, ERunType{2}, ERunType{0xFFFFFFFF}}) {
        SCOPED_TRACE(type);
        CAppState::SetRunType(type);
        CAppState::SetDevelopmentMode(true);
        EXPECT_EQ(AskWide(), successes);
        EXPECT_EQ(AskNarrow(), successes);
        EXPECT_EQ(WideAbortable(), TS_SUCCESS);
        EXPECT_EQ(NarrowAbortable(), TS_SUCCESS);
        EXPECT_EQ(String(), TS_SUCCESS);
    }
    EXPECT_EQ(m_Input->m_Asked, std::vector<Question>{});
    EXPECT_EQ(m_Input->m_NarrowAsked, 0u);
    EXPECT_EQ(m_Number, 50u);
    EXPECT_TRUE(m_Flag);
    EXPECT_EQ(m_Selections, nullptr);
    EXPECT_EQ(m_Wide, L"wide");
}

TEST_F(CMXUserInputDebugTest, TheIntegerOfADebugRunIsTheDialogs) {
    StartDebugRun();
    EXPECT_EQ(Integer(hexadecimal, 60, 90), RecordingInput::Answer);
    EXPECT_EQ(
        m_Input->DebugGetInteger(&m_Narrow, nullptr, nullptr, decimal, 6, nullptr, 1, 2, nullptr),
        RecordingInput::Answer);
    auto const none = std::nullopt;
    void const * const null = nullptr;
    EXPECT_EQ(
        m_Input->m_Asked,
        (std::vector<Question>{
            {"GetInteger", {m_Wide, m_Wide}, none, {&m_Number, null, null}, {5, 90, 60}, true},
            {"GetInteger", {L"narrow", none}, none, {null, null, null}, {6, 1, 2}, false}}));
    EXPECT_EQ(m_Number, 50u);
}

TEST_F(CMXUserInputDebugTest, APresetWithinItsBoundsIsTheAnswer) {
    EXPECT_EQ(Integer(decimal, 10, 90), TS_SUCCESS);
    EXPECT_EQ(Integer(decimal, 50, 90), TS_SUCCESS);
    EXPECT_EQ(Integer(decimal, 10, 50), TS_SUCCESS);
    EXPECT_EQ(Integer(decimal, 50, 50), TS_SUCCESS);
    EXPECT_EQ(m_Number, 50u);
    EXPECT_EQ(m_Input->m_Asked, std::vector<Question>{});
}

TEST_F(CMXUserInputDebugTest, AMissingPresetHasNoResult) {
    EXPECT_EQ(
        m_Input->DebugGetInteger(&m_Wide, &m_Wide, nullptr, decimal, 5, nullptr, 90, 10, nullptr),
        TS_NULL_RESULT);
    EXPECT_EQ(
        m_Input->DebugGetInteger(
            &m_Narrow, &m_Narrow, nullptr, decimal, 5, nullptr, 90, 10, nullptr),
        TS_NULL_RESULT);
}

constexpr char advice[] = "\n\nThis is almost certainly an error in the test.  "
                          "Contact the test developer for more information.";

TEST_F(CMXUserInputDebugTest, APresetAboveItsBoundsIsSetToTheUpperAndThrows) {
    EXPECT_EQ(
        IntegerError(decimal, 10, 49),
        std::string(
            "The input value for a debug-mode only dialog is greater than the maximum allowed "
            "value.  The input value is set to the max value:\n"
            "    MIN: 10, MAX: 49, input value: 50.")
            + advice);
    EXPECT_EQ(m_Number, 49u);
}

TEST_F(CMXUserInputDebugTest, APresetBelowItsBoundsIsSetToTheLowerAndThrows) {
    EXPECT_EQ(
        IntegerError(decimal, 51, 4294967295),
        std::string(
            "The input value for a debug-mode only dialog is smaller than the minimum allowed "
            "value.  The input value is set to the min value:\n"
            "    MIN: 51, MAX: 4294967295, input value: 50.")
            + advice);
    EXPECT_EQ(m_Number, 51u);
}

TEST_F(CMXUserInputDebugTest, AHexadecimalPresetIsDescribedInHexadecimal) {
    m_Number = 0xFFFFFFFF;
    EXPECT_EQ(
        IntegerError(hexadecimal, 0, 0xABCDEF),
        std::string(
            "The input value for a debug-mode only dialog is greater than the maximum allowed "
            "value.  The input value is set to the max value:\n"
            "    MIN: 0x0, MAX: 0xABCDEF, input value: 0xFFFFFFFF.")
            + advice);
    EXPECT_EQ(m_Number, 0xABCDEFu);
}

TEST_F(CMXUserInputDebugTest, TheNarrowIntegerChecksItsPresetToo) {
    EXPECT_THROW(
        m_Input->DebugGetInteger(
            &m_Narrow, &m_Narrow, &m_Number, decimal, 5, nullptr, 40, 10, nullptr),
        CQNRunTimeException);
    EXPECT_EQ(m_Number, 40u);
}

TEST_F(CMXUserInputDebugTest, WideChoiceNeverReturns) {
    StartDebugRun();
    EXPECT_TRUE(StaysAsleep([this] { WideAbortable(); }));
}

TEST_F(CMXUserInputDebugTest, NarrowChoiceNeverReturns) {
    StartDebugRun();
    EXPECT_TRUE(StaysAsleep([this] { NarrowAbortable(); }));
}

TEST_F(CMXUserInputDebugTest, StringNeverReturns) {
    StartDebugRun();
    EXPECT_TRUE(StaysAsleep([this] { String(); }));
}

} // namespace
