// The attributes of a run of text: specifying, mixing and comparing them.
#include "output/CFormatInfo.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "siblings/Keelbase.h"

namespace {

constexpr DWORD kBoldMask = CFM_BOLD | CFM_WEIGHT;
constexpr WORD kNormalWeight = 400;

// `unsigned long` has 64 bits on some platforms; a colour and a mask have 32 on all.
DWORD Cut(unsigned long value) { return static_cast<DWORD>(value); }

DWORD FromBytes(unsigned char red, unsigned char green, unsigned char blue) {
    return DWORD{red} | DWORD{green} << 8 | DWORD{blue} << 16;
}

void SpecifyEffect(CHARFORMAT2A & format, DWORD mask, DWORD effect, bool on) {
    format.dwMask |= mask;
    format.dwEffects = on ? format.dwEffects | effect : format.dwEffects & ~effect;
}

void SpecifyColor(CHARFORMAT2A & format, DWORD color) {
    SpecifyEffect(format, CFM_COLOR, CFE_AUTOCOLOR, false);
    format.crTextColor = color;
}

void SpecifyBackColor(CHARFORMAT2A & format, DWORD color) {
    SpecifyEffect(format, CFM_BACKCOLOR, CFE_AUTOBACKCOLOR, false);
    format.crBackColor = color;
}

void SpecifyBold(CHARFORMAT2A & format, bool on, WORD weight) {
    SpecifyEffect(format, kBoldMask, CFE_BOLD, on);
    format.wWeight = on ? weight : kNormalWeight;
}

void SpecifyItalic(CHARFORMAT2A & format, bool on) {
    SpecifyEffect(format, CFM_ITALIC, CFE_ITALIC, on);
}

// As strncpy: up to a NUL or the end of the field, the rest zero.
template <typename Unit, typename Source>
void WriteName(Unit (&field)[32], Source const * name, std::size_t length) {
    auto const * const end = std::find(name, name + std::min(length, std::size(field)), Source{});
    auto * const rest =
        std::transform(name, end, field, [](Source unit) { return static_cast<Unit>(unit); });
    std::fill(rest, std::end(field), Unit{});
}

// The wide record holds 16-bit units; wide text may hold whole code points.
template <typename Unit>
std::wstring WideName(Unit const (&field)[32]) {
    std::wstring name;
    for (auto const * unit = field; unit != std::end(field) && *unit != 0; ++unit) {
        bool const pairFollows = (*unit & 0xFC00) == 0xD800 && unit + 1 != std::end(field)
                                 && (unit[1] & 0xFC00) == 0xDC00;
        if (sizeof(wchar_t) > sizeof(Unit) && pairFollows) {
            name += static_cast<wchar_t>(0x10000 + ((*unit & 0x3FF) << 10) + (unit[1] & 0x3FF));
            ++unit;
        } else {
            name += static_cast<wchar_t>(*unit);
        }
    }
    return name;
}

std::u16string Units(std::wstring const & text) {
    std::u16string units;
    for (wchar_t const character : text) {
        auto const code = static_cast<std::uint32_t>(character);
        if (code > 0xFFFF) {
            units += static_cast<char16_t>(0xD7C0 + (code >> 10));
            units += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        } else {
            units += static_cast<char16_t>(code);
        }
    }
    return units;
}

template <typename To, typename From>
void CopyAllButName(To & out, From const & in) {
    out.cbSize = in.cbSize;
    out.dwMask = in.dwMask;
    out.dwEffects = in.dwEffects;
    out.yHeight = in.yHeight;
    out.yOffset = in.yOffset;
    out.crTextColor = in.crTextColor;
    out.bCharSet = in.bCharSet;
    out.bPitchAndFamily = in.bPitchAndFamily;
    out.wWeight = in.wWeight;
    out.sSpacing = in.sSpacing;
    out.crBackColor = in.crBackColor;
    out.lcid = in.lcid;
    out.dwCookie = in.dwCookie;
    out.sStyle = in.sStyle;
    out.wKerning = in.wKerning;
    out.bUnderlineType = in.bUnderlineType;
    out.bAnimation = in.bAnimation;
    out.bRevAuthor = in.bRevAuthor;
    out.bUnderlineColor = in.bUnderlineColor;
}

// The effects of a merge: an automatic colour is inherited like a colour, all else is added.
DWORD InheritedEffects(DWORD mask, DWORD effects) {
    if ((mask & CFM_COLOR) != 0) effects &= ~CFE_AUTOCOLOR;
    if ((mask & CFM_BACKCOLOR) != 0) effects &= ~CFE_AUTOBACKCOLOR;
    return effects;
}

void FillUnspecified(CHARFORMAT2A & format, CHARFORMAT2A const & other) {
    auto const open = [&format](DWORD bit) { return (format.dwMask & bit) == 0; };
    if (open(CFM_WEIGHT)) format.wWeight = other.wWeight;
    if (open(CFM_ANIMATION)) format.bAnimation = other.bAnimation;
    if (open(CFM_CHARSET)) format.bCharSet = other.bCharSet;
    if (open(CFM_KERNING)) format.wKerning = other.wKerning;
    if (open(CFM_LCID)) format.lcid = other.lcid;
    if (open(CFM_OFFSET)) format.yOffset = other.yOffset;
    if (open(CFM_SIZE)) format.yHeight = other.yHeight;
    if (open(CFM_SPACING)) format.sSpacing = other.sSpacing;
    if (open(CFM_STYLE)) format.sStyle = other.sStyle;
    if (open(CFM_UNDERLINETYPE)) format.bUnderlineType = other.bUnderlineType;
    if (open(CFM_FACE)) WriteName(format.szFaceName, other.szFaceName, std::size(other.szFaceName));
}

} // namespace

constinit std::atomic<CHARFORMAT2A const *> CFormatInfo::m_DefaultFormat = nullptr;

CFormatInfo::CFormatInfo(unsigned long color) : CFormatInfo() { SpecifyColor(format, Cut(color)); }

CFormatInfo::CFormatInfo(unsigned long color, bool bold, unsigned short weight)
    : CFormatInfo(color) {
    SpecifyBold(format, bold, weight);
}

CFormatInfo::CFormatInfo(unsigned long color, bool italic, bool bold, unsigned short weight)
    : CFormatInfo(color, bold, weight) {
    SpecifyItalic(format, italic);
}

CFormatInfo::CFormatInfo(bool bold, unsigned short weight) : CFormatInfo() {
    SpecifyBold(format, bold, weight);
}

CFormatInfo::CFormatInfo(bool italic, bool bold, unsigned short weight)
    : CFormatInfo(bold, weight) {
    SpecifyItalic(format, italic);
}

CFormatInfo::CFormatInfo(CHARFORMAT2W const & record) : CFormatInfo() {
    WideToNarrow(format, record);
}

void CFormatInfo::setColor(unsigned long color) { SpecifyColor(format, Cut(color)); }

void CFormatInfo::setColor(EColor color) { SpecifyColor(format, color); }

void CFormatInfo::setColor(unsigned char red, unsigned char green, unsigned char blue) {
    SpecifyColor(format, FromBytes(red, green, blue));
}

void CFormatInfo::addColor(unsigned long const & value) {
    // Deliberate: exclusive-or, not a sum. Pinned by CFormatInfoTest.AddingAColourTwiceUndoesIt.
    SpecifyColor(format, (format.crTextColor ^ Cut(value)) & 0xFFFFFF);
}

void CFormatInfo::clearColor() { SpecifyEffect(format, CFM_COLOR, CFE_AUTOCOLOR, true); }

void CFormatInfo::setBackColor(unsigned long color) { SpecifyBackColor(format, Cut(color)); }

void CFormatInfo::setBackColor(EColor color) { SpecifyBackColor(format, color); }

void CFormatInfo::setBackColor(unsigned char red, unsigned char green, unsigned char blue) {
    SpecifyBackColor(format, FromBytes(red, green, blue));
}

void CFormatInfo::clearBackColor() {
    SpecifyEffect(format, CFM_BACKCOLOR, CFE_AUTOBACKCOLOR, true);
}

void CFormatInfo::setBold(bool const & on, unsigned short const & weight) {
    SpecifyBold(format, on, weight);
}

void CFormatInfo::setItalic(bool const & on) { SpecifyItalic(format, on); }

void CFormatInfo::setUnderline(bool const & on) {
    SpecifyEffect(format, CFM_UNDERLINE, CFE_UNDERLINE, on);
}

void CFormatInfo::setPitchAndFamily(unsigned char const & value) { format.bPitchAndFamily = value; }

void CFormatInfo::setStyle(CHARFORMAT2A const * record) { CopyRecord(*record); }

void CFormatInfo::setStyle(void const * record) {
    setStyle(static_cast<CHARFORMAT2A const *>(record));
}

void CFormatInfo::ClearFormat() { *this = CFormatInfo(); }

CHARFORMAT2A & CFormatInfo::MergeFormat(CHARFORMAT2A const & other) {
    DWORD const specified = format.dwMask;
    if ((specified & CFM_COLOR) == 0) format.crTextColor = other.crTextColor;
    if ((specified & CFM_BACKCOLOR) == 0) format.crBackColor = other.crBackColor;
    format.dwMask |= other.dwMask;
    format.dwEffects |= InheritedEffects(specified, other.dwEffects);
    // Deliberate: by the merged mask, so what the other side alone specifies is not taken over.
    // Pinned by CFormatInfoTest.MergeClaimsAWeightThatItDoesNotTake.
    FillUnspecified(format, other);
    return format;
}

bool CFormatInfo::FormatEqual(
    CHARFORMAT2A const & have, CHARFORMAT2A const & wanted, unsigned long extraMask) {
    if (std::memcmp(&have, &wanted, sizeof have) == 0) return true;
    CFormatInfo asked(have);
    asked.format.dwMask = wanted.dwMask;
    if (std::memcmp(&asked.format, &wanted, sizeof wanted) != 0) return false;
    return ((wanted.dwMask | Cut(extraMask)) & have.dwMask) == wanted.dwMask;
}

void CFormatInfo::InitializeDefaultFormat(CHARFORMAT2A const & record) {
    if (m_DefaultFormat.load(std::memory_order_acquire) != nullptr) return;
    // Plain data: nothing ends it, so threads may ask for it until the process does.
    static CHARFORMAT2A copy;
    static auto const * const filled =
        static_cast<CHARFORMAT2A const *>(std::memcpy(&copy, &record, sizeof copy));
    m_DefaultFormat.store(filled, std::memory_order_release);
}

void CFormatInfo::WideToNarrow(CHARFORMAT2A & out, CHARFORMAT2W const & in) {
    auto const name = Utf16ToUtf8(WideName(in.szFaceName));
    CopyAllButName(out, in);
    WriteName(out.szFaceName, name->data(), name->size());
}

void CFormatInfo::NarrowToWide(CHARFORMAT2W & out, CHARFORMAT2A const & in) {
    auto const * const end = std::find(std::begin(in.szFaceName), std::end(in.szFaceName), '\0');
    auto const name = Units(*Utf8ToUtf16(std::string(std::begin(in.szFaceName), end)));
    CopyAllButName(out, in);
    WriteName(out.szFaceName, name.data(), name.size());
}
