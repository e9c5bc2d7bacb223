// Settings and device records out of one word of the command line each.
#include "examples/QNExe/settings/SettingWords.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

namespace {

using Field = std::optional<std::string> DeviceWords::*;

constexpr std::pair<std::string_view, Field> Fields[] = {
    {"tid", &DeviceWords::tid},
    {"testbed", &DeviceWords::testBed},
    {"room", &DeviceWords::room},
    {"comments", &DeviceWords::comments},
};

char Lower(char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

bool BeginsWith(std::string_view text, std::string_view name) {
    return text.size() > name.size() && text[name.size()] == '='
           && std::equal(name.begin(), name.end(), text.begin(), [](char a, char b) {
                  return a == Lower(b);
              });
}

// The field that stands at the front; null: none.
std::pair<std::string_view, Field> const * FieldAt(std::string_view text) {
    for (auto const & field : Fields)
        if (BeginsWith(text, field.first)) return &field;
    return nullptr;
}

// Where the value ends: at a comma with a name behind it, or at the end.
std::size_t EndOfValue(std::string_view text) {
    for (auto comma = text.find(','); comma != text.npos; comma = text.find(',', comma + 1))
        if (FieldAt(text.substr(comma + 1)) != nullptr) return comma;
    return text.size();
}

} // namespace

std::optional<Setting> ReadSetting(std::string const & word) {
    auto const equals = word.find('=');
    if (equals == word.npos) return std::nullopt;
    std::string const name = word.substr(0, equals);
    auto const dot = name.rfind('.');
    if (dot == name.npos || dot == 0 || dot + 1 == name.size()) return std::nullopt;
    return Setting{name.substr(0, dot), name.substr(dot + 1), word.substr(equals + 1)};
}

std::string WhatIsWrongWithSetting(std::string const & word) {
    return ReadSetting(word) ? "" : '"' + word + "\" is no setting: give section.key=value";
}

std::optional<DeviceWords> ReadDevice(std::string const & word) {
    DeviceWords device;
    std::string_view rest = word;
    while (!rest.empty()) {
        auto const * const field = FieldAt(rest);
        if (field == nullptr || (device.*field->second).has_value()) return std::nullopt;
        rest.remove_prefix(field->first.size() + 1);
        std::size_t const end = EndOfValue(rest);
        device.*field->second = std::string(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return device;
}

std::string WhatIsWrongWithDevice(std::string const & word) {
    if (ReadDevice(word)) return "";
    return '"' + word
           + "\" is no device: give tid=...,testbed=...,room=...,comments=..., each at most once";
}
