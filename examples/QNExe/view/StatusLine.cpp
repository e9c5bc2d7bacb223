// The line of progress.
#include "examples/QNExe/view/StatusLine.h"

#include <algorithm>

#include "siblings/Keelbase.h"

namespace {

constexpr int BarWidth = 20;

std::string Bar(int position, int range) {
    auto const filled =
        static_cast<std::size_t>(static_cast<long long>(position) * BarWidth / range);
    std::string bar = "[";
    return bar.append(filled, '#').append(BarWidth - filled, '-').append("]");
}

bool IsShown(wchar_t unit) { return unit >= 0x20 && (unit < 0x7F || unit > 0x9F); }

// Characters are counted, not columns: wide ones may still reach the edge, but the label comes
// last and nothing stands behind it.
std::string Cut(std::string const & text, std::size_t columns) {
    std::wstring wide = *Utf8ToUtf16(text);
    std::erase_if(wide, [](wchar_t unit) { return !IsShown(unit); });
    if (wide.size() > columns) wide.resize(columns);
    return *Utf16ToUtf8(wide);
}

} // namespace

std::string StatusLine(Progress const & progress, std::size_t columns) {
    if (progress.range <= 0) return {};
    int const position = std::clamp(progress.position, 0, progress.range);
    std::string const line = Bar(position, progress.range) + "  " + std::to_string(position) + "/"
                             + std::to_string(progress.range) + "  " + progress.label;
    return Cut(line, columns);
}
