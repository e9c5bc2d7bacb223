// Reads styles, and moves their colours as far from the ground as reading needs.
#include "siblings/quillonlog/reports/EntryLook.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

namespace {

struct Color {
    std::array<std::uint8_t, 3> parts;
};

constexpr Color Black = {{0, 0, 0}};
constexpr Color White = {{255, 255, 255}};
// The page's own grounds, as the style sheet has them.
constexpr Color LightGround = {{255, 255, 255}};
constexpr Color DarkGround = {{23, 26, 31}};
// What WCAG asks of text of this size, and a little more for rounding.
constexpr double LeastContrast = 4.6;

struct Look {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    std::optional<Color> text;
    std::optional<Color> ground;
};

std::string_view Trimmed(std::string_view text) {
    auto const first = text.find_first_not_of(' ');
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<Color> ReadColor(std::string_view text) {
    if (text.size() != 7 || text.front() != '#') return std::nullopt;
    Color color{};
    for (std::size_t i = 0; i < 3; ++i) {
        char const * const begin = text.data() + 1 + 2 * i;
        auto const [end, error] = std::from_chars(begin, begin + 2, color.parts[i], 16);
        if (error != std::errc() || end != begin + 2) return std::nullopt;
    }
    return color;
}

void Read(Look & look, std::string_view name, std::string_view value) {
    if (name == "font-weight") look.bold = value == "bold";
    if (name == "font-style") look.italic = value == "italic";
    if (name == "text-decoration") look.underline = value == "underline";
    if (name == "color") look.text = ReadColor(value);
    if (name == "background-color") look.ground = ReadColor(value);
}

Look ReadStyle(std::string_view style) {
    Look look;
    while (!style.empty()) {
        auto const end = std::min(style.find(';'), style.size());
        std::string_view const item = style.substr(0, end);
        if (auto const colon = item.find(':'); colon != item.npos)
            Read(look, Trimmed(item.substr(0, colon)), Trimmed(item.substr(colon + 1)));
        style.remove_prefix(std::min(end + 1, style.size()));
    }
    return look;
}

double Linear(std::uint8_t part) {
    double const value = part / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Luminance(Color const & color) {
    return 0.2126 * Linear(color.parts[0]) + 0.7152 * Linear(color.parts[1])
           + 0.0722 * Linear(color.parts[2]);
}

double Contrast(Color const & a, Color const & b) {
    auto const [low, high] = std::minmax({Luminance(a), Luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

Color Mixed(Color const & a, Color const & b, double share) {
    Color mixed{};
    for (std::size_t i = 0; i < 3; ++i)
        mixed.parts[i] =
            static_cast<std::uint8_t>(std::lround(a.parts[i] + share * (b.parts[i] - a.parts[i])));
    return mixed;
}

Color Readable(Color const & text, Color const & ground) {
    Color const far = Contrast(White, ground) > Contrast(Black, ground) ? White : Black;
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        Color const color = Mixed(text, far, step / static_cast<double>(steps));
        if (Contrast(color, ground) >= LeastContrast) return color;
    }
    return far;
}

std::string TextOf(Color const & color) {
    std::string text = "#";
    for (std::uint8_t const part : color.parts) {
        text += "0123456789abcdef"[part >> 4];
        text += "0123456789abcdef"[part & 0xF];
    }
    return text;
}

std::string ClassesOf(Look const & look) {
    std::string classes;
    if (look.bold) classes += " sb";
    if (look.italic) classes += " si";
    if (look.underline) classes += " su";
    if (look.text || look.ground) classes += " sc";
    if (look.ground) classes += " sg";
    return classes;
}

// --l and --d: the text's colour on light and dark ground; --g: a ground of its own.
std::string PropertiesOf(Look const & look) {
    if (!look.text && !look.ground) return {};
    Color const text = look.text.value_or(Black);
    std::string properties = "--l:" + TextOf(Readable(text, look.ground.value_or(LightGround)))
                             + ";--d:" + TextOf(Readable(text, look.ground.value_or(DarkGround)));
    if (look.ground) properties += ";--g:" + TextOf(*look.ground);
    return properties;
}

} // namespace

std::string EntryLook::Attributes(std::string_view classes, std::string_view style) {
    Look const look = ReadStyle(style);
    std::string const all = std::string(classes) + ClassesOf(look);
    std::string const properties = PropertiesOf(look);
    std::string text = " class=\"" + all + '"';
    if (!properties.empty()) text += " style=\"" + properties + '"';
    return text;
}
