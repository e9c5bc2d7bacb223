// The widths of characters, by ranges.
#include "examples/QNExe/view/CharacterWidth.h"

#include <algorithm>
#include <iterator>

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// In order. Of the scripts whose marks are left out, a line holds a little less than would fit.
constexpr Range Combining[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A}, {0x064B, 0x065F},
    {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1AB0, 0x1ABE}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
    {0x20D0, 0x20F0}, {0x302A, 0x302D}, {0x3099, 0x309A}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF},
};

// In order. Blocks of pictures stand here whole, although some of theirs are narrow.
constexpr Range Wide[] = {
    {0x1100, 0x115F}, {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23F3},   {0x25FD, 0x25FE},
    {0x2600, 0x27BF}, {0x2B1B, 0x2B1C},   {0x2B50, 0x2B55},   {0x2E80, 0xA4CF},   {0xA960, 0xA97F},
    {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},   {0xFF01, 0xFF60},
    {0xFFE0, 0xFFE6}, {0x16FE0, 0x1B2FF}, {0x1F000, 0x1FAFF}, {0x20000, 0x3FFFD},
};

template <std::size_t Count>
bool IsIn(Range const (&ranges)[Count], char32_t character) {
    auto const * const found = std::lower_bound(
        std::begin(ranges), std::end(ranges), character,
        [](Range const & range, char32_t wanted) { return range.last < wanted; });
    return found != std::end(ranges) && found->first <= character;
}

} // namespace

std::size_t WidthOf(char32_t character) {
    if (IsIn(Combining, character)) return 0;
    return IsIn(Wide, character) ? 2 : 1;
}
