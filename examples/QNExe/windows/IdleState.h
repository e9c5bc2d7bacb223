// The library's shared state between two runs, for dialogs that work on what it keeps.
#pragma once

#include "app/CAppState.h"
#include "examples/QNExe/ProgramName.h"
#include "output/CUIUpdate.h"

class IdleState {
public:
    IdleState() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::ApplicationName(ProgramName);
    }
    IdleState(IdleState const &) = delete;
    IdleState & operator=(IdleState const &) = delete;
    ~IdleState() {
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }
};
