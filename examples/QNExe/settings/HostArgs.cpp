// Values with their origins, under names in lower case as the store keeps them.
#include "examples/QNExe/settings/HostArgs.h"

namespace {

constexpr char Registry[] = "registry";

} // namespace

void HostArgs::Set(
    std::string const & section, std::string const & key, std::string const & value,
    std::string const & origin) {
    AddArg(section, key, value);
    std::pair<std::string, std::string> name(section, key);
    toLower(name.first);
    toLower(name.second);
    m_Origins[name] = origin;
}

void HostArgs::SetOption(std::string const & name, std::string const & value) {
    std::string lowered = name;
    toLower(lowered);
    m_CmdLineArgs[lowered] = value;
}

void HostArgs::SetFromRegistry() {
    if (ReloadRegistry()) m_Origins[{"quillon", "certificationmode"}] = Registry;
}

std::vector<ShownSetting> HostArgs::List() const {
    std::vector<ShownSetting> list;
    for (auto const & [name, value] : m_CmdLineArgs)
        list.push_back({"--" + name, value, "command line"});
    for (auto const & [section, values] : m_Sections)
        for (auto const & [key, value] : values)
            list.push_back({section + '.' + key, value, m_Origins.at({section, key})});
    return list;
}
