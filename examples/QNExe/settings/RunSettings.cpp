// The settings in the order in which they override each other.
#include "examples/QNExe/settings/RunSettings.h"

#include "app/CAppState.h"
#include "examples/QNExe/ProgramName.h"
#include "examples/QNExe/settings/SettingsFile.h"
#include "output/CUIUpdate.h"

namespace {

class StateForAWhile {
public:
    StateForAWhile() { CAppState::InitAppState(ApplicationFamilyDefault); }
    StateForAWhile(StateForAWhile const &) = delete;
    StateForAWhile & operator=(StateForAWhile const &) = delete;
    ~StateForAWhile() {
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }
};

// Where a suite finds what it ships with.
std::string FolderOf(std::string const & file) {
    auto const end = file.find_last_of("/\\");
    return end != file.npos ? file.substr(0, end) : ".";
}

} // namespace

HostArgs RunSettings::Gathered(HostOptions const & options) {
    HostArgs args;
    args.Set("Quillon", "ProgramName", ProgramName, "built in");
    if (!options.suite.empty()) args.Set("Suite", "Folder", FolderOf(options.suite), "--suite");
    args.SetFromRegistry();
    if (options.settings)
        for (Setting const & each : ReadSettingsFile(*options.settings))
            args.Set(each.section, each.key, each.value, *options.settings);
    if (options.recordings) args.Set("Suite", "Recordings", *options.recordings, "--recordings");
    if (options.interactive) args.Set("Suite", "Interactive", "true", "--interactive");
    for (Setting const & each : options.set)
        args.Set(each.section, each.key, each.value, "--set");
    for (auto const & [name, value] : options.given)
        args.SetOption(name, value);
    return args;
}

// The registry's keys bear the application's name.
HostOptions const & RunSettings::Named(HostOptions const & options) {
    CAppState::ApplicationName(ProgramName);
    return options;
}

RunSettings::RunSettings(HostOptions const & options)
    : m_Args(Gathered(options)), m_Choice(Named(options)) {
    CAppState::SetIniArgs(m_Args);
}

std::vector<ShownSetting> RunSettings::List() const {
    std::vector<ShownSetting> list = m_Args.List();
    for (ShownSetting const & chosen : m_Choice.List())
        list.push_back(chosen);
    return list;
}

std::string RunSettings::Text() const {
    std::string text;
    for (auto const & [name, value, origin] : List())
        text += name + '=' + value + "  # " + origin + '\n';
    return text;
}

std::string SettingsText(HostOptions const & options) {
    StateForAWhile const state;
    RunSettings const settings(options);
    std::string text;
    for (std::string const & warning : settings.Warnings())
        text += "# " + warning + '\n';
    return text + settings.Text();
}
