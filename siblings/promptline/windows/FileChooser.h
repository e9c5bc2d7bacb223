// The system's dialog for choosing files.
#pragma once

#include "siblings/promptline/Desk.h"

// Shows the dialog and answers the question through the desk; returns when the dialog is gone.
// Messages are served meanwhile.
void ChooseFiles(SharedDialog const & dialog);

// Takes the dialog of this question away, if it is up.
void CancelChoice(SharedDialog const & dialog);
