// The file of answers: what fits which question, in which order, and what is refused.
#include "siblings/promptline/AnswerFile.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "siblings/promptline/Reply.h"

namespace {

class AnswerFileTest : public testing::Test {
protected:
    AnswerFileTest() {
        auto const * const test = testing::UnitTest::GetInstance()->current_test_info();
        m_Path = (std::filesystem::temp_directory_path()
                  / ("answers-" + std::string(test->name()) + ".json"))
                     .string();
    }
    ~AnswerFileTest() override {
        std::error_code ignored;
        std::filesystem::remove(m_Path, ignored);
    }

    void Write(std::string const & text) { std::ofstream(m_Path, std::ios::binary) << text; }

    void Load(std::string const & entries) {
        Write("{\"answers\": [" + entries + "]}");
        m_Answers.emplace(m_Path);
    }

    // What is wrong with the file, without its name.
    std::string Problem(std::string const & text) {
        Write(text);
        try {
            AnswerFile const answers(m_Path);
        } catch (std::runtime_error const & error) {
            std::string const start =
                "the file of answers \"" + m_Path + "\" (QN_PROMPTS) cannot " + "be used: ";
            std::string const what = error.what();
            return what.starts_with(start) ? what.substr(start.size()) : what;
        }
        return "nothing";
    }

    static Question Asking(QuestionKind kind, std::wstring const & text = L"Q") {
        Question question;
        question.kind = kind;
        question.text = text;
        question.first = L"Yes";
        question.second = L"No";
        question.list = {L"a", L"b", L"3"};
        return question;
    }

    // The answer as text, or the problem behind a mark, the file's name out of it.
    std::string Take(Question const & question) {
        std::string problem;
        auto const reply = m_Answers->Take(question, problem);
        if (reply) return reply->affirmed ? TextOf(question, *reply) : "(no)";
        std::string const name = "\"" + m_Path + "\"";
        if (auto const at = problem.find(name); at != problem.npos)
            problem.replace(at, name.size(), "<file>");
        return "? " + problem;
    }

    // One answer for one question.
    std::string Answer(QuestionKind kind, std::string const & json) {
        Load("{\"answer\": " + json + "}");
        return Take(Asking(kind));
    }

    static std::string Misfit(std::string const & json) {
        return "? the answer " + json + " in <file> does not fit it";
    }

    std::string m_Path;
    std::optional<AnswerFile> m_Answers;
};

TEST_F(AnswerFileTest, InformationIsConfirmed) {
    for (char const * json : {"true", "\"ok\"", "\"OK\"", "\"yes\""})
        EXPECT_EQ(Answer(QuestionKind::Information, json), "Yes");
    EXPECT_EQ(Answer(QuestionKind::Information, "false"), Misfit("false"));
    EXPECT_EQ(Answer(QuestionKind::Information, "1"), Misfit("1"));
}

TEST_F(AnswerFileTest, AChoiceIsAWordOfJsonOrALabel) {
    EXPECT_EQ(Answer(QuestionKind::Choice, "true"), "Yes");
    EXPECT_EQ(Answer(QuestionKind::Choice, "\"YES\""), "Yes");
    EXPECT_EQ(Answer(QuestionKind::Choice, "false"), "(no)");
    EXPECT_EQ(Answer(QuestionKind::Choice, "\"no\""), "(no)");
    EXPECT_EQ(Answer(QuestionKind::Choice, "\"y\""), Misfit("\"y\""));
    EXPECT_EQ(Answer(QuestionKind::Choice, "1"), Misfit("1"));
}

TEST_F(AnswerFileTest, ANumberIsANumberOrItsText) {
    EXPECT_EQ(Answer(QuestionKind::Number, "4294967295"), "4294967295");
    EXPECT_EQ(Answer(QuestionKind::Number, "\"0x10\""), "16");
    for (char const * json : {"4294967296", "-1", "\"x\"", "true"})
        EXPECT_EQ(Answer(QuestionKind::Number, json), Misfit(json));
}

TEST_F(AnswerFileTest, ATextIsATextAlone) {
    EXPECT_EQ(Answer(QuestionKind::Text, "\"\u00b5\""), "\xC2\xB5");
    EXPECT_EQ(Answer(QuestionKind::Text, "\"\""), "");
    EXPECT_EQ(Answer(QuestionKind::Text, "5"), Misfit("5"));
}

TEST_F(AnswerFileTest, AnEntryIsItsTextOrItsNumberFrom1) {
    EXPECT_EQ(Answer(QuestionKind::OneOfList, "\"b\""), "b");
    EXPECT_EQ(Answer(QuestionKind::OneOfList, "1"), "a");
    EXPECT_EQ(Answer(QuestionKind::OneOfList, "\"3\""), "3");
    for (char const * json : {"0", "4", "\"B\"", "\"1\"", "false", "[1]"})
        EXPECT_EQ(Answer(QuestionKind::OneOfList, json), Misfit(json));
}

TEST_F(AnswerFileTest, TheWayOutIsFalseOrItsLabel) {
    EXPECT_EQ(Answer(QuestionKind::OneOfListOrOut, "2"), "b");
    EXPECT_EQ(Answer(QuestionKind::OneOfListOrOut, "false"), "(no)");
    EXPECT_EQ(Answer(QuestionKind::OneOfListOrOut, "\"no\""), "(no)");
    EXPECT_EQ(Answer(QuestionKind::OneOfListOrOut, "true"), Misfit("true"));
}

TEST_F(AnswerFileTest, SeveralEntriesAreAList) {
    EXPECT_EQ(Answer(QuestionKind::SeveralOfList, "[\"3\",1,\"a\"]"), "a; 3");
    EXPECT_EQ(Answer(QuestionKind::SeveralOfList, "[]"), "");
    EXPECT_EQ(Answer(QuestionKind::SeveralOfList, "\"a\""), Misfit("\"a\""));
    EXPECT_EQ(Answer(QuestionKind::SeveralOfList, "[1,9]"), Misfit("[1,9]"));
}

TEST_F(AnswerFileTest, FilesMayHaveToExist) {
    EXPECT_EQ(Answer(QuestionKind::OneFile, "\"x/y\""), "x/y");
    EXPECT_EQ(Answer(QuestionKind::OneFile, "false"), "(no)");
    EXPECT_EQ(Answer(QuestionKind::OneFile, "[\"x\",\"y\"]"), Misfit("[\"x\",\"y\"]"));
    EXPECT_EQ(Answer(QuestionKind::OneFile, "\"\""), Misfit("\"\""));
    EXPECT_EQ(Answer(QuestionKind::SeveralFiles, "[\"x\",\"y\"]"), "x; y");
    EXPECT_EQ(Answer(QuestionKind::SeveralFiles, "[]"), Misfit("[]"));
    Load(
        "{\"answer\": \"missing-file\"}, {\"answer\": \""
        + std::filesystem::path(m_Path).generic_string() + "\"}");
    Question question = Asking(QuestionKind::OneFile);
    question.mustExist = true;
    EXPECT_EQ(Take(question), Misfit("\"missing-file\""));
    EXPECT_EQ(Take(question), std::filesystem::path(m_Path).generic_string());
}

TEST_F(AnswerFileTest, NullLeavesAQuestionUnanswered) {
    EXPECT_EQ(Answer(QuestionKind::Text, "null"), "? <file> leaves it unanswered");
}

TEST_F(AnswerFileTest, ANamedQuestionHasItsOwnAnswersAndTheOthersComeInOrder) {
    Load(
        R"({"answer": "first"}, {"question": "A", "answer": "a1"}, {"answer": "second"},
           {"question": "A", "answer": "a2", "times": 2})");
    Question const named = Asking(QuestionKind::Text, L"A");
    Question const other = Asking(QuestionKind::Text, L"a");
    EXPECT_EQ(Take(other), "first");
    EXPECT_EQ(Take(named), "a1");
    EXPECT_EQ(Take(named), "a2");
    EXPECT_EQ(Take(named), "a2");
    // Its own are used up, and the answer of another is not taken instead.
    EXPECT_EQ(Take(named), "? <file> has no answer left for it");
    EXPECT_EQ(Take(other), "second");
    EXPECT_EQ(Take(other), "? <file> has no answer left for it");
}

TEST_F(AnswerFileTest, AQuestionWithoutATextIsKnownByItsTitle) {
    Load(R"({"question": "T", "answer": "x"})");
    Question question = Asking(QuestionKind::Text, L"");
    question.title = L"T";
    EXPECT_EQ(Take(question), "x");
}

TEST_F(AnswerFileTest, AnythingElseInTheFileIsRefused) {
    std::string const problem = Problem("{");
    EXPECT_TRUE(problem.starts_with("it is no JSON: parse error at line 1, column 2: ")) << problem;
    std::string const shape = "it must hold one object with the one member \"answers\", a list";
    EXPECT_EQ(Problem("[]"), shape);
    EXPECT_EQ(Problem("{}"), shape);
    EXPECT_EQ(Problem(R"({"answers": {}})"), shape);
    EXPECT_EQ(Problem(R"({"answers": [], "more": 1})"), shape);
    EXPECT_EQ(Problem(R"({"answers": [{"answer": 1}, 2]})"), "entry 2 is no object");
    EXPECT_EQ(
        Problem(R"({"answers": [{"answer": 1, "anwser": 2}]})"),
        "entry 1 has an unknown member \"anwser\"");
    EXPECT_EQ(
        Problem(R"({"answers": [{"answer": 1, "question": 2}]})"),
        "entry 1 has a question that is no text");
    std::string const answer = "entry 1 has no answer: give a text, a number from 0, true, false, "
                               "null, or a list of texts and numbers";
    EXPECT_EQ(Problem(R"({"answers": [{}]})"), answer);
    EXPECT_EQ(Problem(R"({"answers": [{"answer": 1.5}]})"), answer);
    EXPECT_EQ(Problem(R"({"answers": [{"answer": {}}]})"), answer);
    EXPECT_EQ(Problem(R"({"answers": [{"answer": [true]}]})"), answer);
    std::string const times = "entry 1 has \"times\" that is no number from 1 to 1000000";
    EXPECT_EQ(Problem(R"({"answers": [{"answer": 1, "times": 0}]})"), times);
    EXPECT_EQ(Problem(R"({"answers": [{"answer": 1, "times": 1000001}]})"), times);
    EXPECT_EQ(Problem(R"({"answers": [{"answer": 1, "times": "2"}]})"), times);
    EXPECT_EQ(Problem(R"({"answers": []})"), "nothing");
}

TEST_F(AnswerFileTest, AMissingFileIsRefused) {
    EXPECT_THROW(AnswerFile("no/such/file.json"), std::runtime_error);
}

TEST_F(AnswerFileTest, AFolderIsRefusedLikeAMissingFile) {
    std::string const folder = std::filesystem::temp_directory_path().string();
    try {
        AnswerFile const answers(folder);
        FAIL() << "it was accepted";
    } catch (std::runtime_error const & error) {
        EXPECT_EQ(
            std::string(error.what()), "the file of answers \"" + folder
                                           + "\" (QN_PROMPTS) cannot be used: it cannot be opened. "
                                             "Name a file that may be read.");
    }
}

} // namespace
