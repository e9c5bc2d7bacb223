// The distribution's name out of os-release, the kernel's from the kernel.
#include "platform/linux/SystemValues.h"

#include <fstream>
#include <string_view>

#include <sys/utsname.h>

namespace {

std::string WithoutQuotes(std::string text) {
    bool const quoted = text.size() >= 2 && (text.front() == '"' || text.front() == '\'')
                        && text.back() == text.front();
    return quoted ? text.substr(1, text.size() - 2) : text;
}

std::string DistributionName() {
    constexpr std::string_view wanted = "PRETTY_NAME=";
    for (char const * const name : {"/etc/os-release", "/usr/lib/os-release"}) {
        std::ifstream file(name);
        for (std::string line; std::getline(file, line);)
            if (line.starts_with(wanted)) return WithoutQuotes(line.substr(wanted.size()));
    }
    return "Linux";
}

std::string KernelName() {
    utsname names;
    if (uname(&names) != 0) return "Linux";
    return std::string(names.sysname) + ' ' + names.release + ' ' + names.version + ' '
           + names.machine;
}

// With its NUL, as Windows stores it.
RegistryValue Text(char const * name, std::string text) {
    text += '\0';
    return {name, REG_SZ, std::move(text)};
}

} // namespace

std::vector<RegistryValue> const & SystemValues() {
    static auto const & values = *new std::vector<RegistryValue>{
        Text("ProductName", DistributionName()), Text("BuildLabEx", KernelName())};
    return values;
}
