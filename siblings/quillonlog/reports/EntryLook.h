// The look of an entry in the page: what its style says, in colours that can be read on light and
// on dark ground.
//
// Pure.
#pragma once

#include <string>
#include <string_view>

namespace EntryLook {

// The classes and the custom properties for a style of CSS declarations, as the attributes of an
// element, ` class="..." style="..."`, with `classes` in front.
// Of the style only weight, slant, underline and colours are read, and nothing of it is passed on.
std::string Attributes(std::string_view classes, std::string_view style);

} // namespace EntryLook
