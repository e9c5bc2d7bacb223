// The program's arguments, read with CLI11.
#include "examples/QNExe/CommandLine.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include <CLI/CLI.hpp>

namespace {

constexpr std::pair<std::string_view, eQNLogVerbosity> LevelNames[] = {
    {"Quiet", Quiet},     {"Minimal", Minimal},       {"Low", Low},           {"Normal", Normal},
    {"Verbose", Verbose}, {"Diagnostic", Diagnostic}, {"Internal", Internal},
};

constexpr std::pair<std::string_view, LogView> ViewNames[] = {
    {"auto", LogView::Auto},
    {"console", LogView::Console},
    {"formatted", LogView::Formatted},
};

char Lower(char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

bool EqualInAnyCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return Lower(x) == Lower(y);
    });
}

std::optional<eQNLogVerbosity> NumberedLevel(std::string_view text) {
    std::uint8_t number = 0;
    char const * const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return static_cast<eQNLogVerbosity>(number);
}

std::optional<eQNLogVerbosity> LevelOf(std::string_view text) {
    for (auto const & [name, level] : LevelNames)
        if (EqualInAnyCase(name, text)) return level;
    return NumberedLevel(text);
}

std::string LevelList() {
    std::string list;
    for (auto const & [name, level] : LevelNames)
        list.append(name).append(", ");
    return list;
}

// The checks of CLI11 answer with what is wrong, or with an empty text.
std::string CheckLevel(std::string const & text) {
    if (LevelOf(text)) return {};
    return '"' + text + "\" is no level: give " + LevelList() + "or a number from 0 to 255";
}

std::string CheckNotEmpty(std::string const & text) {
    return text.empty() ? "the name is empty: give the file of a test suite" : "";
}

std::optional<LogView> ViewOf(std::string_view text) {
    for (auto const & [name, view] : ViewNames)
        if (EqualInAnyCase(name, text)) return view;
    return std::nullopt;
}

std::string CheckView(std::string const & text) {
    if (ViewOf(text)) return {};
    return '"' + text + "\" is no view: give auto, console or formatted";
}

std::string CheckReports(std::string const & text) {
    try {
        ReadReportRequest(text);
    } catch (std::runtime_error const & wrong) {
        return wrong.what();
    }
    return {};
}

struct Raw {
    std::string suite;
    bool window = false;
    std::string recordings;
    std::string log;
    std::vector<std::string> reports;
    std::string verbosity;
    std::string view;
    bool interactive = false;
    bool versions = false;
    bool onlyFailures = false;
    std::string settings;
    std::vector<std::string> set;
    std::string device;
    std::string ufpVif;
    std::vector<std::string> dfpVifs;
    bool showSettings = false;
};

void DescribeSettings(CLI::App & app, Raw & raw) {
    app.add_option("--settings", raw.settings, "A file of settings: [section], key=value")
        ->type_name("FILE");
    app.add_option(
           "--set", raw.set,
           "One setting, above the file's: section.key=value;\n"
           "once for each setting")
        ->allow_extra_args(false)
        ->check(WhatIsWrongWithSetting)
        ->type_name("SETTING");
    app.add_option(
           "--dut", raw.device,
           "The device under test, kept for later runs:\n"
           "tid=...,testbed=...,room=...,comments=...;\n"
           "an empty word forgets it")
        ->check(WhatIsWrongWithDevice)
        ->type_name("DEVICE");
    app.add_option(
           "--ufp-vif", raw.ufpVif,
           "The UFP VIF file, kept for later runs;\nan empty name forgets it")
        ->type_name("FILE");
    app.add_option(
           "--dfp-vif", raw.dfpVifs,
           "The DFP VIF files, kept for later runs;\nan empty name alone forgets them")
        ->type_name("FILE");
    app.add_flag(
        "--show-settings", raw.showSettings,
        "Show all settings and where they come from,\ninstead of a run");
}

void Describe(CLI::App & app, Raw & raw) {
    app.name("QNExe");
    app.set_help_flag("-h,--help", "Show this text");
    app.set_version_flag("--version", "QNExe " QNEXE_VERSION, "Show the version");
    app.add_option("--suite", raw.suite, "The test suite to run, a shared library")
        ->check(CheckNotEmpty)
        ->type_name("FILE");
    app.add_flag("--window", raw.window, "A window to start and watch runs in, on Windows");
    app.add_option("--recordings", raw.recordings, "Recorded devices that the suite reads")
        ->type_name("DIR");
    app.add_option("--log", raw.log, "A text file to append the log to")->type_name("FILE");
    app.add_option(
           "--report", raw.reports,
           "The reports to write: html:<path>,\njunit:<path>,json:<path>, and overwrite\n"
           "to replace files; in place of QN_REPORT")
        ->allow_extra_args(false)
        ->check(CheckReports)
        ->type_name("REPORTS");
    app.add_option(
           "--verbosity", raw.verbosity,
           "How much to log: Quiet, Minimal, Low, Normal (the\n"
           "default), Verbose, Diagnostic, Internal,\nor a number from 0 to 255")
        ->check(CheckLevel)
        ->type_name("LEVEL");
    app.add_option(
           "--view", raw.view,
           "How to show the log: console, formatted, or auto,\n"
           "which is formatted on a terminal with colors")
        ->check(CheckView)
        ->type_name("VIEW");
    app.add_flag(
        "--interactive", raw.interactive,
        "Have the suite ask the operator, if it can;\n"
        "QN_PROMPTS names a file of answers");
    app.add_flag(
        "--versions", raw.versions,
        "Begin the log with the versions of the system and\nof the program files");
    app.add_flag("--only-failures", raw.onlyFailures, "Leave out the entries of tests that pass");
    DescribeSettings(app, raw);
    app.footer("Exit code: 0 passed, 1 failed, 2 no test ran, 3 aborted by the operator,\n"
               "4 could not run, or could not write its log file or a report.");
}

std::optional<std::string> IfGiven(CLI::App const & app, char const * option, std::string value) {
    if (app.count(option) == 0) return std::nullopt;
    return value;
}

std::string Joined(std::vector<std::string> const & words) {
    std::string text;
    for (std::string const & word : words)
        text += (text.empty() ? "" : ";") + word;
    return text;
}

void TakeSettings(CLI::App const & app, Raw const & raw, HostOptions & options) {
    options.settings = IfGiven(app, "--settings", raw.settings);
    for (std::string const & word : raw.set)
        options.set.push_back(*ReadSetting(word));
    if (app.count("--dut") != 0) options.device = ReadDevice(raw.device);
    options.ufpVif = IfGiven(app, "--ufp-vif", raw.ufpVif);
    if (app.count("--dfp-vif") != 0) options.dfpVifs = raw.dfpVifs;
    options.showSettings = raw.showSettings;
    for (CLI::Option const * const option : app.get_options())
        if (option->count() != 0)
            options.given.emplace_back(option->get_single_name(), Joined(option->results()));
}

// Several words together may still name a format twice.
std::optional<CReportRequest> ReportsOf(Raw const & raw) {
    if (raw.reports.empty()) return std::nullopt;
    std::string all;
    for (std::string const & word : raw.reports)
        all += (all.empty() ? "" : ",") + word;
    try {
        return ReadReportRequest(all);
    } catch (std::runtime_error const & wrong) {
        throw CLI::ValidationError("--report", wrong.what());
    }
}

HostOptions OptionsOf(CLI::App const & app, Raw const & raw) {
    HostOptions options;
    options.suite = raw.suite;
    options.window = raw.window;
    options.recordings = IfGiven(app, "--recordings", raw.recordings);
    options.log = IfGiven(app, "--log", raw.log);
    options.reports = ReportsOf(raw);
    options.verbosity = LevelOf(raw.verbosity).value_or(Normal);
    options.view = ViewOf(raw.view).value_or(LogView::Auto);
    options.interactive = raw.interactive;
    options.versions = raw.versions;
    options.onlyFailures = raw.onlyFailures;
    TakeSettings(app, raw, options);
    return options;
}

// Some reasons are whole sentences, and others are none.
CommandLineReply UsageError(CLI::ParseError const & error) {
    std::string const reason = error.what();
    char const * const stop = reason.ends_with('.') ? "" : ".";
    return {"QNExe: " + reason + stop + "\nQNExe --help shows the options.\n", true};
}

// CLI11 takes its arguments last one first.
void Parse(CLI::App & app, std::vector<std::string> const & arguments) {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
}

} // namespace

std::variant<HostOptions, CommandLineReply>
ReadCommandLine(std::vector<std::string> const & arguments) {
    CLI::App app("Runs a test suite and ends with its verdict.");
    Raw raw;
    Describe(app, raw);
    try {
        Parse(app, arguments);
        bool const runs = !raw.showSettings && !raw.window;
        if (runs && app.count("--suite") == 0) throw CLI::RequiredError("--suite");
        return OptionsOf(app, raw);
    } catch (CLI::CallForHelp const &) {
        return CommandLineReply{app.help() + '\n', false};
    } catch (CLI::CallForVersion const & version) {
        return CommandLineReply{std::string(version.what()) + '\n', false};
    } catch (CLI::ParseError const & error) {
        return UsageError(error);
    }
}
