// The program's arguments: what they set, and what the caller is told otherwise.
#include "examples/QNExe/CommandLine.h"

#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

HostOptions Options(std::vector<std::string> const & arguments) {
    auto const read = ReadCommandLine(arguments);
    if (auto const * reply = std::get_if<CommandLineReply>(&read)) ADD_FAILURE() << reply->text;
    auto const * const options = std::get_if<HostOptions>(&read);
    return options != nullptr ? *options : HostOptions{};
}

CommandLineReply Reply(std::vector<std::string> const & arguments) {
    auto const read = ReadCommandLine(arguments);
    auto const * const reply = std::get_if<CommandLineReply>(&read);
    if (reply == nullptr) ADD_FAILURE() << "accepted";
    return reply != nullptr ? *reply : CommandLineReply{"", false};
}

// The text of a refusal, without the line that points to the help.
std::string Refusal(std::vector<std::string> const & arguments) {
    auto const [text, isError] = Reply(arguments);
    EXPECT_TRUE(isError);
    std::string const hint = "QNExe --help shows the options.\n";
    if (!text.ends_with(hint)) return "no hint: " + text;
    return text.substr(0, text.size() - hint.size());
}

eQNLogVerbosity Level(std::string const & text) {
    return Options({"--suite", "s.so", "--verbosity", text}).verbosity;
}

TEST(CommandLineTest, RefusalEndsInOneFullStop) {
    EXPECT_THAT(
        Refusal({"--suite", "s.so", "--report", "pdf:a"}),
        AllOf(EndsWith(" to replace files.\n"), HasSubstr("--report: \"pdf:a\" asks for")));
    EXPECT_THAT(Refusal({"--suite", "s.so", "--loud"}), EndsWith("--loud.\n"));
}

TEST(CommandLineTest, SuiteAloneLeavesTheRestAtItsDefaults) {
    HostOptions const options = Options({"--suite", "s.so"});
    EXPECT_EQ(options.suite, "s.so");
    EXPECT_EQ(options.recordings, std::nullopt);
    EXPECT_EQ(options.log, std::nullopt);
    EXPECT_EQ(options.verbosity, Normal);
    EXPECT_EQ(options.view, LogView::Auto);
    EXPECT_FALSE(options.onlyFailures);
    EXPECT_FALSE(options.versions);
}

TEST(CommandLineTest, EachOptionSetsItsOwn) {
    HostOptions const options = Options(
        {"--only-failures", "--verbosity", "Low", "--log", "a b.log", "--recordings", "dir",
         "--versions", "--suite", "s.so"});
    EXPECT_EQ(options.suite, "s.so");
    EXPECT_TRUE(options.versions);
    EXPECT_EQ(options.recordings, "dir");
    EXPECT_EQ(options.log, "a b.log");
    EXPECT_EQ(options.verbosity, Low);
    EXPECT_TRUE(options.onlyFailures);
}

TEST(CommandLineTest, ReportsOfSeveralOptionsComeTogether) {
    EXPECT_EQ(Options({"--suite", "s"}).reports, std::nullopt);
    HostOptions const options =
        Options({"--suite", "s", "--report", "html:a,overwrite", "--report", "json:b"});
    EXPECT_EQ(
        options.reports,
        (CReportRequest{{{EReportFormat::Html, "a"}, {EReportFormat::Json, "b"}}, true}));
}

TEST(CommandLineTest, AWindowNeedsNoSuiteAndTakesTheOtherOptions) {
    EXPECT_FALSE(Options({"--suite", "s.so"}).window);
    HostOptions const alone = Options({"--window"});
    EXPECT_TRUE(alone.window);
    EXPECT_EQ(alone.suite, "");
    HostOptions const both = Options({"--window", "--suite", "s.so", "--recordings", "dir"});
    EXPECT_TRUE(both.window);
    EXPECT_EQ(both.suite, "s.so");
    EXPECT_EQ(both.recordings, "dir");
}

TEST(CommandLineTest, ValueMayStandBehindAnEqualsSign) {
    HostOptions const options = Options({"--suite=s.so", "--log=run=1.log"});
    EXPECT_EQ(options.suite, "s.so");
    EXPECT_EQ(options.log, "run=1.log");
}

TEST(CommandLineTest, LevelIsANameInAnyCase) {
    struct Case {
        char const * name;
        eQNLogVerbosity level;
    };
    for (auto const & [name, level] :
         {Case{"Quiet", Quiet},
          {"MINIMAL", Minimal},
          {"low", Low},
          {"nOrMaL", Normal},
          {"Verbose", Verbose},
          {"diagnostic", Diagnostic},
          {"Internal", Internal}}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Level(name), level);
    }
}

TEST(CommandLineTest, LevelIsANumberOfOneByte) {
    for (int const number : {0, 1, 5, 6, 200, 254, 255})
        EXPECT_EQ(Level(std::to_string(number)), number);
}

TEST(CommandLineTest, OtherLevelsAreRefusedWithTheList) {
    for (std::string const text : {"Loud", "256", "1000", "3x", "0x3", "Normal ", " 3", ""}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(
            Refusal({"--suite", "s.so", "--verbosity", text}),
            "QNExe: --verbosity: \"" + text
                + "\" is no level: give Quiet, Minimal, Low, Normal, Verbose, Diagnostic, "
                  "Internal, or a number from 0 to 255.\n");
    }
}

TEST(CommandLineTest, SuiteIsRequired) {
    EXPECT_EQ(Refusal({}), "QNExe: --suite is required.\n");
    EXPECT_EQ(Refusal({"--only-failures"}), "QNExe: --suite is required.\n");
}

TEST(CommandLineTest, SuiteWithoutANameIsRefused) {
    EXPECT_EQ(
        Refusal({"--suite", ""}),
        "QNExe: --suite: the name is empty: give the file of a test suite.\n");
}

TEST(CommandLineTest, UnknownArgumentIsNamed) {
    EXPECT_THAT(Refusal({"--suite", "s.so", "--loud"}), HasSubstr("--loud"));
    EXPECT_THAT(Refusal({"--suite", "s.so", "stray"}), HasSubstr("stray"));
}

TEST(CommandLineTest, OptionWithoutItsValueIsNamed) {
    EXPECT_THAT(Refusal({"--suite"}), HasSubstr("--suite"));
    EXPECT_THAT(Refusal({"--suite", "s.so", "--log"}), HasSubstr("--log"));
}

TEST(CommandLineTest, RepeatedOptionIsNamed) {
    EXPECT_THAT(Refusal({"--suite", "a.so", "--suite", "b.so"}), HasSubstr("--suite"));
}

TEST(CommandLineTest, SettingsComeInTheirOwnOptions) {
    HostOptions const options = Options(
        {"--suite", "s.so", "--settings", "my.ini", "--set", "a.b=1", "--set", "c.d=x y", "--dut",
         "tid=5,room=B", "--ufp-vif", "u.xml", "--dfp-vif", "a.xml", "b.xml"});
    EXPECT_EQ(options.settings, "my.ini");
    EXPECT_EQ(options.set, (std::vector<Setting>{{"a", "b", "1"}, {"c", "d", "x y"}}));
    EXPECT_EQ(options.device, (DeviceWords{"5", std::nullopt, "B", std::nullopt}));
    EXPECT_EQ(options.ufpVif, "u.xml");
    EXPECT_EQ(options.dfpVifs, (std::vector<std::string>{"a.xml", "b.xml"}));
    EXPECT_FALSE(options.showSettings);
    std::vector<std::pair<std::string, std::string>> const given = {
        {"suite", "s.so"},       {"settings", "my.ini"}, {"set", "a.b=1;c.d=x y"},
        {"dut", "tid=5,room=B"}, {"ufp-vif", "u.xml"},   {"dfp-vif", "a.xml;b.xml"}};
    EXPECT_EQ(options.given, given);
}

TEST(CommandLineTest, WithoutSettingsOptionsNothingIsSet) {
    HostOptions const options = Options({"--suite", "s.so"});
    EXPECT_EQ(options.settings, std::nullopt);
    EXPECT_TRUE(options.set.empty());
    EXPECT_EQ(options.device, std::nullopt);
    EXPECT_EQ(options.ufpVif, std::nullopt);
    EXPECT_EQ(options.dfpVifs, std::nullopt);
}

TEST(CommandLineTest, EmptyWordsForgetWhatWasKept) {
    HostOptions const options =
        Options({"--suite", "s.so", "--dut", "", "--ufp-vif", "", "--dfp-vif", ""});
    EXPECT_EQ(options.device, DeviceWords{});
    EXPECT_EQ(options.ufpVif, "");
    EXPECT_EQ(options.dfpVifs, std::vector<std::string>{""});
}

TEST(CommandLineTest, SettingsThatCannotBeReadAreRefused) {
    EXPECT_EQ(
        Refusal({"--suite", "s.so", "--set", "a=b"}),
        "QNExe: --set: \"a=b\" is no setting: give section.key=value.\n");
    EXPECT_THAT(Refusal({"--suite", "s.so", "--dut", "id=5"}), HasSubstr("is no device"));
}

TEST(CommandLineTest, SettingsAreShownWithoutASuite) {
    EXPECT_TRUE(Options({"--show-settings"}).showSettings);
}

TEST(CommandLineTest, VersionIsTheProjects) {
    auto const [text, isError] = Reply({"--version"});
    EXPECT_EQ(text, "QNExe " PROJECT_VERSION "\n");
    EXPECT_FALSE(isError);
}

TEST(CommandLineTest, HelpNamesEveryOptionAndExitCode) {
    auto const [text, isError] = Reply({"--help"});
    EXPECT_FALSE(isError);
    EXPECT_TRUE(text.ends_with('\n'));
    for (char const * part :
         {"QNExe", "--suite FILE", "--recordings DIR", "--log FILE", "--verbosity LEVEL",
          "--only-failures", "--help", "--version", "--settings FILE", "--set SETTING",
          "--dut DEVICE", "--ufp-vif FILE", "--dfp-vif FILE", "--show-settings", "--window",
          "Quiet, Minimal, Low, Normal (the\n", "Verbose, Diagnostic, Internal,\n",
          "0 passed, 1 failed, 2 no test ran, 3 aborted by the operator,\n4 could not run"})
        EXPECT_THAT(text, HasSubstr(part));
}

TEST(CommandLineTest, HelpFitsATerminalOf80Columns) {
    std::istringstream lines(Reply({"-h"}).text);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80u) << line;
}

TEST(CommandLineTest, ViewIsANameInAnyCase) {
    EXPECT_EQ(Options({"--suite", "s.so", "--view", "auto"}).view, LogView::Auto);
    EXPECT_EQ(Options({"--suite", "s.so", "--view", "Console"}).view, LogView::Console);
    EXPECT_EQ(Options({"--suite", "s.so", "--view", "FORMATTED"}).view, LogView::Formatted);
}

TEST(CommandLineTest, AnotherViewIsRefused) {
    EXPECT_EQ(
        Refusal({"--suite", "s.so", "--view", "pretty"}),
        "QNExe: --view: \"pretty\" is no view: give auto, console or formatted.\n");
}

} // namespace
