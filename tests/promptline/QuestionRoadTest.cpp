// A question's whole way: from test code through the library and the dialog library to the file of
// answers, and back.
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "log/LogBench.h"
#include "platform/Environment.h"
#include "promptline/ServiceThread.h"
#include "prompts/CMFCDialogMXUserInput.h"

namespace {

constexpr unsigned long WithoutEnd = 0xFFFFFFFF;

class QuestionRoadTest : public testing::Test {
protected:
    ~QuestionRoadTest() override {
        m_Input.reset();
        m_Service.reset();
        ClearEnvironment("QN_PROMPTS");
        std::error_code ignored;
        std::filesystem::remove(m_Path, ignored);
    }

    void Serve(std::string const & entries) {
        std::ofstream(m_Path, std::ios::binary) << "{\"answers\": [" << entries << "]}";
        SetEnvironment("QN_PROMPTS", m_Path.string().c_str());
        m_Service = std::make_unique<ServiceThread>();
        m_Input = std::make_unique<CMFCDialogMXUserInput>(nullptr, std::wstring(L"Header"));
    }

    TS_STATUS AskText(unsigned long timeout = WithoutEnd) {
        return m_Input->GetString(nullptr, &m_Question, &m_Text, timeout, nullptr, nullptr);
    }

    // A name of this process and of no other: tests run beside each other.
    std::filesystem::path m_Path =
        std::filesystem::temp_directory_path()
        / ("road-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name())
           + ".json");
    LogBench m_Bench;
    std::unique_ptr<ServiceThread> m_Service;
    std::unique_ptr<CMFCDialogMXUserInput> m_Input;
    std::wstring m_Question = L"Q";
    std::wstring m_Text = L"preset";
};

TEST_F(QuestionRoadTest, EachKindIsAnsweredFromTheFile) {
    Serve(R"({"answer": "ok"}, {"answer": "no"}, {"answer": 12}, {"answer": "t"}, {"answer": 2},
             {"answer": false}, {"answer": ["b"]}, {"answer": "a/file"})");
    std::string text = "text";
    std::vector<std::string> list = {"a", "b"};
    bool flag = true;
    unsigned long number = 0;
    EXPECT_EQ(
        m_Input->DisplayInfoToUser(&text, WithoutEnd, true, nullptr, nullptr, nullptr), TS_SUCCESS);
    EXPECT_EQ(
        m_Input->GetBooleanDecision(&text, nullptr, nullptr, &flag, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    EXPECT_FALSE(flag);
    EXPECT_EQ(
        m_Input->GetInteger(&text, nullptr, &number, false, WithoutEnd, nullptr, 20, 10, nullptr),
        TS_SUCCESS);
    EXPECT_EQ(number, 12u);
    EXPECT_EQ(AskText(), TS_SUCCESS);
    EXPECT_EQ(m_Text, L"t");
    EXPECT_EQ(
        m_Input->GetSelectionFromList(&text, &list, &number, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    EXPECT_EQ(number, 1u);
    EXPECT_EQ(
        m_Input->GetSelectionFromListAllowAbort(
            &text, &text, &text, &list, &number, &flag, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    EXPECT_TRUE(flag);
    std::vector<unsigned long> * selections = nullptr;
    EXPECT_EQ(
        m_Input->GetMultipleSelectionsFromList(
            &text, &list, &selections, WithoutEnd, nullptr, nullptr),
        TS_SUCCESS);
    std::unique_ptr<std::vector<unsigned long>> const owned(selections);
    ASSERT_NE(owned, nullptr);
    EXPECT_EQ(*owned, std::vector<unsigned long>{1});
    CSafeString file("");
    EXPECT_TRUE(m_Input->SelectSingleFile(file, nullptr, nullptr, false));
    EXPECT_STREQ(file.get(), "a/file");
    auto const records = m_Service->Records();
    ASSERT_EQ(records.size(), 8u);
    EXPECT_EQ(records[1].answer, "No");
    EXPECT_EQ(records[1].source, "file");
    EXPECT_EQ(records[7].answer, "a/file");
}

TEST_F(QuestionRoadTest, AQuestionWithoutAnAnswerTimesOutOrWantsAnAbort) {
    Serve("");
    EXPECT_EQ(AskText(60'000), TS_DIALOG_TIMED_OUT);
    EXPECT_EQ(AskText(), TS_DIALOG_TIMED_OUT);
    EXPECT_EQ(m_Text, L"preset");
    auto const records = m_Service->Records();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_FALSE(records[0].wantsAbort);
    EXPECT_TRUE(records[1].wantsAbort);
    EXPECT_EQ(records[1].source, "none");
    EXPECT_EQ(records[1].question, "Q");
    EXPECT_NE(records[1].reason.find("has no answer left for it"), std::string::npos);
}

TEST_F(QuestionRoadTest, ANumberThatStaysOutOfRangeEndsWithItsAnswers) {
    Serve(R"({"answer": 1, "times": 3})");
    unsigned long number = 0;
    EXPECT_EQ(
        m_Input->GetInteger(
            &m_Question, nullptr, &number, false, WithoutEnd, nullptr, 20, 10, nullptr),
        TS_DIALOG_TIMED_OUT);
    EXPECT_EQ(m_Service->Records().size(), 4u);
}

TEST_F(QuestionRoadTest, DisabledInputIsNoAnswer) {
    Serve(R"({"answer": "t"})");
    m_Input->DisableInput();
    EXPECT_EQ(AskText(5), TS_DIALOG_TIMED_OUT);
    m_Input->EnableInput();
    EXPECT_EQ(AskText(5), TS_SUCCESS);
}

TEST_F(QuestionRoadTest, AnEventIsSignalledByTheAnswer) {
    Serve(R"({"answer": "t"})");
    CMXGuiEvent event(0);
    EXPECT_EQ(m_Input->GetString(nullptr, &m_Question, &m_Text, 0, &event, nullptr), TS_SUCCESS);
    EXPECT_EQ(event.WaitOnEvent(20'000), TS_SUCCESS);
    EXPECT_TRUE(m_Input->IsDialogActive());
    EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
    EXPECT_EQ(m_Text, L"t");
    EXPECT_FALSE(m_Input->IsDialogActive());
}

TEST_F(QuestionRoadTest, AFileThatCannotBeUsedIsRefusedFromTheStart) {
    SetEnvironment("QN_PROMPTS", "no/such/file.json");
    EXPECT_THROW(ServiceThread(), std::runtime_error);
}

// A long run says how many rounds in MORVEX_DIALOG_ROUNDS.
TEST_F(QuestionRoadTest, OneAsksAndOneTerminatesRoundByRound) {
    char const * const given = std::getenv("MORVEX_DIALOG_ROUNDS");
    int const rounds = given != nullptr ? std::atoi(given) : 300;
    Serve(R"({"answer": "t", "times": 1000000})");
    std::atomic<int> round = 0;
    std::thread terminator([&] {
        for (int done = 0; done < rounds; ++done) {
            while (round <= done)
                std::this_thread::yield();
            EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
        }
    });
    int answered = 0;
    int ended = 0;
    for (int i = 0; i < rounds; ++i) {
        round = i + 1;
        TS_STATUS const result = AskText();
        answered += result == TS_SUCCESS;
        ended += result == TS_DIALOG_BUSY;
    }
    terminator.join();
    EXPECT_EQ(answered + ended, rounds);
    EXPECT_FALSE(m_Input->IsDialogActive());
    m_Text.clear();
    EXPECT_EQ(AskText(), TS_SUCCESS);
    EXPECT_EQ(m_Text, L"t");
}

} // namespace
