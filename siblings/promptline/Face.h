// How questions meet whoever answers them: one implementation for each way.
//
// For the window's thread. A face answers through the desk, at once or later, and forgets a dialog
// at Remove, which comes once for each that was shown, however it ended.
#pragma once

#include <memory>

#include "siblings/promptline/Desk.h"
#include "siblings/promptline/Pump.h"

class Face {
public:
    virtual ~Face() = default;

    virtual void Show(SharedDialog const & dialog) = 0;
    virtual void Remove(SharedDialog const & dialog) = 0;

    // Some time has passed.
    virtual void Tick() {}
    // The watched input has something.
    virtual void Serve() {}
    virtual bool TakesMessage(MSG &) { return false; }

    // Around what others write at the terminal.
    virtual void BeforeOutput() {}
    virtual void AfterOutput() {}
};

// Never answers, and says why.
std::unique_ptr<Face> MakeNobodysFace(std::string const & reason);

// Answers from a file. Throws std::runtime_error, whose text says what to do, when it cannot be
// used.
std::unique_ptr<Face> MakeFileFace(std::string const & file);

// The operator's, as this system has it; one that never answers where there is no operator.
std::unique_ptr<Face> MakeOperatorsFace(Pump & pump, CPromptListener * listener);
