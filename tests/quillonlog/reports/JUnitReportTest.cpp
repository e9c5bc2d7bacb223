// The JUnit file against the rules of the strictest reader, at the end of a run and at every moment
// before.
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quillonlog/reports/ReportRun.h"
#include "quillonlog/reports/StrictXml.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Names = std::set<std::string>;

struct Rule {
    Names required;
    Names allowed;
    Names children;
};

std::map<std::string, Rule> const & Rules() {
    static std::map<std::string, Rule> const rules = {
        {"testsuites",
         {{"name", "time", "tests", "failures", "errors"},
          {"name", "time", "tests", "failures", "errors"},
          {"testsuite"}}},
        {"testsuite",
         {{"name", "tests", "failures", "errors"},
          {"name", "tests", "failures", "errors", "time", "skipped", "timestamp", "hostname", "id",
           "package", "file"},
          {"properties", "testcase"}}},
        {"properties", {{}, {}, {"property"}}},
        {"property", {{"name", "value"}, {"name", "value"}, {}}},
        {"testcase",
         {{"name", "time", "classname"},
          {"name", "time", "classname", "group"},
          {"failure", "error"}}},
        {"failure", {{"message"}, {"message", "type"}, {}}},
        {"error", {{"message"}, {"message", "type"}, {}}},
    };
    return rules;
}

bool HasTextOfItsOwn(std::string const & name) { return name == "failure" || name == "error"; }

void CheckValue(std::string const & name, std::string const & value) {
    static std::map<std::string, std::regex> const forms = {
        {"time", std::regex("\\d+\\.\\d{3}")},
        {"tests", std::regex("\\d+")},
        {"failures", std::regex("\\d+")},
        {"errors", std::regex("\\d+")},
        {"timestamp", std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d")},
    };
    auto const form = forms.find(name);
    if (form == forms.end()) return;
    EXPECT_TRUE(std::regex_match(value, form->second)) << name << "=" << value;
}

void CheckElement(XmlElement const & element) {
    SCOPED_TRACE(element.name);
    ASSERT_TRUE(Rules().contains(element.name));
    Rule const & rule = Rules().at(element.name);
    for (auto const & name : rule.required)
        EXPECT_TRUE(element.attributes.contains(name)) << name;
    for (auto const & [name, value] : element.attributes) {
        EXPECT_TRUE(rule.allowed.contains(name)) << name;
        CheckValue(name, value);
    }
    if (!HasTextOfItsOwn(element.name)) {
        EXPECT_EQ(element.text.find_first_not_of(" \n"), element.text.npos) << element.text;
    }
    for (auto const & child : element.children) {
        EXPECT_TRUE(rule.children.contains(child.name)) << child.name;
        CheckElement(child);
    }
}

std::vector<XmlElement> CasesOf(XmlElement const & root) {
    std::vector<XmlElement> cases;
    for (auto const & child : root.children.at(0).children)
        if (child.name == "testcase") cases.push_back(child);
    return cases;
}

std::string ResultOf(XmlElement const & testcase) {
    return testcase.children.empty() ? "passed" : testcase.children[0].name;
}

void CheckCounts(XmlElement const & root) {
    std::map<std::string, int> counts;
    Names names;
    for (auto const & testcase : CasesOf(root)) {
        EXPECT_LE(testcase.children.size(), 1u);
        ++counts[ResultOf(testcase)];
        EXPECT_TRUE(names.insert(testcase.attributes.at("name")).second)
            << testcase.attributes.at("name");
    }
    for (XmlElement const * const element : {&root, &root.children.at(0)}) {
        EXPECT_EQ(element->attributes.at("tests"), std::to_string(names.size()));
        EXPECT_EQ(element->attributes.at("failures"), std::to_string(counts["failure"]));
        EXPECT_EQ(element->attributes.at("errors"), std::to_string(counts["error"]));
    }
}

class JUnitReportTest : public ReportRun {
protected:
    JUnitReportTest() { Begin("junit:@/run.xml"); }

    // The file as it is now, after a look at all rules.
    XmlElement Read() {
        XmlElement const root = ReadStrictXml(Contents("run.xml"));
        EXPECT_EQ(root.name, "testsuites");
        EXPECT_EQ(root.children.size(), 1u);
        CheckElement(root);
        CheckCounts(root);
        return root;
    }

    // "name: result" of each case.
    std::vector<std::string> Results() {
        std::vector<std::string> results;
        for (auto const & testcase : CasesOf(Read()))
            results.push_back(testcase.attributes.at("name") + ": " + ResultOf(testcase));
        return results;
    }

    std::string MessageOf(std::size_t at) {
        return CasesOf(Read()).at(at).children.at(0).attributes.at("message");
    }
    std::string TextOf(std::size_t at) { return CasesOf(Read()).at(at).children.at(0).text; }
};

TEST_F(JUnitReportTest, RunThatIsNotOverIsAnErrorWhileNoTestIsOpen) {
    EXPECT_THAT(Results(), ElementsAre("The run: error"));
    EXPECT_EQ(MessageOf(0), "The run was not finished.");
    Pass("T1");
    EXPECT_THAT(Results(), ElementsAre("T1: passed", "The run: error"));
    Open("power off", false);
    EXPECT_THAT(Results(), ElementsAre("T1: passed", "The run: error"));
    Close(TEST_STATUS_SUCCESS);
    End();
    EXPECT_THAT(Results(), ElementsAre("T1: passed"));
}

TEST_F(JUnitReportTest, TestThatIsNamedLikeTheRunKeepsItsName) {
    Pass("The run");
    EXPECT_THAT(Results(), ElementsAre("The run: passed", "The run (run 2): error"));
    Pass("The run");
    EXPECT_THAT(
        Results(),
        ElementsAre("The run: passed", "The run (run 2): passed", "The run (run 3): error"));
}

TEST_F(JUnitReportTest, RunWithoutTestsHasNoCase) {
    End();
    EXPECT_THAT(Results(), ElementsAre());
}

TEST_F(JUnitReportTest, EachResultHasItsElement) {
    Pass("T1");
    Fail("T2", "no answer");
    Open("T3");
    Write(TEST_STATUS_ABORT, "no device");
    Close(TEST_STATUS_ABORT | TEST_STATUS_FAIL);
    End(ERunVerdict::Failed);
    EXPECT_THAT(Results(), ElementsAre("T1: passed", "T2: failure", "T3: error"));
    EXPECT_EQ(MessageOf(1), "no answer");
    EXPECT_EQ(TextOf(1), "no answer\n");
    EXPECT_EQ(MessageOf(2), "no device");
}

TEST_F(JUnitReportTest, OpenTestIsAnErrorUntilItEnds) {
    Pass("T1");
    Open("T2");
    EXPECT_THAT(Results(), ElementsAre("T1: passed", "T2: error"));
    EXPECT_EQ(MessageOf(1), "The test was not finished.");
    Close(TEST_STATUS_SUCCESS);
    EXPECT_THAT(Results(), ElementsAre("T1: passed", "T2: passed", "The run: error"));
    End();
    EXPECT_THAT(Results(), ElementsAre("T1: passed", "T2: passed"));
}

TEST_F(JUnitReportTest, TestThatWasNeverClosedIsAnError) {
    Open("T1");
    Pass("T2");
    Open("T3");
    End(ERunVerdict::Failed);
    EXPECT_THAT(Results(), ElementsAre("T1: error", "T2: passed", "T3: error"));
}

TEST_F(JUnitReportTest, TestClosedWithoutAResultIsAnError) {
    Open("T1");
    m_Suite.CloseTest();
    End();
    EXPECT_THAT(Results(), ElementsAre("T1: error"));
}

TEST_F(JUnitReportTest, WhatIsNoTestIsACaseWhenItFails) {
    Open("power on", false);
    Close(TEST_STATUS_SUCCESS);
    Open("power off", false);
    Write(TEST_STATUS_FAIL, "no power");
    Close(TEST_STATUS_FAIL);
    EXPECT_THAT(Results(), ElementsAre("power off: failure", "The run: error"));
    EXPECT_EQ(TextOf(0), "no power\n");
    EXPECT_EQ(TextOf(1), "");
    End(ERunVerdict::Failed);
    EXPECT_THAT(Results(), ElementsAre("power off: failure"));
}

TEST_F(JUnitReportTest, FailureOutsideOfTestsCountsUnlessItTellsOfOthers) {
    Pass("T1");
    Write(TEST_STATUS_FAIL, "the suite failed");
    End(ERunVerdict::Failed);
    EXPECT_THAT(Results(), ElementsAre("T1: passed", "After T1: failure"));
}

TEST_F(JUnitReportTest, SummaryOfFailuresIsNotCountedAgain) {
    Fail("T1", "no answer");
    Write(TEST_STATUS_FAIL, "the suite failed");
    End(ERunVerdict::Failed);
    EXPECT_THAT(Results(), ElementsAre("T1: failure"));
}

TEST_F(JUnitReportTest, RunThatDidNotPassIsNeverGreen) {
    Pass("T1");
    End(ERunVerdict::AbortedByOperator, "stopped");
    EXPECT_THAT(Results(), ElementsAre("T1: passed", "The run: error"));
    EXPECT_EQ(MessageOf(1), "stopped");
}

TEST_F(JUnitReportTest, SecondRunOfATestHasANameOfItsOwn) {
    for (char const * const name : {"T", "T (run 2)", "T", "T", ""})
        Pass(name);
    Pass("");
    End();
    EXPECT_THAT(
        Results(), ElementsAre(
                       "T: passed", "T (run 2): passed", "T (run 3): passed", "T (run 4): passed",
                       "(no name): passed", "(no name) (run 2): passed"));
}

TEST_F(JUnitReportTest, AnyBytesMakeAValidFile) {
    std::string every;
    for (int byte = 1; byte < 256; ++byte)
        every += static_cast<char>(byte);
    std::string const evil = "]]><error/>&\"' \xF0\x9F\x98\x80 \xEF\xBF\xBE " + every;
    Fail(evil, evil);
    EXPECT_THAT(MessageOf(0), HasSubstr("]]><error/>&\"' \xF0\x9F\x98\x80 \\u{FFFE} \\x01\\x02"));
    EXPECT_THAT(TextOf(0), HasSubstr("]]><error/>&\"'"));
    End(ERunVerdict::Failed, evil);
    EXPECT_THAT(CasesOf(Read())[0].attributes.at("name"), HasSubstr("]]><error/>"));
}

TEST_F(JUnitReportTest, FileIsValidAfterEveryStepOfALongRun) {
    for (int test = 0; test < 150; ++test) {
        Open("test number " + std::to_string(test));
        Read();
        bool const fails = test % 7 == 0;
        for (int i = 0; fails && i < test; ++i)
            Write(TEST_STATUS_FAIL, "a failure that takes some room: " + std::to_string(i));
        Close(fails ? TEST_STATUS_FAIL : TEST_STATUS_SUCCESS);
        Read();
        if (HasFailure()) return;
    }
    EXPECT_EQ(Read().attributes.at("failures"), "22");
    End(ERunVerdict::Failed);
    EXPECT_EQ(Results().size(), 150u);
}

TEST_F(JUnitReportTest, TextsBeyondTheirRoomAreCounted) {
    Open("T1");
    for (int i = 0; i < 100; ++i)
        Write(TEST_STATUS_FAIL, std::string(1000, 'x'));
    Close(TEST_STATUS_FAIL);
    EXPECT_THAT(TextOf(0), HasSubstr("\n84 more; the journal and the page have them all.\n"));
}

class JUnitHeadTest : public ReportRun {};

TEST_F(JUnitHeadTest, FactsAreProperties) {
    Begin("junit:@/run.xml", {"a \"suite\"", {{"Versions", {{"QNExe", "1 & 2"}}}}});
    End();
    std::string const file = Contents("run.xml");
    EXPECT_THAT(file, HasSubstr("<testsuites name=\"a &quot;suite&quot;\" tests=\"0\""));
    EXPECT_THAT(
        file, HasSubstr("<properties>\n<property name=\"Versions: QNExe\" value=\"1 &amp; 2\"/>"));
    CheckElement(ReadStrictXml(file));
}

TEST_F(JUnitHeadTest, LongestNameHasRoom) {
    Begin("junit:@/run.xml", {std::string(5000, '"'), {}});
    Pass(std::string(5000, '"'));
    CheckElement(ReadStrictXml(Contents("run.xml")));
    End();
    CheckElement(ReadStrictXml(Contents("run.xml")));
}

} // namespace
