// How many columns of a terminal a character takes.
//
// Pure.
#pragma once

#include <cstddef>

// 0 for marks that combine with the character in front of them, 2 for the wide characters of East
// Asia and for pictures, 1 for all else. Where terminals differ it is the larger number, so that
// what is cut by it stays on its line. Control characters have no width: leave them out before.
std::size_t WidthOf(char32_t character);
