// Styled text as terminal bytes.
#include "examples/QNExe/view/TerminalText.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

#include "siblings/Keelbase.h"

namespace {

constexpr double LeastContrast = 3.0;
constexpr COLORREF Black = 0x000000;
constexpr COLORREF White = 0xFFFFFF;

using Channels = std::array<double, 3>;

// Red, green and blue, 0 to 1.
Channels ChannelsOf(COLORREF color) {
    return {(color & 0xFF) / 255.0, ((color >> 8) & 0xFF) / 255.0, ((color >> 16) & 0xFF) / 255.0};
}

COLORREF ColorOf(Channels const & channels) {
    auto const byte = [](double value) { return static_cast<COLORREF>(std::lround(value * 255)); };
    return byte(channels[0]) | byte(channels[1]) << 8 | byte(channels[2]) << 16;
}

double Linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(COLORREF color) {
    Channels const rgb = ChannelsOf(color);
    return 0.2126 * Linear(rgb[0]) + 0.7152 * Linear(rgb[1]) + 0.0722 * Linear(rgb[2]);
}

bool IsReadable(COLORREF color) {
    return Contrast(color, Black) >= LeastContrast && Contrast(color, White) >= LeastContrast;
}

COLORREF Mix(COLORREF from, COLORREF to, double share) {
    Channels a = ChannelsOf(from);
    Channels const b = ChannelsOf(to);
    for (std::size_t i = 0; i < a.size(); ++i)
        a[i] += (b[i] - a[i]) * share;
    return ColorOf(a);
}

std::string Rgb(char const * kind, COLORREF color) {
    return kind + std::to_string(color & 0xFF) + ";" + std::to_string((color >> 8) & 0xFF) + ";"
           + std::to_string((color >> 16) & 0xFF);
}

// The colour of the text; none where the terminal's own can be read. On a background of the text's
// own the terminal's may be as light or as dark as that.
std::optional<COLORREF> Foreground(TextLook const & look) {
    if (!look.backColor) return look.color ? ReadableColor(*look.color) : look.color;
    if (look.color) return look.color;
    return Contrast(*look.backColor, Black) >= Contrast(*look.backColor, White) ? Black : White;
}

// The sequence that switches a look on; empty for the default look.
std::string Switch(TextLook const & look) {
    std::string codes;
    if (look.bold) codes += ";1";
    if (look.italic) codes += ";3";
    if (look.underline) codes += ";4";
    if (auto const color = Foreground(look)) codes += Rgb(";38;2;", *color);
    if (look.backColor) codes += Rgb(";48;2;", *look.backColor);
    return codes.empty() ? codes : "\x1b[" + codes.substr(1) + "m";
}

bool IsControl(wchar_t unit) {
    auto const code = static_cast<std::uint32_t>(unit);
    return (code < 0x20 && unit != L'\t') || (code >= 0x7F && code < 0xA0);
}

// One line without its end, safe to show.
std::string Shown(std::wstring_view line) {
    std::wstring safe;
    for (wchar_t const unit : line) {
        if (IsControl(unit)) {
            constexpr wchar_t digits[] = L"0123456789ABCDEF";
            auto const code = static_cast<unsigned>(unit);
            safe += {L'\\', L'x', digits[code >> 4 & 0xF], digits[code & 0xF]};
        } else {
            safe += unit;
        }
    }
    return *Utf16ToUtf8(safe);
}

// The lines of a text; the last one has no line end behind it. A return before a line feed is part
// of the line end.
std::vector<std::wstring_view> LinesOf(std::wstring_view text) {
    std::vector<std::wstring_view> lines;
    while (true) {
        std::size_t const end = text.find(L'\n');
        std::wstring_view line = text.substr(0, end);
        if (end != std::wstring_view::npos && line.ends_with(L'\r')) line.remove_suffix(1);
        lines.push_back(line);
        if (end == std::wstring_view::npos) return lines;
        text.remove_prefix(end + 1);
    }
}

} // namespace

std::string TerminalText(std::vector<StyledText> const & pieces, bool styled) {
    std::string bytes;
    for (StyledText const & piece : pieces) {
        std::string const on = styled ? Switch(piece.look) : std::string();
        bool first = true;
        for (std::wstring_view const line : LinesOf(piece.text)) {
            if (!first) bytes += '\n';
            first = false;
            if (line.empty()) continue;
            bytes += on + Shown(line);
            if (!on.empty()) bytes += "\x1b[0m";
        }
    }
    return bytes;
}

double Contrast(COLORREF first, COLORREF second) {
    double const a = Luminance(first) + 0.05;
    double const b = Luminance(second) + 0.05;
    return a > b ? a / b : b / a;
}

COLORREF ReadableColor(COLORREF color) {
    constexpr int steps = 64;
    COLORREF const goal = Contrast(color, Black) < LeastContrast ? White : Black;
    COLORREF mixed = color;
    for (int step = 1; step <= steps && !IsReadable(mixed); ++step)
        mixed = Mix(color, goal, static_cast<double>(step) / steps);
    return mixed;
}
