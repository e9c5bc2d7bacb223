// The host's side of a formatted log: takes the text out when the library rings, and shows it.
//
// For the window thread.
#pragma once

#include <cstdio>

#include "examples/QNExe/view/RunIntake.h"
#include "examples/QNExe/view/RunView.h"
#include "examples/QNExe/view/TableReader.h"
#include "examples/QNExe/view/TerminalView.h"

// A terminal that takes away what it has shown, such as a line of progress.
bool IsCapableTerminal(std::FILE * stream);

// Such a terminal, on which the environment wants colours too. Without them a formatted log does
// not tell a failure from a remark.
bool IsColorTerminal(std::FILE * stream);

class FormattedView : public RunView {
public:
    // Shows on `stream`, which stays the caller's: styled and with progress when it is a terminal
    // and the environment has nothing against it.
    explicit FormattedView(std::FILE * stream);

    bool TakeOver(bool testWaits) override { return m_Intake.TakeOver(testWaits); }
    void Render() override;

    // No line of progress is shown while it is held.
    void HoldProgress(bool hold) override { m_View.HoldProgress(hold); }

private:
    RunIntake m_Intake;
    TableReader m_Reader;
    TerminalView m_View;
};
