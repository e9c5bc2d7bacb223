// The settings file by the reader of CLI11.
#include "examples/QNExe/settings/SettingsFile.h"

#include <fstream>
#include <stdexcept>

#include <CLI/CLI.hpp>

namespace {

[[noreturn]] void Refuse(std::string const & file, std::string const & why) {
    throw std::runtime_error("the settings file \"" + file + "\" " + why);
}

std::string Joined(std::vector<std::string> const & words, char between) {
    std::string text;
    for (std::string const & word : words)
        text += (&word != &words.front() ? std::string(1, between) : std::string()) + word;
    return text;
}

// The reader marks where a section begins and ends.
bool IsMark(CLI::ConfigItem const & item) { return item.name == "++" || item.name == "--"; }

std::vector<CLI::ConfigItem> ItemsOf(std::string const & file) {
    std::ifstream stream(file);
    // A folder opens like a file, but has nothing to read.
    stream.peek();
    if (stream.bad() || !stream.is_open())
        Refuse(file, "cannot be opened. Give --settings a file that may be read.");
    stream.clear();
    try {
        return CLI::ConfigINI().from_config(stream);
    } catch (CLI::Error const & error) {
        Refuse(file, std::string("cannot be understood: ") + error.what());
    }
}

} // namespace

std::vector<Setting> ReadSettingsFile(std::string const & file) {
    std::vector<Setting> settings;
    for (CLI::ConfigItem const & item : ItemsOf(file)) {
        if (IsMark(item)) continue;
        if (item.parents.empty())
            Refuse(
                file, "has the key \"" + item.name + "\" without a section. Put [section] above.");
        settings.push_back({Joined(item.parents, '.'), item.name, Joined(item.inputs, ' ')});
    }
    return settings;
}
