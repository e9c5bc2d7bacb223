// What outlives a run in the registry: the record of the device under test and the chosen VIF
// files.
//
// It lives in CAppState, which must be up and have its application name. For one thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/settings/HostArgs.h"

class StoredChoice {
public:
    // Loads the stored choice, puts what the options name in its place, and stores that for later
    // runs.
    explicit StoredChoice(HostOptions const & options);

    // Why something could not be stored or removed, a line each; it still holds for this run.
    std::vector<std::string> const & Warnings() const { return m_Warnings; }

    // Everything that is chosen.
    std::vector<ShownSetting> List() const;

private:
    void TakeDevice(std::optional<DeviceWords> const & words);
    void TakeUfpVif(std::optional<std::string> const & file);
    void TakeDfpVifs(std::optional<std::vector<std::string>> const & files);
    void WarnAfterFailure(std::string const & what, bool forgets);

    HostOptions const & m_Options;
    std::vector<std::string> m_Warnings;
};
