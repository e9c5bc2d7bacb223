// The journal, line by line.
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "quillonlog/reports/ReportRun.h"

namespace {

using Json = nlohmann::json;

class JournalTest : public ReportRun {
protected:
    JournalTest() { Begin("json:@/run.jsonl", {"my suite", {{"Versions", {{"QNExe", "1"}}}}}); }

    std::vector<Json> Lines() {
        std::vector<Json> lines;
        std::istringstream stream(Contents("run.jsonl"));
        for (std::string line; std::getline(stream, line);)
            lines.push_back(Json::parse(line));
        return lines;
    }

    // The last line without its times, of which it has to have both.
    Json Last() {
        Json line = Lines().back();
        std::string const utc = line.at("utc");
        EXPECT_TRUE(std::regex_match(
            utc, std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z")));
        EXPECT_GE(line.at("at").get<double>(), 0);
        for (char const * const time : {"utc", "at"})
            line.erase(time);
        if (line.contains("seconds")) line["seconds"] = "<seconds>";
        return line;
    }
};

TEST_F(JournalTest, RunBeginsWithWhatIsTested) {
    EXPECT_EQ(
        Last(), (Json{
                    {"event", "run-start"},
                    {"format", "morvex-journal-1"},
                    {"suite", "my suite"},
                    {"facts", Json::array({{"Versions", "QNExe", "1"}})}}));
}

TEST_F(JournalTest, EveryEventIsALineAtOnce) {
    Open("T1");
    EXPECT_EQ(
        Last(), (Json{{"event", "test-start"}, {"section", 1}, {"kind", "test"}, {"name", "T1"}}));
    Write(TEST_STATUS_WARNING, "slow\n<port> \x01", "font-weight: bold");
    EXPECT_EQ(
        Last(), (Json{
                    {"event", "entry"},
                    {"section", 1},
                    {"status", "warning"},
                    {"text", "slow\n<port> \x01"},
                    {"style", "font-weight: bold"}}));
    Write(TEST_STATUS_FAIL, "bad \xFF");
    EXPECT_EQ(
        Last(),
        (Json{
            {"event", "entry"}, {"section", 1}, {"status", "fail"}, {"text", "bad \xEF\xBF\xBD"}}));
    Close(TEST_STATUS_FAIL);
    EXPECT_EQ(
        Last(), (Json{
                    {"event", "test-stop"},
                    {"section", 1},
                    {"name", "T1"},
                    {"verdict", "failed"},
                    {"seconds", "<seconds>"},
                    {"fail", 1},
                    {"abort", 0},
                    {"error", 0},
                    {"warning", 1},
                    {"info", 0}}));
    End(ERunVerdict::Failed, "why");
    EXPECT_EQ(
        Last(), (Json{
                    {"event", "run-stop"},
                    {"verdict", "failed"},
                    {"reason", "why"},
                    {"tests", 1},
                    {"passed", 0},
                    {"failed", 1},
                    {"aborted", 0},
                    {"seconds", "<seconds>"}}));
}

TEST_F(JournalTest, QuestionIsOneLine) {
    Open("T1");
    m_Suite.AddPrompt({.question = "Plug?", .answer = "ok", .source = "file", .seconds = 1.5});
    EXPECT_EQ(
        Last(), (Json{
                    {"event", "prompt"},
                    {"section", 1},
                    {"question", "Plug?"},
                    {"answer", "ok"},
                    {"source", "file"},
                    {"seconds", "<seconds>"},
                    {"aborted", false}}));
    EXPECT_EQ(Lines().size(), 3u);
    EXPECT_EQ(Lines().back()["seconds"], 1.5);
}

TEST_F(JournalTest, QuestionThatEndsTheRunSaysSo) {
    m_Suite.AddPrompt(
        {.question = "Q", .source = "none", .reason = "the operator aborted", .hasAborted = true});
    EXPECT_EQ(Last()["aborted"], true);
    EXPECT_EQ(Last()["reason"], "the operator aborted");
}

TEST_F(JournalTest, DeviceEventIsOneLine) {
    m_Suite.AddDeviceEvent({"arrived", "USB#1"});
    EXPECT_EQ(
        Last(),
        (Json{{"event", "device"}, {"section", 1}, {"what", "arrived"}, {"device", "USB#1"}}));
    EXPECT_EQ(Lines()[1]["kind"], "outside");
}

TEST_F(JournalTest, MonotonicStampsNeverGoBack) {
    Write(TEST_STATUS_INFO, "outside");
    for (int i = 0; i < 100; ++i)
        Pass("T");
    Write(TEST_STATUS_INFO, "outside");
    double last = 0;
    for (Json const & line : Lines()) {
        EXPECT_GE(line["at"].get<double>(), last);
        last = line["at"];
    }
    EXPECT_GT(last, 0);
}

TEST_F(JournalTest, EntriesBehindATestAreOutsideOfIt) {
    Write(TEST_STATUS_INFO, "first");
    Pass("T1");
    Write(TEST_STATUS_INFO, "summary");
    End();
    std::vector<std::string> names;
    for (Json const & line : Lines())
        if (line["event"] == "test-start") names.push_back(line["name"]);
    EXPECT_THAT(names, testing::ElementsAre("Before the first test", "T1", "After T1"));
}

} // namespace
