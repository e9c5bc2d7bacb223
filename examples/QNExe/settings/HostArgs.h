// The argument store of the host, which fills the command line's table and remembers of each value
// where it came from.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "settings/CIniArgs.h"

// One value that a run works with, and where it came from.
struct ShownSetting {
    std::string name;
    std::string value;
    std::string origin;

    bool operator==(ShownSetting const &) const = default;
};

class HostArgs : public CIniArgs {
public:
    // A later value takes the place of an earlier one, and its origin too.
    void
    Set(std::string const & section, std::string const & key, std::string const & value,
        std::string const & origin);

    // An option of the command line, under its name without the dashes.
    void SetOption(std::string const & name, std::string const & value);

    // As ReloadRegistry, with the origin.
    void SetFromRegistry();

    // Options as "--name", then values as "section.key", each in the order of their names.
    std::vector<ShownSetting> List() const;

private:
    std::map<std::pair<std::string, std::string>, std::string> m_Origins;
};
