// The program QNExe as a child of a test, and the log that it is expected to show.
//
// Each test has a folder of its own, removed at its end, and off Windows the programs of a test see
// none of another test's. Texts are compared byte for byte as the
// program wrote them, but for times and durations, in whose place a mark stands.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "platform/RegistryScope.h"

// Bytes of a log as a text that does not depend on platform and clock.
std::string Normalized(std::string const & bytes);

// The lines with which the log of a run begins.
std::string Opened(std::string const & level = "Normal");

// The lines that the log puts around a test: what stands in front of its entries and behind them.
std::string Started();
std::string Stopped(std::string const & test, std::string const & counts);
std::string Summary(std::string const & counts, int passed, int failed);

class ChildHost : public testing::Test {
public:
    struct Result {
        std::optional<int> code;
        std::string output;
        std::string error;

        bool operator==(Result const &) const = default;
    };

protected:
    ChildHost();
    ~ChildHost() override;

    // Files in the test's folder, and the suites that are built beside the tests.
    std::string File(std::string const & name) const { return (m_Folder / name).string(); }
    static std::string Suite(std::string const & name);
    static std::string Contents(std::string const & file);

    // Starts the program; Finish waits for its end.
    ChildProcess & Start(std::vector<std::string> const & arguments);
    Result Finish();

    Result Run(std::vector<std::string> const & arguments) {
        Start(arguments);
        return Finish();
    }
    Result RunSuite(std::string const & name) { return Run({"--suite", Suite(name)}); }

private:
    // Off Windows the child's too: it sees nothing of the machine's settings.
    RegistryScope m_Registry;
    std::filesystem::path m_Folder;
    std::unique_ptr<ChildProcess> m_Child;
};

void PrintTo(ChildHost::Result const & result, std::ostream * stream);
