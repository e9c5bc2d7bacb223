// Reads tables of formatted text.
#include "examples/QNExe/view/TableReader.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

// From this weight on, text is shown bold; the published weight of semi-bold.
constexpr WORD BoldWeight = 600;

std::optional<COLORREF> ColorOf(DWORD effects, DWORD automatic, COLORREF color) {
    if ((effects & automatic) != 0) return std::nullopt;
    return color & 0xFFFFFF;
}

// Only what the record specifies is changed.
void Apply(CHARFORMAT2A const & record, TextLook & look) {
    DWORD const mask = record.dwMask;
    DWORD const effects = record.dwEffects;
    if ((mask & CFM_BOLD) != 0)
        look.bold = (effects & CFE_BOLD) != 0;
    else if ((mask & CFM_WEIGHT) != 0)
        look.bold = record.wWeight >= BoldWeight;
    if ((mask & CFM_ITALIC) != 0) look.italic = (effects & CFE_ITALIC) != 0;
    if ((mask & CFM_UNDERLINE) != 0) look.underline = (effects & CFE_UNDERLINE) != 0;
    if ((mask & CFM_COLOR) != 0) look.color = ColorOf(effects, CFE_AUTOCOLOR, record.crTextColor);
    if ((mask & CFM_BACKCOLOR) != 0)
        look.backColor = ColorOf(effects, CFE_AUTOBACKCOLOR, record.crBackColor);
}

void Append(std::vector<StyledText> & shown, std::wstring_view text, TextLook const & look) {
    if (text.empty()) return;
    if (!shown.empty() && shown.back().look == look)
        shown.back().text += text;
    else
        shown.push_back({std::wstring(text), look});
}

std::size_t Within(LONG position, std::size_t size) {
    return position < 0 ? size : std::min(static_cast<std::size_t>(position), size);
}

// A text whose record says how a part of it looks.
void AppendFormatted(
    std::vector<StyledText> & shown, std::wstring_view text, CFormatInfo const & format,
    TextLook const & around) {
    TextLook inside = around;
    Apply(format.format, inside);
    std::size_t const first = Within(format.range.cpMin, text.size());
    std::size_t const last = std::max(first, Within(format.range.cpMax, text.size()));
    Append(shown, text.substr(0, first), around);
    Append(shown, text.substr(first, last - first), inside);
    Append(shown, text.substr(last), around);
}

std::wstring_view WithoutJoint(std::wstring_view text) {
    if (text.ends_with(L' ')) text.remove_suffix(1);
    return text;
}

} // namespace

std::vector<StyledText> TableReader::Read(COutputBuffer::DataTable const & table) {
    std::vector<StyledText> shown;
    for (auto const & [text, format] : table) {
        if (text == nullptr)
            Apply(format.format, m_Look);
        else
            AppendFormatted(shown, WithoutJoint(*text), format, m_Look);
    }
    return shown;
}
