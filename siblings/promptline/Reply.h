// Replies out of typed lines, and replies as text. Pure.
#pragma once

#include <optional>
#include <string>

#include "siblings/promptline/Question.h"

// A line as the operator types it at a terminal: numbers of list entries count from 1, 0 is the way
// out, an empty line takes what is offered. Empty, and `problem` says what to type, when the line
// answers nothing.
std::optional<Reply>
ReadReply(Question const & question, std::wstring const & line, std::wstring & problem);

// At most 0xFFFFFFFF; a 0x in front is allowed either way. Empty: no such number.
std::optional<std::uint32_t> ReadNumber(std::wstring const & text, bool hexadecimal);

// The place of the entry with exactly this text.
std::optional<std::uint32_t>
FindEntry(std::vector<std::wstring> const & list, std::wstring const & text);

bool EqualInAnyCase(std::wstring const & a, std::wstring const & b);

std::wstring Trimmed(std::wstring const & text);

// What was chosen or entered, in UTF-8.
std::string TextOf(Question const & question, Reply const & reply);
