// The program's arguments, read into plain options or into a reply for the caller.
//
// Nothing is kept and nothing is printed here.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "log/TestStatus.h"

enum class LogView {
    // Formatted when standard error is a terminal, otherwise Console.
    Auto,
    // The entries as the console's log writes them.
    Console,
    // The entries in their looks, with progress beneath them; without a terminal as plain lines.
    Formatted,
};

struct HostOptions {
    // The shared library with the suite; never empty.
    std::string suite;

    // Where the suite finds recorded devices, for suites that read them.
    std::optional<std::string> recordings;

    // What the suite finds in section "Suite" besides, by name.
    std::vector<std::pair<std::string, std::string>> settings;

    // The file that receives the log besides standard error.
    std::optional<std::string> log;

    eQNLogVerbosity verbosity = Normal;

    LogView view = LogView::Auto;

    // Entries of tests that pass are left out of the log.
    bool onlyFailures = false;
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
