// Answers to questions out of a file, for runs without an operator.
//
// docs/prompt-answers.md tells the format. For one thread.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "siblings/promptline/Question.h"

class AnswerFile {
public:
    // Throws std::runtime_error, whose text says what is wrong where, unless the whole file is of
    // the format.
    explicit AnswerFile(std::string const & file);
    AnswerFile(AnswerFile const &) = delete;
    AnswerFile & operator=(AnswerFile const &) = delete;
    ~AnswerFile();

    // Takes the next answer for the question. Empty, and `problem` says why, when there is none or
    // it does not fit.
    std::optional<Reply> Take(Question const & question, std::string & problem);

private:
    struct Entry;
    struct Entries;

    Entry * Find(std::string const & name);

    std::string m_File;
    std::unique_ptr<Entries> m_Entries;
};
