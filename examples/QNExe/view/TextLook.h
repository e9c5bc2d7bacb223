// The look of displayed text, as far as a terminal can show it.
//
// Plain data.
#pragma once

#include <optional>
#include <string>

#include "platform/RichEdit.h"

struct TextLook {
    bool bold = false;
    bool italic = false;
    bool underline = false;

    // 0x00BBGGRR; none: whatever the display shows by default.
    std::optional<COLORREF> color{};
    std::optional<COLORREF> backColor{};

    bool operator==(TextLook const &) const = default;
};

// A piece of text in one look.
struct StyledText {
    std::wstring text;
    TextLook look;

    bool operator==(StyledText const &) const = default;
};
