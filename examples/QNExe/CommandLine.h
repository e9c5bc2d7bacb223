// The program's arguments, read into plain options or into a reply for the caller.
//
// Nothing is kept and nothing is printed here.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "examples/QNExe/settings/SettingWords.h"
#include "log/TestStatus.h"
#include "siblings/QuillonReports.h"

enum class LogView {
    // On a terminal Formatted or, where it has no colors, the entries of Console with progress
    // beneath them; otherwise Console. A dumb terminal is none.
    Auto,
    // The entries as the console's log writes them.
    Console,
    // The entries in their looks, with progress beneath them; without a terminal as plain lines.
    Formatted,
};

struct HostOptions {
    // The shared library with the suite; empty only with showSettings and window.
    std::string suite;

    // Instead of one run a window is shown, in which the operator starts runs.
    bool window = false;

    // Where the suite finds recorded devices, for suites that read them.
    std::optional<std::string> recordings;

    // The file that receives the log besides standard error.
    std::optional<std::string> log;

    // The reports to write; none: what the variable QN_REPORT asks for.
    std::optional<CReportRequest> reports;

    eQNLogVerbosity verbosity = Normal;

    LogView view = LogView::Auto;

    // The suite asks the operator what it can ask, for suites that have such tests.
    bool interactive = false;

    // The log begins with the system and the version of each program file.
    bool versions = false;

    // Entries of tests that pass are left out of the log.
    bool onlyFailures = false;

    // A file of settings, and settings that stand above it.
    std::optional<std::string> settings;
    std::vector<Setting> set;

    // What is to be kept of the device under test and of the VIF files. A device without any word,
    // an empty file and an empty list remove what was kept.
    std::optional<DeviceWords> device;
    std::optional<std::string> ufpVif;
    std::optional<std::vector<std::string>> dfpVifs;

    // Instead of a run the settings are shown.
    bool showSettings = false;

    // Each option that was given, by its name without the dashes, with its words.
    std::vector<std::pair<std::string, std::string>> given;
};

// What to tell the caller instead of running: help and version on standard output, a usage error
// on standard error. The text is complete, with its final line end.
struct CommandLineReply {
    std::string text;
    bool isError;
};

// `arguments` without the program's name.
std::variant<HostOptions, CommandLineReply>
ReadCommandLine(std::vector<std::string> const & arguments);
