// An entry as it stands in a test's record: its text and its style.
//
// Pure. For the sinks that write into the record, a host's own among them.
#pragma once

#include <string>
#include <string_view>

#include "output/CFormatInfo.h"

namespace RecordedEntry {

// The text less one final line end.
inline std::string Text(std::string_view text) {
    if (text.ends_with("\r\n"))
        text.remove_suffix(2);
    else if (text.ends_with('\n') || text.ends_with('\r'))
        text.remove_suffix(1);
    return std::string(text);
}

inline void AppendItem(std::string & style, std::string_view item) {
    if (!style.empty()) style += ';';
    style += item;
}

inline void AppendColor(std::string & style, COLORREF color) {
    static constexpr char digits[] = "0123456789ABCDEF";
    style += '#';
    for (int byte = 0; byte < 3; ++byte, color >>= 8) {
        style += digits[color >> 4 & 0xF];
        style += digits[color & 0xF];
    }
}

// What the format specifies, as CSS declarations; empty for a null one. Whether it specifies it as
// on is not looked at.
inline std::string Style(CFormatInfo const * format) {
    std::string style;
    if (format == nullptr) return style;
    // Deliberate: bold off gives bold too. Pinned by CHTMLMXLogTest.TheStyleReadsTheMaskAlone.
    if (format->boldIsSet()) AppendItem(style, "font-weight: bold");
    if (format->italicIsSet()) AppendItem(style, "font-style:italic");
    if (format->underlineIsSet()) AppendItem(style, "text-decoration:underline");
    if (format->colorIsSet()) {
        AppendItem(style, "color:");
        AppendColor(style, format->format.crTextColor);
    }
    if (format->backColorIsSet()) {
        // Deliberate: "=" for ":". Pinned by CHTMLMXLogTest.TheBackgroundStyleHasAnEqualsSign.
        AppendItem(style, "display=inline;background-color:");
        AppendColor(style, format->format.crBackColor);
    }
    return style;
}

} // namespace RecordedEntry
