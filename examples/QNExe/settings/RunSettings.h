// All settings of a run, gathered from where they stand: the host itself, the registry, the
// settings file, the command line; what comes later in this list wins.
//
// CAppState must be up. It borrows the store until SetIniArgs is called again.
#pragma once

#include <string>
#include <vector>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/settings/HostArgs.h"
#include "examples/QNExe/settings/StoredChoice.h"

class RunSettings {
public:
    // Throws std::runtime_error, whose text says what to do, when the settings file is no good.
    explicit RunSettings(HostOptions const & options);
    RunSettings(RunSettings const &) = delete;
    RunSettings & operator=(RunSettings const &) = delete;

    HostArgs & Args() { return m_Args; }
    std::vector<std::string> const & Warnings() const { return m_Choice.Warnings(); }

    std::vector<ShownSetting> List() const;

    // One line for each value: name=value, and behind a # its origin.
    std::string Text() const;

private:
    static HostArgs Gathered(HostOptions const & options);
    static HostOptions const & Named(HostOptions const & options);

    HostArgs m_Args;
    StoredChoice m_Choice;
};

// What a run with these options would work with, in a process that has no run.
std::string SettingsText(HostOptions const & options);
