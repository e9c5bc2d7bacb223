// What the library needs around a log: its state, a suite record and an output buffer, without a
// window.
#pragma once

#include "app/CAppState.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "settings/CIniArgs.h"
#include "siblings/QuillonLog.h"

class LibraryState {
public:
    LibraryState() {
        SetDefaultLook();
        CAppState::InitAppState(EApplicationFamily{});
        CAppState::SetIniArgs(m_IniArgs);
        CAppState::TestSuiteLog(&suite);
        CUIUpdate::GetUIUpdate()->SetOutputBuffer(&output);
    }
    LibraryState(LibraryState const &) = delete;
    LibraryState & operator=(LibraryState const &) = delete;
    ~LibraryState() {
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }

    CTestSuiteLog suite;
    COutputBuffer output;

private:
    // Specifies everything, so that a return to it undoes everything.
    static void SetDefaultLook() {
        CFormatInfo look(false, false, 400);
        look.setUnderline(false);
        look.clearColor();
        look.clearBackColor();
        look.format.cbSize = sizeof look.format;
        COutputBuffer::InitializeDefaultFormatInfo(look.format);
    }

    CIniArgs m_IniArgs;
};
