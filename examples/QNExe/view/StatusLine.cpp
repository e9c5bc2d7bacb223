// The line of progress.
#include "examples/QNExe/view/StatusLine.h"

#include <algorithm>
#include <string_view>

#include "examples/QNExe/view/CharacterWidth.h"
#include "siblings/Keelbase.h"

namespace {

constexpr int BarWidth = 20;

std::string Bar(int position, int range) {
    auto const filled =
        static_cast<std::size_t>(static_cast<long long>(position) * BarWidth / range);
    std::string bar = "[";
    return bar.append(filled, '#').append(BarWidth - filled, '-').append("]");
}

bool IsShown(char32_t character) {
    return character >= 0x20 && (character < 0x7F || character > 0x9F);
}

// The character that begins at `at`: one wide unit or, where wide text is UTF-16, two.
char32_t CharacterAt(std::wstring_view text, std::size_t at) {
    auto const unit = [&](std::size_t i) { return static_cast<char32_t>(text[i]); };
    if ((unit(at) & ~0x3FFu) != 0xD800 || at + 1 == text.size()) return unit(at);
    return 0x10000 + ((unit(at) & 0x3FF) << 10) + (unit(at + 1) & 0x3FF);
}

// Without what is not shown, and only as far as it fits.
std::string Cut(std::string const & text, std::size_t columns) {
    auto const wide = Utf8ToUtf16(text);
    std::wstring kept;
    for (std::size_t at = 0, size = 0, used = 0; at < wide->size(); at += size) {
        char32_t const character = CharacterAt(*wide, at);
        size = character < 0x10000 ? 1 : sizeof(char32_t) / sizeof(wchar_t);
        if (!IsShown(character)) continue;
        used += WidthOf(character);
        if (used > columns) break;
        kept.append(*wide, at, size);
    }
    return *Utf16ToUtf8(kept);
}

} // namespace

std::string StatusLine(Progress const & progress, std::size_t columns) {
    if (progress.range <= 0) return {};
    int const position = std::clamp(progress.position, 0, progress.range);
    std::string const line = Bar(position, progress.range) + "  " + std::to_string(position) + "/"
                             + std::to_string(progress.range) + "  " + progress.label;
    return Cut(line, columns);
}
