// One question as its face shows it, and what the operator can say to it.
//
// Plain data. Places in a list count from 0.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "siblings/Promptline.h"

enum class QuestionKind {
    // Ended by its button.
    Information,
    // Not to be answered: ends by its time-out or is destroyed.
    Notice,
    Choice,
    Number,
    Text,
    OneOfList,
    OneOfListOrOut,
    SeveralOfList,
    OneFile,
    SeveralFiles,
};

struct Question {
    QuestionKind kind = QuestionKind::Information;
    std::wstring header;
    std::wstring title;
    std::wstring text;
    // Labels: of the button, of true and false, or of the choice and the way out.
    std::wstring first;
    std::wstring second;
    std::vector<std::wstring> list;
    std::wstring filter;
    bool hexadecimal = false;
    bool mustExist = false;
    // What is offered: a text, also of a number, or a place in the list.
    std::wstring preset;
    std::optional<std::uint32_t> presetPlace;
    bool inputEnabled = true;
    WINDOW_ARGS where;

    // What the question is known by.
    std::wstring const & Name() const { return text.empty() ? title : text; }
};

struct Reply {
    // False: the second label, or nothing was chosen.
    bool affirmed = true;
    std::uint32_t number = 0;
    std::vector<std::uint32_t> places{};
    // The text, or paths.
    std::vector<std::wstring> texts{};
};
