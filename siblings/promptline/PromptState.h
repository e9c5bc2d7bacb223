// The state behind a question: what the contract shows of it, the question, and where its answer
// goes.
#pragma once

#include <functional>

#include "siblings/promptline/Question.h"

// Writes an answer into the variable of whoever asked.
using StoreReply = std::function<void(Reply const &)>;

class PromptState : public CHelperDialogState {
public:
    PromptState(Question question, StoreReply store);
    // Takes a dialog away that is still up.
    ~PromptState() override;

    Question const question;
    StoreReply const store;
};
