// Between the UTF-8 of the parts beneath and the wide texts of the interfaces.
#pragma once

#include <string>
#include <string_view>

#include "platform/Com.h"

// A new text for the caller. `utf8` is well formed. Throws std::bad_alloc.
BSTR NewText(std::string_view utf8);

// Null gives an empty text. What is no character becomes U+FFFD.
std::string Narrow(wchar_t const * text);
