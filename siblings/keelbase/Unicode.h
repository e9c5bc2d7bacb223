// Conversion between UTF-8 and the platform's wide text, for whole texts in memory.
//
// Wide text is UTF-16 where wchar_t has 16 bits, and whole code points elsewhere. Each maximal
// ill-formed part of a source (each lone surrogate, each value that is no code point) becomes one
// U+FFFD. Nothing here keeps state or fails; the caller owns both memories.
#pragma once

#include <cstddef>

namespace keelbase {

inline constexpr bool WideIsUtf16 = sizeof(wchar_t) == 2;

// The most that one wide character or one code point takes.
inline constexpr std::size_t MaxBytesOfWide = WideIsUtf16 ? 3 : 4;
inline constexpr std::size_t MaxBytesOfCodePoint = 4;
inline constexpr std::size_t MaxWideOfCodePoint = WideIsUtf16 ? 2 : 1;

// All characters are below 0x80.
bool IsAscii(char const * text, std::size_t bytes);
bool IsAscii(wchar_t const * text, std::size_t units);

// Writes the wide form of `bytes` bytes, which never has more characters than they are, and
// returns the number of characters written.
std::size_t WideFromUtf8(char const * text, std::size_t bytes, wchar_t * out);

// Writes the UTF-8 form of `units` wide characters, at most MaxBytesOfWide bytes for each, and
// returns the number of bytes written.
std::size_t Utf8FromWide(wchar_t const * text, std::size_t units, char * out);

// The number of bytes that Utf8FromWide writes.
std::size_t MeasureUtf8(wchar_t const * text, std::size_t units);

// Writes one code point and returns what follows it. What is no code point becomes U+FFFD in
// UTF-8; in wide text a 16-bit value is written as it is.
char * PutCodePoint(char32_t point, char * out);
wchar_t * PutCodePoint(char32_t point, wchar_t * out);

} // namespace keelbase
