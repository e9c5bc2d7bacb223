// The rich-edit control's records of character formats, with their published layout.
//
// Narrow and wide form differ in the face name alone. Off Windows the wide record holds 16-bit
// units, because a wider character would move every field behind the name.
#pragma once

#include <cstddef>

#include "platform/BaseTypes.h"

#if defined(_WIN32)

#include <richedit.h>

#else

struct _charrange {
    LONG cpMin;
    LONG cpMax;
};
using CHARRANGE = _charrange;

template <typename Char>
struct MorvexCharFormat {
    UINT cbSize;
    DWORD dwMask;
    DWORD dwEffects;
    LONG yHeight;
    LONG yOffset;
    COLORREF crTextColor;
    BYTE bCharSet;
    BYTE bPitchAndFamily;
    Char szFaceName[32];
    // Named, so that a whole-record copy carries what the published layout leaves between fields.
    WORD wPadding;
    WORD wWeight;
    SHORT sSpacing;
    COLORREF crBackColor;
    LCID lcid;
    DWORD dwCookie;
    SHORT sStyle;
    WORD wKerning;
    BYTE bUnderlineType;
    BYTE bAnimation;
    BYTE bRevAuthor;
    BYTE bUnderlineColor;
};

struct CHARFORMAT2A : MorvexCharFormat<char> {};
struct CHARFORMAT2W : MorvexCharFormat<char16_t> {};

inline constexpr DWORD CFM_BOLD = 0x00000001;
inline constexpr DWORD CFM_ITALIC = 0x00000002;
inline constexpr DWORD CFM_UNDERLINE = 0x00000004;
inline constexpr DWORD CFM_ANIMATION = 0x00040000;
inline constexpr DWORD CFM_STYLE = 0x00080000;
inline constexpr DWORD CFM_KERNING = 0x00100000;
inline constexpr DWORD CFM_SPACING = 0x00200000;
inline constexpr DWORD CFM_WEIGHT = 0x00400000;
inline constexpr DWORD CFM_UNDERLINETYPE = 0x00800000;
inline constexpr DWORD CFM_LCID = 0x02000000;
inline constexpr DWORD CFM_BACKCOLOR = 0x04000000;
inline constexpr DWORD CFM_CHARSET = 0x08000000;
inline constexpr DWORD CFM_OFFSET = 0x10000000;
inline constexpr DWORD CFM_FACE = 0x20000000;
inline constexpr DWORD CFM_COLOR = 0x40000000;
inline constexpr DWORD CFM_SIZE = 0x80000000;

inline constexpr DWORD CFE_BOLD = 0x00000001;
inline constexpr DWORD CFE_ITALIC = 0x00000002;
inline constexpr DWORD CFE_UNDERLINE = 0x00000004;
inline constexpr DWORD CFE_AUTOBACKCOLOR = 0x04000000;
inline constexpr DWORD CFE_AUTOCOLOR = 0x40000000;

// The published places; those behind the face name follow from its size.
template <typename Record, std::size_t Name, std::size_t Behind = 26 + Name>
inline constexpr bool MorvexIsPublishedLayout =
    offsetof(Record, cbSize) == 0 && offsetof(Record, dwMask) == 4
    && offsetof(Record, dwEffects) == 8 && offsetof(Record, yHeight) == 12
    && offsetof(Record, yOffset) == 16 && offsetof(Record, crTextColor) == 20
    && offsetof(Record, bCharSet) == 24 && offsetof(Record, bPitchAndFamily) == 25
    && offsetof(Record, szFaceName) == 26
    && sizeof(Record::szFaceName) == Name && offsetof(Record, wWeight) == Behind + 2
    && offsetof(Record, sSpacing) == Behind + 4 && offsetof(Record, crBackColor) == Behind + 6
    && offsetof(Record, lcid) == Behind + 10 && offsetof(Record, dwCookie) == Behind + 14
    && offsetof(Record, sStyle) == Behind + 18 && offsetof(Record, wKerning) == Behind + 20
    && offsetof(Record, bUnderlineType) == Behind + 22
    && offsetof(Record, bAnimation) == Behind + 23 && offsetof(Record, bRevAuthor) == Behind + 24
    && offsetof(Record, bUnderlineColor) == Behind + 25;
static_assert(MorvexIsPublishedLayout<CHARFORMAT2A, 32>);
static_assert(MorvexIsPublishedLayout<CHARFORMAT2W, 64>);
static_assert(offsetof(_charrange, cpMin) == 0 && offsetof(_charrange, cpMax) == 4);

#endif

static_assert(sizeof(_charrange) == 8);
static_assert(sizeof(CHARFORMAT2A) == 84);
static_assert(sizeof(CHARFORMAT2W) == 116);
