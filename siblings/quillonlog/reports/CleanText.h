// The one place where the texts of a run are made fit for a report.
//
// In every form an ill-formed part of the UTF-8 becomes U+FFFD. What XML 1.0 or HTML cannot carry
// is shown in its place: \x1B for a control character, \u{FFFE} for a code point that is no
// character. Pure.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace CleanText {

// Appends what an element of XML or HTML may hold between its tags. Line ends become "\n".
void AppendMarkup(std::string & out, std::string_view text);

// Appends what may stand between the double quotes of an attribute, line ends and tabs included.
void AppendAttribute(std::string & out, std::string_view text);

// Appends a string of JSON with its quotes. JSON carries every character: none is shown as escape.
void AppendJson(std::string & out, std::string_view text);

// Markup and Attribute as a text of their own.
std::string Markup(std::string_view text);
std::string Attribute(std::string_view text);

// The text itself, or its first `bytes` bytes without a broken character at the end, and an
// ellipsis.
std::string Cut(std::string_view text, std::size_t bytes);

} // namespace CleanText
