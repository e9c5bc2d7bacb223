// Questions to the operator in a run without one: the file of answers, and none.
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "platform/Environment.h"
#include "platform/Host.h"
#include "qnexe/ChildHost.h"

namespace {

class OperatorTest : public ChildHost {
protected:
    ~OperatorTest() override { ClearEnvironment("QN_PROMPTS"); }

    // What the child reads.
    void Answers(std::string const & entries) {
        std::string const file = File("answers.json");
        std::ofstream(file, std::ios::binary) << "{\"answers\": [" << entries << "]}";
        SetEnvironment("QN_PROMPTS", file.c_str());
    }

    static bool Has(std::string const & text, std::string const & part) {
        return text.find(part) != text.npos;
    }
};

TEST_F(OperatorTest, AFileAnswersARun) {
    Answers(R"({"question": "Which name?", "answer": "N"}, {"answer": true})");
    Result const result = RunSuite("asking");
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(Has(result.error, "status 0x0, answer 1"));
    EXPECT_TRUE(Has(result.error, "the name is \"N\""));
}

TEST_F(OperatorTest, TheFileOfTheGuideAnswersTheSampleSuite) {
    SetEnvironment("QN_PROMPTS", RECORDINGS "/../../questions/answers.json");
    auto const suite = ProgramFolder() / ("usb_descriptors" SUITE_SUFFIX);
    Result const result =
        Run({"--suite", suite.string(), "--recordings", RECORDINGS "/good", "--interactive"});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_TRUE(Has(result.error, "The label says \"SN-0042\""));
    EXPECT_TRUE(Has(result.error, "Passed (38); Failed (0)"));
}

TEST_F(OperatorTest, AQuestionWithoutAnAnswerAbortsTheRunAndIsNamed) {
    Answers(R"({"question": "Which name?", "answer": "N"})");
    Result const result = RunSuite("asking");
    EXPECT_EQ(result.code, 3);
    EXPECT_TRUE(Has(result.error, "ABORT   The question \"Is the light on?\" was not answered: "));
    EXPECT_TRUE(Has(result.error, "has no answer left for it."));
    EXPECT_TRUE(Has(result.error, "*** TEST SUITE WAS ABORTED BY USER ***"));
    EXPECT_FALSE(Has(result.error, "status 0x"));
}

TEST_F(OperatorTest, AFileThatCannotBeUsedKeepsTheRunFromStarting) {
    Answers("nonsense");
    Result const result = RunSuite("asking");
    EXPECT_EQ(result.code, 4);
    EXPECT_TRUE(Has(result.error, "QNExe: the file of answers \""));
}

TEST_F(OperatorTest, WithoutATerminalAndAFileARunIsAborted) {
    if (ON_WINDOWS) GTEST_SKIP() << "the system's dialogs need no terminal";
    Result const result = RunSuite("asking");
    EXPECT_EQ(result.code, 3);
    EXPECT_TRUE(
        Has(result.error,
            "The question \"Is the light on?\" was not answered: there is no terminal and "
            "no file of answers (QN_PROMPTS)."));
}

} // namespace
