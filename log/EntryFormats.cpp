// The looks of log entries.
#include "log/EntryFormats.h"

#include "platform/RichEdit.h"

namespace {

constexpr COLORREF kRed = 0x0000FF;
constexpr COLORREF kYellow = 0x00FFFF;
constexpr COLORREF kDarkRed = 0x0000BF;
constexpr COLORREF kGreen = 0x007F00;
constexpr COLORREF kDarkBlue = 0xAA0000;

constexpr DWORD kBoldMask = CFM_BOLD | CFM_WEIGHT;
constexpr WORD kBoldWeight = 700;

COLORREF VerdictColor(bool passed) { return passed ? kGreen : kDarkRed; }

CFormatInfo Colored(COLORREF color) {
    CFormatInfo look;
    look.format.dwMask = CFM_COLOR;
    look.format.dwEffects = CFE_AUTOBACKCOLOR;
    look.format.crTextColor = color;
    return look;
}

CFormatInfo Bold(COLORREF color) {
    CFormatInfo look = Colored(color);
    look.format.dwMask |= kBoldMask;
    look.format.dwEffects |= CFE_BOLD;
    look.format.wWeight = kBoldWeight;
    return look;
}

CFormatInfo BoldItalic(COLORREF color) {
    CFormatInfo look = Bold(color);
    look.format.dwMask |= CFM_ITALIC;
    look.format.dwEffects |= CFE_ITALIC;
    return look;
}

CFormatInfo OnYellow(CFormatInfo look) {
    look.format.dwMask |= CFM_BACKCOLOR;
    look.format.dwEffects &= ~static_cast<DWORD>(CFE_AUTOBACKCOLOR);
    look.format.crBackColor = kYellow;
    return look;
}

struct DefaultFormats {
    CFormatInfo const info;
    CFormatInfo const warning = Colored(kRed);
    CFormatInfo const fail = Bold(kRed);
    CFormatInfo const diagnostic = OnYellow(BoldItalic(kRed));
};

DefaultFormats const & InitDefaultFormats() {
    static DefaultFormats const formats;
    return formats;
}

} // namespace

CFormatInfo const & EntryFormats::Info() { return InitDefaultFormats().info; }
CFormatInfo const & EntryFormats::Warning() { return InitDefaultFormats().warning; }
CFormatInfo const & EntryFormats::Fail() { return InitDefaultFormats().fail; }
CFormatInfo const & EntryFormats::Diagnostic() { return InitDefaultFormats().diagnostic; }

CFormatInfo EntryFormats::Start() { return BoldItalic(kDarkBlue); }
CFormatInfo EntryFormats::Stop(bool passed) { return Bold(VerdictColor(passed)); }
CFormatInfo EntryFormats::Summary(bool passed) { return BoldItalic(VerdictColor(passed)); }
