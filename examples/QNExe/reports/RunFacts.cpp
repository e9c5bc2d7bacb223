// Gathers the facts of a run.
#include "examples/QNExe/reports/RunFacts.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/settings/RunSettings.h"
#include "settings/Registry.h"

namespace {

// Nobody reads the digests of more.
constexpr std::size_t MostFiles = 1000;

constexpr char SystemKey[] = "Software\\Microsoft\\Windows NT\\CurrentVersion";

using Pairs = CTestSuiteLog::Pairs;

std::filesystem::path PathOf(std::string const & name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

std::string NameOf(std::filesystem::path const & path) {
    std::u8string const name = path.generic_u8string();
    return {name.begin(), name.end()};
}

Pairs System() {
    Pairs pairs;
    for (auto const & [key, name] : {std::pair("ProductName", "Name"), {"BuildLabEx", "Build"}}) {
        std::string value;
        if (TS_GetRegistryString(HKEY_LOCAL_MACHINE, SystemKey, key, value))
            pairs.emplace_back(name, value);
    }
    return pairs;
}

// The files of a folder and of those in it, by name; the file itself where it is none.
std::vector<std::string> FilesIn(std::string const & name) {
    std::error_code error;
    std::vector<std::string> files;
    for (std::filesystem::recursive_directory_iterator it(PathOf(name), error), end;
         !error && it != end; it.increment(error))
        if (it->is_regular_file(error)) files.push_back(NameOf(it->path()));
    if (files.empty()) files.push_back(name);
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> InputFiles(HostOptions const & options, RunSettings const & settings) {
    std::vector<std::string> files{options.suite};
    if (options.settings) files.push_back(*options.settings);
    if (char const * const answers = std::getenv("QN_PROMPTS")) files.emplace_back(answers);
    for (ShownSetting const & setting : settings.List()) {
        if (setting.name.starts_with("vif.")) files.push_back(setting.value);
        if (setting.name != "suite.recordings") continue;
        auto const found = FilesIn(setting.value);
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

Pairs Digests(std::vector<std::string> const & files) {
    Pairs pairs;
    for (std::string const & file : files) {
        if (pairs.size() == MostFiles) {
            pairs.emplace_back("more", std::to_string(files.size() - MostFiles) + " files");
            break;
        }
        std::string const digest = FileSha256(file);
        pairs.emplace_back(file, digest.empty() ? "cannot be read" : "SHA-256 " + digest);
    }
    return pairs;
}

bool IsOfDevice(ShownSetting const & setting) {
    return setting.name.starts_with("dut.") || setting.name.starts_with("vif.");
}

Pairs SettingsWhere(RunSettings const & settings, bool ofDevice) {
    Pairs pairs;
    for (ShownSetting const & setting : settings.List())
        if (IsOfDevice(setting) == ofDevice)
            pairs.emplace_back(setting.name, setting.value + "  (" + setting.origin + ')');
    return pairs;
}

} // namespace

CReportFacts
GatherFacts(HostOptions const & options, RunSettings const & settings, std::string const & suite) {
    return {
        suite,
        {{"Versions", {{"QNExe", QNEXE_VERSION}, {"Suite", options.suite}}},
         {"System", System()},
         {"Device under test", SettingsWhere(settings, true)},
         {"Input files", Digests(InputFiles(options, settings))},
         {"Settings", SettingsWhere(settings, false)}}};
}
