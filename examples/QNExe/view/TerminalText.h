// Turns styled text into the bytes that a terminal, or a plain stream, shows.
//
// Pure functions.
#pragma once

#include <string>
#include <vector>

#include "examples/QNExe/view/TextLook.h"

// UTF-8 with single line feeds. With `styled`, looks become the control sequences of ECMA-48 with
// 24-bit colours; a background without a colour gets black or white text, whichever can be read on
// it. Every line begins and ends in the terminal's default look. A control character
// of the text itself never reaches the terminal: it is shown as \x and its two hexadecimal digits.
std::string TerminalText(std::vector<StyledText> const & pieces, bool styled);

// The colour as it is shown without a background of its own: of the same hue, and of a lightness
// that stands out from black and from white by a contrast of at least 3.
COLORREF ReadableColor(COLORREF color);

// The ratio of lightness between two colours, 1 to 21, as the accessibility guidelines of the web
// define it.
double Contrast(COLORREF first, COLORREF second);
